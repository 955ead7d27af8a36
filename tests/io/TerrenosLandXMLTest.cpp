// Surfaces from LandXML files and back, and OBJ: real files, files made here, damaged ones.

#include "io/EscribeTIN.h"
#include "io/LeeLandXML.h"
#include "support/Progreso.h"
#include "support/Temporales.h"

#include <algorithm>
#include <array>
#include <filesystem>
#include <fstream>
#include <functional>
#include <random>
#include <sstream>

namespace {

using Vertiz::CCoor3D;
using Vertiz::CPuntoTIN;
using Vertiz::CResultadoLandXML;
using Vertiz::CTIN;
using Vertiz::LeeLandXML;

constexpr const char* kCabecera =
    "<?xml version=\"1.0\"?>\n<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\">";

std::string Superficie(const std::string& puntos, const std::string& caras, const std::string& otros = "") {
    return std::string(kCabecera) + "<Units><Metric linearUnit=\"meter\"/></Units><Surfaces><Surface name=\"A\">" +
           otros + "<Definition surfType=\"TIN\"><Pnts>" + puntos + "</Pnts><Faces>" + caras +
           "</Faces></Definition></Surface></Surfaces></LandXML>";
}

const std::string kPuntos =
    "<P id=\"1\">100 200 5</P><P id=\"2\">100 210 6</P><P id=\"7\">110.5 200 7.25</P><P id=\"9\">110 210 8</P>";

class TerrenosLandXML : public testing::Test {
  protected:
    std::string Ruta(const std::string& nombre) { return (m_Carpeta.Ruta() / nombre).string(); }
    CResultadoLandXML LeeTexto(const std::string& texto) {
        std::ofstream(Ruta("prueba.xml"), std::ios::binary) << texto;
        return LeeLandXML(CString(Ruta("prueba.xml").c_str()));
    }
    // It isn't read, the message names the file, and holds a text.
    void EsperaMensaje(const std::string& texto, const std::string& parte) {
        const CResultadoLandXML r = LeeTexto(texto);
        EXPECT_EQ(r.m_nResultado, 0) << parte;
        EXPECT_TRUE(r.m_Superficies.empty());
        const std::string mensaje = r.m_Error.Utf8();
        EXPECT_NE(mensaje.find("prueba.xml: "), std::string::npos) << mensaje;
        EXPECT_NE(mensaje.find(parte), std::string::npos) << mensaje;
        EXPECT_EQ(mensaje.find('\n'), std::string::npos) << mensaje;
    }

