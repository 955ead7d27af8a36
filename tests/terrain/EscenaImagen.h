#pragma once
// What the tests of draped images share: a terrain without a model, records, and files of tiles written as the format
// tells, by other means than the library's.

#include "EscenaTerreno.h"
#include "terrain/CEscenaMDT.h"
#include "raster/CBmp.h"
#include "platform/Ficheros.h"
#include "support/Temporales.h"

#include <array>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <string>
#include <vector>

/// The smallest terrain: its images are tied to nothing. It notes which were, and can be made to fail there.
class EscenaImagen : public CEscenaMDT {
  public:
    EscenaImagen() { SetTipo(1); }
    using CEscenaMDT::CargarImagen;
    using CEscenaMDT::m_nHRCShared;
    using CEscenaMDT::m_nMaxTexDim;
    using CEscenaMDT::m_phRCShared;
    using CEscenaMDT::m_Referencias;
    using CEscenaMDT::m_Texturas;
    using CEscenaMDT::m_TexturasSimples;
    using CEscenaMDT::m_Vinculos;
    using CEscenaMDT::operator=;

    int CargarImagen(Vertiz::IRaster* raster, Vertiz::CDataImagen&, const CDataCargarImagen&, const CString& carpeta,
                     Vertiz::CNivelMensajes nivel) override;
    int AsignaTexturas(unsigned index, Vertiz::CNivelMensajes nivel) override {
        m_Asignadas.push_back({int(index), nivel});
        return m_nFallaEn == int(index) ? 0 : 1;
    }
    int AsignaTexturaSimple(unsigned index, Vertiz::CNivelMensajes nivel) override {
        m_Simples.push_back({int(index), nivel});
        return m_nFallaEn == int(index) ? 0 : 1;
    }
    bool SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& registro) override;
    void IniciarTexturas(Vertiz::CNivelMensajes nivel) override { m_Asignadas.push_back({-1, nivel}); }

    int OnIniciar() override { return 1; }
    int OnRender() override { return 1; }
    int OnIniciarSeleccion() override { return 1; }
    const Vertiz::CDataSemilla& DameSemilla() const override { return m_Semilla; }
    double Precision() const override { return 1.0; }
    int GetMaximasObjeto(Vertiz::CMaximas<double>&) const override { return 0; }
    int GetMaximasSeleccion(Vertiz::CMaximas<double>&) const override { return 0; }
    bool DamePuntoSeleccion2(Vertiz::CCoor3D<double>&, int) override { return false; }

    using Pasos = std::vector<std::pair<int, int>>;
    Pasos m_Asignadas;  ///< index and level of each record tied; -1 for the untying of all
    Pasos m_Simples;
    int m_nFallaEn = -1;        ///< the index that can't be tied
    int m_nSobra = 0;           ///< pixels on the east and south of a tile that hold no image
    int m_nResultado = 1;       ///< of cutting
    bool m_bCancelada = false;  ///< cutting makes no record

  protected:
    void AjustaTeselas(CDataTexturas& registro) override { registro.m_nCeldasCol = registro.m_nAnchoUtil / 2; }

  private:
    Vertiz::CDataSemilla m_Semilla;
};

/// The bytes of a file.
inline std::string Contenido(const std::filesystem::path& ruta) {
    std::ifstream f(ruta, std::ios::binary);
    return {std::istreambuf_iterator<char>(f), {}};
}
inline std::string Contenido(const CString& ruta) {
    return Contenido(std::filesystem::path(RutaSistema(ruta)));
}
inline CString Ancha(const std::filesystem::path& ruta) {
    return CString(std::string_view(ruta.native()));
}

/// Colour of a pixel of the test's images, by level, row and column of the whole tiled area: no two near ones alike.
using Pixel = std::array<std::uint8_t, 3>;
inline Pixel Tono(int nivel, int fila, int col) {
    return {std::uint8_t(37 * fila + 5 * col + 11 * nivel), std::uint8_t(3 * fila + 41 * col),
            std::uint8_t(fila ^ col)};
}

/// A layout of tiles, and what its file has to hold.
struct Teselado {
    int filas = 1, cols = 1, ancho = 4, alto = 4;
    bool piramide = false;
    int anchoUtil = ancho, altoUtil = alto;
    std::function<Pixel(int nivel, int fila, int col)> tono = Tono;

    /// The same layout with each tile in one colour at each level, which compression keeps nearly as it is.
    Teselado Liso() const;
    Pixel TonoLiso(int nivel, int fila, int col) const { return Tono(nivel, 7 * fila + 1, 11 * col + 2); }
    CDataTexturas Registro() const;
    /// The file, byte by byte: `tono` gives each pixel of the useful parts.
    std::string Fichero() const;
    /// Writes it and gives the record with its name.
    CDataTexturas Escribe(const CarpetaTemporal& carpeta, const std::string& nombre) const;
};

/// A scene with contexts on a small picture, and a folder for its files.
class Imagenes : public testing::Test {
  protected:
    static int Crea(EscenaImagen& escena, Tela& tela) {
        return escena.Crear(tela.DC(), PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL);
    }
    void SetUp() override { ASSERT_EQ(Crea(m_escena, m_tela), 1); }
    void TearDown() override;

    CString Carpeta() const { return Ancha(m_carpeta.Ruta()); }
    /// Loads a layout from a file of its own; 0 when it didn't go.
    int Carga(EscenaImagen& escena, const Teselado& teselado, const std::string& nombre = "tiles.tmp") {
        return escena.CargarFicheroTexturasTemp({teselado.Escribe(m_carpeta, nombre)});
    }
    /// What a texture object holds at a level, as red, green and blue.
    std::vector<std::uint8_t> Lee(GLuint nombre, int nivel = 0);

    CarpetaTemporal m_carpeta;
    Tela m_tela{16, 16};
    EscenaImagen m_escena;
};
