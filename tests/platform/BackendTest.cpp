// Ways of getting contexts that can't be had here: each says why, and leaves nothing behind.

#include "platform/Backend.h"

#include "platform/DiagnosticoGL.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <optional>
#include <string>

namespace {

// A variable of the environment, put back at the end.
class Variable {
  public:
    Variable(const char* nombre, const char* valor) : m_Nombre(nombre) {
        if (const char* antes = std::getenv(nombre)) m_Antes = antes;
        if (valor)
            setenv(nombre, valor, 1);
        else
            unsetenv(nombre);
    }
    ~Variable() {
        if (m_Antes)
            setenv(m_Nombre, m_Antes->c_str(), 1);
        else
            unsetenv(m_Nombre);
    }

  private:
    const char* m_Nombre;
    std::optional<std::string> m_Antes;
};

TEST(Backend, WithoutADisplayItSaysWhatIsMissing) {
    const Variable display("DISPLAY", nullptr);
    std::string motivo;
    EXPECT_EQ(plataforma::ConectaGLX(motivo), nullptr);
    EXPECT_NE(motivo.find("DISPLAY isn't set"), std::string::npos) << motivo;
    EXPECT_NE(motivo.find("xvfb-run"), std::string::npos) << motivo;
}

TEST(Backend, ADisplayThatDoesntOpenIsNamed) {
    const Variable display("DISPLAY", ":54321");
    std::string motivo;
    EXPECT_EQ(plataforma::ConectaGLX(motivo), nullptr);
    EXPECT_NE(motivo.find(":54321"), std::string::npos) << motivo;
}

TEST(Backend, WaysAreTriedInTheirOrder) {
    std::string orden;
    for (const auto& via : plataforma::Vias()) {
        orden += std::string(via.m_Nombre) + " ";
        EXPECT_NE(std::string(via.m_Descripcion), "");
    }
    EXPECT_EQ(orden, "glx egl-device egl-surfaceless ");
}

TEST(Backend, WithoutACardItSaysSo) {
    std::string motivo;
    if (plataforma::ConectaEGLDispositivo(motivo)) GTEST_SKIP() << "this machine has a graphics card";
    EXPECT_FALSE(motivo.empty());
    EXPECT_NE(motivo.find("driver"), std::string::npos) << motivo;
}

TEST(Backend, ConnectingTwiceGivesTwoThatServe) {
    std::string motivo;
    const auto uno = plataforma::ConectaEGLSinSuperficie(motivo);
    ASSERT_NE(uno, nullptr) << motivo;
    {
        const auto otro = plataforma::ConectaEGLSinSuperficie(motivo);
        ASSERT_NE(otro, nullptr) << motivo;
    }
    const auto contexto = uno->CreaContexto(uno->Formatos().front(), nullptr, motivo);
    EXPECT_NE(contexto, nullptr) << motivo;
}

TEST(Backend, FormatsGoFromTheBestToTheWorst) {
    using plataforma::FormatoPixel;
    FormatoPixel hondo, somero, lento, conExtras;
    hondo.m_nProfundidad = 32;
    conExtras = hondo;
    conExtras.m_nAlfa = 8;
    somero.m_nProfundidad = 24;
    lento = hondo;
    lento.m_bLento = true;
    std::vector<FormatoPixel> formatos = {lento, somero, conExtras, hondo};
    plataforma::OrdenaFormatos(formatos);
    EXPECT_EQ(formatos[0].m_nAlfa, 0);
    EXPECT_EQ(formatos[0].m_nProfundidad, 32);
    EXPECT_EQ(formatos[1].m_nAlfa, 8);
    EXPECT_EQ(formatos[2].m_nProfundidad, 24);
    EXPECT_TRUE(formatos[3].m_bLento);
}

TEST(Backend, TheFailureIsEachThreadsOwn) {
    plataforma::AnotaFallo("mine");
    EXPECT_EQ(UltimoFalloGL(), "mine");
}

}  // namespace
