// The surface of a grid in matrix form. A matrix can hold tens of millions of samples while a list must stay small
// enough to draw: first the step and the subdivision are settled within a budget of samples, then every sample is
// placed once in a vertex array, and then the cells are walked, sending elements of that array.

#include <array>
#include <cmath>
#include <new>

#include "frame/ListaGL.h"
#include "model/IPorcentaje.h"
#include "platform/Errores.h"
#include "terrain/CEscenaDEM.h"

using Vertiz::CDEM;

// A direction in GL space.
struct CEscenaDEM::Vector {
    float x, y, z;
};

namespace {

constexpr double kMuestrasMaximas = 5e6;
constexpr int kNivelMensajes = 3;

void AvisaSinMemoria(const wchar_t* formato, std::int64_t cantidad, int paso) {
    if (Vertiz::IPorcentaje* porcentaje = Vertiz::PorcentajeActual()) {
        CString texto;
        texto.Format(formato, TextoError(ERROR_NOT_ENOUGH_MEMORY), cantidad, paso);
        porcentaje->Mensaje(kNivelMensajes, texto, 1);
    }
}

// Samples from 0 in steps of x below n.
std::int64_t Posiciones(std::int64_t n, int x) {
    return (n + x - 1) / x;
}

}  // namespace

// The one place where step and subdivision are settled: mesh, walls and floor agree because all ask here.
CEscenaDEM::Paso CEscenaDEM::CalculaPaso(int n) const {
    Paso paso;
    if (m_pDEM == nullptr) return paso;
    const double filas = m_pDEM->GetFilas(), columnas = m_pDEM->GetColumnas();
    const auto muestras = [&] {
        const double m = n >= 0 ? n + 1.0 : 1.0 / (1.0 - n);
        return filas * m * columnas * m;
    };
    while (muestras() > kMuestrasMaximas)
        --n;
    paso.n = n;
    const bool texturas = HayTexturas() && GetQuad() != 2;
    if (n < 0) {
        paso.x = 1 - n;
        // Tiles hold whole cells: a power of two keeps the samples on their borders.
        if (texturas) paso.x = 1 << static_cast<int>(std::ceil(std::log(paso.x) / std::log(2.0)));
    } else if (!texturas && m_pDEM->HaySuavizado()) {
        paso.f = n + 1;
    }
    return paso;
}

// The vertex array, with room for every sample position, valid or not. Without memory the mesh gets coarser.
bool CEscenaDEM::ReservaVertices(Paso& paso) {
    for (;;) {
        const std::int64_t filas = Posiciones(m_pDEM->GetFilas(), paso.x) * paso.f;
        const std::int64_t columnas = Posiciones(m_pDEM->GetColumnas(), paso.x) * paso.f - (paso.f - 1);
        const std::int64_t cantidad = filas * columnas;
        try {
            m_Vertices.clear();
            m_Vertices.reserve(static_cast<std::size_t>(3 * cantidad));
            if (paso.f > 1) m_Alturas.reserve(static_cast<std::size_t>(cantidad));
            return true;
        } catch (const std::bad_alloc&) {
            LiberaMalla();
            AvisaSinMemoria(L"%s Sin memoria para %d vértices (paso %d)", cantidad, paso.x);
            paso = CalculaPaso(paso.n - 1);
        }
    }
}

bool CEscenaDEM::ReservaIndices(const Paso& paso) {
    const std::int64_t cantidad = std::int64_t{FilasMapa(paso)} * ColumnasMapa(paso);
    try {
        m_Indices.assign(static_cast<std::size_t>(cantidad), -1);
        return true;
    } catch (const std::bad_alloc&) {
        LiberaMalla();
        AvisaSinMemoria(L"%s Sin memoria para %d índices (paso %d)", cantidad, paso.x);
        return false;
    }
}

int CEscenaDEM::FilasMapa(const Paso& paso) const {
    const int filas = static_cast<int>(m_pDEM->GetFilas());
    return ((filas - 1) * (paso.f - 1) + filas) / paso.x + (paso.x != 1 ? 1 : 0);
}

int CEscenaDEM::ColumnasMapa(const Paso& paso) const {
    const int columnas = static_cast<int>(m_pDEM->GetColumnas());
    return ((columnas - 1) * (paso.f - 1) + columnas) / paso.x + (paso.x != 1 ? 1 : 0);
}

void CEscenaDEM::LiberaMalla() {
    std::vector<float>().swap(m_Vertices);
    std::vector<float>().swap(m_Alturas);
    std::vector<std::int32_t>().swap(m_Indices);
}

