// Operations that change each pixel by itself, against the same formula written out for one pixel.

#include "raster/Imagenes.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <array>
#include <climits>
#include <cmath>
#include <functional>
#include <limits>

namespace {

using namespace imagenes;
using testing::ElementsAre;
using Vertiz::CBmp;
using Vertiz::CTiff;
using Vertiz::IRaster;

using Color = std::array<BYTE, 3>;

struct Operacion {
    const char* nombre;
    unsigned idTexto;
    bool soloColor;  // leaves 8 bits alone
    std::function<int(IRaster&)> hace;
    std::function<Color(Color)> pixel;  // what becomes of one pixel
};

Color Gris(double valor) {
    const auto g = static_cast<BYTE>(static_cast<int>(valor));
    return {g, g, g};
}

int Acotado(double valor) {
    return static_cast<int>(std::min(std::max(valor, 0.0), 255.0));
}

Color Luma(Color c, double minimo, double maximo) {
    const double r = c[2], g = c[1], b = c[0];
    const double y = 16 + (65.738 * r + 129.057 * g + 25.064 * b) / 256;
    const double cb = 128 - (37.945 * r + 74.494 * g - 112.439 * b) / 256;
    const double cr = 128 + (112.439 * r - 94.154 * g - 18.285 * b) / 256;
    const double nueva = 16 + (y - minimo) * (219 / (maximo - minimo));
    const double base = 1.1643835616438356 * (nueva - 16);
    const double rojo = 1.5960267857142858 * (cr - 128), azul = 2.017232142857143 * (cb - 128);
    const double verde = base - 0.19420783645655879 * azul - 0.5093696763202726 * rojo;
    return {static_cast<BYTE>(Acotado(base + azul + 0.5)), static_cast<BYTE>(Acotado(verde + 0.5)),
            static_cast<BYTE>(Acotado(base + rojo + 0.5))};
}

Color Tono(BYTE gris) {
    const double h = gris * 360.0 / 255.0 / 60.0, x = 0.5 * (1.0 - std::abs(std::fmod(h, 2.0) - 1.0)), c = 0.5;
    const double rgb[6][3] = {{c, x, 0}, {x, c, 0}, {0, c, x}, {0, x, c}, {x, 0, c}, {c, 0, x}};
    const double* const fila = rgb[int(h) % 6];
    return {static_cast<BYTE>(fila[2] * 255 + 0.5), static_cast<BYTE>(fila[1] * 255 + 0.5),
            static_cast<BYTE>(fila[0] * 255 + 0.5)};
}

Color Brillo(Color c, double brillo, double contraste) {
    for (BYTE& b : c)
        b = static_cast<BYTE>(Acotado(std::trunc((b + brillo - 0.5) * (contraste / 100 + 1) + 0.5)));
    return c;
}

const Operacion kOperaciones[] = {
    {"Negativo", 56003, false, [](IRaster& r) { return r.Negativo(); },
     [](Color c) {
         return Color{BYTE(255 - c[0]), BYTE(255 - c[1]), BYTE(255 - c[2])};
     }},
    {"AGrises", 56003, true, [](IRaster& r) { return r.AGrises(); },
     [](Color c) {
         return Gris(std::max({c[0], c[1], c[2]}));
     }},
    {"AGrises shifted up, wrapping", 56003, true, [](IRaster& r) { return r.AGrises(20); },
     [](Color c) {
         return Gris((std::max({c[0], c[1], c[2]}) + 20 + 128) % 256);
     }},
    {"AGrises shifted down", 56003, true, [](IRaster& r) { return r.AGrises(-200); },
     [](Color c) {
         return Gris((std::max({c[0], c[1], c[2]}) - 200 + 128 + 256) % 256);
     }},
    {"GrisesAColor", 56003, true, [](IRaster& r) { return r.GrisesAColor(); }, [](Color c) { return Tono(c[0]); }},
    {"Luminancia", 56003, true, [](IRaster& r) { return r.Luminancia(); },
     [](Color c) { return Gris(0.2989 * c[0] + 0.587 * c[1] + 0.114 * c[2]); }},
    {"LuminanciaY", 56003, true, [](IRaster& r) { return r.LuminanciaY(); },
     [](Color c) { return Gris(16 + 0.2567890625 * c[0] + 0.50412890625 * c[1] + 0.09790625 * c[2] + 0.5); }},
    {"Estira luma", 56005, true, [](IRaster& r) { return r.Estira(60, 180, 0, false, false); },
     [](Color c) { return Luma(c, 60, 180); }},
    {"Estira luma upside down", 56005, true, [](IRaster& r) { return r.Estira(200, 40, 0, false, false); },
     [](Color c) { return Luma(c, 200, 40); }},
    {"Estira byte 0", 56005, true, [](IRaster& r) { return r.Estira(50, 200, 1, false, false); },
     [](Color c) {
         return Color{BYTE(Acotado((c[0] - 50) * 255.0 / 150)), c[1], c[2]};
     }},
    {"Estira byte 2", 56005, true, [](IRaster& r) { return r.Estira(50, 200, 3, false, false); },
     [](Color c) {
         return Color{c[0], c[1], BYTE(Acotado((c[2] - 50) * 255.0 / 150))};
     }},
    {"BrilloContraste up", 56006, false, [](IRaster& r) { return r.BrilloContraste(12.3, 45.6); },
     [](Color c) { return Brillo(c, 12.3, 45.6); }},
    {"BrilloContraste down", 56006, false, [](IRaster& r) { return r.BrilloContraste(-30, -20); },
     [](Color c) { return Brillo(c, -30, -20); }},
    {"IndiceNormalizado", 56003, true, [](IRaster& r) { return r.IndiceNormalizado(2, 1); },
     [](Color c) { return Gris(((double(c[2]) - c[1]) / (double(c[2]) + c[1]) + 1) * 0.5 * 255); }},
};

template <class T>
class ColorTest : public ConTemporales {};
using Clases = testing::Types<CBmp, CTiff>;
TYPED_TEST_SUITE(ColorTest, Clases);

std::vector<BYTE> PorPixel(std::vector<BYTE> pixeles, const Operacion& operacion) {
    for (std::size_t i = 0; i < pixeles.size(); i += 3) {
        const Color c = operacion.pixel({pixeles[i], pixeles[i + 1], pixeles[i + 2]});
        std::ranges::copy(c, &pixeles[i]);
    }
    return pixeles;
}

TYPED_TEST(ColorTest, OperationsGiveWhatTheirFormulaGivesForEachPixel) {
    for (const Operacion& operacion : kOperaciones)
        for (const auto& [ancho, alto] : {std::pair(41, 19), std::pair(1, 1), std::pair(2, 7)}) {
            SCOPED_TRACE(testing::Message() << operacion.nombre << ", " << ancho << " x " << alto);
            const auto imagen = Aleatoria<TypeParam>(ancho, alto, 24, 0, 7);
            const std::vector<BYTE> antes = Pixeles(*imagen);
            EXPECT_EQ(operacion.hace(*imagen), 1);
            EXPECT_EQ(Pixeles(*imagen), PorPixel(antes, operacion));
        }
}

TYPED_TEST(ColorTest, OperationsChangeNothingInFileMode) {
    for (const Operacion& operacion : kOperaciones) {
        SCOPED_TRACE(operacion.nombre);
        const auto imagen = Aleatoria<TypeParam>(9, 4, 24, 1);
        const std::vector<BYTE> antes = Pixeles(*imagen);
        EXPECT_EQ(operacion.hace(*imagen), 1);
        EXPECT_EQ(Pixeles(*imagen), antes);
    }
}

TYPED_TEST(ColorTest, OperationsOnColourLeave8BitsAlone) {
    for (const Operacion& operacion : kOperaciones) {
        if (!operacion.soloColor) continue;
        SCOPED_TRACE(operacion.nombre);
        const Progreso progreso;
        const auto imagen = Aleatoria<TypeParam>(9, 4, 8, 0);
        const std::vector<BYTE> antes = Pixeles(*imagen);
        EXPECT_EQ(operacion.hace(*imagen), 1);
        EXPECT_EQ(Pixeles(*imagen), antes);
        EXPECT_TRUE(progreso.m_Etapas.empty());
    }
}

TYPED_TEST(ColorTest, ProgressIsToldByRowsUnderTheOperationsText) {
    for (const Operacion& operacion : kOperaciones) {
        SCOPED_TRACE(operacion.nombre);
        const Progreso progreso;
        const auto imagen = Aleatoria<TypeParam>(5, 3, 24, 0);
        imagen->SetNivelMensajes(7);
        EXPECT_EQ(operacion.hace(*imagen), 1);
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(operacion.idTexto));
        EXPECT_THAT(progreso.m_Pasos, ElementsAre(std::pair(1, 3), std::pair(2, 3), std::pair(3, 3)));
        EXPECT_THAT(progreso.m_Niveles, testing::Each(7));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
}

TYPED_TEST(ColorTest, CancellingGives2AndLeavesTheRowsDoneSoFar) {
    for (const Operacion& operacion : kOperaciones) {
        SCOPED_TRACE(operacion.nombre);
        const auto imagen = Aleatoria<TypeParam>(5, 4, 24, 0);
        std::vector<BYTE> esperado = Pixeles(*imagen), todo = PorPixel(esperado, operacion);
        std::copy_n(todo.begin(), 2 * 15, esperado.begin());
        const Progreso progreso(2);
        EXPECT_EQ(operacion.hace(*imagen), 2);
        EXPECT_EQ(Pixeles(*imagen), esperado);
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
}

// Lets a test see stored bytes of depths without access to pixels.
template <class T>
class Abierta : public T {
  public:
    std::vector<BYTE> Almacen() {
        std::vector<BYTE> bytes;
        for (int fila = 0; fila < this->AltoPixeles(); ++fila)
            for (const BYTE b : this->FilaEnMemoria(fila))
                bytes.push_back(b);
        return bytes;
    }
};

TYPED_TEST(ColorTest, EmptyObjectsAndOtherDepthsAreLeftInPeace) {
    for (const Operacion& operacion : kOperaciones) {
        TypeParam vacia;
        EXPECT_EQ(operacion.hace(vacia), 1) << operacion.nombre;
        for (const int bits : {1, 4, 16, 32}) {
            Abierta<TypeParam> imagen;
            ASSERT_TRUE(imagen.Crear(6, 3, bits, 1.0F, true, nullptr, nullptr, false));
            EXPECT_EQ(operacion.hace(imagen), 1) << operacion.nombre;
            EXPECT_THAT(imagen.Almacen(), testing::Each(255)) << operacion.nombre << ", " << bits << " bits";
        }
    }
}

// ---- 8 bits ------------------------------------------------------------------------------------------------------

TEST(Color8, NegativeAndBrightnessWorkOnTheStoredBytes) {
    const std::vector<BYTE> bytes = BytesAleatorios(9 * 4, 3);
    const auto imagen = Imagen<CTiff>(9, 4, 8, 0, bytes);
    EXPECT_EQ(imagen->Negativo(), 1);
    EXPECT_EQ(imagen->BrilloContraste(10, 30), 1);
    std::vector<BYTE> esperado;
    for (const BYTE b : bytes)
        esperado.push_back(static_cast<BYTE>(Acotado(std::trunc((255 - b + 10 - 0.5) * 1.3 + 0.5))));
    EXPECT_EQ(Pixeles(*imagen), esperado);
}

TEST(Color8, NegativeOfAPaletteInvertsTheEntryNumbers) {
    std::vector<BYTE> paleta(1024, 0);
    for (std::size_t i = 0; i < 256; ++i)
        paleta[4 * i] = static_cast<BYTE>(i * 7), paleta[4 * i + 1] = static_cast<BYTE>(i * 5 + 1);
    const std::vector<BYTE> bytes = {0, 1, 100, 200, 254, 255};
    for (const bool bmp : {true, false}) {
        std::unique_ptr<IRaster> imagen;
        if (bmp)
            imagen = Imagen<CBmp>(3, 2, 8, 0, bytes, paleta.data());
        else
            imagen = Imagen<CTiff>(3, 2, 8, 0, bytes, paleta.data());
        EXPECT_EQ(imagen->Negativo(), 1);
        std::vector<BYTE> esperado;
        for (const BYTE b : bytes)
            for (std::size_t k = 0; k < 3; ++k)
                esperado.push_back(paleta[4 * std::size_t(255 - b) + k]);
        EXPECT_EQ(Pixeles(*imagen), esperado);
    }
}

// ---- Single operations -------------------------------------------------------------------------------------------

TEST(Negativo, TwiceGivesBackTheImage) {
    for (const int bits : {8, 24}) {
        const auto imagen = Aleatoria<CBmp>(13, 7, bits, 0);
        const std::vector<BYTE> antes = Pixeles(*imagen);
        EXPECT_EQ(imagen->Negativo(), 1);
        EXPECT_NE(Pixeles(*imagen), antes);
        EXPECT_EQ(imagen->Negativo(), 1);
        EXPECT_EQ(Pixeles(*imagen), antes);
    }
}

// Pixels whose weighted sum is a whole number exactly, where sums of doubles may come out just below it.
std::vector<BYTE> SumasEnteras(int p0, int p1, int p2, int mas, int denominador) {
    std::vector<BYTE> pixeles;
    for (int a = 0; a < 256; ++a)
        for (int b = 0; b < 256; ++b) {
            int resto = (p0 * a + p1 * b + mas) % denominador;
            for (int c = 0; c < 256; ++c, resto += p2) {
                while (resto >= denominador)
                    resto -= denominador;
                if (resto == 0)
                    for (const int v : {a, b, c})
                        pixeles.push_back(static_cast<BYTE>(v));
            }
        }
    return pixeles;
}

TEST(Luminancia, CutsOffAsDoublesDoWhereTheSumIsWhole) {
    const std::vector<BYTE> pixeles = SumasEnteras(2989, 5870, 1140, 0, 10000);
    ASSERT_EQ(pixeles.size(), 3u * 1704);
    const auto imagen = Imagen<CBmp>(1704, 1, 24, 0, pixeles);
    EXPECT_EQ(imagen->Luminancia(), 1);
    const std::vector<BYTE> grises = Pixeles(*imagen);
    int porDebajo = 0;
    for (std::size_t i = 0; i < pixeles.size(); i += 3) {
        const BYTE* const p = &pixeles[i];
        const double suma = 0.2989 * p[0] + 0.587 * p[1] + 0.114 * p[2];
        ASSERT_EQ(grises[i], static_cast<int>(suma)) << int(p[0]) << ' ' << int(p[1]) << ' ' << int(p[2]);
        porDebajo += grises[i] * 10000 != 2989 * p[0] + 5870 * p[1] + 1140 * p[2];
    }
    EXPECT_EQ(porDebajo, 296);  // whole numbers in place of doubles would give another grey here
}

TEST(Luminancia, WhiteGives254) {
    const auto imagen = Imagen<CBmp>(1, 1, 24, 0, {255, 255, 255});
    imagen->Luminancia();
    EXPECT_THAT(Pixel(*imagen, 0, 0), ElementsAre(254, 254, 254));
}

TEST(LuminanciaY, RoundsAsDoublesDoWhereTheSumIsWhole) {
    const std::vector<BYTE> pixeles = SumasEnteras(65738, 129057, 25064, 16 * 256000 + 128000, 256000);
    ASSERT_FALSE(pixeles.empty());
    const int n = static_cast<int>(pixeles.size() / 3);
    const auto imagen = Imagen<CBmp>(n, 1, 24, 0, pixeles);
    EXPECT_EQ(imagen->LuminanciaY(), 1);
    const std::vector<BYTE> grises = Pixeles(*imagen);
    for (std::size_t i = 0; i < pixeles.size(); i += 3) {
        const BYTE* const p = &pixeles[i];
        const double suma = 16 + 0.2567890625 * p[0] + 0.50412890625 * p[1] + 0.09790625 * p[2] + 0.5;
        ASSERT_EQ(grises[i], static_cast<int>(suma)) << int(p[0]) << ' ' << int(p[1]) << ' ' << int(p[2]);
    }
}

TEST(LuminanciaY, GoesFrom16To235) {
    const auto imagen = Imagen<CBmp>(2, 1, 24, 0, {0, 0, 0, 255, 255, 255});
    imagen->LuminanciaY();
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(16, 16, 16, 235, 235, 235));
}

TEST(AGrises, KeepsEveryValueAndWrapsPast255) {
    std::vector<BYTE> pixeles;
    for (int i = 0; i < 256; ++i)
        for (const int v : {0, i, i / 2})
            pixeles.push_back(static_cast<BYTE>(v));
    const auto igual = Imagen<CTiff>(256, 1, 24, 0, pixeles), vuelta = Imagen<CTiff>(256, 1, 24, 0, pixeles);
    igual->AGrises(256);
    vuelta->AGrises(255);
    for (int i = 0; i < 256; ++i) {
        EXPECT_EQ(Pixel(*igual, 0, i)[0], i);
        EXPECT_EQ(Pixel(*vuelta, 0, i)[0], (i + 255 + 128) % 256);
    }
}

TEST(GrisesAColor, BlackAndWhiteAreRedAndAThirdIsGreen) {
    const auto imagen = Imagen<CBmp>(3, 1, 24, 0, {0, 0, 0, 255, 255, 255, 85, 85, 85});
    imagen->GrisesAColor();
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(0, 0, 128, 0, 0, 128, 0, 128, 0));
}

