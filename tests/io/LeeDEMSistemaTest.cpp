// Grids that are brought to the coordinate system of another one.

#include "Sistemas.h"
#include "io/LeeDEM.h"
#include "model/CElipsoide.h"
#include "model/CPuntoPortula.h"
#include "support/Temporales.h"

#include <gmock/gmock.h>

#include <fstream>

namespace {

using testing::HasSubstr;
using Vertiz::CDEM;
using Vertiz::CResultadoDEM;

// A slope of 60 x 60 samples in zone 30: 100 + 2 times the column + the row from the north, 10 m apart.
class GridInAnotherSystem : public testing::Test {
  protected:
    CResultadoDEM Lee(const std::string& pedido, int epsg = 25830) {
        std::ofstream asc(m_Carpeta / "modelo.asc");
        asc << "ncols 60\nnrows 60\nxllcorner 440000\nyllcorner 4479400\ncellsize 10\nNODATA_value -9999\n";
        for (int f = 0; f < 60; ++f)
            for (int c = 0; c < 60; ++c)
                asc << 100 + 2 * c + f << (c < 59 ? ' ' : '\n');
        asc.close();
        if (epsg != 0) std::ofstream(m_Carpeta / "modelo.prj") << WKT(epsg);
        Vertiz::CDataLeeDEM opciones;
        opciones.m_WKT = CString(pedido.c_str());
        return LeeDEM(CString((m_Carpeta / "modelo.asc").string().c_str()), opciones);
    }

    static std::string Mensajes(const CResultadoDEM& r) {
        std::string todos;
        for (const CString& texto : r.m_Mensajes)
            todos += texto.Utf8() + "\n";
        return todos;
    }

    CarpetaTemporal m_Carpeta;
};

// Zone 29 sees a place of zone 30 some 500 km further east; the same places keep their heights.
TEST_F(GridInAnotherSystem, GoesThereAndHeightsStayInPlace) {
    const CResultadoDEM r = Lee(WKT(25829));
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_TRUE(r.m_bReproyectado);
    EXPECT_EQ(r.m_Sistema, L"ETRS89 / UTM zone 29N");
    EXPECT_THAT(Mensajes(r), testing::AllOf(HasSubstr("zone 30N"), HasSubstr("zone 29N")));
    const CDEM& d = *r.m_pDEM;
    unsigned vistas = 0;
    for (unsigned f = 0; f < d.GetFilas(); f += 3)
        for (unsigned c = 0; c < d.GetColumnas(); c += 3) {
            if (!d.EsValido(f, c)) continue;
            const Vertiz::CPuntoPortula en29(0, 1, d.GetOeste() + c * d.GetCeldaX(), d.GetSur() + f * d.GetCeldaY(), 0,
                                             0, L"");
            double lat = 0, lon = 0;
            ASSERT_TRUE(en29.UTMToGeo(lat, lon, Vertiz::CElipsoide(), 29, true));
            Vertiz::CPuntoPortula en30;
            ASSERT_TRUE(en30.GeoToUTM(lat, lon, Vertiz::CElipsoide(), 30, true));
            const double columna = (en30.x - 440005.0) / 10.0, fila = (4479995.0 - en30.y) / 10.0;
            if (columna < 0.5 || fila < 0.5 || columna > 58.5 || fila > 58.5) continue;
            EXPECT_NEAR(d.Matriz().Get(f, c), 100.0 + 2.0 * columna + fila, 0.05) << f << " " << c;
            ++vistas;
        }
    EXPECT_GT(vistas, 100u);
}

TEST_F(GridInAnotherSystem, StaysAsItIsWhereItIsTheSame) {
    const CResultadoDEM r = Lee(WKT(25830));
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_FALSE(r.m_bReproyectado);
    EXPECT_EQ(Mensajes(r), "");
    EXPECT_EQ(r.m_pDEM->GetColumnas(), 60u);
}

TEST_F(GridInAnotherSystem, IsTakenAsBeingThereWhereItsFileGivesNone) {
    const CResultadoDEM r = Lee(WKT(25830), 0);
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_FALSE(r.m_bReproyectado);
    EXPECT_EQ(r.m_Sistema, L"ETRS89 / UTM zone 30N");
    EXPECT_THAT(Mensajes(r), HasSubstr("taken as the terrain's"));
}

TEST_F(GridInAnotherSystem, GoesToDegreesToo) {
    const CResultadoDEM r = Lee(WKT(4326));
    ASSERT_EQ(r.m_nResultado, 1) << r.m_Error.Utf8();
    EXPECT_EQ(r.m_Unidad, L"degree");
    EXPECT_NEAR(r.m_pDEM->GetOeste(), -3.7, 0.1);
}

TEST_F(GridInAnotherSystem, IsRefusedWhereNobodyUnderstandsTheSystem) {
    const CResultadoDEM r = Lee("PROJCS[nothing");
    EXPECT_EQ(r.m_nResultado, 0);
    EXPECT_THAT(r.m_Error.Utf8(), testing::AllOf(HasSubstr("modelo.asc"), HasSubstr("can't be understood")));
}

}  // namespace
