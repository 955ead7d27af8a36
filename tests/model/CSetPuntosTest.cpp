#include "model/CSetPuntos.h"

#include "model/CLinea.h"

#include <gtest/gtest.h>

namespace Vertiz {
namespace {

CSetPuntos<int> ConColor() {
    CSetPuntos<int> nube("LIDAR");
    nube << CCoor3D<int>(0, 0, 0);
    nube.Inserta({1, 1, 1}, {0, 10, 20, 30});
    nube.Inserta({2, 2, 2}, {0, 40, 50, 60});
    nube << CCoor3D<int>(3, 3, 3);
    return nube;
}

TEST(CSetPuntos, ReadsTheFieldsOfAnAttributeWord) {
    const unsigned palabra = 200U << 24 | 5U << 19 | 3U << 16 | 54321U;
    const CCoor3D<int> punto(1, 2, 3, static_cast<int>(palabra));
    EXPECT_EQ(CSetPuntos<int>::Intensidad(punto), 54321U);
    EXPECT_EQ(CSetPuntos<int>::Eco(punto), 3U);
    EXPECT_EQ(CSetPuntos<int>::NEcos(punto), 5U);
    EXPECT_EQ(CSetPuntos<int>::Clase(punto), 200U);
}

TEST(CSetPuntos, HasRecordsOnlyOnceOneIsGiven) {
    CSetPuntos<int> nube;
    EXPECT_TRUE(nube.EsSetPuntos());
    nube << CCoor3D<int>(1, 2, 3);
    EXPECT_FALSE(nube.TieneInfo());
    EXPECT_EQ(nube.Info(0), tipoAero3());
    const CSetPuntos<int> color = ConColor();
    EXPECT_EQ(color.Infos().size(), color.NPuntos());
    EXPECT_EQ(color.Info(0), tipoAero3());
    EXPECT_EQ(color.Info(2), (tipoAero3{0, 40, 50, 60}));
    EXPECT_EQ(color.Info(3), tipoAero3());
    EXPECT_EQ(color.Info(4), tipoAero3());
    const auto* bytes = reinterpret_cast<const unsigned char*>(&color.Info(1));
    EXPECT_EQ(bytes[1], 10);
    EXPECT_EQ(bytes[2], 20);
    EXPECT_EQ(bytes[3], 30);
}

TEST(CSetPuntos, KeepsRecordsBesideTheirPointsWhenPointsGo) {
    CSetPuntos<int> nube = ConColor();
    EXPECT_TRUE(nube.BorraPunto(1, 1));
    EXPECT_EQ(nube.Punto(1), CCoor3D<int>(2, 2, 2));
    EXPECT_EQ(nube.Info(1).rojo, 40);
    EXPECT_FALSE(nube.BorraPunto(1, 3));
    EXPECT_EQ(nube.Infos().size(), 3U);
    const int indices[] = {0, 2};
    nube.BorraPuntos(indices);
    ASSERT_EQ(nube.NPuntos(), 1U);
    EXPECT_EQ(nube.Info(0).azul, 60);
    nube.Clear();
    EXPECT_FALSE(nube.TieneInfo());
    EXPECT_TRUE(nube.EstanVacias(true));
}

TEST(CSetPuntos, TakesRecordsAlongWhenCopiedAssignedAndSwapped) {
    const CSetPuntos<int> nube = ConColor();
    const auto clon = nube.Clona();
    EXPECT_EQ(dynamic_cast<CSetPuntos<int>&>(*clon).Info(1).verde, 20);
    EXPECT_EQ(CSetPuntos<double>(nube).Info(1).verde, 20);
    CSetPuntos<int> otra("X");
    otra.Asigna(nube);
    EXPECT_EQ(otra.Info(2).rojo, 40);
    CLinea<int> linea("L");
    linea << CCoor3D<int>(5, 5, 5);
    otra.Asigna(linea);
    EXPECT_FALSE(otra.TieneInfo());
    EXPECT_TRUE(otra.EsSetPuntos());
    CSetPuntos<int> copia = nube;
    otra.swap(copia);
    EXPECT_EQ(otra.NPuntos(), 4U);
    EXPECT_TRUE(otra.TieneInfo());
    EXPECT_FALSE(copia.TieneInfo());
    otra.swap(linea);
    EXPECT_FALSE(otra.TieneInfo());
    EXPECT_EQ(linea.NPuntos(), 4U);
    EXPECT_FALSE(linea.EsSetPuntos());
}

}  // namespace
}  // namespace Vertiz
