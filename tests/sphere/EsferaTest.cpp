// Spheres: what is sent in each style, and where it lies in space and in the texture.

#include "sphere/Esfera.h"

#include "support/Contexto.h"
#include "support/RegistroGL.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

using Vertice = std::vector<double>;
using Vertices = std::vector<Vertice>;

class Esferas : public Contexto {
  protected:
    RegistroGL m_registro;

    Vertices Puntos() const { return m_registro.Numeros("glVertex3f"); }
    Vertices Normales() const { return m_registro.Numeros("glNormal3f"); }
    LlamadasGL Formas() const { return Solo(m_registro.Todas(), {"glBegin"}); }
    /// How many vertices each glBegin was given.
    std::vector<int> Cuentas() const {
        std::vector<int> cuentas;
        for (const std::string& llamada : m_registro.Todas()) {
            if (llamada.starts_with("glBegin")) cuentas.push_back(0);
            if (llamada.starts_with("glVertex3f")) ++cuentas.back();
        }
        return cuentas;
    }
};

// The point at meridian and polar angle, in degrees, of a sphere seen from inside: the nadir is at 0.
Vertice Dentro(double radio, double meridiano, double polar) {
    const double m = meridiano * std::numbers::pi / 180, p = polar * std::numbers::pi / 180;
    return {-radio * std::sin(m) * std::sin(p), radio * std::cos(m) * std::sin(p), -radio * std::cos(p)};
}

Vertice Fuera(double radio, double meridiano, double polar) {
    Vertice v = Dentro(radio, meridiano, polar);
    v[2] = -v[2];
    return v;
}

void EsperaIgual(const Vertice& v, const Vertice& esperado, const std::string& donde) {
    ASSERT_EQ(v.size(), esperado.size()) << donde;
    for (std::size_t k = 0; k < v.size(); ++k)
        EXPECT_NEAR(v[k], esperado[k], 1e-6) << donde << ", coordinate " << k;
}

TEST_F(Esferas, ATexturedSphereIsBandsFromTheEndOfTheRangeToItsStart) {
    constexpr int kMeridianos = 4, kParalelos = 3;
    DibujaEsfera(2.0, kMeridianos, kParalelos, GLU_SMOOTH, GLU_INSIDE, GLU_FILL, 1, 30.0, 150.0);
    EXPECT_LLAMADAS(Formas(), {"glBegin(GL_QUAD_STRIP)", "glBegin(GL_QUAD_STRIP)", "glBegin(GL_QUAD_STRIP)"});
    EXPECT_EQ(Cuentas(), std::vector<int>(3, 2 * (kMeridianos + 1)));
    const Vertices puntos = Puntos(), normales = Normales(), textura = m_registro.Numeros("glTexCoord2f");
    ASSERT_EQ(textura.size(), puntos.size());
    ASSERT_EQ(normales.size(), puntos.size());
    std::size_t n = 0;
    for (int i = kParalelos - 1; i >= 0; --i)
        for (int j = 0; j <= kMeridianos; ++j)
            for (int k = 0; k < 2; ++k, ++n) {
                const std::string donde =
                    "band " + std::to_string(i) + ", step " + std::to_string(j) + ", side " + std::to_string(k);
                const double meridiano = 90.0 * j, polar = 30.0 + 40.0 * (i + k);
                EsperaIgual(puntos[n], Dentro(2.0, meridiano, polar), donde);
                const Vertice fuera = Dentro(1.0, meridiano, polar);
                EsperaIgual(normales[n], {-fuera[0], -fuera[1], -fuera[2]}, donde + ", normal");
                EsperaIgual(textura[n], {j / 4.0, (i + k) / 3.0}, donde + ", texture");
            }
}

TEST_F(Esferas, EachVertexComesAfterItsTexturePlaceAndItsNormal) {
    DibujaEsfera(1.0, 2, 1, GLU_SMOOTH, GLU_OUTSIDE, GLU_FILL, 1, 0.0, 180.0);
    LlamadasGL nombres;
    for (const std::string& llamada : m_registro.Todas())
        nombres.push_back(llamada.substr(0, llamada.find('(')));
    LlamadasGL esperados = {"glBegin"};
    for (int i = 0; i < 6; ++i)
        esperados.insert(esperados.end(), {"glTexCoord2f", "glNormal3f", "glVertex3f"});
    esperados.push_back("glEnd");
    EXPECT_EQ(EnLineas(nombres), EnLineas(esperados));
}

