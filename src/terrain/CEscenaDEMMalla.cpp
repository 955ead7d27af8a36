// The surface of a grid in matrix form. A matrix can hold tens of millions of samples while a list must stay small
// enough to draw: first the step and the subdivision are settled within a budget of samples, then every sample is
// placed once in a vertex array, and then the cells are walked, sending elements of that array. The walk under images
// is in CEscenaDEMMallaTexturas.cpp.

#include "terrain/CEscenaDEM.h"
#include "terrain/CEscenaDEMBanda.h"
#include "frame/CTintaAlturas.h"
#include "frame/ListaGL.h"
#include "model/IPorcentaje.h"
#include "platform/Errores.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <cmath>
#include <new>

namespace {

constexpr double kMuestrasMaximas = 5e6;
constexpr int kPasoMaximo = 1'000'000;  // beyond any grid, and far from where integers end
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
    if (m_pDEM == nullptr || m_pDEM->GetFilas() == 0 || m_pDEM->GetColumnas() == 0) return paso;
    n = std::clamp(n, -kPasoMaximo, kPasoMaximo);
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
// @return false when there is none even for the coarsest
bool CEscenaDEM::ReservaVertices(Paso& paso) {
    for (;;) {
        const std::int64_t filas = Posiciones(m_pDEM->GetFilas(), paso.x) * paso.f;
        const std::int64_t columnas = Posiciones(m_pDEM->GetColumnas(), paso.x) * paso.f - (paso.f - 1);
        const std::int64_t cantidad = filas * columnas;
        try {
            m_Vertices = std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(3 * cantidad));
            PideGrandesPaginas(m_Vertices.get(), sizeof(float) * 3 * static_cast<std::size_t>(cantidad));
            if (paso.f > 1) m_Alturas = std::make_unique_for_overwrite<float[]>(static_cast<std::size_t>(cantidad));
            return true;
        } catch (const std::bad_alloc&) {
            LiberaMalla();
            AvisaSinMemoria(L"%s Sin memoria para %d vértices (paso %d)", cantidad, paso.x);
            if (cantidad <= 1) return false;
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
    m_Vertices.reset();
    m_Alturas.reset();
    m_nVertices = 0;
    std::vector<std::int32_t>().swap(m_Indices);
}

// The heights of a row of the matrix. One that isn't in memory is read into the copy.
const float* CEscenaDEM::FilaAlturas(int fila, std::vector<float>& copia) const {
    const auto i = static_cast<unsigned>(m_pDEM->GetFilas() - 1 - fila);
    if (const float* directa = m_pDEM->Matriz().Fila(i)) return directa;
    copia.resize(m_pDEM->GetColumnas());
    for (unsigned c = 0; c < copia.size(); ++c)
        copia[c] = m_pDEM->Matriz().Get(i, c);
    return copia.data();
}

inline void CEscenaDEM::ColocaVertice(std::int64_t posicion, const Marco& marco, double fila, double columna, float h) {
    if (posicion >= static_cast<std::int64_t>(m_Indices.size())) return;
    const Vertiz::CCoor3D<double> p(marco.oeste + columna * marco.celdaX, marco.norte - fila * marco.celdaY, h, 0);
    double x = 0, y = 0, z = 0;
    if (!TerrenoAGL(p, x, y, z, 1.0, false)) return;
    float* const v = &m_Vertices[3 * static_cast<std::size_t>(m_nVertices)];
    v[0] = static_cast<float>(x), v[1] = static_cast<float>(y), v[2] = static_cast<float>(z);
    if (m_Alturas != nullptr) m_Alturas[static_cast<std::size_t>(m_nVertices)] = h;
    m_Indices[static_cast<std::size_t>(posicion)] = 3 * m_nVertices++;
}

// Every sample of the mesh through TerrenoAGL, once, in the order of the rows from the north.
void CEscenaDEM::ColocaMuestras(const Paso& paso) {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int x = paso.x, f = paso.f;
    const std::int64_t colsMapa = ColumnasMapa(paso);
    const Marco marco = DameMarco();
    const double origenZ = m_pDEM->GetSemilla().GetZ(), nulo = m_pDEM->GetNulo();
    std::vector<float> copia;
    for (int r = 0; r < filas; r += x) {
        if (f > 1) {
            for (int u = 0; u < (r >= filas - x ? 1 : f); ++u)
                ColocaDivididas(paso, marco, r, u);
            continue;
        }
        const float* alturas = FilaAlturas(r, copia);
        std::int64_t posicion = r / x * colsMapa;
        for (int c = 0; c < columnas; c += x, ++posicion)
            if (alturas[c] > nulo && std::isfinite(alturas[c]))
                ColocaVertice(posicion, marco, r, c, static_cast<float>(alturas[c] - origenZ));
    }
}

// One row of a divided mesh: subrow u of the row r.
void CEscenaDEM::ColocaDivididas(const Paso& paso, const Marco& marco, int r, int u) {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int x = paso.x, f = paso.f;
    const double origenZ = m_pDEM->GetSemilla().GetZ();
    const std::int64_t filaMapa = (u + std::int64_t{r} * f / x) * ColumnasMapa(paso);
    for (int c = 0; c < columnas; c += x) {
        if (!m_pDEM->EsValido(filas - 1 - r, c)) continue;
        for (int w = 0; w < (c >= columnas - x ? 1 : f); ++w) {
            double h = 0;
            if (!AlturaSuave(r, c, u, w, f, h)) continue;
            ColocaVertice(filaMapa + std::int64_t{c} * f / x + w, marco, r + static_cast<double>(u) / f,
                          c + static_cast<double>(w) / f, static_cast<float>(h - origenZ));
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

int CEscenaDEM::OnIniciarDEMRegular() {
    if (m_pDEM == nullptr) return 0;
    const struct Limpieza {
        CEscenaDEM& escena;
        ~Limpieza() { escena.LiberaMalla(); }
    } limpieza{*this};
    Paso paso = CalculaPaso(m_nPuntosSuavizado);
    if (!ReservaVertices(paso)) return 0;
    if (!ReservaIndices(paso)) return 1;
    return CompilaMalla(paso);
}

int CEscenaDEM::CompilaMalla(const Paso& paso) {
    const bool texturas = HayTexturas() && GetQuad() != 2;
    if (texturas) LlenaTexturas();
    if (!AbreLista(m_nListaSuperficie)) return 0;
    if (texturas)
        glColor3f(1.0F, 1.0F, 1.0F);  // the images' own colours
    else
        PreparaColorUnico();
    ColocaMuestras(paso);
    // The array's address is taken when all vertices are in it; the list keeps copies of what is sent.
    glEnableClientState(GL_VERTEX_ARRAY);
    glVertexPointer(3, GL_FLOAT, 0, m_Vertices.get());
    // An array that wasn't taken would leave elements to be read from wherever the former one was.
    const bool bien =
        !HayErrorGL() && (texturas ? CompilaTexturas(paso) && CompilaZonasLibres(paso) : CompilaEntera(paso) != 0);
    glDisableClientState(GL_VERTEX_ARRAY);
    return CierraLista(bien);
}

// The whole grid, without an image.
int CEscenaDEM::CompilaEntera(const Paso& paso) {
    const int filas = static_cast<int>(m_pDEM->GetFilas()), columnas = static_cast<int>(m_pDEM->GetColumnas());
    const int limite = GetQuad() == 1 ? columnas - paso.x : columnas;
    return GeneraDEMRegular(0, 0, filas, limite, paso.f, paso.x, filas, ColumnasMapa(paso));
}

// Unit normal of the triangle v0, v1, v2, which points into the terrain: the light's default position is its match.
CEscenaDEM::Banda::Vector CEscenaDEM::Banda::Normal(const float* v0, const float* v1, const float* v2) {
    const float ax = v0[0] - v1[0], ay = v0[1] - v1[1], az = v0[2] - v1[2];
    const float bx = v2[0] - v0[0], by = v2[1] - v0[1], bz = v2[2] - v0[2];
    const float x = ay * bz - az * by, y = az * bx - ax * bz, z = ax * by - ay * bx;
    const float longitud2 = x * x + y * y + z * z;
    const float k = longitud2 > 0.0F ? 1.0F / std::sqrt(longitud2) : 1.0F;
    return {x * k, y * k, z * k};
}

CEscenaDEM::FilaMapa CEscenaDEM::DameFilaMapa(const Banda& banda, std::int64_t fila) const {
    const auto ancho = static_cast<std::size_t>(banda.colsMapa), inicio = static_cast<std::size_t>(fila) * ancho;
    if (fila < 0 || inicio + ancho > m_Indices.size()) return {{}, nullptr};
    return {{m_Indices.data() + inicio, ancho}, nullptr};
}

// Colours by height the vertices of a row of the map, as far as the rectangle goes. The heights can't be worked back
// from the vertices, where an exact 0 seldom survives the way to single precision: those of samples are in the grid,
// those between samples beside the array.
void CEscenaDEM::ColoreaFila(Banda& banda, std::int64_t fila, std::vector<Color>& colores) const {
    const FilaMapa mapa = DameFilaMapa(banda, fila);
    if (mapa.indices.empty()) return;
    colores.resize(static_cast<std::size_t>(banda.colsMapa));
    std::vector<float> copia;
    const float* alturas = banda.f == 1 ? FilaAlturas(static_cast<int>(fila * banda.x), copia) : nullptr;
    const double origenZ = m_pDEM->GetSemilla().GetZ();
    CTintaAlturas tinta(m_Data.m_GamaColor.Paradas());
    const bool rampa = GetTipoColorMDT() == 2;
    for (std::int64_t j = banda.Primera(); j <= banda.Ultima(); ++j) {
        const std::int32_t i = mapa.Indice(j);
        if (i == -1) continue;
        const float h = alturas != nullptr ? static_cast<float>(alturas[j * banda.x] - origenZ)
                                           : m_Alturas[static_cast<std::size_t>(i / 3)];
        colores[static_cast<std::size_t>(j)] = rampa ? tinta(h, true, -1.0) : ColorDesnivel(h);
    }
}

// Colours the rows on both sides of a band. The band before has left its south side coloured, which now is the north.
void CEscenaDEM::ColoreaBanda(Banda& banda, std::int64_t fila, FilaMapa& norte, FilaMapa& sur) const {
    banda.coloresNorte.swap(banda.coloresSur);
    if (banda.filaSur != fila) ColoreaFila(banda, fila, banda.coloresNorte);
    ColoreaFila(banda, fila + 1, banda.coloresSur);
    banda.filaSur = fila + 1;
    norte.colores = banda.coloresNorte.data();
    sur.colores = banda.coloresSur.data();
}

// The normals of a band's whole cells, ahead of sending them: between calls to OpenGL each root would have to be waited
// for.
void CEscenaDEM::CalculaNormales(Banda& banda, const FilaMapa& norte, const FilaMapa& sur) const {
    banda.normales.resize(static_cast<std::size_t>(banda.colsMapa));
    const float* vertices = m_Vertices.get();
    for (std::int64_t j = banda.Primera(); j <= banda.Ultima(); ++j) {
        const std::int32_t i0 = norte.Indice(j), i1 = sur.Indice(j), i2 = norte.Indice(j + 1);
        if (i0 != -1 && i1 != -1 && i2 != -1)
            banda.normales[static_cast<std::size_t>(j)] = Banda::Normal(vertices + i0, vertices + i1, vertices + i2);
    }
}

// The calls of one band, subrow u of the row r. Its colours and normals are made ready before, and the shape of the
// cells (the setting Quad) is known to the compiler, so that hardly more than the calls is left in the loop.
template <unsigned kQuad>
void CEscenaDEM::EmiteBanda(Banda& banda, int r, int u) const {
    const int f = banda.f, x = banda.x, ultima = banda.colFin - x, colFin = banda.colFin;
    const std::int64_t fila = u + std::int64_t{r} * f / x;
    FilaMapa norte = DameFilaMapa(banda, fila), sur = DameFilaMapa(banda, fila + 1);
    if (banda.porAltura) ColoreaBanda(banda, fila, norte, sur);
    CalculaNormales(banda, norte, sur);
    const bool porAltura = banda.porAltura, tintada = banda.tintada;
    const auto emite = [=](const FilaMapa& lado, std::int64_t columna, std::int32_t indice, int lugar) {
        if (porAltura || tintada) {
            const Color& color = porAltura ? lado.colores[columna] : Tinte(lugar);
            glColor3f(color[0], color[1], color[2]);
        }
        glArrayElement(indice / 3);
    };
    const Banda::Vector* const normales = banda.normales.data();
    Banda::Vector normal = banda.normal;
    std::int64_t celda = std::int64_t{banda.colInicio} * f / x;  // column of the map that column c begins at
    for (int c = banda.colInicio; c < colFin; c += x, celda += f)
        for (int w = 0; w < (kQuad != 1 && c == ultima ? 1 : f); ++w) {
            std::int64_t columna = celda + w;
            // Points: the last sample of a row has no cell of its own, and is sent as the east side of the one before.
            const bool ladoEste = kQuad == 2 && c == colFin - 1 && w == f - 1;
            if (ladoEste) columna = f == 1 ? std::int64_t{c - 1} / x + w : columna - 1;
            const std::int32_t i0 = norte.Indice(columna);
            if (i0 == -1) continue;
            const std::int32_t i1 = sur.Indice(columna), i2 = norte.Indice(columna + 1), i3 = sur.Indice(columna + 1);
            if (i1 != -1 && i2 != -1 && i3 != -1)
                normal = normales[columna];
            else if (kQuad == 1 || (kQuad == 0 && i1 == -1))
                continue;
            glNormal3f(normal.x, normal.y, normal.z);
            const std::int64_t lado = columna + (ladoEste ? 1 : 0);
            const std::int32_t primero = ladoEste ? i2 : i0, segundo = ladoEste ? i3 : i1;
            if (primero != -1) emite(norte, lado, primero, 0);
            if (segundo != -1) emite(sur, lado, segundo, 1);
            if (kQuad == 1) {
                emite(sur, columna + 1, i3, 2);
                emite(norte, columna + 1, i2, 3);
            }
        }
    banda.normal = normal;
}

int CEscenaDEM::GeneraDEMRegular(int filaInicio, int colInicio, int filaFin, int colFin, int f, int x, int /*filas*/,
                                 int colsMapa) {
    const std::int64_t limite = std::int64_t{filaFin} - x;
    if (f < 1 || x < 1 || filaInicio >= limite) return 1;
    const unsigned quad = GetQuad();
    const bool porAltura = ColorPorAltura();
    Banda banda{f, x, colInicio, colFin, colsMapa, porAltura, !porAltura && m_Data.m_nSombraCeldas && quad < 2};
    const auto emite = quad == 0   ? &CEscenaDEM::EmiteBanda<0>
                       : quad == 1 ? &CEscenaDEM::EmiteBanda<1>
                                   : &CEscenaDEM::EmiteBanda<2>;
    if (quad != 0) glBegin(quad == 1 ? GL_QUADS : GL_POINTS);
    for (int r = filaInicio; r < limite; r += x)
        for (int u = 0; u < f; ++u) {
            if (quad == 0) glBegin(GL_QUAD_STRIP);
            (this->*emite)(banda, r, u);
            if (quad == 0) {
                glEnd();
                if (HayErrorGL()) return 0;
            }
        }
    if (quad != 0) glEnd();
    return HayErrorGL() ? 0 : 1;
}
