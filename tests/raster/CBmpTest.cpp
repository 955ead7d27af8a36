// Bitmaps: reading, writing, damaged files, and cancelling.

#include "raster/CBmp.h"

#include "raster/Imagenes.h"
#include "platform/Memoria.h"
#include "support/DiscoLleno.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

#include <cstring>
#include <fstream>
#include <iterator>

namespace {

using namespace imagenes;
using testing::AllOf;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pair;
using testing::SizeIs;
using Vertiz::CBmp;

constexpr int kCancelado = 2, kNoSoportado = 15065;

// A bitmap file in memory, put together field by field, so that each can be made wrong.
struct Fichero {
    int ancho = 5, alto = 3, bits = 24, compresion = 0;
    DWORD bytesCabecera = 40, usados = 0, entradas = 0;
    DWORD offset = 0;  // 0: where it belongs
    int faltan = 0;    // bytes cut off at the end
    std::string firma = "BM";
    unsigned semilla = 1;

    std::size_t BytesFila() const { return std::size_t((ancho * bits + 31) / 32 * 4); }
    DWORD Offset() const { return offset != 0 ? offset : 14 + bytesCabecera + 4 * entradas; }
    std::vector<BYTE> Pixeles() const { return BytesAleatorios(BytesFila() * std::size_t(std::abs(alto)), semilla); }
    std::vector<BYTE> Paleta() const { return BytesAleatorios(4 * entradas, semilla + 100); }

