// JPEG: reading beside plain libjpeg, writing, damage, cancelling and lack of room.

#include "raster/CJpeg.h"

#include "raster/Imagenes.h"
#include "raster/JpegDePrueba.h"
#include "raster/Resultados.h"
#include "platform/Memoria.h"
#include "support/Progreso.h"

#include <gmock/gmock.h>

namespace {

using namespace imagenes;
using testing::Each;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::SizeIs;
using Vertiz::CJpeg;

class CJpegTest : public ConTemporales {
  protected:
    int Lee(CJpeg& imagen, const std::string& bytes, bool soloCabecera = false) const {
        const auto ruta = m_Carpeta.Escribe("ñ.jpg", bytes);
        CFile fichero(CString(ruta.c_str()), CFile::modeRead);
        return imagen.SetFichero(&fichero) ? imagen.Leer(soloCabecera) : -1;
    }
    int Graba(CJpeg& imagen, std::string& bytes) const {
        const auto ruta = m_Carpeta / "salida.jpg";
        CFile fichero(CString(ruta.c_str()), CFile::modeCreate | CFile::modeReadWrite);
        const int resultado = imagen.Grabar(&fichero);
        fichero.Close();
        bytes = Contenido(ruta);
        return resultado;
    }
    static std::string Color(int ancho = 37, int alto = 29,
                             const std::function<void(jpeg_compress_struct&)>& ajusta = nullptr) {
        return HazJpeg(ancho, alto, 3, JCS_RGB, BytesAleatorios(std::size_t(ancho * alto) * 3, 7), ajusta);
    }
};

void Progresivo(jpeg_compress_struct& jpeg) {
    jpeg_simple_progression(&jpeg);
}

// ---- Reading -----------------------------------------------------------------------------------------------------

TEST_F(CJpegTest, ReadsWhatLibjpegReads) {
    const std::string jpegs[] = {Color(), Color(64, 3, Progresivo), Color(1, 1),
                                 HazJpeg(37, 29, 1, JCS_GRAYSCALE, BytesAleatorios(37 * 29, 2))};
    for (const std::string& jpg : jpegs)
        for (const int modo : {0, 1}) {
            Progreso progreso;
            CJpeg imagen(modo);
            ASSERT_EQ(Lee(imagen, jpg), 1);
            EXPECT_EQ(imagen.BytesPixel(), 3);
            EXPECT_LT(imagen.Alto(), 0);
            EXPECT_EQ(imagen.NumMuestras(), 3);
            EXPECT_EQ(imagen.Tipo(), 22);
            EXPECT_EQ(imagen.Resolucion(), 1.0F);
            EXPECT_TRUE(Pixeles(imagen) == SegunLibjpeg(jpg));
            EXPECT_THAT(progreso.m_Etapas, ElementsAre(56001U));
            EXPECT_EQ(progreso.m_Pasos.back(), std::pair(-imagen.Alto(), -imagen.Alto()));
            EXPECT_THAT(progreso.m_Mensajes, IsEmpty());
        }
}

TEST_F(CJpegTest, AGreyFileHasThreeEqualBytes) {
    CJpeg imagen;
    ASSERT_EQ(Lee(imagen, HazJpeg(8, 8, 1, JCS_GRAYSCALE, BytesAleatorios(64, 5))), 1);
    const std::vector<BYTE> p = Pixeles(imagen);
    for (std::size_t i = 0; i < p.size(); i += 3)
        ASSERT_TRUE(p[i] == p[i + 1] && p[i] == p[i + 2]) << i;
    EXPECT_THAT(p, Not(Each(p.front())));
}

TEST_F(CJpegTest, FourComponentsAreBlack) {
    for (const int modo : {0, 1}) {
        CJpeg imagen(modo);
        ASSERT_EQ(Lee(imagen, HazJpeg(9, 5, 4, JCS_CMYK, BytesAleatorios(9 * 5 * 4, 5))), 1);
        EXPECT_THAT(Pixeles(imagen), Each(0));
        EXPECT_EQ(imagen.Ancho(), 9);
    }
}

TEST_F(CJpegTest, TheHeaderAloneDecodesNothing) {
    const std::string jpg = Color();
    CJpeg imagen;
    // Up to the start of the scan; there are no pixels behind it.
    ASSERT_EQ(Lee(imagen, jpg.substr(0, jpg.find("\xFF\xDA") + 14), true), 1);
    EXPECT_EQ(imagen.Ancho(), 37);
    EXPECT_EQ(std::abs(imagen.Alto()), 29);
    EXPECT_EQ(imagen.BytesPixel(), 3);
    BYTE pixel[3];
    EXPECT_FALSE(imagen.GetPixel(pixel, 0, 0, 0));
}

TEST_F(CJpegTest, ReadsAgainFromTheStart) {
    const auto ruta = m_Carpeta.Escribe("a.jpg", Color());
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    CJpeg imagen;
    ASSERT_TRUE(imagen.SetFichero(&fichero));
    EXPECT_EQ(imagen.Leer(true), 1);
    EXPECT_EQ(imagen.Leer(false), 1);
    EXPECT_EQ(imagen.Leer(false), 1);
    EXPECT_TRUE(Pixeles(imagen) == SegunLibjpeg(Contenido(ruta)));
}

TEST_F(CJpegTest, WhatIsNoJpegGives2AndSaysWhy) {
    for (const std::string& bytes : {std::string(), std::string("\xFF"), std::string("BM and more of it"),
                                     Color().substr(0, 20), std::string("\xFF\xD8\xFF\xD9")}) {
        Progreso progreso;
        CJpeg imagen;
        EXPECT_EQ(Lee(imagen, bytes), 2) << bytes.size();
        EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
        EXPECT_EQ(progreso.m_nAbiertas, 0);
        EXPECT_EQ(imagen.Alto(), 0);
    }
    CJpeg imagen;
    EXPECT_EQ(imagen.Leer(false), 2);
    EXPECT_FALSE(imagen.SetFichero(nullptr));
    EXPECT_EQ(imagen.Leer(false), 2);
}

TEST_F(CJpegTest, AFailureWhileDecodingLeavesNoPixels) {
    std::string jpg = Color(64, 64, [](jpeg_compress_struct& j) { j.restart_interval = 2; });
    // In place of the end stands a segment that no decoder takes.
    jpg.replace(jpg.size() - 2, 2, std::string("\xFF\xC4\x00\x05\x00\xFF\xFF", 7));
    for (const int modo : {0, 1}) {
        CJpeg imagen(modo);
        Progreso progreso;
        EXPECT_EQ(Lee(imagen, jpg), 2);
        EXPECT_THAT(progreso.m_Pasos, SizeIs(64));
        EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
        EXPECT_EQ(imagen.Alto(), 0);
    }
}

TEST_F(CJpegTest, ATruncatedFileGivesItsRowsAndAMessage) {
    const std::string jpg = Color(200, 200), corto = jpg.substr(0, jpg.size() / 2);
    Progreso progreso;
    CJpeg imagen;
    ASSERT_EQ(Lee(imagen, corto), 1);
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre(HasSubstr("remature end")));
    const std::vector<BYTE> p = Pixeles(imagen), entera = SegunLibjpeg(jpg);
    EXPECT_TRUE(std::equal(p.end() - 600 * 40, p.end(), entera.end() - 600 * 40));
    EXPECT_FALSE(p == entera);
}

