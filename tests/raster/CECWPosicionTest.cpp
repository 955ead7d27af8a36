// Where a picture of JPEG 2000 lies, by the GeoTIFF of one pixel in its GeoJP2 box.

#include "raster/CECW.h"
#include "raster/Imagenes.h"
#include "raster/J2KPrueba.h"
#include "raster/Tiffs.h"
#include "support/Temporales.h"

#include <gmock/gmock.h>

#include <optional>

namespace {

using testing::ElementsAre;
using tiffs::Fabrica;
using Vertiz::CECW;

class EcwPosicion : public imagenes::ConTemporales {
  protected:
    void SetUp() override {
        j2k::Escribe(m_Ruta, {});
        m_sBytes = j2k::Lee(m_Ruta);
    }
    // Puts a box in front of the codestream.
    void PonCaja(const std::string& datos) {
        constexpr char kUuid[] = "\xB1\x4B\xF8\xBD\x08\x3D\x4B\x43\xA5\xAE\x8C\xD7\xD5\xA6\xCE\x03";
        const std::string caja = Fabrica(false, true).Numero(24 + datos.size(), 4) + "uuid" + kUuid + datos;
        std::string bytes = m_sBytes;
        bytes.insert(bytes.find("jp2c") - 4, caja);
        m_Carpeta.Escribe("imagen.jp2", bytes);
    }
    static Fabrica Pixel(bool grande = false, bool motorola = false) {
        return Fabrica(grande, motorola).Imagen(1, 1, 1, 8, 1).Trozos({"x"});
    }
    // Sizes of a cell and place of the outer corner; nothing when the file has no place.
    std::optional<std::vector<double>> Posicion(const Fabrica& tiff) {
        PonCaja(tiff.Bytes());
        CECW imagen;
        imagen.SetNombre(CString(m_Ruta.c_str()));
        EXPECT_EQ(imagen.Leer(true), 1);
        if (!imagen.TieneGeorreferencia()) return std::nullopt;
        const auto& g = *imagen.Georreferencia();
        const auto& p = g.m_PuntosControl.at(0);
        return std::vector<double>{g.m_dEscala[0], g.m_dEscala[1], p[3], p[4]};
    }

    std::filesystem::path m_Ruta = m_Carpeta / "imagen.jp2";
    std::string m_sBytes;
};

TEST_F(EcwPosicion, ComesFromScaleAndTiePointInEveryKindOfTiff) {
    for (const bool grande : {false, true})
        for (const bool motorola : {false, true}) {
            Fabrica f = Pixel(grande, motorola);
            f.PonDobles(33550, {2.0, 4.0, 0.0}).PonDobles(33922, {0, 0, 0, 500, 900, 0});
            EXPECT_THAT(Posicion(f).value(), ElementsAre(2, 4, 500, 900));
        }
}

TEST_F(EcwPosicion, GoesBackFromATiePointInsideToTheCorner) {
    Fabrica f = Pixel();
    f.PonDobles(33550, {2.0, 4.0, 0.0}).PonDobles(33922, {10, 5, 0, 520, 880, 0});
    EXPECT_THAT(Posicion(f).value(), ElementsAre(2, 4, 500, 900));
}

TEST_F(EcwPosicion, OfPixelsThatArePointsBeginsHalfACellBefore) {
    Fabrica f = Pixel();
    f.PonDobles(33550, {2.0, 4.0, 0.0}).PonDobles(33922, {0, 0, 0, 500, 900, 0});
    f.Pon(34735, Fabrica::Short, {1, 1, 0, 1, 1025, 0, 1, 2});
    EXPECT_THAT(Posicion(f).value(), ElementsAre(2, 4, 499, 902));
}

TEST_F(EcwPosicion, ComesFromAMatrixUnlessItTurns) {
    std::vector<double> matriz{2, 0, 0, 500, 0, -4, 0, 900, 0, 0, 0, 0, 0, 0, 0, 1};
    Fabrica f = Pixel();
    EXPECT_THAT(Posicion(f.PonDobles(34264, matriz)).value(), ElementsAre(2, 4, 500, 900));
    matriz[1] = 0.5;
    EXPECT_FALSE(Posicion(f.PonDobles(34264, matriz)).has_value());
}

TEST_F(EcwPosicion, IsNotTakenFromBadBoxes) {
    Fabrica sinEscala = Pixel();
    sinEscala.PonDobles(33550, {0.0, 4.0, 0.0}).PonDobles(33922, {0, 0, 0, 500, 900, 0});
    EXPECT_FALSE(Posicion(sinEscala).has_value());
    EXPECT_FALSE(Posicion(Pixel()).has_value());
    Fabrica buena = Pixel();
    buena.PonDobles(33550, {2.0, 4.0, 0.0}).PonDobles(33922, {0, 0, 0, 500, 900, 0});
    const std::string bytes = buena.Bytes();
    for (std::size_t n = 0; n < bytes.size(); n += 7) {
        PonCaja(bytes.substr(0, n));
        CECW imagen;
        imagen.SetNombre(CString(m_Ruta.c_str()));
        EXPECT_EQ(imagen.Leer(true), 1);
        EXPECT_FALSE(imagen.TieneGeorreferencia()) << n;
    }
}

}  // namespace
