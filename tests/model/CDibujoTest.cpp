// The drawing as a container: what it counts, shows, selects and erases.

#include "model/CDibujo.h"

#include "model/CDataHelmertNTV2.h"
#include "model/CSetPuntos.h"
#include "model/CTexto.h"

#include <gmock/gmock.h>

#include <cmath>

namespace {

using namespace Vertiz;
using testing::ElementsAre;

CLinea<int> Linea(const CString& codigo, std::initializer_list<CCoor3D<int>> puntos) {
    CLinea<int> linea(codigo);
    for (const auto& p : puntos)
        linea << p;
    return linea;
}

int Palabra(unsigned clase, unsigned eco, unsigned ecos, unsigned intensidad) {
    return int(clase << 24 | ecos << 19 | eco << 16 | intensidad);
}

// Ten points in a row; point i has class i, intensity 100 + i and colour i.
CSetPuntos<int> Nube() {
    CSetPuntos<int> nube(L"LIDAR");
    for (int i = 0; i < 10; i++) {
        const tipoAero3 info{0, std::uint8_t(i), 0, 0};
        nube.Inserta(CCoor3D<int>(10 * i, 0, i, Palabra(unsigned(i), 1, 1 + unsigned(i) % 2, 100U + unsigned(i))),
                     info);
    }
    return nube;
}

CDigiTab TablaQueOculta(const CString& codigo) {
    CDigiTab tabla;
    tabla.Inserta(CElementoDigiTab(0, codigo, 0, 0, 0, 1, 0, L"", 0), false);
    return tabla;
}

TEST(CDibujo, NewOneIsEmpty) {
    const CDibujo<int> dibujo;
    EXPECT_EQ(dibujo.Cantidad(), 0U);
    EXPECT_EQ(dibujo.CantidadPuntos(), 0U);
    EXPECT_TRUE(dibujo.GetMaximasDouble().EstanVacias(true));
    EXPECT_FALSE(dibujo.TieneIntensidad());
    EXPECT_EQ(dibujo.IntensidadMinima(), 0);
    EXPECT_EQ(dibujo.IntensidadMaxima(), 0);
    EXPECT_EQ(dibujo.Precision(), 1.0);
}

TEST(CDibujo, CountsWhatIsInserted) {
    CDibujo<int> dibujo(CDataSemilla(2, 1000, 2000, 30));
    dibujo.Inserta(Linea(L"A", {{100, 200, 300}, {500, 100, 400}}));
    dibujo.Inserta(CTexto<int>(L"T", {0, 0, 0}, L"name", 10.0));
    dibujo.Inserta(Nube());
    EXPECT_EQ(dibujo.Cantidad(), 3U);
    EXPECT_EQ(dibujo.CantidadPuntos(), 13U);
    EXPECT_EQ(dibujo.CantidadTextos(), 1U);
    EXPECT_TRUE(dibujo.TieneIntensidad());
    EXPECT_EQ(dibujo.IntensidadMinima(), 100);
    EXPECT_EQ(dibujo.IntensidadMaxima(), 109);
    EXPECT_EQ(dibujo.Precision(), 100.0);
    EXPECT_EQ(dibujo.GetMaximasDouble().Maxima().x, 5.0);
    EXPECT_EQ(dibujo.GetMaximasInt().Maxima().x, 500);
    EXPECT_EQ(dibujo.GetMaximasDouble(true, nullptr, nullptr, nullptr).Maxima().x, 1005.0);
    dibujo.Clear();
    EXPECT_EQ(dibujo.CantidadPuntos() + dibujo.CantidadTextos() + dibujo.Cantidad(), 0U);
    EXPECT_FALSE(dibujo.TieneIntensidad());
    EXPECT_TRUE(dibujo.GetMaximasDouble().EstanVacias(true));
}

TEST(CDibujo, CountsAnewWhatWasChangedFromOutside) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea(L"A", {{0, 0, 0}, {10, 0, 0}}));
    static_cast<CLinea<int>&>(*dibujo[0]).end().x = 50;
    dibujo.ActualizaCantidades();
    EXPECT_EQ(dibujo.GetMaximasInt().Maxima().x, 50);
    dibujo[0]->SetBorrado(true);
    dibujo.ActualizaCantidades();
    EXPECT_TRUE(dibujo.GetMaximasInt().EstanVacias(true));
    EXPECT_EQ(dibujo.CantidadPuntos(), 2U) << "an erased entity may come back";
}

TEST(CDibujo, CopiesAreApart) {
    CDibujo<int> uno(CDataSemilla(3));
    uno.SetNombre(L"one");
    uno.SetTipoFichero(fdLidar);
    uno.Inserta(Nube());
    CDibujo<int> dos(uno);
    const auto tres = uno.Clona();
    uno[0]->SetCodigo(L"changed");
    EXPECT_EQ(dos[0]->GetCodigo(), L"LIDAR");
    EXPECT_EQ((*tres)[0]->GetCodigo(), L"LIDAR");
    EXPECT_EQ(dos.GetNombre(), L"one");
    EXPECT_EQ(dos.Semilla().GetDecimales(), 3);
    EXPECT_EQ(dos.IntensidadMaxima(), 109);
    EXPECT_TRUE(dos.EsFicheroPuntos());
    const CEntidadDigi<int>* entidad = dos[0];
    const CDibujo<int> cuatro(std::move(dos));
    EXPECT_EQ(cuatro[0], entidad) << "moving copies no points";
    uno = cuatro;
    EXPECT_EQ(uno[0]->GetCodigo(), L"LIDAR");
    EXPECT_NE(uno[0], cuatro[0]);
}

