// Reading lines from text files, good and bad.

#include "model/CDibujo.h"
#include "model/IPorcentaje.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

namespace {

using namespace Vertiz;

struct CProgreso : IPorcentaje {
    int pasos = 0, cancelaEn = -1;
    CString mensaje;
    int Paso(int, int, int, int) override { return ++pasos != cancelaEn; }
    void Empieza(int, unsigned) override {}
    void Termina(int, int) override {}
    void Pasos(int, int) override {}
    void Reinicia(int, int, int) override {}
    void Mensaje(int, const CString& texto, int) override { mensaje = texto; }
};

class CDibujoLectura : public testing::Test {
  protected:
    template <class T = int>
    int Lee(std::string_view contenido, CDibujo<T>& dibujo) {
        const CString ruta(carpeta.Escribe("líneas ñ.txt", contenido).c_str());
        return dibujo.Read(ruta, &progreso);
    }
    // The message that a file gets that isn't right.
    CString Queja(std::string_view contenido) {
        CDibujo<int> dibujo(CDataSemilla(2));
        dibujo.Inserta(CLinea<int>(CString(L"before")));
        EXPECT_EQ(Lee(contenido, dibujo), 0);
        EXPECT_EQ(dibujo.Cantidad(), 1U) << "the drawing stays as it was";
        return progreso.mensaje;
    }
    CarpetaTemporal carpeta;
    CProgreso progreso;
};

TEST_F(CDibujoLectura, ReadsLinesByCodeAndEmptyRows) {
    CDibujo<int> dibujo(CDataSemilla(2, 400000, 4000000, 0));
    ASSERT_EQ(Lee("\xEF\xBB\xBF# code x y z\r\n"
                  "ROAD 400001.25 4000002 103.5\r\n"
                  "ROAD;400002;4000003;-1e2\r\n"
                  "\r\n"
                  "ROAD,\t+400009, 4000009, 1\n"
                  "camiño 400000 4000000 0\n"
                  "# the last row has no end\n"
                  "camiño 400001 4000000 0",
                  dibujo),
              1)
        << progreso.mensaje.Utf8();
    ASSERT_EQ(dibujo.Cantidad(), 3U);
    EXPECT_EQ(dibujo[0]->NPuntos(), 2U);
    EXPECT_EQ(dibujo[0]->Punto(0), CCoor3D<int>(125, 200, 10350));
    EXPECT_EQ(dibujo[0]->Punto(1).z, -10000);
    EXPECT_EQ(dibujo[1]->NPuntos(), 1U);
    EXPECT_EQ(dibujo[2]->GetCodigo(), L"cami\u00F1o");
    EXPECT_EQ(dibujo[2]->NPuntos(), 2U);
    EXPECT_EQ(dibujo.GetNombre().Right(4), L".txt");
}

TEST_F(CDibujoLectura, RealDrawingsKeepAllDecimals) {
    CDibujo<double> dibujo(CDataSemilla(2, 100, 0, 0));
    ASSERT_EQ(Lee<double>("A 100.125 0.0625 7.75\n", dibujo), 1);
    EXPECT_EQ(dibujo[0]->Punto(0), CCoor3D<double>(0.125, 0.0625, 7.75));
}

TEST_F(CDibujoLectura, EmptyFileAndRemarksGiveNothing) {
    CDibujo<int> dibujo;
    EXPECT_EQ(Lee("", dibujo), 1);
    EXPECT_EQ(Lee("\n\n# only this\n   \n", dibujo), 1);
    EXPECT_EQ(dibujo.Cantidad(), 0U);
}

TEST_F(CDibujoLectura, BadRowsAreToldByNumber) {
    EXPECT_GE(Queja("A 1 2 3\nA 1 2\n").Find(L"row 2"), 0);
    EXPECT_GE(Queja("A 1 2 3\n\n# \nA x 2 3\n").Find(L"row 4: x"), 0);
    EXPECT_GE(Queja("A 1 2e 3\n").Find(L"y is not"), 0);
    EXPECT_GE(Queja("A 1,5 2,5 3,5\n").Find(L"more than"), 0) << "a decimal comma";
    EXPECT_GE(Queja("A 1 2 nan\n").Find(L"height"), 0);
    EXPECT_GE(Queja("A 1 2 1e999\n").Find(L"height"), 0);
    EXPECT_GE(Queja("A 1 2 3 4\n").Find(L"more than"), 0);
    EXPECT_GE(Queja("A 1 1e15 3\n").Find(L"too far away"), 0) << "an integer can't hold it";
}

TEST_F(CDibujoLectura, BinaryAndMissingFilesEndWithAMessage) {
    EXPECT_FALSE(Queja(std::string(300000, '\0')).IsEmpty());
    EXPECT_GE(Queja(std::string(300000, 'A')).Find(L"too long"), 0);
    CDibujo<int> dibujo;
    EXPECT_EQ(dibujo.Read(CString((carpeta / "none").c_str()), &progreso), 0);
    EXPECT_GE(progreso.mensaje.Find(L"opened"), 0);
    EXPECT_EQ(dibujo.Read(CString(carpeta.Ruta().c_str()), &progreso), 0) << "a folder";
}

TEST_F(CDibujoLectura, SilentDrawingsSayNothing) {
    CDibujo<int> dibujo;
    dibujo.Mensajes(0);
    EXPECT_EQ(Lee("A 1\n", dibujo), 0);
    EXPECT_TRUE(progreso.mensaje.IsEmpty());
}

TEST_F(CDibujoLectura, LongFilesCanBeCancelled) {
    std::string texto;
    for (int i = 0; i < 40000; i++)
        texto += "A " + std::to_string(i) + " 0 0\n";
    CDibujo<int> dibujo;
    ASSERT_EQ(Lee(texto, dibujo), 1);
    EXPECT_EQ(dibujo.CantidadPuntos(), 40000U);
    EXPECT_EQ(dibujo[0]->Punto(39999).x, 39999) << "rows across two blocks are whole";
    EXPECT_GT(progreso.pasos, 3);
    progreso.cancelaEn = progreso.pasos + 2;
    EXPECT_EQ(Lee(texto, dibujo), 2);
    EXPECT_EQ(dibujo.Cantidad(), 1U);
}

}  // namespace