    std::string Bytes() const {
        std::string s = firma;
        const auto U32 = [&](std::uint32_t v) { s.append(reinterpret_cast<const char*>(&v), 4); };
        const auto U16 = [&](std::uint16_t v) { s.append(reinterpret_cast<const char*>(&v), 2); };
        U32(0), U32(0), U32(Offset());
        U32(bytesCabecera), U32(std::uint32_t(ancho)), U32(std::uint32_t(alto)), U16(1), U16(std::uint16_t(bits));
        U32(std::uint32_t(compresion)), U32(0), U32(2835), U32(2835), U32(usados), U32(0);
        s.resize(14 + bytesCabecera, '\0');
        const auto paleta = Paleta(), pixeles = Pixeles();
        s.append(paleta.begin(), paleta.end());
        s.append(pixeles.begin(), pixeles.end());
        s.resize(s.size() - std::size_t(faltan));
        return s;
    }
};

class Bmp : public ConTemporales, public testing::WithParamInterface<int> {
  protected:
    // Reads a file of these bytes.
    int Lee(CBmp& bmp, const std::string& bytes, bool soloCabecera = false) {
        m_Fichero.Open(CString(m_Carpeta.Escribe("entrada.bmp", bytes).string().c_str()), CFile::modeRead);
        EXPECT_TRUE(bmp.SetFichero(&m_Fichero));
        return bmp.Leer(soloCabecera);
    }
    // What Grabar writes, and its result.
    std::string Graba(CBmp& bmp, int& resultado) {
        const auto ruta = m_Carpeta / "salida.bmp";
        CFile salida(CString(ruta.string().c_str()), CFile::modeCreate | CFile::modeReadWrite);
        resultado = bmp.Grabar(&salida);
        salida.Close();
        std::ifstream f(ruta, std::ios::binary);
        return {std::istreambuf_iterator<char>(f), {}};
    }
    CFile m_Fichero;
};
INSTANTIATE_TEST_SUITE_P(Modos, Bmp, testing::Values(0, 1));

// ---- Reading

TEST_P(Bmp, RowsOfTheFileComeFromTheBottom) {
    const Fichero f;
    CBmp bmp(GetParam());
    ASSERT_EQ(Lee(bmp, f.Bytes()), 1);
    EXPECT_EQ(bmp.Ancho(), 5);
    EXPECT_EQ(bmp.Alto(), -3);
    EXPECT_EQ(bmp.Tipo(), 21);
    EXPECT_EQ(bmp.Resolucion(), float(2835 * 0.025401));
    const auto pixeles = f.Pixeles();
    for (int r = 0; r < 3; ++r)
        for (int c = 0; c < 5; ++c)
            for (int b = 0; b < 3; ++b)
                ASSERT_EQ(Pixel(bmp, r, c)[std::size_t(b)],
                          pixeles[std::size_t(r) * f.BytesFila() + std::size_t(3 * c + b)]);
}

TEST_P(Bmp, RowsOfANegativeHeightComeFromTheTop) {
    const Fichero f{.alto = -3};
    CBmp bmp(GetParam());
    ASSERT_EQ(Lee(bmp, f.Bytes()), 1);
    EXPECT_EQ(bmp.Alto(), -3);
    const auto pixeles = f.Pixeles();
    for (int r = 0; r < 3; ++r)
        for (int b = 0; b < 3; ++b)
            ASSERT_EQ(Pixel(bmp, r, 0)[std::size_t(b)], pixeles[std::size_t(2 - r) * f.BytesFila() + std::size_t(b)]);
}

TEST_P(Bmp, TheHeaderAloneKeepsTheSignAndLeavesNoPixels) {
    for (const int alto : {3, -3}) {
        CBmp bmp(GetParam());
        ASSERT_EQ(Lee(bmp, Fichero{.alto = alto}.Bytes(), true), 1);
        EXPECT_EQ(bmp.Alto(), alto);
        EXPECT_EQ(bmp.Ancho(), 5);
        EXPECT_EQ(bmp.Alto100(), 300);
        EXPECT_EQ(bmp.BytesPixel(), 3);
        BYTE pixel[3];
        EXPECT_FALSE(bmp.GetPixel(pixel, 0, 0, 0));
        EXPECT_EQ(bmp.Leer(false), 1);
        EXPECT_TRUE(bmp.GetPixel(pixel, 0, 0, 0));
    }
}

TEST_P(Bmp, APaletteIsFoundBehindALongerHeaderAndFilledUpWithBlack) {
    const Fichero f{.bits = 8, .bytesCabecera = 124, .usados = 10, .entradas = 10};
    CBmp bmp(GetParam());
    ASSERT_EQ(Lee(bmp, f.Bytes()), 1);
    EXPECT_TRUE(bmp.TienePaleta());
    const auto paleta = f.Paleta(), pixeles = f.Pixeles();
    EXPECT_TRUE(std::equal(paleta.begin(), paleta.end(), bmp.Paleta()));
    EXPECT_THAT(std::vector(bmp.Paleta() + 40, bmp.Paleta() + 1024), Each(0));
    for (int c = 0; c < 5; ++c) {
        const std::size_t indice = pixeles[std::size_t(c)];
        for (std::size_t b = 0; b < 3; ++b)
            EXPECT_EQ(Pixel(bmp, 0, c)[b], indice < 10 ? paleta[4 * indice + b] : 0);
    }
}

TEST_P(Bmp, RowsPastTheEndOfAShortFileStayBlack) {
    const Fichero f{.faltan = 16 + 16 + 4};  // two rows and the end of the first
    CBmp bmp(GetParam());
    ASSERT_EQ(Lee(bmp, f.Bytes()), 1);
    EXPECT_EQ(Pixel(bmp, 0, 3)[0], f.Pixeles()[9]);
    for (const int r : {1, 2})
        for (int c = 0; c < 5; ++c)
            EXPECT_THAT(Pixel(bmp, r, c), Each(0));
    EXPECT_THAT(Pixel(bmp, 0, 4), Each(0));
}

TEST_P(Bmp, OfFourBitsLoadsAndLeavesPixelsUntouched) {
    CBmp bmp(GetParam());
    ASSERT_EQ(Lee(bmp, Fichero{.bits = 4, .entradas = 16}.Bytes()), 1);
    BYTE pixel[3]{9, 9, 9};
    EXPECT_TRUE(bmp.GetPixel(pixel, 0, 0, 0));
    EXPECT_THAT(pixel, Each(9));
    EXPECT_EQ(bmp.BytesPixel(), 0);
}

TEST_P(Bmp, ExpandsOtherDepths) {
    for (const int bits : {1, 2, 4, 8, 16, 24, 32}) {
        const Fichero f{.ancho = 11, .bits = bits, .entradas = bits <= 8 ? 1U << bits : 0U};
        CBmp bmp(GetParam());
        ASSERT_EQ(Lee(bmp, f.Bytes()), 1) << bits;
        ASSERT_EQ(bmp.Expande(), 1) << bits;
        EXPECT_EQ(bmp.BytesPixel(), 3);
        EXPECT_EQ(bmp.Ancho(), 11);
        EXPECT_EQ(bmp.Alto(), -3);
        const auto paleta = f.Paleta(), pixeles = f.Pixeles();
        for (int r = 0; r < 3; ++r)
            for (int c = 0; c < 11; ++c) {
                // The pixel's bits as one number, highest first below a byte, lowest byte first above.
                const std::size_t fila = std::size_t(r) * f.BytesFila();
                std::vector<BYTE> esperado(3);
                if (bits >= 24) {
                    std::copy_n(&pixeles[fila + std::size_t(c * bits / 8)], 3, esperado.begin());
                } else if (bits == 16) {
                    const int v = pixeles[fila + std::size_t(2 * c)] + 256 * pixeles[fila + std::size_t(2 * c + 1)];
                    for (int b = 0; b < 3; ++b)
                        esperado[std::size_t(b)] = BYTE(std::lround((v >> 5 * b) % 32 * 255 / 31.0));
                } else {
                    int indice = 0;
                    for (int i = c * bits; i < (c + 1) * bits; ++i)
                        indice = 2 * indice + (pixeles[fila + std::size_t(i / 8)] >> (7 - i % 8)) % 2;
                    std::copy_n(&paleta[4 * std::size_t(indice)], 3, esperado.begin());
                }
                ASSERT_EQ(Pixel(bmp, r, c), esperado) << bits << " bits, " << r << ", " << c;
            }
    }
}

TEST(BmpPaleta, KnowsItsDarkestAndItsBrightestEntry) {
    struct Abierto : CBmp {
        using CBmp::m_nBrillante, CBmp::m_nOscuro;
    } bmp;
    const CarpetaTemporal carpeta;
    Fichero f{.bits = 8, .usados = 4, .entradas = 256};
    std::string bytes = f.Bytes();
    const unsigned char entradas[16]{90, 90, 90, 0, 250, 250, 20, 0, 20, 3, 3, 0, 250, 20, 250, 0};
    bytes.replace(54, 16, reinterpret_cast<const char*>(entradas), 16);
    bytes[46] = 0;  // all entries count: random ones, none of them black or white
    for (std::size_t i = 70; i < 54 + 1024; ++i)
        bytes[i] = char(std::clamp(int(static_cast<unsigned char>(bytes[i])), 60, 150));
    CFile fichero(CString(carpeta.Escribe("a.bmp", bytes).string().c_str()), CFile::modeRead);
    bmp.SetFichero(&fichero);
    ASSERT_EQ(bmp.Leer(false), 1);
    EXPECT_EQ(bmp.m_nOscuro, 2);
    EXPECT_EQ(bmp.m_nBrillante, 1);  // the first of two with the same sum
}

TEST_P(Bmp, WithoutASourceGivesTwo) {
    CBmp bmp(GetParam());
    EXPECT_EQ(bmp.Leer(false), 2);
    EXPECT_FALSE(bmp.SetFichero(nullptr));
    EXPECT_EQ(bmp.Leer(false), 2);
}

// ---- Files that are refused

struct Malo {
    const char* nombre;
    Fichero fichero;
    const char* mensaje;
    std::size_t bytes = std::string::npos;  // of the file that are there
};

TEST_P(Bmp, WhatItCannotTakeIsRefusedWithTheReason) {
    const Malo malos[]{
        {"signature", {.firma = "MB"}, "No es un archivo BMP"},
        {"empty", {}, "No es un archivo BMP", 0},
        {"cut header", {}, "Cabecera BMP incompleta", 40},
        {"OS/2", {.bytesCabecera = 12}, "anterior a Windows"},
        {"header past the end", {.bytesCabecera = 0x7FFFFFF0}, "Cabecera BMP incompleta", 54},
        {"compressed", {.bits = 8, .compresion = 1}, "Archivo comprimido"},
        {"bit fields", {.bits = 16, .compresion = 3}, "Archivo comprimido"},
        {"no bits", {.bits = 0}, "bits no válido"},
        {"three bits", {.bits = 3}, "bits no válido"},
        {"no width", {.ancho = 0}, "Tamaño no válido"},
        {"no height", {.alto = 0}, "Tamaño no válido"},
        {"pixels past the end", {.offset = 5000}, "Tamaño no válido"},
        {"pixels in the header", {.offset = 20}, "Tamaño no válido"},
        {"no pixels at all", {.faltan = 48}, "no contiene la imagen"},
    };
    for (const Malo& malo : malos) {
        const Progreso progreso;
        CBmp bmp(GetParam());
        Fichero f = malo.fichero;
        const DWORD cabecera = f.bytesCabecera;
        f.bytesCabecera = 40;  // the file itself stays small
        std::string bytes = f.Bytes().substr(0, malo.bytes);
        if (cabecera != 40) std::memcpy(&bytes[14], &cabecera, 4);
        EXPECT_EQ(Lee(bmp, bytes), kNoSoportado) << malo.nombre;
        ASSERT_THAT(progreso.m_Mensajes, ElementsAre(HasSubstr(malo.mensaje))) << malo.nombre;
        EXPECT_EQ(bmp.Ancho(), 0) << malo.nombre;
        EXPECT_EQ(bmp.BytesPixel(), 0) << malo.nombre;
    }
}

TEST_P(Bmp, SizesThatLieTakeNoMemory) {
    for (const auto& [ancho, alto] : {std::pair{0x7FFFFFFF, 1},
                                      {-5, 3},
                                      {5, int(0x80000000)},
                                      {46341, 46341},
                                      {1, 0x7FFFFFFF},
                                      {5, 263168},
                                      {0x7FFFFFFF, 0x7FFFFFFF},
                                      {100000, -20000}}) {
        std::string bytes = Fichero{}.Bytes();
        std::memcpy(&bytes[18], &ancho, 4);
        std::memcpy(&bytes[22], &alto, 4);
        CBmp bmp(GetParam());
        EXPECT_EQ(Lee(bmp, bytes), kNoSoportado) << ancho << " x " << alto;
        EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);  // the source
    }
}