TEST(CDibujo, KindsOneToThreeAreFilesOfPoints) {
    CDibujo<int> dibujo;
    for (int tipo = 0; tipo <= 5; tipo++) {
        dibujo.SetTipoFichero(std::uint16_t(tipo));
        EXPECT_EQ(dibujo.EsFicheroPuntos(), tipo >= 1 && tipo <= 3) << tipo;
    }
}

TEST(CDibujo, MessagesGiveTheFormerLevel) {
    CDibujo<int> dibujo;
    const int antes = dibujo.Mensajes(0);
    EXPECT_EQ(dibujo.Mensajes(antes), 0);
    EXPECT_EQ(dibujo.GetMensajes(), antes);
}

TEST(CDibujo, ExtentsCanBeGivenBeforehand) {
    CDibujo<int> dibujo(CDataSemilla(2));
    dibujo.SetMaximasDouble(CMaximas<double>({0, 0, 0}, {5, 6, 7}));
    EXPECT_EQ(dibujo.GetMaximasInt().Maxima(), CCoor3D<int>(500, 600, 700));
    EXPECT_EQ(dibujo.GetMaximasDouble().Maxima(), CCoor3D<double>(5, 6, 7));
}

TEST(CDibujo, ExtentsLeaveOutWhatTablesHide) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea(L"SHOWN", {{0, 0, 0}, {20, 5, 0}}));
    dibujo.Inserta(Linea(L"HIDDEN", {{0, 0, 0}, {500, 0, 0}}));
    dibujo.Inserta(Nube());
    const CDigiTab digi = TablaQueOculta(L"HIDDEN");
    const CDigiTab lidar = TablaQueOculta(L"9");
    const CDigiTab eco = TablaQueOculta(L"1-2");
    EXPECT_EQ(dibujo.GetMaximasDouble(false, nullptr, nullptr, nullptr).Maxima().x, 500);
    EXPECT_EQ(dibujo.GetMaximasDouble(false, &digi, nullptr, nullptr).Maxima().x, 90);
    EXPECT_EQ(dibujo.GetMaximasDouble(false, &digi, &lidar, nullptr).Maxima().x, 80);
    EXPECT_EQ(dibujo.GetMaximasDouble(false, &digi, nullptr, &eco).Maxima().x, 80);
}

TEST(CDibujo, RealExtentsGrowOutwardsToIntegers) {
    CDibujo<double> dibujo;
    CLinea<double> linea(CString(L"A"));
    linea << CCoor3D<double>(0.5, -0.5, 1.0) << CCoor3D<double>(1.5, 2.25, 1.0);
    dibujo.Inserta(linea);
    EXPECT_EQ(dibujo.GetMaximasInt().Minima(), CCoor3D<int>(0, -1, 1));
    EXPECT_EQ(dibujo.GetMaximasInt().Maxima(), CCoor3D<int>(2, 3, 1));
}

TEST(CDibujo, SortsByAreaSmallestFirst) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea(L"BIG", {{0, 0, 0}, {9, 0, 0}, {9, 9, 0}, {0, 0, 0}}));
    dibujo.Inserta(Linea(L"SMALL", {{0, 0, 0}, {0, 2, 0}, {2, 0, 0}, {0, 0, 0}}));
    dibujo.Inserta(Linea(L"OPEN", {{0, 0, 0}, {90, 0, 0}}));
    dibujo.Sort(2, 1, -1);
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"OPEN");
    EXPECT_EQ(dibujo[1]->GetCodigo(), L"SMALL");
    EXPECT_EQ(dibujo[2]->GetCodigo(), L"BIG");
    dibujo.Sort(1, 0, -1);
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"OPEN");
    dibujo.Sort(0, 1, -1);
    EXPECT_EQ(dibujo[0]->GetCodigo(), L"BIG");
    dibujo[0]->InsertaAtr(CAtrDigi(7, 50, L""));
    dibujo.Sort(3, 1, 7);
    EXPECT_EQ(dibujo[2]->GetCodigo(), L"BIG");
}

