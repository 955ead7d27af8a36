// Reading and editing cells and samples, and what picked ones are like.

#include "EscenaTerreno.h"

#include <algorithm>

namespace {

using modelos::kVacio;
using Vertiz::CCoor3D;
using Vertiz::CDEM;

constexpr double kOeste = 500, kSur = 800, kSz = 100;
const Vertiz::CDataSemilla kSemilla(0, 490, 780, kSz);

CDEM Matriz() {
    return modelos::Rejilla({{101, 102, 103}, {104, 105, 106}, {107, 108, kVacio}}, {10, 20, kOeste, kSur, kSemilla});
}
CDEM Lista() {
    return modelos::ListaCeldas({{101, 102, 103}, {104, 105, 106}, {107, 108, kVacio}},
                                {10, 20, kOeste, kSur, kSemilla});
}
// Vectors that tell which sample they are of.
void Suaviza(CDEM& dem) {
    dem.CalculaVectores();
    for (unsigned m = 0; m < dem.GetFilas(); ++m) {
        for (unsigned c = 0; c < dem.GetColumnas(); ++c) {
            dem.VectorX().Set(m, c, float(100 * m + c));
            dem.VectorY().Set(m, c, float(100 * m + c) + 0.25F);
            dem.VectorZ().Set(m, c, float(100 * m + c) + 0.5F);
        }
    }
    for (std::size_t i = 0; i < dem.Puntos().size(); ++i) {
        CDEM::CPunto& p = dem.Puntos()[i];
        p.m_fVectorX = float(i), p.m_fVectorY = float(i) + 0.25F, p.m_fVectorZ = float(i) + 0.5F;
    }
}

// What DameCelda gives, from marks that tell what it leaves alone.
struct Lectura {
    Lectura(const CEscenaDEM& escena, unsigned fila, unsigned col) {
        for (auto* v : {&z, &nx, &ny, &nz})
            v->fill(-7.0F);
        escena.DameCelda(fila, col, yS, yN, xE, xW, z.data(), nx.data(), ny.data(), nz.data());
    }
    double yS = -1, yN = -2, xE = -3, xW = -4;
    std::array<float, 4> z, nx, ny, nz;
};
using Cuatro = std::array<float, 4>;

class Edicion : public testing::Test {
  protected:
    EscenaTerreno m_escena;
};

TEST_F(Edicion, ACellOfAMatrixHasItsSidesAndHeightsLessTheOrigin) {
    CDEM dem = Matriz();
    m_escena.SetDEM(&dem);
    const Lectura c(m_escena, 0, 1);
    EXPECT_DOUBLE_EQ(c.xW, 20);
    EXPECT_DOUBLE_EQ(c.xE, 30);
    EXPECT_DOUBLE_EQ(c.yN, 60);
    EXPECT_DOUBLE_EQ(c.yS, 40);
    EXPECT_EQ(c.z, (Cuatro{2, 3, 5, 6}));
    EXPECT_EQ(c.nx, Cuatro{}) << "without smoothing";
    Suaviza(dem);
    const Lectura s(m_escena, 0, 1);
    EXPECT_EQ(s.nx, (Cuatro{201, 202, 101, 102}));
    EXPECT_EQ(s.ny, (Cuatro{201.25F, 202.25F, 101.25F, 102.25F}));
    EXPECT_EQ(s.nz, (Cuatro{201.5F, 202.5F, 101.5F, 102.5F}));
    const Lectura fuera(m_escena, 1, 2);
    EXPECT_EQ(fuera.z, (Cuatro{6, -100, kVacio - 100, -100})) << "outside the matrix reads 0";
}

TEST_F(Edicion, ACellWithAVoidFirstCornerGivesVectorsOfZeroAndNothingElse) {
    CDEM dem = Matriz();
    Suaviza(dem);
    m_escena.SetDEM(&dem);
    const Lectura c(m_escena, 2, 2);
    EXPECT_EQ(c.xW, -4);
    EXPECT_EQ(c.xE, -3);
    EXPECT_EQ(c.yN, -2);
    EXPECT_EQ(c.yS, -1);
    for (const Cuatro& nada : {c.nx, c.ny, c.nz})
        EXPECT_EQ(nada, Cuatro{});
    EXPECT_EQ(c.z[0], -7);
    for (const float nula :
         {float(dem.GetNulo()), std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        dem.Matriz().Set(0, 0, nula);
        EXPECT_EQ(Lectura(m_escena, 2, 0).xW, -4) << nula;
    }
}

TEST_F(Edicion, TheSidesOfACellOfAListAreThoseOfCertainCorners) {
    CDEM dem = Lista();
    m_escena.SetDEM(&dem);
    const auto& cuatro = dem.Celdas()[1].m_nPuntos;
    // South and west of the first, north of the second, east of the fourth: elsewhere are the others.
    dem.ListaX().push_back(9999);
    dem.ListaY().push_back(9999);
    const auto x = std::uint32_t(dem.ListaX().size() - 1), y = std::uint32_t(dem.ListaY().size() - 1);
    dem.Puntos()[cuatro[1]].m_nX = dem.Puntos()[cuatro[2]].m_nX = x;
    dem.Puntos()[cuatro[2]].m_nY = dem.Puntos()[cuatro[3]].m_nY = y;
    const Lectura c(m_escena, 1, 0);
    EXPECT_EQ(c.xW, kOeste + 10);
    EXPECT_EQ(c.xE, kOeste + 20);
    EXPECT_EQ(c.yN, kSur + 40);
    EXPECT_EQ(c.yS, kSur + 20);
}

TEST_F(Edicion, ACellOfAListIsAsStored) {
    CDEM dem = Lista();
    Suaviza(dem);
    m_escena.SetDEM(&dem);
    const Lectura c(m_escena, 1, 77);
    EXPECT_EQ(c.xW, kOeste + 10);
    EXPECT_EQ(c.xE, kOeste + 20);
    EXPECT_EQ(c.yN, kSur + 40);
    EXPECT_EQ(c.yS, kSur + 20);
    EXPECT_EQ(c.z, (Cuatro{102, 103, 105, 106}));
    EXPECT_EQ(c.nx, (Cuatro{1, 2, 4, 5}));
    EXPECT_EQ(c.ny, (Cuatro{1.25F, 2.25F, 4.25F, 5.25F}));
    EXPECT_EQ(c.nz, (Cuatro{1.5F, 2.5F, 4.5F, 5.5F}));
    dem.SetSuavizado(false);
    EXPECT_EQ(Lectura(m_escena, 1, 0).nx, Cuatro{});
    dem.SetSuavizado(true);
    const Lectura hueco(m_escena, 3, 0);  // its south-east point is the void
    EXPECT_EQ(hueco.z, (Cuatro{105, 106, 108, kVacio}));
    EXPECT_EQ(hueco.xW, -4);
    EXPECT_EQ(hueco.nx, Cuatro{});
    const Lectura fuera(m_escena, 4, 0);
    EXPECT_EQ(fuera.z[0], -7);
    EXPECT_EQ(fuera.nz, Cuatro{});
    dem.Celdas()[0].m_nPuntos[2] = 1000;
    EXPECT_EQ(Lectura(m_escena, 0, 0).z[0], -7) << "a cell of a point that isn't there";
}

TEST_F(Edicion, ACellIsWrittenInTheSameOrder) {
    const float z[4] = {11, 12, 13, 14}, nx[4] = {1, 2, 3, 4}, ny[4] = {5, 6, 7, 8}, nz[4] = {9, 10, 11, 12};
    CDEM dem = Matriz();
    m_escena.SetDEM(&dem);
    m_escena.ModificaCelda(0, 1, z, nullptr, nullptr, nullptr);  // without smoothing vectors aren't read
    const auto esquinas = [](const Vertiz::CMatriz<float>& m) {
        return Cuatro{m.Get(2, 1), m.Get(2, 2), m.Get(1, 1), m.Get(1, 2)};
    };
    EXPECT_EQ(esquinas(dem.Matriz()), (Cuatro{11, 12, 13, 14})) << "without the origin's height";
    EXPECT_EQ(dem.VectorX().Get(2, 1), 0);
    Suaviza(dem);
    m_escena.ModificaCelda(0, 1, z, nx, ny, nz);
    EXPECT_EQ(esquinas(dem.VectorX()), (Cuatro{1, 2, 3, 4}));
    EXPECT_EQ(esquinas(dem.VectorY()), (Cuatro{5, 6, 7, 8}));
    EXPECT_EQ(esquinas(dem.VectorZ()), (Cuatro{9, 10, 11, 12}));
    m_escena.ModificaCelda(2, 2, z, nx, ny, nz);
    m_escena.ModificaCelda(90, 90, z, nx, ny, nz);
    EXPECT_EQ(dem.Matriz().Get(0, 2), 11) << "what is inside is written, the rest goes nowhere";
    EXPECT_EQ(dem.Matriz().Get(0, 1), 108);

    CDEM lista = Lista();
    Suaviza(lista);
    m_escena.SetDEM(&lista);
    m_escena.ModificaCelda(1, 0, z, nx, ny, nz);
    m_escena.ModificaCelda(4, 0, z, nx, ny, nz);
    const int puntos[4] = {1, 2, 4, 5};
    for (int i = 0; i < 4; ++i) {
        const CDEM::CPunto& p = lista.Puntos()[std::size_t(puntos[i])];
        EXPECT_EQ(p.m_fCota, z[i]);
        EXPECT_EQ(p.m_fVectorX, nx[i]);
        EXPECT_EQ(p.m_fVectorY, ny[i]);
        EXPECT_EQ(p.m_fVectorZ, nz[i]);
    }
    EXPECT_EQ(lista.Puntos()[0].m_fCota, 101);
}

TEST_F(Edicion, ASampleIsReadAndWritten) {
    CDEM dem = Matriz();
    m_escena.SetDEM(&dem);
    CCoor3D<double> p, n(-1, -2, -3);
    m_escena.DamePunto(1, 2, p, n);
    EXPECT_DOUBLE_EQ(p.x, 30);
    EXPECT_DOUBLE_EQ(p.y, 40);
    EXPECT_DOUBLE_EQ(p.z, 6);
    EXPECT_EQ(n.x, -1) << "without smoothing it stays";
    m_escena.ModificaPunto(1, 2, 55.5F, {1, 2, 3});
    EXPECT_EQ(dem.Matriz().Get(1, 2), 55.5F);
    Suaviza(dem);
    m_escena.DamePunto(1, 2, p, n);
    EXPECT_EQ(n.x, 102);
    EXPECT_EQ(n.y, 102.25);
    EXPECT_EQ(n.z, 102.5);
    m_escena.ModificaPunto(1, 2, 56, {1, 2, 3});
    m_escena.ModificaPunto(70, 2, 57, {1, 2, 3});
    EXPECT_EQ(dem.VectorX().Get(1, 2), 1);
    EXPECT_EQ(dem.VectorY().Get(1, 2), 2);
    EXPECT_EQ(dem.VectorZ().Get(1, 2), 3);

    CDEM lista = Lista();
    m_escena.SetDEM(&lista);
    m_escena.DamePunto(5, 9, p, n);
    EXPECT_EQ(p.x, kOeste + 20);
    EXPECT_EQ(p.y, kSur + 20);
    EXPECT_EQ(p.z, 106);
    EXPECT_EQ(n.x, 102);
    m_escena.ModificaPunto(5, 0, 60, {7, 8, 9});
    EXPECT_EQ(lista.Puntos()[5].m_fCota, 60);
    EXPECT_EQ(lista.Puntos()[5].m_fVectorX, 0);
    Suaviza(lista);
    m_escena.DamePunto(5, 0, p, n);
    EXPECT_EQ(n.y, 5.25);
    m_escena.ModificaPunto(5, 0, 61, {7, 8, 9});
    EXPECT_EQ(lista.Puntos()[5].m_fVectorZ, 9);
    p = {1, 1, 1};
    m_escena.DamePunto(9, 0, p, n);
    m_escena.ModificaPunto(9, 0, 62, n);
    EXPECT_EQ(p.x, 1) << "past the end";
    lista.Puntos()[5].m_nX = 50;
    m_escena.DamePunto(5, 0, p, n);
    EXPECT_EQ(p.x, 1) << "a coordinate that isn't there";
}

TEST_F(Edicion, WithoutAGridNothingHappens) {
    CCoor3D<double> p(1, 2, 3), n(4, 5, 6);
    m_escena.DamePunto(0, 0, p, n);
    EXPECT_EQ(p.x, 1);
    const Lectura c(m_escena, 0, 0);
    EXPECT_EQ(c.nx[0], -7);
    const float cuatro[4] = {};
    m_escena.ModificaPunto(0, 0, 1, n);
    m_escena.ModificaCelda(0, 0, cuatro, cuatro, cuatro, cuatro);
    EXPECT_FALSE(m_escena.DamePuntoSeleccion2(p, 0));
    Vertiz::CMaximas<double> m;
    EXPECT_EQ(m_escena.GetMaximasSeleccion(m), 0);
    EXPECT_EQ(m_escena.GetMaximasObjeto(m), 0);
}

// ---- Picked things; in a list they can be set by hand ----

TEST_F(Edicion, ThePickedPointOfAListIsThatOfItsIndex) {
    CDEM dem = Lista();
    m_escena.SetDEM(&dem);
    m_escena.SetSeleccion({{3, 1}, {8, -1}, {50, -1}});
    CCoor3D<double> p;
    ASSERT_TRUE(m_escena.DamePuntoSeleccion2(p, 0));
    EXPECT_EQ(p.z, 104);
    ASSERT_TRUE(m_escena.DamePuntoSeleccion2(p, 1));
    EXPECT_EQ(p.z, kVacio);
    p = {1, 1, 1};
    EXPECT_TRUE(m_escena.DamePuntoSeleccion2(p, 2));
    EXPECT_EQ(p.z, 1) << "there is no such point";
    EXPECT_FALSE(m_escena.DamePuntoSeleccion2(p, 3));
    EXPECT_FALSE(m_escena.DamePuntoSeleccion2(p, -1));
}

TEST_F(Edicion, TheExtentOfWhatIsPickedInAList) {
    CDEM dem = Lista();
    m_escena.SetDEM(&dem);
    const auto extension = [&](std::vector<Vertiz::CPosicionEntidad> seleccion, int tipo) {
        m_escena.SetSeleccion(seleccion);
        m_escena.m_nTipoSeleccion = tipo;
        Vertiz::CMaximas<double> m;
        EXPECT_EQ(m_escena.GetMaximasSeleccion(m), 1);
        return m;
    };
    EXPECT_TRUE(extension({}, 1).EstanVacias(true));
    EXPECT_TRUE(extension({{3, -1}, {4, -1}, {-1, -1}}, 1).EstanVacias(true)) << "a void corner, and no cells";
    const auto celda = extension({{1, -1}, {3, -1}}, 1);
    EXPECT_EQ(celda.Minima(), CCoor3D<double>(kOeste + 10, kSur + 20, 102));
    EXPECT_EQ(celda.Maxima(), CCoor3D<double>(kOeste + 20, kSur + 40, 106));
    const auto puntos = extension({{0, -1}, {4, -1}, {8, -1}, {99, -1}}, 0);
    EXPECT_EQ(puntos.Minima(), CCoor3D<double>(kOeste, kSur + 20, 101));
    EXPECT_EQ(puntos.Maxima(), CCoor3D<double>(kOeste + 10, kSur + 40, 105));
}

class EdicionPicada : public Terreno {};

TEST_F(EdicionPicada, TheExtentAndPointOfWhatIsPickedInAMatrix) {
    CDEM dem = Matriz();
    Monta(dem);
    m_escena.Resize(120, 90);
    ASSERT_EQ(m_escena.Render(), 1);
    const auto pulsa = [&](double x, double y, double z, unsigned tipo) {
        CPoint pt;
        EXPECT_EQ(m_escena.TerrenoAPantalla(pt, {x, y, z, 0}, nullptr, false), 1);
        EXPECT_EQ(m_escena.OnSeleccion(pt.x, pt.y, 1, tipo, 0, 1, 1, 0, 0, 0, 0), 1u);
    };
    Vertiz::CMaximas<double> m;
    EXPECT_EQ(m_escena.GetMaximasSeleccion(m), 1);
    EXPECT_TRUE(m.EstanVacias(true));
    pulsa(25, 50, 4, 2);
    EXPECT_EQ(m_escena.GetMaximasSeleccion(m), 1);
    EXPECT_EQ(m.Minima(), CCoor3D<double>(20, 40, 2));
    EXPECT_EQ(m.Maxima(), CCoor3D<double>(30, 60, 6));
    CCoor3D<double> p;
    ASSERT_TRUE(m_escena.DamePuntoSeleccion2(p, 0));
    EXPECT_EQ(p, CCoor3D<double>(20, 60, 2));
    EXPECT_FALSE(m_escena.DamePuntoSeleccion2(p, 1));
    EXPECT_FALSE(m_escena.DamePuntoSeleccion2(p, -1));
    m_escena.SetSeleccion({{0, -1}, {1, -1}});
    EXPECT_FALSE(m_escena.DamePuntoSeleccion2(p, 1)) << "the frame's list isn't asked";
    m_escena.SetSeleccion({});
    pulsa(30, 40, 6, 1);
    m = {};
    EXPECT_EQ(m_escena.GetMaximasSeleccion(m), 1);
    EXPECT_EQ(m.Minima(), CCoor3D<double>(30, 40, 6));
    EXPECT_EQ(m.Maxima(), m.Minima());
    // The corners that are there, of a cell with a void one.
    m_escena.m_nTipoSeleccion = 1;
    dem.Matriz().Set(0, 1, kVacio);
    pulsa(20, 40, 5, 1);
    m_escena.m_nTipoSeleccion = 1;
    m = {};
    EXPECT_EQ(m_escena.GetMaximasSeleccion(m), 1);
    EXPECT_EQ(m.Minima(), CCoor3D<double>(20, 40, 5));
    EXPECT_EQ(m.Maxima(), CCoor3D<double>(30, 40, 6));
}

}  // namespace
