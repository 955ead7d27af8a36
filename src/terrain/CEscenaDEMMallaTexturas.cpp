// The surface of a grid under its images: a walk tile by tile, each with its texture, and then the parts of the grid
// that no image covers.
//
// A tile's edges lie on samples, but a mesh that leaves samples out may have none there. Every cell of such a mesh
// belongs to the tile that its north-west sample is in, so that each is drawn once, and to the image's edge rather than
// to the surface beside it.

#include "terrain/CEscenaDEM.h"
#include "terrain/CEscenaDEMBanda.h"
#include "terrain/CeldasTextura.h"

#include <algorithm>
#include <cstdint>

/// A tile on the mesh. Rows and columns are those of samples, and multiples of the mesh's step; the last are excluded.
struct CEscenaDEM::Tesela {
    int fila0 = 0, col0 = 0;  ///< the sample under the tile's north-west corner; may lie outside the grid
    int filaInicio = 0, filaFin = 0, colInicio = 0, colFin = 0;
    double px = 0, py = 0;      ///< share of the texture that a cell takes
    double smax = 0, tmax = 0;  ///< share that all of the tile's cells take

    double S(int columna) const { return std::clamp((columna - col0) * px, 0.0, smax); }
    double T(int fila) const { return std::clamp((fila - fila0) * py, 0.0, tmax); }
};

// Pixels reach the texture objects when the surface is built for the first time after a load.
void CEscenaDEM::LlenaTexturas() {
    for (unsigned k = 0; k < m_Texturas.size(); ++k) {
        if (m_Texturas[k].m_bPrestada != 0) continue;  // the parent fills it
        if (!m_Texturas[k].TieneFichero() || m_Texturas[k].m_bCargada != 0) continue;
        m_Texturas[k].m_bCargada = 1;
        const auto filas = static_cast<unsigned>(m_Texturas[k].m_nNumFilas);
        const auto columnas = static_cast<unsigned>(m_Texturas[k].m_nNumCols);
        for (unsigned i = 0; i < filas; ++i)
            for (unsigned j = 0; j < columnas; ++j)
                if (!m_Texturas[k].EstaLlena(i, j)) Textura(k, i, j);
    }
}

int CEscenaDEM::CompilaTexturas(const Paso& paso) const {
    for (const CDataTexturas& registro : m_Texturas)
        for (int i = 0; i < registro.m_nNumFilas; ++i)
            for (int j = 0; j < registro.m_nNumCols; ++j)
                if (!CompilaTesela(registro, i, j, paso)) return 0;
    return 1;
}

int CEscenaDEM::CompilaTesela(const CDataTexturas& registro, int fila, int columna, const Paso& paso) const {
    glBindTexture(GL_TEXTURE_2D, registro.IdTextura(static_cast<unsigned>(fila), static_cast<unsigned>(columna)));
    if (HayErrorGL()) return 0;
    Tesela tesela;
    if (!ColocaTesela(registro, fila, columna, paso.x, tesela)) return 1;
    glEnable(GL_TEXTURE_2D);
    const int bien = GetQuad() == 1 ? EmiteTesela<1>(tesela, paso) : EmiteTesela<0>(tesela, paso);
    if (!bien) return 0;
    glDisable(GL_TEXTURE_2D);
    return 1;
}