TEST(Estira, FlagsLeaveWhiteAndBlackUntouched) {
    const std::vector<BYTE> pixeles = {255, 255, 255, 0, 0, 0, 255, 255, 254, 0, 0, 1};
    for (const int banda : {0, 1, 2, 3})
        for (const bool blanco : {false, true})
            for (const bool negro : {false, true}) {
                const auto imagen = Imagen<CBmp>(4, 1, 24, 0, pixeles), todo = Imagen<CBmp>(4, 1, 24, 0, pixeles);
                EXPECT_EQ(imagen->Estira(250, 10, banda, blanco, negro), 1);
                EXPECT_EQ(todo->Estira(250, 10, banda, false, false), 1);
                for (int c = 0; c < 4; ++c) {
                    const bool quieto = (c == 0 && blanco) || (c == 1 && negro);
                    const auto p = pixeles.begin() + 3 * c;
                    EXPECT_EQ(Pixel(*imagen, 0, c), quieto ? std::vector<BYTE>(p, p + 3) : Pixel(*todo, 0, c))
                        << "band " << banda << ", column " << c << ", flags " << blanco << negro;
                    EXPECT_NE(Pixel(*todo, 0, c), std::vector<BYTE>(p, p + 3)) << "band " << banda << ", column " << c;
                }
            }
}