// Every sample of the mesh through TerrenoAGL, once, in the order of the rows from the north.
void CEscenaDEM::ColocaMuestras(const Paso& paso) {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int x = paso.x, f = paso.f;
    const std::int64_t colsMapa = ColumnasMapa(paso);
    const Marco marco = DameMarco();
    const double origenZ = m_pDEM->GetSemilla().GetZ();
    for (int r = 0; r < filas; r += x)
        for (int u = 0; u < (r >= filas - x ? 1 : f); ++u) {
            const std::int64_t filaMapa = (u + std::int64_t{r} * f / x) * colsMapa;
            for (int c = 0; c < columnas; c += x) {
                if (!m_pDEM->EsValido(filas - 1 - r, c)) continue;
                const float muestra = m_pDEM->Matriz().Get(filas - 1 - r, c);
                for (int w = 0; w < (c >= columnas - x ? 1 : f); ++w) {
                    double h = muestra;
                    if (f > 1 && !AlturaSuave(r, c, u, w, f, h)) continue;
                    ColocaVertice(filaMapa + std::int64_t{c} * f / x + w, marco, r + static_cast<double>(u) / f,
                                  c + static_cast<double>(w) / f, static_cast<float>(h - origenZ));
                }
            }
        }
}

// The interpolated height of a subdivided cell: row r from the north and column c, fractions u / f and w / f. A sample
// with a void beside it in its cell has none.
bool CEscenaDEM::AlturaSuave(int r, int c, int u, int w, int f, double& h) const {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int R = filas - 1 - r;  // matrix row of the sample: the north side of its cell
    const bool ultimaFila = R == 0, ultimaColumna = c == columnas - 1;
    const int c2 = ultimaColumna ? c - 1 : c;  // the last column belongs to the cell on its west
    if (c2 >= 0 && !m_pDEM->EsValido(R, c2 + 1)) return false;
    if (!ultimaFila && (!m_pDEM->EsValido(R - 1, c2) || !m_pDEM->EsValido(R - 1, c2 + 1))) return false;
    Vertiz::CPuntoDEM punto(ultimaFila ? 0 : R - 1, c2);
    const double fraccionY = ultimaFila ? 0.0 : static_cast<double>(f - u) / f;
    const double fraccionX = ultimaColumna ? 1.0 : static_cast<double>(w) / f;
    if (!m_pDEM->DamePunto(punto, fraccionX, fraccionY, 0.0, 0.0, true, true)) return false;
    h = punto.z;
    return true;
}

void CEscenaDEM::ColocaVertice(std::int64_t posicion, const Marco& marco, double fila, double columna, float h) {
    if (posicion >= static_cast<std::int64_t>(m_Indices.size())) return;
    const Vertiz::CCoor3D<double> p(marco.oeste + columna * marco.celdaX, marco.norte - fila * marco.celdaY, h, 0);
    double x = 0, y = 0, z = 0;
    if (!TerrenoAGL(p, x, y, z, 1.0, false)) return;
    m_Indices[static_cast<std::size_t>(posicion)] = static_cast<std::int32_t>(m_Vertices.size());
    m_Vertices.insert(m_Vertices.end(), {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)});
    if (m_Alturas.capacity() != 0) m_Alturas.push_back(h);
}

// The height that a vertex is coloured by. It can't be worked back from the vertex, where an exact 0 seldom survives
// the way to single precision; samples have it in the grid, and vertices between samples beside the array.
float CEscenaDEM::AlturaVertice(int fila, int columna, std::int32_t indice) const {
    if (!m_Alturas.empty()) return m_Alturas[static_cast<std::size_t>(indice / 3)];
    const float muestra = m_pDEM->Matriz().Get(m_pDEM->GetFilas() - 1 - static_cast<unsigned>(fila), columna);
    return static_cast<float>(muestra - m_pDEM->GetSemilla().GetZ());
}

int CEscenaDEM::OnIniciarDEMRegular() {
    if (m_pDEM == nullptr) return 0;
    if (m_pDEM->GetFilas() == 0 || m_pDEM->GetColumnas() == 0) return 1;
    Paso paso = CalculaPaso(m_nPuntosSuavizado);
    if (!ReservaVertices(paso)) return 0;
    if (!ReservaIndices(paso)) return 1;
    const int resultado = CompilaMalla(paso);
    LiberaMalla();
    return resultado;
}

int CEscenaDEM::CompilaMalla(const Paso& paso) {
    if (!AbreLista(m_nListaSuperficie)) return 0;
    PreparaColorUnico();
    ColocaMuestras(paso);
    // The array's address is taken when all vertices are in it; the list keeps copies of what is sent.
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, m_Vertices.data());
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int limite = GetQuad() == 1 ? columnas - paso.x : columnas;
    return GeneraDEMRegular(0, 0, filas, limite, paso.f, paso.x, filas, ColumnasMapa(paso));
}