// ---- Progress, and what goes wrong on the way

TEST_P(Bmp, ReadingShowsItsProgress) {
    const Progreso progreso;
    CBmp bmp(GetParam());
    ASSERT_EQ(Lee(bmp, Fichero{.alto = 5}.Bytes()), 1);
    EXPECT_THAT(progreso.m_Etapas, ElementsAre(56001));
    EXPECT_EQ(progreso.m_nAbiertas, 0);
    EXPECT_THAT(progreso.m_Niveles, Each(3));
    if (GetParam() == 0)
        EXPECT_THAT(progreso.m_Pasos, ElementsAre(Pair(1, 2), Pair(2, 2)));
    else
        EXPECT_THAT(progreso.m_Pasos, ElementsAre(Pair(1, 5), Pair(2, 5), Pair(3, 5), Pair(4, 5), Pair(5, 5)));
}

TEST_P(Bmp, ReadingAtALowLevelOfMessagesShowsNothing) {
    const Progreso progreso(1);
    CBmp bmp(GetParam());
    bmp.SetNivelMensajes(1);
    EXPECT_EQ(Lee(bmp, Fichero{}.Bytes()), 1);
    EXPECT_THAT(progreso.m_Pasos, IsEmpty());
    EXPECT_THAT(progreso.m_Etapas, IsEmpty());
}