TEST_F(CJpegTest, AJpegHoldsNoTable) {
    const auto ruta = m_Carpeta.Escribe("a.jpg", Color());
    CFile fichero(CString(ruta.c_str()), CFile::modeRead);
    CJpeg imagen;
    ASSERT_TRUE(imagen.SetFichero(&fichero));
    Vertiz::CMatriz<float>* tabla = nullptr;
    Vertiz::CTiff& tiff = imagen;
    EXPECT_EQ(tiff.Leer(false, &tabla, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0), Vertiz::kNoSoportado);
    EXPECT_EQ(tabla, nullptr);
}

TEST_F(CJpegTest, ACancelAtAnyStepLeavesNothing) {
    const std::string jpg = Color(8, 6);
    for (int paso = 1; paso <= 6; ++paso)
        for (const int modo : {0, 1}) {
            Progreso progreso(paso);
            CJpeg imagen(modo);
            EXPECT_EQ(Lee(imagen, jpg), 2);
            EXPECT_THAT(progreso.m_Pasos, SizeIs(paso));
            EXPECT_EQ(progreso.m_nAbiertas, 0);
            EXPECT_EQ(imagen.Alto(), 0);
        }
}

TEST_F(CJpegTest, WithoutMemoryThePictureGoesToAFile) {
    const std::string jpg = Color(300, 200);
    Progreso progreso;
    CJpeg imagen;
    LimitaMemoria(50'000);
    const int resultado = Lee(imagen, jpg);
    LimitaMemoria();
    ASSERT_EQ(resultado, 1);
    EXPECT_THAT(progreso.m_Mensajes, testing::Contains(HasSubstr("archivo temporal")));
    EXPECT_TRUE(Pixeles(imagen) == SegunLibjpeg(jpg));
}

TEST_F(CJpegTest, CoefficientsThatMemoryCannotHoldAreRefused) {
    const std::string jpg = Color(300, 200, Progresivo);
    Progreso progreso;
    CJpeg imagen(1);
    LimitaMemoria(50'000);
    const int resultado = Lee(imagen, jpg);
    LimitaMemoria();
    EXPECT_EQ(resultado, 2);
    EXPECT_THAT(progreso.m_Mensajes, ElementsAre(HasSubstr("memory")));
}

TEST_F(CJpegTest, AFileOfNothingButScansIsGivenUp) {
    const std::string jpg = Color(16, 16, Progresivo);
    // The first scan, of all DC coefficients, over and over.
    const std::size_t inicio = jpg.find("\xFF\xDA"), fin = jpg.find("\xFF\xC4", inicio);
    ASSERT_NE(fin, std::string::npos);
    std::string bomba = jpg.substr(0, fin);
    for (int i = 0; i < 2000; ++i)
        bomba += jpg.substr(inicio, fin - inicio);
    CJpeg imagen;
    Progreso progreso;
    EXPECT_EQ(Lee(imagen, bomba + "\xFF\xD9"), 2);
    EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
}

TEST_F(CJpegTest, AHugeSizeThatTheFileCannotHoldIsRefusedAtOnce) {
    std::string jpg = Color(16, 16);
    const std::size_t marco = jpg.find("\xFF\xC0");
    ASSERT_NE(marco, std::string::npos);
    jpg.replace(marco + 5, 4, "\xFF\xDC\xFF\xDC");
    for (const bool soloCabecera : {true, false}) {
        Progreso progreso;
        CJpeg imagen(1);
        EXPECT_EQ(Lee(imagen, jpg, soloCabecera), 2);
        EXPECT_THAT(progreso.m_Pasos, IsEmpty());
        EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
    }
}

// ---- Writing -----------------------------------------------------------------------------------------------------

TEST_F(CJpegTest, WritesTheFileThatLibjpegWritesOfTheSamePixels) {
    const std::vector<BYTE> rgb = BytesAleatorios(37 * 29 * 3, 9);
    std::vector<BYTE> bgr;  // rows from the bottom
    for (std::size_t f = 29; f-- > 0;)
        for (std::size_t c = 0; c < 37; ++c)
            for (std::size_t i = 3; i-- > 0;)
                bgr.push_back(rgb[(f * 37 + c) * 3 + i]);
    auto imagen = Imagen<CJpeg>(37, 29, 24, 0, bgr);
    std::string bytes;
    Progreso progreso;
    ASSERT_EQ(Graba(*imagen, bytes), 1);
    EXPECT_TRUE(bytes == HazJpeg(37, 29, 3, JCS_RGB, rgb));
    EXPECT_THAT(progreso.m_Etapas, ElementsAre(56002U));
    EXPECT_THAT(progreso.m_Pasos, SizeIs(29));
}

TEST_F(CJpegTest, OneBandComesOutWrongTheSameWayEachTime) {
    for (const int ancho : {8, 7}) {
        const auto w = std::size_t(ancho), h = std::size_t{10};
        auto imagen = Aleatoria<CJpeg>(ancho, int(h), 8, 0);
        const std::vector<BYTE> grises = Pixeles(*imagen);
        // The picture laid out with three bytes a pixel, outer bytes swapped; rows of one byte a pixel are taken from
        // it.
        std::vector<BYTE> buffer(w * h * 3, 0);
        for (std::size_t f = 0; f < h; ++f) {
            std::copy_n(&grises[(h - 1 - f) * w], w, &buffer[f * 3 * w]);
            for (std::size_t c = 0; c < w; ++c)
                std::swap(buffer[f * 3 * w + 3 * c], buffer[f * 3 * w + 3 * c + 2]);
        }
        std::string bytes;
        ASSERT_EQ(Graba(*imagen, bytes), 1);
        EXPECT_TRUE(bytes == HazJpeg(ancho, int(h), 1, JCS_GRAYSCALE, buffer)) << ancho;
    }
}

TEST_F(CJpegTest, OnlyPixelsInMemoryAreWritten) {
    std::string bytes;
    CJpeg vacia, cabecera;
    EXPECT_EQ(Graba(vacia, bytes), 2);
    ASSERT_TRUE(cabecera.Crear(3, 3, 24, 1.0F, false, nullptr, nullptr, true));
    EXPECT_EQ(Graba(cabecera, bytes), 2);
    auto enFichero = Aleatoria<CJpeg>(5, 4, 24, 1);
    EXPECT_EQ(Graba(*enFichero, bytes), 2);
    EXPECT_EQ(bytes, "");
    EXPECT_EQ(enFichero->Grabar(nullptr), 2);
}

TEST_F(CJpegTest, WhatIsCancelledOrFailsLeavesAnEmptyFile) {
    auto imagen = Aleatoria<CJpeg>(600, 400, 24, 0);
    for (const int paso : {1, 200, 400}) {
        std::string bytes;
        Progreso progreso(paso);
        EXPECT_EQ(Graba(*imagen, bytes), 2);
        EXPECT_EQ(bytes, "");
        EXPECT_EQ(progreso.m_nAbiertas, 0);
    }
    auto enorme = std::make_unique<CJpeg>();
    ASSERT_TRUE(enorme->Crear(65501, 1, 24, 1.0F, false, nullptr, nullptr, false));
    std::string bytes;
    Progreso progreso;
    EXPECT_EQ(Graba(*enorme, bytes), 2);
    EXPECT_THAT(progreso.m_Mensajes, SizeIs(1));
    EXPECT_EQ(bytes, "");
    // A file that can't be written to.
    const auto ruta = m_Carpeta.Escribe("l.jpg", "old");
    CFile lectura(CString(ruta.c_str()), CFile::modeRead);
    EXPECT_EQ(imagen->Grabar(&lectura), 2);
    EXPECT_EQ(Contenido(ruta), "old");
}

TEST_F(CJpegTest, CreaRasterGivesItForBothEndings) {
    for (const wchar_t* nombre : {L"a.jpg", L"a.JPEG"}) {
        const std::unique_ptr<Vertiz::IRaster> raster(Vertiz::CreaRaster(nombre));
        EXPECT_NE(dynamic_cast<CJpeg*>(raster.get()), nullptr);
    }
}

}  // namespace