// Unit normal of the triangle v0, v1, v2, which points into the terrain: the light's default position is its match.
CEscenaDEM::Vector CEscenaDEM::Normal(const float* v0, const float* v1, const float* v2) {
    const float ax = v0[0] - v1[0], ay = v0[1] - v1[1], az = v0[2] - v1[2];
    const float bx = v2[0] - v0[0], by = v2[1] - v0[1], bz = v2[2] - v0[2];
    const float x = ay * bz - az * by, y = az * bx - ax * bz, z = ax * by - ay * bx;
    const float longitud = std::sqrt(x * x + y * y + z * z);
    if (longitud == 0.0F) return {x, y, z};
    return {x / longitud, y / longitud, z / longitud};
}

// One row of cells, as it is sent.
struct CEscenaDEM::Banda {
    int f, x, colInicio, colFin, colsMapa;
    Vector normal{0, 0, 0};  // of the last whole cell: strips and points keep it over a void
};

int CEscenaDEM::GeneraDEMRegular(int filaInicio, int colInicio, int filaFin, int colFin, int f, int x, int /*filas*/,
                                 int colsMapa) {
    const std::int64_t limite = std::int64_t{filaFin} - x;
    if (filaInicio >= limite) return 1;
    const unsigned quad = GetQuad();
    if (quad != 0) glBegin(quad == 1 ? GL_QUADS : GL_POINTS);
    Banda banda{f, x, colInicio, colFin, colsMapa};
    for (int r = filaInicio; r < limite; r += x)
        for (int u = 0; u < f; ++u) {
            if (quad == 0) glBegin(GL_QUAD_STRIP);
            EmiteBanda(banda, r, u);
            if (quad == 0) {
                glEnd();
                if (HayErrorGL()) return 0;
            }
        }
    if (quad != 0) glEnd();
    return HayErrorGL() ? 0 : 1;
}

void CEscenaDEM::EmiteBanda(Banda& banda, int r, int u) const {
    const int f = banda.f, x = banda.x;
    const unsigned quad = GetQuad();
    const bool conAltura = GetTipoColorMDT() == 2 || GetTipoColorMDT() == 6;
    const std::int64_t fila = (u + std::int64_t{r} * f / x) * banda.colsMapa;
    const std::int64_t total = static_cast<std::int64_t>(m_Indices.size());
    // A neighbour past the end of its row, or of the map, is missing.
    const auto indice = [&](std::int64_t abajo, std::int64_t columna) -> std::int32_t {
        const std::int64_t p = fila + abajo * banda.colsMapa + columna;
        return columna < banda.colsMapa && p < total ? m_Indices[static_cast<std::size_t>(p)] : -1;
    };
    const auto emite = [&](std::int32_t i, int filaMuestra, int columnaMuestra, int lugar) {
        ColorVertice(conAltura ? AlturaVertice(filaMuestra, columnaMuestra, i) : 0.0F, lugar);
        glArrayElement(i / 3);
    };
    for (int c = banda.colInicio; c < banda.colFin; c += x)
        for (int w = 0; w < (quad != 1 && c == banda.colFin - x ? 1 : f); ++w) {
            std::int64_t columna = w + std::int64_t{c} * f / x;
            // Points: the last sample of a row has no cell of its own, and is sent as the east side of the one before.
            const bool ladoEste = quad == 2 && c == banda.colFin - 1 && w == f - 1;
            if (ladoEste) columna = f == 1 ? std::int64_t{c - 1} / x + w : columna - 1;
            const std::int32_t i0 = columna < 0 ? -1 : indice(0, columna);
            if (i0 == -1) continue;
            const std::int32_t i1 = indice(1, columna), i2 = indice(0, columna + 1), i3 = indice(1, columna + 1);
            if (i1 != -1 && i2 != -1 && i3 != -1)
                banda.normal = Normal(&m_Vertices[i0], &m_Vertices[i1], &m_Vertices[i2]);
            else if (quad == 1)
                continue;
            if (quad == 0 && i1 == -1) continue;
            glNormal3f(banda.normal.x, banda.normal.y, banda.normal.z);
            const std::int32_t primero = ladoEste ? i2 : i0, segundo = ladoEste ? i3 : i1;
            if (primero != -1) emite(primero, r, c, 0);
            if (segundo != -1) emite(segundo, r + x, c, 1);
            if (quad == 1) {
                emite(i3, r + x, c + x, 2);
                emite(i2, r, c + x, 3);
            }
        }
}