TEST(Estira, EqualLimitsAndUnknownBandsDoNothing) {
    const auto imagen = Aleatoria<CBmp>(6, 5, 24, 0);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    for (const auto& [minimo, maximo, banda] :
         {std::array{9, 9, 0}, std::array{9, 9, 2}, std::array{10, 20, 4}, std::array{10, 20, -1}})
        EXPECT_EQ(imagen->Estira(minimo, maximo, banda, false, false), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST(Estira, LimitsFarApartAreNoTrouble) {
    const auto imagen = Imagen<CBmp>(1, 1, 24, 0, {10, 20, 30});
    EXPECT_EQ(imagen->Estira(INT_MIN, INT_MAX, 1, false, false), 1);
    EXPECT_THAT(Pixel(*imagen, 0, 0), ElementsAre(127, 20, 30));
    EXPECT_EQ(imagen->Estira(INT_MAX - 1, INT_MAX, 0, false, false), 1);
}

TEST(BrilloContraste, HugeAndUndefinedFiguresStayWithinAByte) {
    const double infinito = std::numeric_limits<double>::infinity();
    const struct {
        double brillo, contraste;
        BYTE blanco;
    } casos[] = {{1e300, 1e300, 255}, {-1e300, 0, 0}, {infinito, 0, 255}, {infinito, -100, 0}};
    for (const auto& [brillo, contraste, blanco] : casos) {
        const auto imagen = Imagen<CTiff>(1, 1, 8, 0, {255});
        EXPECT_EQ(imagen->BrilloContraste(brillo, contraste), 1);
        EXPECT_THAT(Pixeles(*imagen), ElementsAre(blanco)) << brillo << ", " << contraste;
    }
}

TEST(BrilloContraste, WithoutChangeKeepsThePixels) {
    const auto imagen = Aleatoria<CBmp>(9, 9, 24, 0);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    imagen->BrilloContraste(0, 0);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST(IndiceNormalizado, EqualOrUnknownBandsChangeNothing) {
    const auto imagen = Aleatoria<CBmp>(6, 5, 24, 0);
    const std::vector<BYTE> antes = Pixeles(*imagen);
    for (const auto& [a, b] : {std::pair(1, 1), std::pair(0, 3), std::pair(-1, 0), std::pair(3, 3)})
        EXPECT_EQ(imagen->IndiceNormalizado(a, b), 1);
    EXPECT_EQ(Pixeles(*imagen), antes);
}

TEST(IndiceNormalizado, OfBlackIsTheMiddle) {
    const auto imagen = Imagen<CBmp>(3, 1, 24, 0, {0, 0, 9, 7, 0, 0, 0, 7, 0});
    EXPECT_EQ(imagen->IndiceNormalizado(0, 1), 1);
    EXPECT_THAT(Pixeles(*imagen), ElementsAre(127, 127, 127, 255, 255, 255, 0, 0, 0));
}

TEST(IndiceVegetacion, OfABitmapMultipliesHowNearEachBandComes) {
    const std::vector<BYTE> pixeles = BytesAleatorios(31 * 9 * 3, 5);
    const auto imagen = Imagen<CBmp>(31, 9, 24, 0, pixeles);
    EXPECT_EQ(imagen->IndiceVegetacion(), 1);
    std::vector<BYTE> esperado;
    for (std::size_t i = 0; i < pixeles.size(); i += 3) {
        const double a = pixeles[i] + 10, b = pixeles[i + 1] + 10, c = pixeles[i + 2] + 10;
        const double indice = (1 - std::abs((a - 40) / (a + 40))) * (1 - std::abs((b - 60) / (b + 60))) *
                              (1 - std::abs((c - 10) / (c + 10))) * 255;
        esperado.insert(esperado.end(), 3, static_cast<BYTE>(static_cast<int>(indice)));
    }
    EXPECT_EQ(Pixeles(*imagen), esperado);
}

TEST(IndiceVegetacion, OfABitmapIsWhiteWhereAllBandsAreThoseOfVegetation) {
    const auto imagen = Imagen<CBmp>(1, 1, 24, 0, {30, 50, 0});
    imagen->IndiceVegetacion();
    EXPECT_THAT(Pixel(*imagen, 0, 0), ElementsAre(255, 255, 255));
}

TEST_F(ConTemporales, IndexOfVegetationOfABitmapLeavesFilesAnd8BitsAlone) {
    for (const Forma forma : {Forma{24, 1}, Forma{8, 0}, Forma{8, 1}}) {
        const auto imagen = Aleatoria<CBmp>(6, 5, forma.bits, forma.modo);
        const std::vector<BYTE> antes = Pixeles(*imagen);
        EXPECT_EQ(imagen->IndiceVegetacion(), 1);
        EXPECT_EQ(Pixeles(*imagen), antes) << forma;
    }
}

}  // namespace
