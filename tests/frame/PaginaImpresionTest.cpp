// How large a window's picture is printed, and where it lies on the page.

#include "frame/PaginaImpresion.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

TEST(PaginaImpresion, AWindowOfThePagesShapeFillsIt) {
    // In double precision 10000 x 0.7F is a little below 7000.
    EXPECT_EQ(Encaja(CSize(10000, 7000), Razon(CSize(10, 7))), CSize(10000, 7000));
    EXPECT_EQ(Encaja(CSize(10000, 7000), Razon(CSize(1000, 700))), CSize(10000, 7000));
}

TEST(PaginaImpresion, LargePicturesAreHalvedUntilTheyAreNot) {
    EXPECT_EQ(Limita(CSize(10000, 7000)), CSize(5000, 3500));
    EXPECT_EQ(Limita(CSize(5000, 4000)), CSize(5000, 4000)) << "20 million exactly";
    EXPECT_EQ(Limita(CSize(5001, 4000)), CSize(2500, 2000));
    EXPECT_EQ(Limita(CSize(65500, 65500)), CSize(4093, 4093));
}

TEST(PaginaImpresion, AWindowThatIsWiderThanThePageFillsItsWidth) {
    EXPECT_EQ(Encaja(CSize(2480, 3508), Razon(CSize(800, 600))), CSize(2480, 1860));
}

TEST(PaginaImpresion, AWindowThatIsHigherThanThePageFillsItsHeight) {
    EXPECT_EQ(Encaja(CSize(3508, 2480), Razon(CSize(600, 800))), CSize(1860, 2480));
}

TEST(PaginaImpresion, APictureLiesOverTheWidthOrTheHeightOfThePageInItsShape) {
    const CSize tamanos[] = {{800, 600}, {600, 800}, {1000, 1000}, {1600, 200}, {200, 1600}, {640, 480}, {500, 550}};
    for (const CSize& ventana : tamanos)
        for (const CSize& pagina : {CSize(2480, 3508), CSize(3508, 2480), CSize(1000, 1000), CSize(10000, 400)}) {
            const CSize imagen = Limita(Encaja(pagina, Razon(ventana)));
            const CSize sitio = SobrePagina(imagen, pagina);
            if (imagen.cx > imagen.cy)
                EXPECT_EQ(sitio.cx, pagina.cx);
            else
                EXPECT_EQ(sitio.cy, pagina.cy);
            // As wide for its height as the window, within what whole pixels of the smaller of the two pictures allow.
            const double querido = double(ventana.cx) / ventana.cy, hay = double(sitio.cx) / sitio.cy;
            EXPECT_NEAR(hay / querido, 1.0, 2.0 / std::min(imagen.cx, imagen.cy));
        }
}

TEST(PaginaImpresion, APictureOfThePagesShapeFillsIt) {
    EXPECT_EQ(SobrePagina(CSize(5000, 3500), CSize(10000, 7000)), CSize(10000, 7000));
    EXPECT_EQ(SobrePagina(CSize(3500, 5000), CSize(7000, 10000)), CSize(7000, 10000));
}

TEST(PaginaImpresion, AnUprightPageHoldsAnyWidePictureAndALyingOneAnyHighPicture) {
    EXPECT_EQ(SobrePagina(CSize(800, 600), CSize(900, 1600)), CSize(900, 675));
    EXPECT_EQ(SobrePagina(CSize(600, 800), CSize(1600, 900)), CSize(675, 900));
}

TEST(PaginaImpresion, APageThatIsNarrowerThanThePictureCutsIt) {
    EXPECT_EQ(SobrePagina(CSize(800, 600), CSize(1600, 900)), CSize(1600, 1200));
    EXPECT_EQ(SobrePagina(CSize(600, 800), CSize(900, 1600)), CSize(1200, 1600));
}

TEST(PaginaImpresion, APageIsOf24BitsWithDepthStencilAndAccumulation) {
    const PIXELFORMATDESCRIPTOR d = DescriptorPagina(0x80000028);
    EXPECT_EQ(d.nSize, 40);
    EXPECT_EQ(d.nVersion, 1);
    EXPECT_EQ(d.dwFlags, 0x80000028U);
    EXPECT_EQ(d.iPixelType, PFD_TYPE_RGBA);
    EXPECT_EQ(d.cColorBits, 24);
    EXPECT_EQ(d.cRedBits, 8);
    EXPECT_EQ(d.cRedShift, 16);
    EXPECT_EQ(d.cGreenBits, 8);
    EXPECT_EQ(d.cGreenShift, 8);
    EXPECT_EQ(d.cBlueBits, 8);
    EXPECT_EQ(d.cBlueShift, 0);
    EXPECT_EQ(d.cAlphaBits, 0);
    EXPECT_EQ(d.cAccumBits, 64);
    EXPECT_EQ(d.cAccumRedBits, 16);
    EXPECT_EQ(d.cAccumGreenBits, 16);
    EXPECT_EQ(d.cAccumBlueBits, 16);
    EXPECT_EQ(d.cAccumAlphaBits, 0);
    EXPECT_EQ(d.cDepthBits, 32);
    EXPECT_EQ(d.cStencilBits, 8);
}