TEST_F(Esferas, TheWholeRangeReachesBothPolesAndClosesWithoutASeam) {
    DibujaEsfera(0.5, 128, 128, GLU_SMOOTH, GLU_INSIDE, GLU_FILL, 1, 0.0, 180.0);
    const Vertices puntos = Puntos();
    ASSERT_EQ(puntos.size(), 128u * 129u * 2u);
    EsperaIgual(puntos[1], {0, 0, 0.5}, "the first band ends at the zenith");
    EsperaIgual(puntos[puntos.size() - 2], {0, 0, -0.5}, "the last one begins at the nadir");
    for (std::size_t banda = 0; banda < 128; ++banda)
        for (std::size_t k = 0; k < 2; ++k)
            EXPECT_EQ(puntos[banda * 258 + k], puntos[banda * 258 + 256 + k]) << "band " << banda;
    for (const Vertice& v : puntos)
        EXPECT_NEAR(std::hypot(v[0], v[1], v[2]), 0.5, 1e-6);
}

TEST_F(Esferas, FromOutsideTheAngleCountsFromTheZenithAndNormalsLookOut) {
    DibujaEsfera(3.0, 6, 4, GLU_SMOOTH, GLU_OUTSIDE, GLU_FILL, 1, 0.0, 90.0);
    const Vertices puntos = Puntos(), normales = Normales();
    EsperaIgual(puntos[0], Fuera(3.0, 0, 67.5), "the lowest band first");
    for (std::size_t n = 0; n < puntos.size(); ++n) {
        EXPECT_GE(puntos[n][2], -1e-6) << "the upper half alone";
        EsperaIgual({3 * normales[n][0], 3 * normales[n][1], 3 * normales[n][2]}, puntos[n], "normal");
    }
}

TEST_F(Esferas, WithoutTextureTheFirstAndLastBandsAreCaps) {
    DibujaEsfera(1.0, 5, 4, GLU_SMOOTH, GLU_OUTSIDE, GLU_FILL, 0, 0.0, 180.0);
    EXPECT_LLAMADAS(Formas(), {"glBegin(GL_TRIANGLE_FAN)", "glBegin(GL_QUAD_STRIP)", "glBegin(GL_QUAD_STRIP)",
                               "glBegin(GL_TRIANGLE_FAN)"});
    EXPECT_EQ(Cuentas(), (std::vector<int>{7, 12, 12, 7}));
    EXPECT_EQ(m_registro.Cuenta("glTexCoord2f"), 0u);
    const Vertices puntos = Puntos(), normales = Normales();
    EsperaIgual(puntos[0], {0, 0, 1}, "the top");
    EsperaIgual(normales[0], {0, 0, 1}, "its normal");
    for (int j = 0; j <= 5; ++j)
        EsperaIgual(puntos[1 + std::size_t(j)], Fuera(1, 72.0 * j, 45), "round the top");
    EsperaIgual(puntos[31], {0, 0, -1}, "the bottom");
    EsperaIgual(normales[31], {0, 0, -1}, "its normal");
    for (int j = 0; j <= 5; ++j)
        EsperaIgual(puntos[32 + std::size_t(j)], Fuera(1, 72.0 * (5 - j), 135), "round the bottom, the other way");
}

TEST_F(Esferas, CapsOfASphereSeenFromInsideChangePlaces) {
    DibujaEsfera(2.0, 5, 4, GLU_SMOOTH, GLU_INSIDE, GLU_FILL, 0, 0.0, 180.0);
    const Vertices puntos = Puntos(), normales = Normales();
    EsperaIgual(puntos[0], {0, 0, -2}, "the bottom");
    EsperaIgual(normales[0], {0, 0, 1}, "its normal looks in");
    EsperaIgual(puntos[31], {0, 0, 2}, "the top");
    EsperaIgual(normales[31], {0, 0, -1}, "its normal looks in");
}

TEST_F(Esferas, FacesOfBandsAndCapsTurnTheSameWay) {
    // The signed volume that each triangle spans with the middle: all of one sign.
    DibujaEsfera(1.0, 8, 5, GLU_NONE, GLU_OUTSIDE, GLU_FILL, 0, 0.0, 180.0);
    const Vertices p = Puntos();
    const std::vector<int> cuentas = Cuentas();
    const auto volumen = [&](std::size_t a, std::size_t b, std::size_t c) {
        return p[a][0] * (p[b][1] * p[c][2] - p[b][2] * p[c][1]) - p[a][1] * (p[b][0] * p[c][2] - p[b][2] * p[c][0]) +
               p[a][2] * (p[b][0] * p[c][1] - p[b][1] * p[c][0]);
    };
    std::size_t inicio = 0;
    for (std::size_t forma = 0; forma < cuentas.size(); ++forma) {
        const bool abanico = forma == 0 || forma + 1 == cuentas.size();
        for (std::size_t i = 0; i + 2 < std::size_t(cuentas[forma]); i += abanico ? 1 : 2) {
            const double v = abanico ? volumen(inicio, inicio + i + 1, inicio + i + 2)
                                     : volumen(inicio + i, inicio + i + 1, inicio + i + 3);
            EXPECT_GT(v, 1e-3) << "shape " << forma << ", triangle " << i;
        }
        inicio += std::size_t(cuentas[forma]);
    }
}