// Finds the part of the mesh that shows a tile. @return false when it lies beside the grid
bool CEscenaDEM::ColocaTesela(const CDataTexturas& registro, int fila, int columna, int x, Tesela& tesela) const {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const bool tiras = GetQuad() != 1;
    // A strip ends with vertices, not with a cell: with those of the sample at the tile's edge or next beyond it.
    const int cierre = tiras ? x : 0, limite = tiras ? columnas : columnas - x;
    const auto hastaFila = [&](int f) { return CeldasHasta(registro.m_nCeldasFila, f, registro.m_nDespFila); };
    const auto hastaColumna = [&](int c) { return CeldasHasta(registro.m_nCeldasCol, c, registro.m_nDespCol); };
    const int r0 = hastaFila(fila), r1 = hastaFila(fila + 1);
    const int c0 = hastaColumna(columna), c1 = hastaColumna(columna + 1) + cierre;
    if (c1 < 0 || r1 < 0 || r0 > filas - x || c0 > limite) return false;

    // The image doesn't fill the first tiles from their top, nor the last ones to their east side.
    const int inicio = fila == 0 ? hastaFila(registro.m_nNumFilas) - FilasImagen(registro) : r0;
    const bool ultima = columna == registro.m_nNumCols - 1;
    const int fin = ultima ? hastaColumna(0) + ColumnasImagen(registro) + cierre : c1;

    tesela.fila0 = r0, tesela.col0 = c0;
    tesela.filaInicio = EnPaso(std::max(inicio, 0), x);
    tesela.filaFin = std::min(r1, filas - x);
    tesela.colInicio = EnPaso(std::max(c0, 0), x);
    tesela.colFin = std::min(fin, limite);
    tesela.px = m_pDEM->GetCeldaX() / (registro.m_nAnchoTextura * registro.m_dSizePixel);
    tesela.py = m_pDEM->GetCeldaY() / (registro.m_nAltoTextura * registro.m_dSizePixel);
    tesela.smax = registro.m_nCeldasCol * tesela.px;
    tesela.tmax = registro.m_nCeldasFila * tesela.py;
    return true;
}

template <unsigned kQuad>
int CEscenaDEM::EmiteTesela(const Tesela& tesela, const Paso& paso) const {
    const int x = paso.x;
    // Under images a mesh is never divided.
    Banda banda{1, x, tesela.colInicio, tesela.colFin, ColumnasMapa(paso), false, false};
    if (kQuad == 1) glBegin(GL_QUADS);
    for (int r = tesela.filaInicio; r < tesela.filaFin; r += x) {
        const FilaMapa norte = DameFilaMapa(banda, r / x), sur = DameFilaMapa(banda, r / x + 1);
        CalculaNormales(banda, norte, sur);
        const double t0 = tesela.T(r), t1 = tesela.T(r + x);
        if (kQuad == 0) glBegin(GL_QUAD_STRIP);
        for (int c = tesela.colInicio, j = c / x; c < tesela.colFin; c += x, ++j) {
            const std::int32_t i0 = norte.Indice(j), i1 = sur.Indice(j);
            const std::int32_t i2 = norte.Indice(j + 1), i3 = sur.Indice(j + 1);
            if (i0 == -1) continue;
            if (i1 != -1 && i2 != -1 && i3 != -1)
                banda.normal = banda.normales[static_cast<std::size_t>(j)];
            else if (kQuad == 1 || i1 == -1)
                continue;
            glNormal3f(banda.normal.x, banda.normal.y, banda.normal.z);
            const double s0 = tesela.S(c);
            glTexCoord2d(s0, t0);
            glArrayElement(i0 / 3);
            glTexCoord2d(s0, t1);
            glArrayElement(i1 / 3);
            if (kQuad == 1) {
                const double s1 = tesela.S(c + x);
                glTexCoord2d(s1, t1);
                glArrayElement(i3 / 3);
                glTexCoord2d(s1, t0);
                glArrayElement(i2 / 3);
            }
        }
        if (kQuad == 0) {
            glEnd();
            if (HayErrorGL()) return 0;
        }
    }
    if (kQuad == 1) glEnd();
    return HayErrorGL() ? 0 : 1;
}

// The rectangles without an image, in the surface's own colour. They end where the cells of the images begin: at the
// mesh's next sample, if it has none at their edge.
int CEscenaDEM::CompilaZonasLibres(const Paso& paso) {
    PreparaColorUnico();
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int x = paso.x, colsMapa = ColumnasMapa(paso);
    for (const CDataTexturas& registro : m_Texturas)
        for (const Vertiz::CMaximas<int>& zona : registro.m_ZonasLibres) {
            const int filaInicio = EnPaso(std::max(zona.Minima().y, 0), x);
            const int colInicio = EnPaso(std::max(zona.Minima().x, 0), x);
            const int filaFin = std::min(zona.Maxima().y + x - 1, filas);
            const int colFin = GetQuad() == 0 ? std::min(zona.Maxima().x + x, columnas) : zona.Maxima().x;
            if (!GeneraDEMRegular(filaInicio, colInicio, filaFin, colFin, paso.f, x, filas, colsMapa)) return 0;
        }
    return 1;
}
