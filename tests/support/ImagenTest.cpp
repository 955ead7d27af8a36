#include "support/Imagen.h"

#include "support/Temporales.h"

#include <gtest/gtest.h>

namespace {

Imagen Rampa() {
    Imagen imagen(20, 10);
    for (int y = 0; y < 10; ++y) {
        for (int x = 0; x < 20; ++x)
            imagen.Pinta(x, y, {std::uint8_t(x * 10), std::uint8_t(y * 20), 77});
    }
    return imagen;
}

TEST(Imagen, PngGivesBackWhatWasWritten) {
    const CarpetaTemporal carpeta;
    ASSERT_TRUE(EscribePng(Rampa(), carpeta / "hondo/ñ ñ.png"));
    EXPECT_EQ(LeePng(carpeta / "hondo/ñ ñ.png"), Rampa());
}

TEST(Imagen, AFileThatIsNoPngIsAnEmptyPicture) {
    const CarpetaTemporal carpeta;
    EXPECT_TRUE(LeePng(carpeta.Escribe("x.png", "not a picture")).bytes.empty());
    EXPECT_TRUE(LeePng(carpeta / "missing.png").bytes.empty());
}

TEST(Imagen, OtherSizesAreNeverTheSame) {
    EXPECT_FALSE(IgualImagen(Imagen(10, 20), Imagen(20, 10), {255, 1.0}));
}

TEST(Imagen, ChannelsMayDifferByTheToleranceAndNotByOneMore) {
    Imagen otra = Rampa();
    otra.Pinta(3, 4, {33, 80, 77});
    EXPECT_TRUE(IgualImagen(otra, Rampa(), {.canal = 3}));
    EXPECT_FALSE(IgualImagen(otra, Rampa(), {.canal = 2}));
}

TEST(Imagen, AShareOfPixelsMayDiffer) {
    Imagen otra = Rampa();
    otra.Pinta(0, 0, {255, 255, 255});
    otra.Pinta(1, 0, {255, 255, 255});
    EXPECT_TRUE(IgualImagen(otra, Rampa(), {.canal = 2, .parte = 0.01}));
    EXPECT_FALSE(IgualImagen(otra, Rampa(), {.canal = 2, .parte = 0.009}));
}

TEST(Imagen, TheMessageTellsWhereTheWorstPixelIs) {
    Imagen otra = Rampa();
    otra.Pinta(7, 2, {200, 40, 77});
    const testing::AssertionResult resultado = IgualImagen(otra, Rampa());
    EXPECT_STREQ(resultado.message(), "1 of 200 pixels differ by more than 2; the worst, at (7, 2), by 130");
}

TEST(Imagen, AMissingStoredPictureFailsAndLeavesTheActualOne) {
    const CarpetaTemporal carpeta;
    const CarpetasImagen carpetas{carpeta / "stored", carpeta / "output"};
    EXPECT_FALSE(ComoGuardada(Rampa(), "a/b", {}, carpetas));
    EXPECT_EQ(LeePng(carpeta / "output/a/b.actual.png"), Rampa());
}

TEST(Imagen, AnotherPictureFailsAndLeavesAllThree) {
    const CarpetaTemporal carpeta;
    const CarpetasImagen carpetas{carpeta / "stored", carpeta / "output"};
    ASSERT_TRUE(EscribePng(Rampa(), carpeta / "stored/a.png"));
    Imagen otra = Rampa();
    otra.Pinta(5, 5, {255, 255, 255});
    EXPECT_FALSE(ComoGuardada(otra, "a", {}, carpetas));
    EXPECT_EQ(LeePng(carpeta / "output/a.expected.png"), Rampa());
    EXPECT_EQ(LeePng(carpeta / "output/a.actual.png"), otra);
    const Imagen diferencia = LeePng(carpeta / "output/a.difference.png");
    EXPECT_EQ(diferencia.Pixel(5, 5)[0], 255);
    EXPECT_EQ(diferencia.Pixel(5, 6)[0], 0);
}

TEST(Imagen, TheSamePicturePassesAndClearsWhatAFailureLeft) {
    const CarpetaTemporal carpeta;
    const CarpetasImagen carpetas{carpeta / "stored", carpeta / "output"};
    ASSERT_FALSE(ComoGuardada(Rampa(), "a", {}, carpetas));
    ASSERT_TRUE(EscribePng(Rampa(), carpeta / "stored/a.png"));
    EXPECT_TRUE(ComoGuardada(Rampa(), "a", {}, carpetas));
    EXPECT_FALSE(std::filesystem::exists(carpeta / "output/a.actual.png"));
}

}  // namespace