TEST_F(Esferas, NormalsAreLeftOut) {
    for (const int estilo : {GLU_FILL, GLU_LINE, GLU_POINT})
        DibujaEsfera(1.0, 8, 4, GLU_NONE, GLU_INSIDE, estilo, estilo == GLU_FILL, 0.0, 180.0);
    EXPECT_EQ(m_registro.Cuenta("glNormal3f"), 0u);
    EXPECT_GT(m_registro.Cuenta("glVertex3f"), 0u);
}

TEST_F(Esferas, LinesAreParallelsAndThenMeridians) {
    DibujaEsfera(1.0, 3, 4, GLU_SMOOTH, GLU_INSIDE, GLU_LINE, 1, 0.0, 120.0);
    LlamadasGL esperadas(3, "glBegin(GL_LINE_LOOP)");
    esperadas.insert(esperadas.end(), 3, "glBegin(GL_LINE_STRIP)");
    EXPECT_EQ(EnLineas(Formas()), EnLineas(esperadas));
    EXPECT_EQ(Cuentas(), (std::vector<int>{3, 3, 3, 5, 5, 5}));
    EXPECT_EQ(m_registro.Cuenta("glTexCoord2f"), 0u);
    const Vertices puntos = Puntos();
    EXPECT_EQ(Normales().size(), puntos.size());
    for (int i = 1; i < 4; ++i)
        for (int j = 0; j < 3; ++j)
            EsperaIgual(puntos[std::size_t(3 * (i - 1) + j)], Dentro(1, 120.0 * j, 30.0 * i), "parallel");
    for (int j = 0; j < 3; ++j)
        for (int i = 0; i <= 4; ++i)
            EsperaIgual(puntos[std::size_t(9 + 5 * j + i)], Dentro(1, 120.0 * j, 30.0 * i), "meridian");
}

TEST_F(Esferas, ASilhouetteIsTheLines) {
    DibujaEsfera(1.0, 3, 4, GLU_SMOOTH, GLU_INSIDE, GLU_LINE, 0, 0.0, 180.0);
    const LlamadasGL lineas = m_registro.Todas();
    m_registro.Olvida();
    DibujaEsfera(1.0, 3, 4, GLU_SMOOTH, GLU_INSIDE, GLU_SILHOUETTE, 0, 0.0, 180.0);
    EXPECT_FALSE(lineas.empty());
    EXPECT_EQ(EnLineas(m_registro.Todas()), EnLineas(lineas));
}

TEST_F(Esferas, PointsHaveEachPoleOnce) {
    DibujaEsfera(1.0, 6, 4, GLU_SMOOTH, GLU_OUTSIDE, GLU_POINT, 0, 0.0, 180.0);
    EXPECT_LLAMADAS(Formas(), {"glBegin(GL_POINTS)"});
    const Vertices puntos = Puntos();
    ASSERT_EQ(puntos.size(), 2u + 3u * 6u);
    EsperaIgual(puntos.front(), {0, 0, 1}, "the top");
    EsperaIgual(puntos.back(), {0, 0, -1}, "the bottom");
    for (int i = 1; i < 4; ++i)
        for (int j = 0; j < 6; ++j)
            EsperaIgual(puntos[std::size_t(1 + 6 * (i - 1) + j)], Fuera(1, 60.0 * j, 45.0 * i), "between");
}

TEST_F(Esferas, WithoutDivisionsOrOfAnotherStyleNothingIsDrawn) {
    for (const int estilo : {GLU_FILL, GLU_LINE, GLU_POINT})
        for (const int textura : {0, 1}) {
            DibujaEsfera(1.0, 0, 4, GLU_SMOOTH, GLU_INSIDE, estilo, textura, 0.0, 180.0);
            DibujaEsfera(1.0, 4, 0, GLU_SMOOTH, GLU_INSIDE, estilo, textura, 0.0, 180.0);
            DibujaEsfera(1.0, -3, -1, GLU_SMOOTH, GLU_INSIDE, estilo, textura, 0.0, 180.0);
        }
    DibujaEsfera(1.0, 4, 4, GLU_SMOOTH, GLU_INSIDE, GLU_SMOOTH, 1, 0.0, 180.0);
    EXPECT_LLAMADAS(m_registro.Todas(), {});
}

}  // namespace