TEST_P(Bmp, ACancelledReadLeavesNoPixelsAndNoFile) {
    const Progreso progreso(1);
    CBmp bmp(GetParam());
    EXPECT_EQ(Lee(bmp, Fichero{}.Bytes()), kCancelado);
    EXPECT_EQ(bmp.Ancho(), 0);
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);  // the source
}

TEST_P(Bmp, ReadingWithoutMemoryGoesToAFile) {
    const Progreso progreso;
    LimitaMemoria(40);
    CBmp bmp(GetParam());
    const Fichero f;
    EXPECT_EQ(Lee(bmp, f.Bytes()), 1);
    LimitaMemoria();
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 2u);
    EXPECT_THAT(progreso.m_Mensajes, SizeIs(GetParam() == 0 ? 4 : 0));
    EXPECT_EQ(Pixel(bmp, 0, 0)[0], f.Pixeles()[0]);
}

TEST_P(Bmp, ReadingToAFullDiskGivesTwoAndLeavesNoFile) {
    if (GetParam() == 0) LimitaMemoria(40);  // from memory to a file that can't be made either
    const std::string bytes = Fichero{}.Bytes();
    const auto ruta = m_Carpeta.Escribe("a.bmp", bytes);
    const DiscoLleno lleno(40);
    CBmp bmp(GetParam());
    m_Fichero.Open(CString(ruta.string().c_str()), CFile::modeRead);
    bmp.SetFichero(&m_Fichero);
    EXPECT_EQ(bmp.Leer(false), 2);
    LimitaMemoria();
    EXPECT_EQ(m_Carpeta.CuentaFicheros(), 1u);
    EXPECT_EQ(bmp.Ancho(), 0);
}

