#include "platform/CWinApp.h"

#include "platform/CLumbraApp.h"
#include "platform/Ficheros.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <optional>
#include <thread>

namespace {

struct IContador {
    virtual ~IContador() = default;
    virtual int Cuenta() const = 0;
};

class CAplicacion : public CWinApp, public IContador {
  public:
    using CWinApp::CWinApp;
    int Cuenta() const override { return 7; }
};

// A variable of the environment, put back at the end.
class Variable {
  public:
    Variable(const char* nombre, const char* valor) : m_nombre(nombre) {
        if (const char* antes = std::getenv(nombre)) m_antes = antes;
        valor ? setenv(nombre, valor, 1) : unsetenv(nombre);
    }
    ~Variable() { m_antes ? setenv(m_nombre, m_antes->c_str(), 1) : unsetenv(m_nombre); }
    Variable(const Variable&) = delete;
    Variable& operator=(const Variable&) = delete;

  private:
    const char* m_nombre;
    std::optional<std::string> m_antes;
};

TEST(AfxGetApp, WithoutAHostItIsTheLibrarysObject) {
    CWinApp* biblioteca = AfxGetApp();
    ASSERT_NE(biblioteca, nullptr);
    EXPECT_NE(dynamic_cast<CLumbraApp*>(biblioteca), nullptr);
    EXPECT_EQ(biblioteca->m_pszAppName, biblioteca->m_pszExeName);
    EXPECT_FALSE(biblioteca->m_pszExeName.IsEmpty());
}

TEST(AfxGetApp, TheHostsObjectWinsAndGivesBackTheLibrarys) {
    CWinApp* biblioteca = AfxGetApp();
    {
        CAplicacion aplicacion(L"Anfitrión");
        EXPECT_EQ(AfxGetApp(), &aplicacion);
        EXPECT_EQ(aplicacion.m_pszAppName, L"Anfitrión");
        // One of the library's that comes up later doesn't push it aside.
        const CLumbraApp tardia;
        EXPECT_EQ(AfxGetApp(), &aplicacion);
    }
    EXPECT_EQ(AfxGetApp(), biblioteca);
}

TEST(AfxGetApp, WhatTheApplicationDerivesFromIsFoundByDynamicCast) {
    EXPECT_EQ(dynamic_cast<IContador*>(AfxGetApp()), nullptr);
    const CAplicacion aplicacion;
    auto* contador = dynamic_cast<IContador*>(AfxGetApp());
    ASSERT_NE(contador, nullptr);
    EXPECT_EQ(contador->Cuenta(), 7);
}

TEST(AfxGetApp, SeveralHostObjectsMayEndInAnyOrder) {
    CWinApp* biblioteca = AfxGetApp();
    auto a = std::make_unique<CAplicacion>(), b = std::make_unique<CAplicacion>(), c = std::make_unique<CAplicacion>();
    EXPECT_EQ(AfxGetApp(), c.get());
    b.reset();
    EXPECT_EQ(AfxGetApp(), c.get());
    c.reset();
    EXPECT_EQ(AfxGetApp(), a.get());
    a.reset();
    EXPECT_EQ(AfxGetApp(), biblioteca);
}

TEST(AfxGetApp, MayBeCalledWhileObjectsComeAndGo) {
    std::thread hilo([] {
        for (int i = 0; i < 500; ++i)
            EXPECT_NE(AfxGetApp(), nullptr);
    });
    for (int i = 0; i < 500; ++i)
        const CAplicacion aplicacion(L"x");
    hilo.join();
}

class PerfilAplicacion : public testing::Test {
  protected:
    CarpetaTemporal m_carpeta;
    Variable m_xdg{"XDG_CONFIG_HOME", m_carpeta.Ruta().c_str()};
    CAplicacion m_app{L"Visor ñ"};
};

TEST_F(PerfilAplicacion, KeepsIntegersAndTextsBySectionAndKey) {
    EXPECT_EQ(m_app.GetProfileInt(L"GL", L"Quad", 3), 3u);
    EXPECT_EQ(m_app.GetProfileString(L"GL", L"Velocidad", L"0.5"), L"0.5");
    EXPECT_TRUE(m_app.WriteProfileInt(L"GL", L"Quad", -7));
    EXPECT_TRUE(m_app.WriteProfileString(L"GL", L"SzImagenFondo", L"/año/cielo 1.tif "));
    EXPECT_EQ(static_cast<int>(m_app.GetProfileInt(L"gl", L"QUAD", 3)), -7);
    EXPECT_EQ(m_app.GetProfileString(L"GL", L"SzImagenFondo"), L"/año/cielo 1.tif ");
    EXPECT_TRUE(m_app.WriteProfileString(L"GL", L"Quad", nullptr));
    EXPECT_EQ(m_app.GetProfileInt(L"GL", L"Quad", 3), 3u);
    EXPECT_EQ(m_app.GetProfileString(L"GL", L"Falta"), L"");

    const std::wstring largo(3000, L'ñ');
    EXPECT_TRUE(m_app.WriteProfileString(L"GL", L"Largo", largo.c_str()));
    EXPECT_EQ(m_app.GetProfileString(L"GL", L"Largo"), largo.c_str());
}

TEST_F(PerfilAplicacion, TheFileStandsWhereSettingsOfAUserBelong) {
    const CString raiz(std::string_view(m_carpeta.Ruta().native()));
    EXPECT_EQ(m_app.DameFicheroPerfil(), raiz + L"/Visor ñ/perfil.ini");
    m_app.SetRegistryKey(L"Casa/Otra");
    EXPECT_EQ(m_app.DameFicheroPerfil(), raiz + L"/Casa_Otra/Visor ñ/perfil.ini");
    EXPECT_TRUE(m_app.WriteProfileInt(L"S", L"k", 1));
    EXPECT_TRUE(PathFileExists(m_app.DameFicheroPerfil()));
    m_app.m_pszProfileName = raiz + L"/propio.ini";
    EXPECT_TRUE(m_app.WriteProfileInt(L"S", L"k", 2));
    EXPECT_TRUE(PathFileExists(raiz + L"/propio.ini"));

    m_app.m_pszRegistryKey.Empty();
    m_app.m_pszProfileName = L"p.ini";
    const Variable sin("XDG_CONFIG_HOME", nullptr), casa("HOME", "/casa");
    EXPECT_EQ(m_app.DameFicheroPerfil(), L"/casa/.config/Visor ñ/p.ini");
    const Variable relativa("XDG_CONFIG_HOME", "rel");
    EXPECT_EQ(m_app.DameFicheroPerfil(), L"/casa/.config/Visor ñ/p.ini");
}

TEST_F(PerfilAplicacion, WithoutAFolderToWriteItFailsAndReadsDefaults) {
    const Variable imposible("XDG_CONFIG_HOME", "/proc/version");
    EXPECT_FALSE(m_app.WriteProfileInt(L"S", L"k", 1));
    EXPECT_EQ(m_app.GetProfileInt(L"S", L"k", 5), 5u);
    const Variable nada("XDG_CONFIG_HOME", nullptr), sinCasa("HOME", nullptr);
    EXPECT_EQ(m_app.DameFicheroPerfil(), L"");
    EXPECT_FALSE(m_app.WriteProfileInt(L"S", L"k", 1));
    EXPECT_EQ(m_app.GetProfileString(L"S", L"k", L"d"), L"d");
}

TEST_F(PerfilAplicacion, TwoThreadsMayWriteAtOnce) {
    std::thread hilo([this] {
        for (int i = 0; i < 25; ++i)
            EXPECT_TRUE(m_app.WriteProfileInt(L"A", L"a", i));
    });
    for (int i = 0; i < 25; ++i)
        EXPECT_TRUE(m_app.WriteProfileInt(L"B", L"b", i));
    hilo.join();
    EXPECT_EQ(m_app.GetProfileInt(L"A", L"a", -1), 24u);
    EXPECT_EQ(m_app.GetProfileInt(L"B", L"b", -1), 24u);
}

}  // namespace