TEST(CDibujo, InvertsASelection) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Linea(L"A", {{0, 0, 0}, {1, 0, 0}}));
    dibujo.Inserta(Linea(L"B", {{0, 0, 0}, {1, 0, 0}}));
    dibujo.Inserta(Nube());
    dibujo.Inserta(Linea(L"C", {{0, 0, 0}, {1, 0, 0}}));
    dibujo.Inserta(Linea(L"D", {{0, 0, 0}, {1, 0, 0}}));
    dibujo[4]->SetBorrado(true);
    const CDigiTab digi = TablaQueOculta(L"C");
    const CDigiTab lidar = TablaQueOculta(L"7");
    std::vector<CPosicionEntidad> nueva;

    dibujo.InvierteSeleccion({{1, -1}, {2, 0}, {2, 3}, {2, 4}}, nueva, &digi, &lidar, nullptr);
    using P = CPosicionEntidad;
    EXPECT_THAT(nueva, ElementsAre(P(0, -1), P(2, 1), P(2, 2), P(2, 5), P(2, 6), P(2, 8), P(2, 9)));

    dibujo.InvierteSeleccion({{0, 1}, {2, -1}}, nueva, nullptr, nullptr, nullptr);
    EXPECT_THAT(nueva, ElementsAre(P(1, -1), P(3, -1))) << "a vertex stands for its line, -1 for the whole set";

    std::vector<CPosicionEntidad> misma{{0, -1}, {1, -1}, {2, -1}};
    dibujo.InvierteSeleccion(misma, misma, nullptr, nullptr, nullptr);
    EXPECT_THAT(misma, ElementsAre(P(3, -1)));
}

TEST(CDibujo, InvertingTwiceGivesTheSelectionBack) {
    CDibujo<int> dibujo;
    for (int i = 0; i < 4; i++) {
        dibujo.Inserta(Nube());
        dibujo.Inserta(Linea(L"A", {{0, 0, 0}, {1, 0, 0}}));
    }
    const std::vector<CPosicionEntidad> seleccion{{0, 9}, {1, -1}, {4, 0}, {4, 5}, {7, -1}};
    std::vector<CPosicionEntidad> inversa, otra;
    dibujo.InvierteSeleccion(seleccion, inversa, nullptr, nullptr, nullptr);
    EXPECT_EQ(inversa.size(), 4U * 11 - 5);
    dibujo.InvierteSeleccion(inversa, otra, nullptr, nullptr, nullptr);
    EXPECT_EQ(otra, seleccion);
}

TEST(CDibujo, ErasedPointsLeaveTheirSetAndAreKept) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Nube());
    dibujo.Inserta(Linea(L"A", {{0, 0, 0}, {1, 0, 0}}));
    dibujo.MarcaBorrado({{0, 9}, {0, 3}, {0, 3}, {0, 77}, {9, 0}, {-1, -1}});
    ASSERT_EQ(dibujo.Cantidad(), 3U);
    ASSERT_EQ(dibujo[0]->NPuntos(), 8U);
    EXPECT_EQ(dibujo[0]->Punto(6).x, 70) << "point 7 has become point 6";
    EXPECT_EQ(static_cast<CSetPuntos<int>&>(*dibujo[0]).Info(6).rojo, 7);
    EXPECT_FALSE(dibujo[0]->EsBorrado());
    EXPECT_FALSE(dibujo[1]->EsBorrado());

    const auto& apartado = static_cast<const CSetPuntos<int>&>(*dibujo[2]);
    EXPECT_TRUE(apartado.EsBorrado());
    EXPECT_EQ(apartado.GetCodigo(), L"LIDAR");
    ASSERT_EQ(apartado.NPuntos(), 2U);
    EXPECT_EQ(apartado.Punto(0).x, 30);
    EXPECT_EQ(apartado.Punto(0).GetTipoCompleto(), Palabra(3, 1, 2, 103));
    EXPECT_EQ(apartado.Info(1).rojo, 9);
    EXPECT_EQ(apartado.GetMaximas().Minima().x, 30) << "its box tells where points went";
    EXPECT_EQ(dibujo.GetMaximasInt().Maxima().x, 80);
}

TEST(CDibujo, WholeEntitiesAreErasedWhereTheyStand) {
    CDibujo<int> dibujo;
    dibujo.Inserta(Nube());
    dibujo.Inserta(Linea(L"A", {{0, 0, 0}, {1, 0, 0}}));
    dibujo.Inserta(Nube());
    std::vector<CPosicionEntidad> todos{{1, -1}, {2, -1}};
    for (int i = 0; i < 10; i++)
        todos.emplace_back(0, i);
    dibujo.MarcaBorrado(todos);
    EXPECT_EQ(dibujo.Cantidad(), 3U);
    for (unsigned i = 0; i < 3; i++)
        EXPECT_TRUE(dibujo[i]->EsBorrado()) << i;
    EXPECT_EQ(dibujo[0]->NPuntos(), 10U);
    EXPECT_TRUE(dibujo.GetMaximasInt().EstanVacias(true));
}

TEST(CDibujo, FailingTransformationLeavesItAsItWas) {
    CDibujo<int> dibujo(CDataSemilla(2, 500000, 4500000, 0));
    dibujo.Inserta(Linea(L"A", {{0, 0, 0}, {100, 0, 0}}));
    EXPECT_EQ(dibujo.Transformacion(CDataHelmertNTV2()), 0);
    EXPECT_EQ(dibujo[0]->Punto(1).x, 100);
}

}  // namespace
