#pragma once
// A grid seen from straight above, with a sample at every 32nd pixel: places on the screen can be told by heart.

#include "EscenaTerreno.h"
#include "platform/Contextos.h"

/// Base of the tests of picking. A grid of 5 x 5 samples fills a view of 128 x 128 pixels; the pixel (32 c, 32 r) is
/// its sample of row r from the north and column c.
class VistaCenital : public Terreno {
  protected:
    using Celda = Vertiz::CDEM::CPosicion;
    using Celdas = std::vector<Celda>;

    void Mira(Vertiz::CDEM& dem, const Ajuste& ajuste = {}) {
        Monta(dem, ajuste);
        Coloca();
    }
    /// Puts the view into the context, where picking reads it.
    void Coloca() {
        constexpr GLdouble kModelo[16] = {1, 0, 0, 0, 0, 0, 1, 0, 0, -1, 0, 0, 0, 0, 0, 1};
        constexpr GLdouble kProyeccion[16] = {2, 0, 0, 0, 0, 2, 0, 0, 0, 0, -0.1, 0, 0, 0, 0, 1};
        Coloca(kModelo, kProyeccion, 0, 0, 128, 128);
    }
    void Coloca(const GLdouble* modelo, const GLdouble* proyeccion, int x, int y, int ancho, int alto) {
        ASSERT_TRUE(m_escena.MakeCurrent(nullptr));
        glViewport(x, y, ancho, alto);
        glMatrixMode(GL_PROJECTION);
        glLoadMatrixd(proyeccion);
        glMatrixMode(GL_MODELVIEW);
        glLoadMatrixd(modelo);
        wglMakeCurrent(nullptr, nullptr);
    }
    /// A click that selects alone: from the beginning unless told, what was picked before let go.
    unsigned Pulsa(int x, int y, unsigned tipo = 0, int desdeInicio = 1, unsigned modo = 0, int acumular = 0) {
        return m_escena.OnSeleccion(x, y, desdeInicio, tipo, acumular, 1, 1, modo, 0, 0, 0);
    }
    Celdas Picadas() const { return m_escena.GetSeleccionCeldas(); }

    /// Heights of 5 x 5 samples, all different, on a seed.
    static Vertiz::CDEM Rejilla5(const Vertiz::CDataSemilla& semilla = Vertiz::CDataSemilla()) {
        const modelos::Sitio sitio{10, 10, semilla.GetX(), semilla.GetY(), semilla};
        return modelos::Rejilla(
            5, 5, [&](int r, int c) { return float(semilla.GetZ()) + float(10 * r + c) / 8.0F; }, sitio);
    }
};

/// So that failures read well.
namespace Vertiz {
inline void PrintTo(const CDEM::CPosicion& p, std::ostream* salida) {
    *salida << p.m_nFila << ',' << p.m_nColumna;
}
}  // namespace Vertiz