    CarpetaTemporal m_Carpeta;
};

TEST_F(TerrenosLandXML, PointsAreNorthingEastingAndHeight) {
    const CResultadoLandXML r = LeeTexto(Superficie(kPuntos, "<F>1 2 7</F><F i=\"1\">2 9 7</F>"));
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    ASSERT_EQ(r.m_Superficies.size(), 1u);
    EXPECT_EQ(r.m_Superficies[0].m_Nombre, CString(L"A"));
    EXPECT_EQ(r.m_Unidad, CString(L"meter"));
    const CTIN& tin = *r.m_Superficies[0].m_pTIN;
    ASSERT_EQ(tin.CantidadPuntos(), 4u);
    EXPECT_EQ(tin.GetSemilla().GetDecimales(), 3);
    EXPECT_EQ(tin.Punto(2), CCoor3D<int>(200000, 110500, 7250));
    ASSERT_EQ(tin.CantidadTriangulos(), 2u);
    EXPECT_TRUE(tin.EsVisible(0));
    EXPECT_FALSE(tin.EsVisible(1)) << "marked invisible";
    EXPECT_EQ(tin.Triangulo(0).Vecino(1), 1);
    EXPECT_TRUE(r.m_Avisos.empty());
}

TEST_F(TerrenosLandXML, PrefixesQuadsAndMissingIdsAreTaken) {
    const CResultadoLandXML r = LeeTexto(
        "<lx:LandXML xmlns:lx=\"http://www.landxml.org/schema/LandXML-1.1\"><lx:CoordinateSystem epsgCode=\"25830\"/>"
        "<lx:Surfaces><lx:Surface name=\"B &amp; C\" desc=\"d\"><lx:Definition><lx:Pnts><lx:P>0 0 1</lx:P><lx:P>0 10 "
        "1</lx:P><lx:P>10 10 1</lx:P><lx:P>10 0 1</lx:P></lx:Pnts><lx:Faces><lx:F>1 2 3 4</lx:F><lx:F>1 1 2</lx:F>"
        "</lx:Faces></lx:Definition></lx:Surface></lx:Surfaces></lx:LandXML>");
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_EQ(r.m_Superficies[0].m_Nombre, CString(L"B & C"));
    EXPECT_EQ(r.m_Superficies[0].m_Descripcion, CString(L"d"));
    EXPECT_EQ(r.m_EPSG, CString(L"25830"));
    const CTIN& tin = *r.m_Superficies[0].m_pTIN;
    EXPECT_EQ(tin.CantidadTriangulos(), 2u);
    EXPECT_DOUBLE_EQ(tin.SuperficiePlana(), 100);
    ASSERT_EQ(r.m_Avisos.size(), 1u) << "a face with a point twice";
}

TEST_F(TerrenosLandXML, BreaklinesMarkTheSidesThatTheyRunAlong) {
    const CResultadoLandXML r = LeeTexto(Superficie(
        kPuntos, "<F>1 2 7</F><F>2 9 7</F>",
        "<SourceData><Breaklines><Breakline><PntList3D>100 210 6 110.5 200 7.25 100 200 5</PntList3D>"
        "</Breakline><Breakline><PntList3D>100 200 5 110 210 8</PntList3D></Breakline></Breaklines></SourceData>"));
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    const CTIN& tin = *r.m_Superficies[0].m_pTIN;
    EXPECT_TRUE(tin.Fila(0).EsRuptura(1) && tin.Fila(0).EsRuptura(2));
    EXPECT_FALSE(tin.Fila(0).EsRuptura(0));
    EXPECT_TRUE(tin.Fila(1).EsRuptura(2) && !tin.Fila(1).EsRuptura(0) && !tin.Fila(1).EsRuptura(1));
    ASSERT_EQ(r.m_Avisos.size(), 1u) << "the other one crosses";
    EXPECT_NE(r.m_Avisos[0].Utf8().find("1 piece"), std::string::npos) << r.m_Avisos[0].Utf8();
}

TEST_F(TerrenosLandXML, ThePrecisionFitsTheTerrain) {
    const auto semilla = [this](const std::string& puntos) {
        const CResultadoLandXML r = LeeTexto(Superficie(puntos, "<F>1 2 3</F>"));
        EXPECT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
        return r.m_nResultado == 1 ? r.m_Superficies[0].m_pTIN->GetSemilla() : Vertiz::CDataSemilla();
    };
    Vertiz::CDataSemilla s = semilla("<P>4500000.123 500000 10</P><P>4500010 500000 10</P><P>4500000 500010 10</P>");
    EXPECT_EQ(s.GetX(), 500000);
    EXPECT_EQ(s.GetY(), 4500000);
    EXPECT_EQ(s.GetDecimales(), 3);
    s = semilla("<P>0 0 0</P><P>0.5 0 0</P><P>0 0.5 0</P>");
    EXPECT_EQ(s.GetDecimales(), 5);
    s = semilla("<P>0 0 0</P><P>90000000 0 0</P><P>0 0.5 0</P>");
    EXPECT_EQ(s.GetDecimales(), 1);
    EsperaMensaje(Superficie("<P>0 0 0</P><P>1e300 0 0</P><P>0 1 0</P>", "<F>1 2 3</F>"), "beyond");
}

TEST_F(TerrenosLandXML, DamagedFilesGiveAMessageWithTheLine) {
    const std::string buena = Superficie(kPuntos, "<F>1 2 7</F>");
    EsperaMensaje(buena.substr(0, buena.size() / 2), "line 2: ");
    EsperaMensaje("", "line 1: ");
    EsperaMensaje("hola", "line 1: ");
    EsperaMensaje("<a/>", "isn't a LandXML");
    EsperaMensaje("<LandXML/>", "no surfaces");
    EsperaMensaje(Superficie(kPuntos, "<F>1 2</F>"), "three or four");
    EsperaMensaje(Superficie(kPuntos, "<F>1 2 3</F>"), "the point 3");
    EsperaMensaje(Superficie(kPuntos, "<F>1 2 x</F>"), "isn't a number");
    EsperaMensaje(Superficie(kPuntos, "<F>1 2 99999999999999999999</F>"), "isn't a number");
    EsperaMensaje(Superficie("<P>1 2</P>", ""), "northing");
    EsperaMensaje(Superficie("<P>1 2 nan</P>", ""), "isn't a number");
    EsperaMensaje(Superficie("<P>1 2 inf</P>", ""), "isn't a number");
    EsperaMensaje(Superficie("<P>1 2 3e999</P>", ""), "isn't a number");
    EsperaMensaje(Superficie("<P>1 2,5x 3</P>", ""), "isn't a number");
    EsperaMensaje(Superficie("<P id=\"1\">1 2 3</P><P id=\"1\">1 2 3</P>", ""), "two points of id 1");
    EsperaMensaje(Superficie("<P id=\"x\">1 2 3</P>", ""), "the id");
    EsperaMensaje(Superficie("<P>1 2 3</P>", "", "<Surface/>"), "inside another");
    EsperaMensaje(Superficie(kPuntos, "", "<Breakline><PntList3D>1 2</PntList3D></Breakline>"), "breakline");
    CResultadoLandXML r = LeeLandXML(CString(Ruta("no_hay.xml").c_str()));
    EXPECT_EQ(r.m_nResultado, 0);
    EXPECT_NE(r.m_Error.Utf8().find("no_hay.xml: it can't be opened"), std::string::npos);
    r = LeeLandXML(CString(m_Carpeta.Ruta().string().c_str()));
    EXPECT_EQ(r.m_nResultado, 0) << "a folder";
}

TEST_F(TerrenosLandXML, EntityBombsAndDeepNestingAreHarmless) {
    std::string bomba = "<?xml version=\"1.0\"?><!DOCTYPE LandXML [<!ENTITY a \"aaaaaaaaaa\">";
    for (char c = 'b'; c <= 'z'; ++c)
        bomba += std::string("<!ENTITY ") + c + " \"" + [&] {
            std::string diez;
            for (int i = 0; i < 10; ++i)
                diez += std::string("&") + char(c - 1) + ";";
            return diez;
        }() + "\">";
    EsperaMensaje(bomba + "]><LandXML><Surfaces><Surface name=\"&z;\"/></Surfaces></LandXML>", "declares");
    EsperaMensaje(
        "<?xml version=\"1.0\"?><!DOCTYPE LandXML [<!ENTITY x SYSTEM \"/etc/passwd\">]><LandXML>&x;</LandXML>",
        "declares");
    std::string hondo = kCabecera;
    for (int i = 0; i < 1000000; ++i)
        hondo += "<a>";
    EsperaMensaje(hondo, "too deep");
}

TEST_F(TerrenosLandXML, FilesBrokenAnywhereAreReadOrRefusedWithoutHarm) {
    const std::string buena = Superficie(kPuntos, "<F>1 2 7</F><F i=\"1\">2 9 7</F>",
                                         "<Breakline><PntList3D>100 210 6 110.5 200 7.25</PntList3D></Breakline>");
    std::mt19937 azar(1);
    int leidas = 0;
    for (int i = 0; i < 1500; ++i) {
        std::string rota = buena;
        std::uniform_int_distribution<std::size_t> donde(0, rota.size() - 1);
        std::uniform_int_distribution<int> byte(0, 255);
        for (int j = 0; j <= i % 3; ++j)
            rota[donde(azar)] = char(byte(azar));
        if (i % 5 == 0) rota.resize(donde(azar));
        const CResultadoLandXML r = LeeTexto(rota);
        leidas += r.m_nResultado;
        EXPECT_EQ(r.m_Error.IsEmpty(), r.m_nResultado == 1);
    }
    EXPECT_GT(leidas, 20);
    EXPECT_LT(leidas, 1450);
}

TEST_F(TerrenosLandXML, ReadingTellsItsProgressAndCanBeCancelled) {
    std::string puntos;
    for (int i = 0; i < 20000; ++i)
        puntos += "<P>" + std::to_string(i) + " 2 3</P>";
    std::ofstream(Ruta("prueba.xml")) << Superficie(puntos, "");
    Progreso entero;
    EXPECT_EQ(LeeLandXML(CString(Ruta("prueba.xml").c_str()), &entero).m_nResultado, 1);
    EXPECT_GT(entero.m_Pasos.size(), 3u);
    Progreso cancela(2);
    EXPECT_EQ(LeeLandXML(CString(Ruta("prueba.xml").c_str()), &cancela).m_nResultado, 2);
}

// ---- Real files: what the files themselves tell by counting their elements ----

struct Real {
    const char* fichero;
    unsigned superficies, puntos, caras, invisibles;
    const char* unidad;
};

CTIN* Primero(CResultadoLandXML& r) {
    return r.m_Superficies[0].m_pTIN.get();
}

TEST_F(TerrenosLandXML, RealFilesAreReadToTheirCountsAndWrittenBack) {
    SALTA_SIN_DATOS("tin/S1.xml");
    for (const Real& real :
         {Real{"S1.xml", 1, 17, 24, 0, "USSurveyFoot"}, Real{"S4.xml", 1, 1657, 3199, 0, "USSurveyFoot"},
          Real{"Example_Clean.xml", 3, 264, 426, 64, "meter"}, Real{"subdivision.xml", 2, 3429, 6525, 0, "foot"},
          Real{"olympus-new.xml", 1, 12390, 24612, 0, "foot"}}) {
        const std::filesystem::path ruta = CarpetaDatos() / "tin" / real.fichero;
        CResultadoLandXML r = LeeLandXML(CString(ruta.string().c_str()));
        ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
        EXPECT_EQ(r.m_Superficies.size(), real.superficies) << real.fichero;
        EXPECT_EQ(r.m_Unidad, CString(real.unidad));
        unsigned puntos = 0, caras = 0, visibles = 0;
        std::vector<Vertiz::CSuperficieEscrita> escritas;
        for (const auto& superficie : r.m_Superficies) {
            puntos += superficie.m_pTIN->CantidadPuntos();
            caras += superficie.m_pTIN->CantidadTriangulos();
            visibles += superficie.m_pTIN->CantidadVisibles();
            escritas.push_back({superficie.m_Nombre, superficie.m_pTIN.get()});
        }
        EXPECT_EQ(puntos, real.puntos) << real.fichero;
        EXPECT_EQ(caras, real.caras) << real.fichero;
        EXPECT_EQ(caras - visibles, real.invisibles) << real.fichero;
        CString error;
        const CString copia(Ruta("copia.xml").c_str());
        ASSERT_TRUE(EscribeLandXML(copia, escritas, r.m_Unidad, L"", error)) << error.Utf8();
        const CResultadoLandXML otra = LeeLandXML(copia);
        ASSERT_EQ(otra.m_nResultado, 1) << otra.m_Error.Utf8();
        EXPECT_EQ(otra.m_Unidad, r.m_Unidad);
        ASSERT_EQ(otra.m_Superficies.size(), r.m_Superficies.size());
        for (std::size_t s = 0; s < r.m_Superficies.size(); ++s) {
            const CTIN &a = *r.m_Superficies[s].m_pTIN, &b = *otra.m_Superficies[s].m_pTIN;
            EXPECT_EQ(otra.m_Superficies[s].m_Nombre, r.m_Superficies[s].m_Nombre);
            ASSERT_EQ(a.GetSemilla(), b.GetSemilla());
            ASSERT_TRUE(std::ranges::equal(a.Puntos(), b.Puntos()));
            ASSERT_EQ(a.CantidadTriangulos(), b.CantidadTriangulos());
            for (unsigned i = 0; i < a.CantidadTriangulos(); ++i) {
                ASSERT_EQ(a.Fila(i).m_nVertices, b.Fila(i).m_nVertices);
                ASSERT_EQ(a.EsVisible(i), b.EsVisible(i));
            }
        }
    }
    CResultadoLandXML r = LeeLandXML(CString((CarpetaDatos() / "tin/Example_Clean.xml").string().c_str()));
    EXPECT_NEAR(Primero(r)->SuperficiePlana(), 782.534993295878, 0.05) << "as the file says";
    EXPECT_NEAR(Primero(r)->SuperficieReal(), 787.571393159215, 0.05);
}

CTIN Escalonada() {
    std::vector<CTIN::CFila> filas(3);
    filas[0].m_nVertices = {1, 2, 3}, filas[1].m_nVertices = {1, 3, 4}, filas[2].m_nVertices = {2, 5, 3};
    filas[0].SetRuptura(2), filas[1].SetRuptura(0);
    CTIN tin(Vertiz::CDataSemilla(2, 500000.5, 4500000, 100));
    CPuntoTIN borrado(77, 77, 77);
    borrado.SetNumero(-1);
    tin.TomaSueltos({{0, 0, 1}, {1000, 0, -2}, {1000, 1000, 3}, {0, 1000, 4}, {2000, 5, 9}, borrado}, filas);
    tin.BorraTriangulo(2);
    return tin;
}

TEST_F(TerrenosLandXML, WhatIsWrittenIsReadBack) {
    const CTIN tin = Escalonada();
    const std::vector<Vertiz::CSuperficieEscrita> superficies{{L"Uno <\"&\" ñ", &tin}, {L"Dos", &tin}};
    CString error(L"x");
    const CString ruta(Ruta("ida.xml").c_str());
    ASSERT_TRUE(EscribeLandXML(ruta, superficies, L"USSurveyFoot", L"25830", error)) << error.Utf8();
    EXPECT_TRUE(error.IsEmpty());
    const CResultadoLandXML r = LeeLandXML(ruta);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    ASSERT_EQ(r.m_Superficies.size(), 2u);
    EXPECT_EQ(r.m_Superficies[0].m_Nombre, CString(L"Uno <\"&\" ñ"));
    EXPECT_EQ(r.m_Unidad, CString(L"USSurveyFoot"));
    EXPECT_EQ(r.m_EPSG, CString(L"25830"));
    const CTIN& otra = *r.m_Superficies[1].m_pTIN;
    ASSERT_EQ(otra.CantidadPuntos(), 5u) << "without the deleted one";
    ASSERT_EQ(otra.CantidadTriangulos(), 3u);
    EXPECT_TRUE(otra.EsVisible(0) && !otra.EsVisible(2));
    EXPECT_TRUE(otra.Fila(0).EsRuptura(2) && otra.Fila(1).EsRuptura(0));
    for (unsigned i = 0; i < 5; ++i) {
        const CPuntoTIN &a = tin.Punto(i), &b = otra.Punto(i);
        EXPECT_DOUBLE_EQ(a.x / 100.0 + 500000.5, b.x / 1000.0 + otra.GetOrigenX());
        EXPECT_DOUBLE_EQ(a.y / 100.0 + 4500000, b.y / 1000.0 + otra.GetOrigenY());
        EXPECT_DOUBLE_EQ(a.z / 100.0 + 100, b.z / 1000.0 + otra.GetSemilla().GetZ());
    }
    std::ifstream texto(Ruta("ida.xml"));
    const std::string entero((std::istreambuf_iterator<char>(texto)), {});
    EXPECT_NE(entero.find("<P id=\"2\">4500000 500010.5 99.98</P>"), std::string::npos) << "no digits of rounding";
}

TEST_F(TerrenosLandXML, AnOBJHasVerticesAndFacesFromOne) {
    CTIN tin = Escalonada();
    CPuntoTIN p = tin.Punto(0);
    p.SetNumero(-1);
    tin.ModificaPunto(p, 0);
    CTIN otra = Escalonada();
    CString error;
    ASSERT_TRUE(EscribeOBJ(CString(Ruta("a.obj").c_str()), otra, error)) << error.Utf8();
    const auto lee = [this] {
        std::ifstream fichero(Ruta("a.obj"));
        return std::string((std::istreambuf_iterator<char>(fichero)), {});
    };
    EXPECT_EQ(lee(),
              "v 500000.5 4500000 100.01\nv 500010.5 4500000 99.98\nv 500010.5 4500010 100.03\n"
              "v 500000.5 4500010 100.04\nv 500020.5 4500000.05 100.09\nf 1 2 3\nf 1 3 4\n");
    ASSERT_TRUE(EscribeOBJ(CString(Ruta("a.obj").c_str()), tin, error)) << "it is replaced";
    EXPECT_EQ(lee().find("f "), std::string::npos) << "all its triangles have the deleted point or are deleted";
    EXPECT_EQ(lee().substr(0, 22), "v 500010.5 4500000 99.");
}

TEST_F(TerrenosLandXML, AFileThatCannotBeWrittenLeavesNothingBehind) {
    const CTIN tin = Escalonada();
    CString error;
    EXPECT_FALSE(EscribeOBJ(CString((m_Carpeta.Ruta() / "no" / "hay.obj").string().c_str()), tin, error));
    EXPECT_NE(error.Utf8().find("hay.obj: it can't be written"), std::string::npos) << error.Utf8();
    std::filesystem::create_directory(m_Carpeta.Ruta() / "carpeta.xml");
    EXPECT_FALSE(Vertiz::EscribeLandXML(CString(Ruta("carpeta.xml").c_str()), {}, L"", L"", error));
    unsigned ficheros = 0;
    for ([[maybe_unused]] const auto& e : std::filesystem::directory_iterator(m_Carpeta.Ruta()))
        ++ficheros;
    EXPECT_EQ(ficheros, 1u) << "the folder";
}

}  // namespace
