// Spheres with a range of polar angles.

#include "sphere/Esfera.h"

#include "platform/OpenGL.h"

#include <cmath>
#include <numbers>
#include <vector>

namespace {

struct Circular {
    double seno, coseno;

    explicit Circular(double angulo) : seno(std::sin(angulo)), coseno(std::cos(angulo)) {}
};

class Esfera {
  public:
    Esfera(double radio, int meridianos, int paralelos, bool conNormales, bool porDentro, double inicio, double fin)
        : m_dRadio(radio),
          m_dLado(porDentro ? -1.0 : 1.0),
          m_bNormales(conNormales),
          m_nParalelos(paralelos),
          m_dInicio(inicio * std::numbers::pi / 180.0),
          m_dPaso((fin - inicio) * std::numbers::pi / 180.0 / paralelos) {
        m_Meridianos.reserve(static_cast<std::size_t>(meridianos));
        for (int j = 0; j < meridianos; ++j)
            m_Meridianos.emplace_back(2.0 * std::numbers::pi * j / meridianos);
    }

    void RellenaConTextura() const {
        for (int i = m_nParalelos - 1; i >= 0; --i)
            Banda(i, true);
    }

    void Rellena() const {
        Casquete(1.0, Polar(1), 1);
        for (int i = 1; i < m_nParalelos - 1; ++i)
            Banda(i, false);
        Casquete(-1.0, Polar(m_nParalelos - 1), -1);
    }

    void Lineas() const {
        for (int i = 1; i < m_nParalelos; ++i) {
            glBegin(GL_LINE_LOOP);
            const Circular polar = Polar(i);
            for (const Circular& meridiano : m_Meridianos)
                Vertice(meridiano, polar);
            glEnd();
        }
        for (const Circular& meridiano : m_Meridianos) {
            glBegin(GL_LINE_STRIP);
            for (int i = 0; i <= m_nParalelos; ++i)
                Vertice(meridiano, Polar(i));
            glEnd();
        }
    }

    void Puntos() const {
        glBegin(GL_POINTS);
        Vertice(m_Meridianos.front(), Polar(0));
        for (int i = 1; i < m_nParalelos; ++i) {
            const Circular polar = Polar(i);
            for (const Circular& meridiano : m_Meridianos)
                Vertice(meridiano, polar);
        }
        Vertice(m_Meridianos.front(), Polar(m_nParalelos));
        glEnd();
    }

  private:
    Circular Polar(int i) const { return Circular(m_dInicio + i * m_dPaso); }

    // The meridian of a step of a closed round: the last step is the first again, to the bit.
    const Circular& Meridiano(std::size_t j) const { return m_Meridianos[j == m_Meridianos.size() ? 0 : j]; }

    void Manda(double x, double y, double z) const {
        if (m_bNormales)
            glNormal3f(static_cast<GLfloat>(m_dLado * x), static_cast<GLfloat>(m_dLado * y),
                       static_cast<GLfloat>(m_dLado * z));
        glVertex3f(static_cast<GLfloat>(m_dRadio * x), static_cast<GLfloat>(m_dRadio * y),
                   static_cast<GLfloat>(m_dRadio * z));
    }

    void Vertice(const Circular& meridiano, const Circular& polar) const {
        Manda(-meridiano.seno * polar.seno, meridiano.coseno * polar.seno, m_dLado * polar.coseno);
    }

    void Banda(int i, bool conTextura) const {
        const Circular cerca = Polar(i), lejos = Polar(i + 1);
        const auto cuantos = static_cast<GLfloat>(m_Meridianos.size()), bandas = static_cast<GLfloat>(m_nParalelos);
        glBegin(GL_QUAD_STRIP);
        for (std::size_t j = 0; j <= m_Meridianos.size(); ++j) {
            const GLfloat s = static_cast<GLfloat>(j) / cuantos;
            if (conTextura) glTexCoord2f(s, static_cast<GLfloat>(i) / bandas);
            Vertice(Meridiano(j), cerca);
            if (conTextura) glTexCoord2f(s, static_cast<GLfloat>(i + 1) / bandas);
            Vertice(Meridiano(j), lejos);
        }
        glEnd();
    }

    // From a pole to a parallel, round in the direction that shows the same side as the bands.
    void Casquete(double polo, const Circular& polar, int sentido) const {
        glBegin(GL_TRIANGLE_FAN);
        Manda(0.0, 0.0, m_dLado * polo);
        for (std::size_t j = 0; j <= m_Meridianos.size(); ++j)
            Vertice(Meridiano(sentido > 0 ? j : m_Meridianos.size() - j), polar);
        glEnd();
    }

    double m_dRadio;
    double m_dLado;  // -1 seen from inside
    bool m_bNormales;
    int m_nParalelos;
    double m_dInicio, m_dPaso;  // radians
    std::vector<Circular> m_Meridianos;
};

}  // namespace

void DibujaEsfera(double radio, int meridianos, int paralelos, int normales, int orientacion, int estilo, int textura,
                  double inicio, double fin) {
    if (meridianos < 1 || paralelos < 1) return;
    const Esfera esfera(radio, meridianos, paralelos, normales != GLU_NONE, orientacion == GLU_INSIDE, inicio, fin);
    if (estilo == GLU_FILL) textura != 0 ? esfera.RellenaConTextura() : esfera.Rellena();
    if (estilo == GLU_LINE || estilo == GLU_SILHOUETTE) esfera.Lineas();
    if (estilo == GLU_POINT) esfera.Puntos();
}
