// The options of a load in the settings.

#include "terrain/CDataCargarImagen.h"

#include "EscenaImagen.h"
#include "platform/CWinApp.h"
#include "platform/Perfil.h"

#include <filesystem>
#include <fstream>
#include <sstream>

namespace {

class Aplicacion : public CWinApp {
  public:
    explicit Aplicacion(const CarpetaTemporal& carpeta) { m_pszProfileName = Ancha(carpeta / "perfil.ini"); }
};

std::string Contenido(const std::filesystem::path& ruta) {
    std::stringstream s;
    s << std::ifstream(ruta, std::ios::binary).rdbuf();
    return s.str();
}

constexpr CDataCargarImagen kOpciones{0.5, 1, 2};

TEST(CDataCargarImagen, NewOptionsAreAllZero) {
    const CDataCargarImagen d;
    EXPECT_EQ(d.m_dResolucion, 0.0);
    EXPECT_EQ(d.m_bPiramidales, 0);
    EXPECT_EQ(d.m_nInterpolacion, 0);
}

TEST(CDataCargarImagen, GoThroughTheApplicationsStoreUnderPrefixedKeys) {
    const CarpetaTemporal carpeta;
    Aplicacion aplicacion(carpeta);
    kOpciones.WriteProfile(L"Imagen", L"Orto");
    EXPECT_EQ(aplicacion.GetProfileInt(L"Imagen", L"OrtoPiramidales", 9), 1u);
    EXPECT_EQ(aplicacion.GetProfileInt(L"Imagen", L"OrtoInterpolacion", 9), 2u);
    EXPECT_EQ(aplicacion.GetProfileInt(L"Imagen", L"OrtoResolucion", 9), 9u) << "it belongs to each image";
    CDataCargarImagen leida{7.0, 5, 6};
    leida.GetProfile(L"Imagen", L"");
    EXPECT_EQ(leida.m_bPiramidales, 5) << "what isn't there stays";
    EXPECT_EQ(leida.m_nInterpolacion, 6);
    leida.GetProfile(L"Imagen", L"Orto");
    EXPECT_EQ(leida.m_bPiramidales, 1);
    EXPECT_EQ(leida.m_nInterpolacion, 2);
    EXPECT_EQ(leida.m_dResolucion, 7.0);
}

TEST(CDataCargarImagen, AreWrittenInTheirOrder) {
    const CarpetaTemporal carpeta;
    Aplicacion aplicacion(carpeta);
    kOpciones.WriteProfile(L"Imagen", L"Orto");
    kOpciones.WritePrivateProfile(Ancha(carpeta / "a.ini"), L"Imagen");
    EXPECT_EQ(Contenido(carpeta / "perfil.ini"), "[Imagen]\nOrtoPiramidales=1\nOrtoInterpolacion=2\n");
    EXPECT_EQ(Contenido(carpeta / "a.ini"), "[Imagen]\nPiramidales=1\nInterpolacion=2\n");
}

TEST(CDataCargarImagen, GoThroughAnIniFileUnderPlainKeys) {
    const CarpetaTemporal carpeta;
    const CString fichero = Ancha(carpeta / "a.ini");
    CDataCargarImagen leida{7.0, 5, 6};
    leida.GetPrivateProfile(fichero, L"Imagen");
    EXPECT_EQ(leida.m_bPiramidales, 5) << "there is no file yet";
    CDataCargarImagen escrita = kOpciones;
    escrita.m_nInterpolacion = -1;
    escrita.WritePrivateProfile(fichero, L"Imagen");
    EXPECT_EQ(GetPrivateProfileIntW(L"Imagen", L"Piramidales", 9, fichero), 1u);
    leida.GetPrivateProfile(fichero, L"Otra");
    EXPECT_EQ(leida.m_nInterpolacion, 6);
    leida.GetPrivateProfile(fichero, L"Imagen");
    EXPECT_EQ(leida.m_bPiramidales, 1);
    EXPECT_EQ(leida.m_nInterpolacion, -1);
    EXPECT_EQ(leida.m_dResolucion, 7.0);
    WritePrivateProfileStringW(L"Imagen", L"Piramidales", L"", fichero);
    leida.GetPrivateProfile(fichero, L"Imagen");
    EXPECT_EQ(leida.m_bPiramidales, 1) << "an empty value changes nothing";
}

}  // namespace
