// Transformations to photographs, panoramas and maps.

#include "model/CDataTransformacion.h"

#include "model/CNubePuntos.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <numbers>
#include <optional>

namespace {

using Vertiz::CDataTransformacion;
using Vertiz::CUnidadAngular;
using Coor = Vertiz::CCoor3D<double>;
using Datos = CDataTransformacion;

constexpr double kPi = std::numbers::pi;
constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

void EsperaIgual(const Coor& a, const Coor& b, double tolerancia) {
    EXPECT_NEAR(a.x, b.x, tolerancia);
    EXPECT_NEAR(a.y, b.y, tolerancia);
    EXPECT_NEAR(a.z, b.z, tolerancia);
}

// A camera of 24 x 16 mm film, 6000 x 4000 pixels.
Datos Foto(double omega = 0, double fi = 0, double kappa = 0) {
    Datos d;
    d.m_nTipo = Datos::CONICA;
    d.m_CentroProyeccion = Coor(480000.0, 4470000.0, 1700.0);
    d.m_dFocal = 0.020;
    d.m_Interior.Set(0, 0, 250000.0);
    d.m_Interior.Set(1, 1, 250000.0);
    d.m_CentroImagen = {3000.0, 2000.0};
    d.m_dCotaReferencia = 700.0;
    d.SetAngulos(omega, fi, kappa);
    return d;
}

Datos Panorama(double omega = 0, double fi = 0, double kappa = 0) {
    Datos d;
    d.m_nTipo = Datos::ESFERICA;
    d.m_CentroProyeccion = Coor(480000.0, 4470000.0, 700.0);
    d.m_Interior.Set(0, 0, 8000.0 / (2 * kPi));
    d.m_Interior.Set(1, 1, 4000.0 / kPi);
    d.m_CentroImagen = {4000.0, 2000.0};
    d.SetAngulos(omega, fi, kappa);
    return d;
}

Datos Mapa(int tipo, std::initializer_list<double> parametros) {
    Datos d;
    d.m_nTipo = tipo;
    std::copy(parametros.begin(), parametros.end(), d.m_Parametros.begin());
    return d;
}

// The way from the image to the plane written out, as textbooks have it; nullopt where the divisor is 0.
std::optional<Coor> ImagenATerreno(const Datos& d, double x, double y, double cota) {
    const auto& m = d.m_Interior;
    const double det = m.Get(0, 0) * m.Get(1, 1) - m.Get(0, 1) * m.Get(1, 0);
    const double xp = x - d.m_CentroImagen.x, yp = -(y - d.m_CentroImagen.y);
    const double u = (m.Get(1, 1) * xp - m.Get(0, 1) * yp) / det, v = (m.Get(0, 0) * yp - m.Get(1, 0) * xp) / det;
    const double dx = d.m_PuntoPrincipal.x - u, dy = d.m_PuntoPrincipal.y - v, f = d.m_dFocal;
    const auto& r = d.m_Rotacion;
    const double div = r.Get(2, 0) * dx + r.Get(2, 1) * dy + r.Get(2, 2) * f;
    if (div == 0.0) return std::nullopt;
    const double h = (cota - d.m_CentroProyeccion.z) / div;
    return Coor((r.Get(0, 0) * dx + r.Get(0, 1) * dy + r.Get(0, 2) * f) * h + d.m_CentroProyeccion.x,
                (r.Get(1, 0) * dx + r.Get(1, 1) * dy + r.Get(1, 2) * f) * h + d.m_CentroProyeccion.y, cota);
}

// ---- New objects

TEST(CDataTransformacion, NewOneHasNoTransformationAndIdentityMatrices) {
    const Datos d(CUnidadAngular(3));
    EXPECT_EQ(d.GetTipo(), 0);
    EXPECT_EQ(d.m_UnidadAngular.GetCodigo(), 3);
    EXPECT_FALSE(d.ExisteTransformacion());
    for (unsigned i = 0; i < 3; ++i)
        for (unsigned j = 0; j < 3; ++j)
            EXPECT_EQ(d.GetRotacion().Get(i, j), i == j ? 1.0 : 0.0);
    Coor p(1, 2, 3);
    EXPECT_FALSE(d.Transforma(p, p));
    EsperaIgual(p, Coor(1, 2, 3), 0);
    EXPECT_TRUE(std::isnan(d.TransformaInversa(p, nullptr, -1).x));
}

TEST(CDataTransformacion, TypesWithoutMeaningDoNotExist) {
    for (const int tipo : {-1, 0, 9, 10, 13, 99})
        EXPECT_FALSE(Mapa(tipo, {0, 0, 1, 1, 1, 1}).ExisteTransformacion());
}

TEST(CDataTransformacion, OnlyTypes1And3And8AreThreeDimensional) {
    for (int tipo = 0; tipo <= 12; ++tipo)
        EXPECT_EQ(Mapa(tipo, {}).Es3D(), tipo == 1 || tipo == 3 || tipo == 8);
}

// ---- Conic photograph

TEST(CDataTransformacion, VerticalPhotographHasItsCentreUnderTheCamera) {
    const Datos d = Foto();
    Coor q;
    ASSERT_TRUE(d.Transforma(Coor(480000.0, 4470000.0, 700.0), q));
    EsperaIgual(q, Coor(3000.0, 2000.0, 700.0), 1e-9);
}

// 1000 m above the point, 100 m are 100 * 0.020 / 1000 = 2 mm of film, 500 pixels.
TEST(CDataTransformacion, EastIsToTheRightAndNorthUpwardsInAVerticalPhotograph) {
    const Datos d = Foto();
    Coor q;
    ASSERT_TRUE(d.Transforma(Coor(480100.0, 4470000.0, 700.0), q));
    EsperaIgual(q, Coor(3500.0, 2000.0, 700.0), 1e-6);
    ASSERT_TRUE(d.Transforma(Coor(480000.0, 4470100.0, 700.0), q));
    EsperaIgual(q, Coor(3000.0, 1500.0, 700.0), 1e-6);
}

TEST(CDataTransformacion, PrincipalPointMovesThePicture) {
    Datos d = Foto();
    d.m_PuntoPrincipal = {0.0001, 0.0002};
    Coor q;
    ASSERT_TRUE(d.Transforma(Coor(480000.0, 4470000.0, 700.0), q));
    EsperaIgual(q, Coor(3025.0, 1950.0, 700.0), 1e-6);
}

TEST(CDataTransformacion, PhotographAgreesWithTheWayBackWrittenOut) {
    Datos d = Foto(12.0, -23.0, 77.0);
    d.m_PuntoPrincipal = {0.00011, -0.00007};
    d.m_Interior.Set(0, 1, 420.0);
    d.m_Interior.Set(1, 0, -310.0);
    for (double x = 0; x <= 6000; x += 1500)
        for (double y = 0; y <= 4000; y += 1000)
            for (const double cota : {0.0, 700.0, 1650.0}) {
                const Coor esperado = ImagenATerreno(d, x, y, cota).value();
                const Coor terreno = d.TransformaInversa(Coor(x, y, cota), &cota, -1);
                EsperaIgual(terreno, esperado, 1e-6);
                Coor imagen;
                ASSERT_TRUE(d.Transforma(esperado, imagen));
                EsperaIgual(imagen, Coor(x, y, cota), 1e-6);
            }
}

TEST(CDataTransformacion, RotationOfAPhotographIsOmegaFiKappa) {
    // Turned by 90 degrees about the vertical: what lay to the right lies above.
    Coor q;
    ASSERT_TRUE(Foto(0, 0, 90).Transforma(Coor(480000.0, 4470100.0, 700.0), q));
    EsperaIgual(q, Coor(3500.0, 2000.0, 700.0), 1e-6);
    // Looking level to the north: a point in the north at the camera's height is in the middle.
    ASSERT_TRUE(Foto(90, 0, 0).Transforma(Coor(480000.0, 4471000.0, 1700.0), q));
    EsperaIgual(q, Coor(3000.0, 2000.0, 1700.0), 1e-6);
    ASSERT_TRUE(Foto(90, 0, 0).Transforma(Coor(480100.0, 4471000.0, 1750.0), q));
    EsperaIgual(q, Coor(3500.0, 1750.0, 1750.0), 1e-6);
}

TEST(CDataTransformacion, PointsBehindTheCameraOrInItsPlaneHaveNoImage) {
    const Datos d = Foto(90, 0, 0);
    Coor q(1, 2, 3);
    EXPECT_FALSE(d.Transforma(Coor(480000.0, 4469000.0, 1700.0), q));
    EXPECT_FALSE(Foto().Transforma(Coor(480100.0, 4470000.0, 1700.0), q));
    EXPECT_FALSE(Foto().Transforma(Foto().m_CentroProyeccion, q));
    EsperaIgual(q, Coor(1, 2, 3), 0);
}

TEST(CDataTransformacion, RaysAboveTheHorizonMeetNoTerrain) {
    const Datos d = Foto(90, 0, 0);
    const double cota = 700.0;
    Coor p(9, 9, 9);
    EXPECT_FALSE(d.TransformaInversa(Coor(3000.0, 1500.0, 0), &cota, p));
    EsperaIgual(p, Coor(9, 9, 9), 0);
    const Coor ninguno = d.TransformaInversa(Coor(3000.0, 1500.0, 0), &cota, -1);
    EXPECT_TRUE(std::isnan(ninguno.x) && std::isnan(ninguno.y));
    EXPECT_TRUE(d.TransformaInversa(Coor(3000.0, 2500.0, 0), &cota, p));
    EXPECT_EQ(p.z, cota);
}

TEST(CDataTransformacion, WithoutHeightTheReferenceHeightIsTaken) {
    const Coor p = Foto().TransformaInversa(Coor(3500.0, 2000.0, -9999.0), nullptr, -1);
    EsperaIgual(p, Coor(480100.0, 4470000.0, 700.0), 1e-6);
}

TEST(CDataTransformacion, HeightMayBePartOfTheArgument) {
    const Datos d = Foto();
    Coor c(3500.0, 2000.0, 700.0);
    c = d.TransformaInversa(c, &c.z, -1);
    EsperaIgual(c, Coor(480100.0, 4470000.0, 700.0), 1e-6);
}

TEST(CDataTransformacion, TipoOfAPointIsKept) {
    Coor q;
    ASSERT_TRUE(Foto().Transforma(Coor(480000.0, 4470000.0, 700.0, 42), q));
    EXPECT_EQ(q.GetTipo(), 42);
    EXPECT_EQ(Foto().TransformaInversa(q, nullptr, -1).GetTipo(), 42);
}

TEST(CDataTransformacion, DegeneratePhotographsDoNotExist) {
    Datos d = Foto();
    EXPECT_TRUE(d.ExisteTransformacion());
    for (const double f : {0.0, -0.02, kNan, kInf}) {
        d.m_dFocal = f;
        EXPECT_FALSE(d.ExisteTransformacion()) << f;
        Coor q(1, 2, 3);
        EXPECT_FALSE(d.Transforma(Coor(480000.0, 4470000.0, 700.0), q));
        EXPECT_EQ(q.x, 1.0);
    }
    d = Foto();
    d.m_Interior.Set(0, 0, 0.0);
    EXPECT_FALSE(d.ExisteTransformacion());
    d = Foto();
    d.m_Rotacion.Rellena(0.0);
    EXPECT_FALSE(d.ExisteTransformacion());
    d = Foto();
    d.m_Rotacion = Vertiz::CMatrizCuadrada(2);
    EXPECT_FALSE(d.ExisteTransformacion());
    d = Foto();
    d.m_CentroProyeccion.x = kNan;
    EXPECT_FALSE(d.ExisteTransformacion());
}

TEST(CDataTransformacion, CoordinatesThatAreNotFiniteHaveNoImage) {
    const double cota = kNan;
    Coor q(1, 2, 3);
    EXPECT_FALSE(Foto().Transforma(Coor(kNan, 4470000.0, 700.0), q));
    EXPECT_FALSE(Foto().Transforma(Coor(480000.0, kInf, 700.0), q));
    EXPECT_FALSE(Foto().TransformaInversa(Coor(kNan, 0, 0), nullptr, q));
    EXPECT_FALSE(Foto().TransformaInversa(Coor(3000, 2000, 0), &cota, q));
    EsperaIgual(q, Coor(1, 2, 3), 0);
}

TEST(CDataTransformacion, AnglesComeBackInDegreesWhateverTheUnit) {
    double o = 0, f = 0, k = 0, escala = 0;
    Datos d(CUnidadAngular::CENTESIMAL);
    d.SetAngulos(10.0, 20.0, 100.0);
    ASSERT_TRUE(d.GetAngulos(o, f, k, escala));
    EXPECT_NEAR(o, 9.0, 1e-9);
    EXPECT_NEAR(f, 18.0, 1e-9);
    EXPECT_NEAR(k, 90.0, 1e-9);
    EXPECT_NEAR(escala, 1.0, 1e-12);
}

// ---- Spherical image

TEST(CDataTransformacion, PanoramaLooksSouthInItsMiddleAndNorthAtItsEdges) {
    const Datos d = Panorama();
    Coor q;
    ASSERT_TRUE(d.Transforma(Coor(480000.0, 4469990.0, 700.0), q));
    EsperaIgual(q, Coor(4000.0, 2000.0, 700.0), 1e-9);
    ASSERT_TRUE(d.Transforma(Coor(479990.0, 4470000.0, 700.0), q));  // west is clockwise from south
    EsperaIgual(q, Coor(6000.0, 2000.0, 700.0), 1e-9);
    ASSERT_TRUE(d.Transforma(Coor(480010.0, 4470000.0, 700.0), q));
    EsperaIgual(q, Coor(2000.0, 2000.0, 700.0), 1e-9);
    ASSERT_TRUE(d.Transforma(Coor(479999.999, 4470010.0, 700.0), q));
    EXPECT_NEAR(q.x, 8000.0, 1.0);
    ASSERT_TRUE(d.Transforma(Coor(480000.001, 4470010.0, 700.0), q));
    EXPECT_NEAR(q.x, 0.0, 1.0);
}

TEST(CDataTransformacion, PanoramaHasTheZenithAboveAndTheNadirBelow) {
    Coor q;
    ASSERT_TRUE(Panorama().Transforma(Coor(480000.0, 4470000.0, 710.0), q));
    EXPECT_NEAR(q.y, 0.0, 1e-9);
    ASSERT_TRUE(Panorama().Transforma(Coor(480000.0, 4470000.0, 690.0), q));
    EXPECT_NEAR(q.y, 4000.0, 1e-9);
    ASSERT_TRUE(Panorama().Transforma(Coor(480000.0, 4469990.0, 710.0), q));
    EXPECT_NEAR(q.y, 1000.0, 1e-9);
}

TEST(CDataTransformacion, PanoramaGoesThereAndBack) {
    const Datos d = Panorama(3.0, -5.0, 130.0);
    for (double x = 100; x < 8000; x += 700)
        for (const double y : {2700.0, 3100.0, 3600.0}) {  // below the horizon, whatever the tilt
            Coor terreno, imagen;
            const double cota = 650.0;
            ASSERT_TRUE(d.TransformaInversa(Coor(x, y, 0), &cota, terreno));
            ASSERT_TRUE(d.Transforma(terreno, imagen));
            EsperaIgual(imagen, Coor(x, y, cota), 1e-6);
        }
}

TEST(CDataTransformacion, PanoramaWithoutPixelsGivesRadians) {
    Datos d = Panorama();
    d.m_Interior.Set(0, 0, 1.0);
    d.m_Interior.Set(1, 1, 1.0);
    d.m_CentroImagen = {0.0, 0.0};
    Coor q;
    ASSERT_TRUE(d.Transforma(Coor(479990.0, 4470000.0, 700.0), q));
    EsperaIgual(q, Coor(kPi / 2, 0.0, 700.0), 1e-12);
}

TEST(CDataTransformacion, CentreOfThePanoramaAndItsSkyHaveNoResult) {
    const Datos d = Panorama();
    const double cota = 650.0;
    Coor q(1, 2, 3);
    EXPECT_FALSE(d.Transforma(d.m_CentroProyeccion, q));
    EXPECT_FALSE(d.TransformaInversa(Coor(4000.0, 1000.0, 0), &cota, q));  // looks upwards
    EXPECT_FALSE(d.TransformaInversa(Coor(4000.0, 4100.0, 0), &cota, q));  // below the picture
    EXPECT_FALSE(d.TransformaInversa(Coor(kNan, 3000.0, 0), &cota, q));
    EsperaIgual(q, Coor(1, 2, 3), 0);
}

// ---- Map transformations: parameters go from the image to the terrain

TEST(CDataTransformacion, MapFormulasGoFromTheImageToTheTerrain) {
    const Coor p(3.0, 4.0, 5.0);
    EsperaIgual(Mapa(2, {100, 200, 2, 1}).TransformaInversa(p, nullptr, -1), Coor(102, 211, 5), 1e-12);
    EsperaIgual(Mapa(4, {100, 200, 1, 2, 3, 4}).TransformaInversa(p, nullptr, -1), Coor(111, 225, 5), 1e-12);
    EsperaIgual(Mapa(5, {1, 1, 0, 0.5, 0, 0.25, 2, 0, 1, 0, 0.5, 0}).TransformaInversa(p, nullptr, -1),
                Coor(12.5, 12, 5), 1e-12);
    EsperaIgual(Mapa(6, {1, 2, 3, 4, 5, 6, 0.5, 0.25}).TransformaInversa(p, nullptr, -1), Coor(19 / 3.5, 43 / 3.5, 5),
                1e-12);
    EsperaIgual(Mapa(8, {100, 200, 300, 1, 2, 3, 0, 1, 0, 2, 0, 1}).TransformaInversa(p, nullptr, -1),
                Coor(126, 204, 311), 1e-12);
    // A quarter turn about Z and twice the size.
    EsperaIgual(Mapa(1, {100, 200, 300, 0, 0, 90, 2}).TransformaInversa(p, nullptr, -1), Coor(92, 206, 310), 1e-12);
}

TEST(CDataTransformacion, MapTransformationsComeBack) {
    const Datos mapas[] = {Mapa(1, {480000, 4470000, 700, 10, -20, 100, 1.001}),
                           Mapa(2, {480000, 4470000, 0.9, 0.4}),
                           Mapa(4, {480000, 4470000, 0.9, 0.1, -0.2, 1.1}),
                           Mapa(5, {480000, 0.9, 0.1, 1e-6, -2e-6, 1e-6, 4470000, -0.1, 1.1, 2e-6, 1e-6, -1e-6}),
                           Mapa(6, {480000, 0.9, 0.1, 4470000, -0.1, 1.1, 1e-5, -2e-5}),
                           Mapa(8, {480000, 4470000, 700, 1, 0.1, 0.2, -0.1, 1, 0.3, 0.05, 0.1, 0.9})};
    for (const Datos& d : mapas) {
        SCOPED_TRACE(d.GetTipo());
        ASSERT_TRUE(d.ExisteTransformacion());
        const Coor imagen(1234.5, -678.9, 12.0, 6);
        const Coor terreno = d.TransformaInversa(imagen, nullptr, -1);
        if (!d.Es3D()) {
            EXPECT_EQ(terreno.z, 12.0);
        }
        Coor vuelta;
        ASSERT_TRUE(d.Transforma(terreno, vuelta));
        EsperaIgual(vuelta, imagen, 1e-4);  // in coordinates of millions, squared, that is what a double keeps
        EXPECT_EQ(vuelta.GetTipo(), 6);
    }
}

TEST(CDataTransformacion, SingularMapsDoNotExist) {
    EXPECT_FALSE(Mapa(1, {1, 2, 3, 0, 0, 0, 0}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(2, {1, 2, 0, 0}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(4, {1, 2, 1, 2, 2, 4}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(5, {0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 1}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(6, {0, 0, 0, 0, 0, 0, 0, 0}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(8, {0, 0, 0, 1, 2, 3, 2, 4, 6, 0, 0, 1}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(4, {kNan, 2, 1, 0, 0, 1}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(4, {1, 2, kNan, 0, 0, 1}).ExisteTransformacion());
    EXPECT_FALSE(Mapa(3, {}).ExisteTransformacion());  // no zones
    EXPECT_FALSE(Mapa(7, {}).ExisteTransformacion());
}

TEST(CDataTransformacion, PolynomialWithoutInverseAtAPointFails) {
    // X = x + x2 has no x for X below -1/4.
    const Datos d = Mapa(5, {0, 1, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0});
    Coor q(1, 2, 3);
    EXPECT_FALSE(d.Transforma(Coor(-1.0, 0.0, 0.0), q));
    EsperaIgual(q, Coor(1, 2, 3), 0);
    ASSERT_TRUE(d.Transforma(Coor(6.0, 5.0, 0.0), q));
    EsperaIgual(q, Coor(2, 5, 0), 1e-9);
}

TEST(CDataTransformacion, LineAtInfinityOfAProjectiveMapFails) {
    const Datos d = Mapa(6, {0, 1, 0, 0, 0, 1, 0.5, 0});
    Coor q(1, 2, 3);
    EXPECT_FALSE(d.TransformaInversa(Coor(-2.0, 1.0, 0.0), nullptr, q));
    EsperaIgual(q, Coor(1, 2, 3), 0);
}

// ---- Clouds

Vertiz::CNubePuntos Nube(std::initializer_list<Coor> puntos) {
    Vertiz::CNubePuntos nube(Vertiz::CSistemaReferencia(L"Sistema Nuevo"), 0, 0, 4, 3);
    int numero = 0;
    for (const Coor& p : puntos)
        nube.Inserta({0, ++numero, p.x, p.y, p.z, 0.0, L""}, false, 0);
    return nube;
}

TEST(CNubePuntos, ItsTransformaIsTheWayToTheTerrain) {
    const Datos d = Mapa(8, {100, 200, 300, 1, 2, 3, 0, 1, 0, 2, 0, 1});
    Vertiz::CNubePuntos resultado = Nube({}), vuelta = Nube({});
    ASSERT_TRUE(Nube({{3, 4, 5}, {0, 0, 0}}).Transforma3D(resultado, d));
    ASSERT_EQ(resultado.Cantidad(), 2u);
    EsperaIgual(resultado[0], Coor(126, 204, 311), 1e-12);
    EsperaIgual(resultado[1], Coor(100, 200, 300), 1e-12);
    EXPECT_EQ(resultado[1].GetNumero(), 2);
    ASSERT_TRUE(resultado.TransformaInversa3D(vuelta, d));
    EsperaIgual(vuelta[0], Coor(3, 4, 5), 1e-9);
}

TEST(CNubePuntos, PlanFormsLeaveTheHeights) {
    const Datos d = Mapa(8, {100, 200, 300, 1, 2, 3, 0, 1, 0, 2, 0, 1});
    Vertiz::CNubePuntos resultado = Nube({});
    ASSERT_TRUE(Nube({{3, 4, 5}}).Transforma2D(resultado, d));
    EsperaIgual(resultado[0], Coor(126, 204, 5), 1e-12);
    ASSERT_TRUE(Nube({{126, 204, 311}}).TransformaInversa2D(resultado, d));
    EsperaIgual(resultado[0], Coor(3, 4, 311), 1e-9);
}

TEST(CNubePuntos, PointsWithoutResultKeepTheirPlaceAndAreNotNumbers) {
    Vertiz::CNubePuntos resultado = Nube({{7, 7, 7}});
    EXPECT_FALSE(Nube({{480000, 4470000, 700}, {480000, 4470000, 1800}, {480100, 4470000, 700}})
                     .TransformaInversa2D(resultado, Foto()));
    ASSERT_EQ(resultado.Cantidad(), 3u);
    EsperaIgual(resultado[0], Coor(3000, 2000, 700), 1e-6);
    EXPECT_TRUE(std::isnan(resultado[1].x));
    EXPECT_EQ(resultado[1].z, 1800.0);
    EsperaIgual(resultado[2], Coor(3500, 2000, 700), 1e-6);
}

TEST(CNubePuntos, ResultMayBeTheCloudItself) {
    Vertiz::CNubePuntos nube = Nube({{3, 4, 5}});
    ASSERT_TRUE(nube.Transforma2D(nube, Mapa(2, {100, 200, 2, 1})));
    EsperaIgual(nube[0], Coor(102, 211, 5), 1e-12);
}

TEST(CNubePuntos, WithoutTransformationPointsStay) {
    Vertiz::CNubePuntos resultado = Nube({});
    EXPECT_FALSE(Nube({{3, 4, 5}}).TransformaInversa2D(resultado, Datos()));
    ASSERT_EQ(resultado.Cantidad(), 1u);
    EsperaIgual(resultado[0], Coor(3, 4, 5), 0);
}

TEST(CNubePuntos, RefusesRepeatedPointsOnlyWhenAsked) {
    Vertiz::CNubePuntos nube = Nube({{0, 0, 0}});
    EXPECT_FALSE(nube.Inserta({0, 1, 9, 9, 9, 0.0, L""}, true, 0));
    EXPECT_FALSE(nube.Inserta({0, 2, 0.3, 0.4, 9, 0.0, L""}, true, 0.5));
    EXPECT_TRUE(nube.Inserta({0, 3, 0.3, 0.41, 9, 0.0, L""}, true, 0.5));
    EXPECT_TRUE(nube.Inserta({0, 1, 0, 0, 0, 0.0, L""}, false, 0));
    EXPECT_EQ(nube.Cantidad(), 3u);
}

TEST(CPuntoPortula, TransformsItselfLikeTheCloud) {
    const Datos d = Mapa(8, {100, 200, 300, 1, 2, 3, 0, 1, 0, 2, 0, 1});
    Vertiz::CPuntoPortula p(0, 1, 3, 4, 5, 0.0, L""), q = p;
    ASSERT_TRUE(p.Transforma2D(d));
    EsperaIgual(p, Coor(126, 204, 5), 1e-12);
    ASSERT_TRUE(q.Transforma3D(d));
    EsperaIgual(q, Coor(126, 204, 311), 1e-12);
    EXPECT_FALSE(q.Transforma3D(Datos()));
    EsperaIgual(q, Coor(126, 204, 311), 1e-12);
}

}  // namespace