// A raster whose temporary file has no room left.
struct SinSitio : CBmp {
    SinSitio() : CBmp(1) {}
    void LlenaElDisco() { m_pTemporal = std::make_unique<CFile>(L"/dev/full", CFile::modeReadWrite); }
};

TEST(BmpSinSitio, OperationsOnATemporaryFileThatFailsGiveTwo) {
    const CarpetaTemporal carpeta;
    SinSitio bmp;
    ASSERT_TRUE(bmp.Crear(5, 4, 24, 1.0F, false, nullptr, nullptr, false));
    bmp.LlenaElDisco();
    const BYTE fila[15]{};
    EXPECT_FALSE(bmp.SetFila(fila, 3, 0, 5));
    EXPECT_FALSE(bmp.SetFila(fila, 0, 0, 5));
    EXPECT_EQ(bmp.Reducir(0, 3), 2);
    EXPECT_EQ(bmp.CambiaTamano(2, 2, nullptr), 2);
    EXPECT_EQ(bmp.Recorta(0, 0, 2, 2, nullptr), 2);
    EXPECT_EQ(bmp.Ancho(), 5);
}

// ---- Writing

TEST_P(Bmp, WritingGivesBackTheFileThatWasRead) {
    for (const int bits : {1, 4, 8, 24}) {
        const DWORD entradas = bits == 24 ? 0U : 1U << bits;
        const std::string leido = Fichero{.bits = bits, .usados = entradas, .entradas = entradas}.Bytes();
        CBmp bmp(GetParam());
        ASSERT_EQ(Lee(bmp, leido), 1);
        int resultado = 0;
        std::string escrito = Graba(bmp, resultado);
        EXPECT_EQ(resultado, 1);
        DWORD bytes = 0;
        ASSERT_EQ(escrito.size(), leido.size()) << bits;
        std::memcpy(&bytes, &escrito[2], 4);
        EXPECT_EQ(bytes, leido.size());
        escrito.replace(2, 4, 4, '\0');  // the source doesn't tell its size
        EXPECT_EQ(escrito, leido) << bits;
        EXPECT_EQ(bmp.Alto(), -3);
    }
}

TEST_P(Bmp, WhatIsWrittenReadsBackTheSame) {
    for (const int bits : {8, 24}) {
        const auto imagen = Aleatoria<CBmp>(13, 9, bits, GetParam());
        int resultado = 0;
        const std::string bytes = Graba(*imagen, resultado);
        EXPECT_EQ(resultado, 1);
        CBmp leida(GetParam());
        ASSERT_EQ(Lee(leida, bytes), 1);
        EXPECT_TRUE(Iguales(leida, *imagen));
        EXPECT_EQ(leida.Resolucion(), imagen->Resolucion());
    }
}

TEST_P(Bmp, WritingShowsItsProgressAndACancelLeavesNoPartOfTheFile) {
    const auto imagen = Aleatoria<CBmp>(4, 3, 24, GetParam());
    int resultado = 0;
    {
        const Progreso progreso;
        Graba(*imagen, resultado);
        EXPECT_THAT(progreso.m_Etapas, ElementsAre(56002));
        EXPECT_THAT(progreso.m_Pasos, ElementsAre(Pair(1, 3), Pair(2, 3), Pair(3, 3)));
    }
    const Progreso progreso(2);
    EXPECT_EQ(Graba(*imagen, resultado), "");
    EXPECT_EQ(resultado, kCancelado);
    EXPECT_EQ(imagen->Alto(), -3);
}

TEST_P(Bmp, WritingToAFullDiskFailsAndLeavesNoPartOfTheFile) {
    const auto imagen = Aleatoria<CBmp>(50, 30, 24, GetParam());
    int resultado = 0;
    const DiscoLleno lleno(1000);
    EXPECT_EQ(Graba(*imagen, resultado), "");
    EXPECT_EQ(resultado, kNoSoportado);
}

TEST_P(Bmp, WithoutPixelsThereIsNothingToWrite) {
    CBmp vacia(GetParam());
    int resultado = 0;
    EXPECT_EQ(Graba(vacia, resultado), "");
    EXPECT_EQ(resultado, 2);
    ASSERT_TRUE(vacia.Crear(4, 0, 24, 1.0F, false, nullptr, nullptr, false));
    EXPECT_EQ(Graba(vacia, resultado), "");
    EXPECT_EQ(resultado, 2);
}

// ---- Operations that a bitmap doesn't have

TEST(BmpSinOperacion, GivesTheStatedResultAndDoesNothing) {
    const auto bmp = Aleatoria<CBmp>(4, 3, 24, 0);
    const auto otra = Aleatoria<CBmp>(4, 3, 24, 0, 9);
    const auto antes = Pixeles(*bmp), antesOtra = Pixeles(*otra);
    const BYTE color[3]{};
    Vertiz::CTiff* destino = nullptr;
    EXPECT_EQ(bmp->CorrelaPlantilla(otra.get(), &destino, 0, true), 1);
    EXPECT_EQ(bmp->SegmentaImagen(&destino, 0.5F, 100.0F, 2, false, nullptr), 1);
    EXPECT_EQ(bmp->ExtraeColor(&destino, color), 1);
    EXPECT_EQ(bmp->MezclaSobre(otra.get()), 1);
    EXPECT_EQ(bmp->CuentaColor(Pixel(*bmp, 0, 0).data()), 0);
    EXPECT_EQ(bmp->LeerReducido(2), 1);
    bmp->ReducePaleta(nullptr);
    bmp->Ensancha(3, true);
    EXPECT_EQ(destino, nullptr);
    EXPECT_EQ(Pixeles(*bmp), antes);
    EXPECT_EQ(Pixeles(*otra), antesOtra);
    EXPECT_EQ(bmp->Ancho(), 4);
}

}  // namespace
