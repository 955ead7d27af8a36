// The outline of the valid cells.

#include "model/CDEM.h"
#include "model/CIndiceCeldas.h"

#include <algorithm>
#include <unordered_map>

namespace Vertiz {

namespace {

// A corner of cells: row and column among all corners.
struct Nudo {
    std::int64_t f, c;
    bool operator==(const Nudo&) const = default;
};
using Anillo = std::vector<Nudo>;

// Follows the borders between cells that are there and cells that aren't, with terrain on the left. A border that
// comes back to a corner closes there, so that no ring touches itself.
class TrazaContornos {
  public:
    TrazaContornos(std::int64_t filas, std::int64_t columnas, std::vector<bool> celdas)
        : m_nFilas(filas), m_nColumnas(columnas), m_Celdas(std::move(celdas)), m_Vistos(m_Celdas.size()) {}

    std::vector<Anillo> Traza() {
        // Every ring has a border that runs eastwards, below a cell.
        for (std::int64_t f = 0; f < m_nFilas; ++f)
            for (std::int64_t c = 0; c < m_nColumnas; ++c)
                if (Hay(f, c) && !Hay(f - 1, c) && !m_Vistos[Indice(f, c)]) Sigue({f, c});
        return std::move(m_Anillos);
    }

  private:
    enum Rumbo { Este, Norte, Oeste, Sur };

    std::size_t Indice(std::int64_t f, std::int64_t c) const { return std::size_t(f * m_nColumnas + c); }
    bool Hay(std::int64_t f, std::int64_t c) const {
        return f >= 0 && c >= 0 && f < m_nFilas && c < m_nColumnas && m_Celdas[Indice(f, c)];
    }
    // The cells on the left and on the right of a border that leaves a corner.
    bool Izquierda(Nudo n, int rumbo) const {
        return Hay(rumbo == Este || rumbo == Norte ? n.f : n.f - 1, rumbo == Este || rumbo == Sur ? n.c : n.c - 1);
    }
    bool Derecha(Nudo n, int rumbo) const {
        return Hay(rumbo == Norte || rumbo == Oeste ? n.f : n.f - 1, rumbo == Este || rumbo == Norte ? n.c : n.c - 1);
    }
    // Four borders meet where two cells touch only here.
    bool EsCruce(Nudo n) const {
        const bool so = Hay(n.f - 1, n.c - 1), se = Hay(n.f - 1, n.c), no = Hay(n.f, n.c - 1), ne = Hay(n.f, n.c);
        return so == ne && no == se && so != no;
    }

    void Sigue(const Nudo inicio) {
        std::vector<Nudo> camino;
        std::unordered_map<std::size_t, std::size_t> cruces;  // corner of a crossing -> its place on the way
        Nudo n = inicio;
        int rumbo = Este;
        do {
            if (EsCruce(n)) {
                const std::size_t clave = std::size_t(n.f * (m_nColumnas + 1) + n.c);
                const auto [cruce, bNuevo] = cruces.try_emplace(clave, camino.size());
                if (!bNuevo) Corta(camino, cruce->second, cruces);
            }
            camino.push_back(n);
            if (rumbo == Este) m_Vistos[Indice(n.f, n.c)] = true;
            n = {n.f + (rumbo == Norte) - (rumbo == Sur), n.c + (rumbo == Este) - (rumbo == Oeste)};
            // To the left first: on a crossing the way stays with its cell.
            for (const int giro : {1, 0, 3}) {
                const int siguiente = (rumbo + giro) % 4;
                if (Izquierda(n, siguiente) && !Derecha(n, siguiente)) {
                    rumbo = siguiente;
                    break;
                }
            }
        } while (!(n == inicio && rumbo == Este));
        Corta(camino, 0, cruces);
    }

    // Makes a ring of the way from a place on, and forgets that part.
    void Corta(std::vector<Nudo>& camino, std::size_t desde, std::unordered_map<std::size_t, std::size_t>& cruces) {
        m_Anillos.emplace_back(camino.begin() + std::ptrdiff_t(desde), camino.end());
        camino.resize(desde);
        std::erase_if(cruces, [desde](const auto& cruce) { return cruce.second > desde; });
    }

    std::int64_t m_nFilas, m_nColumnas;
    std::vector<bool> m_Celdas, m_Vistos;
    std::vector<Anillo> m_Anillos;
};

// Local coordinates as integers of a seed; false when they don't fit.
bool AEntero(const CCoor3D<double>& p, double precision, CCoor3D<int>& entero) {
    const CCoor3D<double> n(p.x * precision, p.y * precision, p.z * precision);
    if (!CabeEnEnteros(n)) return false;
    entero = CCoor3D<int>(n.x, n.y, n.z);
    return true;
}

// Place of a coordinate in a sorted list that holds it.
std::int64_t Puesto(const std::vector<double>& lista, double v) {
    return std::lower_bound(lista.begin(), lista.end(), v) - lista.begin();
}

void Ordena(std::vector<double>& lista) {
    std::sort(lista.begin(), lista.end());
    lista.erase(std::unique(lista.begin(), lista.end()), lista.end());
}

}  // namespace

// The rings round the matrix' cells, in absolute coordinates, without the repeated last point.
std::vector<std::vector<CCoor3D<double>>> CDEM::ContornosMatriz() const {
    std::vector<std::vector<CCoor3D<double>>> contornos;
    if (GetFilas() < 2 || GetColumnas() < 2) return contornos;
    const std::int64_t filas = std::int64_t(GetFilas()) - 1, columnas = std::int64_t(GetColumnas()) - 1;
    std::vector<bool> celdas(std::size_t(filas * columnas));
    for (std::int64_t f = 0, i = 0; f < filas; ++f)
        for (std::int64_t c = 0; c < columnas; ++c, ++i)
            celdas[std::size_t(i)] = EsCeldaValida(unsigned(f), unsigned(c), 1);
    for (const Anillo& anillo : TrazaContornos(filas, columnas, std::move(celdas)).Traza()) {
        auto& contorno = contornos.emplace_back();
        for (const Nudo& n : anillo)
            contorno.emplace_back(m_dOeste + double(n.c) * m_dCeldaX, m_dSur + double(n.f) * m_dCeldaY,
                                  double(m_Matriz.Get(unsigned(n.f), unsigned(n.c))), 0);
    }
    return contornos;
}

// The same for the list: its cells are laid on the lattice of all their sides.
std::vector<std::vector<CCoor3D<double>>> CDEM::ContornosLista() const {
    std::vector<std::vector<CCoor3D<double>>> contornos;
    std::vector<std::pair<unsigned, RectanguloCelda>> validas;
    std::vector<double> xs, ys;
    for (unsigned i = 0; i < m_Celdas.size(); ++i) {
        RectanguloCelda r;
        if (!EsCeldaValida(i, 0, 1) || !DameRectangulo(i, r)) continue;
        validas.emplace_back(i, r);
        xs.insert(xs.end(), {r.m_dOeste, r.m_dEste});
        ys.insert(ys.end(), {r.m_dSur, r.m_dNorte});
    }
    if (validas.empty()) return contornos;
    Ordena(xs);
    Ordena(ys);

    const std::int64_t filas = std::int64_t(ys.size()) - 1, columnas = std::int64_t(xs.size()) - 1;
    std::vector<bool> celdas(std::size_t(filas * columnas));
    std::unordered_map<std::int64_t, double> cotas;  // by corner; corners of the lattice that no cell has are left out
    for (const auto& [i, r] : validas) {
        const std::int64_t c0 = Puesto(xs, r.m_dOeste), c1 = Puesto(xs, r.m_dEste);
        const std::int64_t f0 = Puesto(ys, r.m_dSur), f1 = Puesto(ys, r.m_dNorte);
        for (std::int64_t f = f0; f < f1; ++f)
            std::fill_n(celdas.begin() + std::ptrdiff_t(f * columnas + c0), c1 - c0, true);
        const std::int64_t esquinas[4] = {f0 * (columnas + 1) + c0, f1 * (columnas + 1) + c0, f1 * (columnas + 1) + c1,
                                          f0 * (columnas + 1) + c1};
        for (int k = 0; k < 4; ++k)
            cotas.emplace(esquinas[k], m_Puntos[m_Celdas[i].m_nPuntos[k]].m_fCota);
    }
    for (const Anillo& anillo : TrazaContornos(filas, columnas, std::move(celdas)).Traza()) {
        auto& contorno = contornos.emplace_back();
        for (const Nudo& n : anillo) {
            const auto cota = cotas.find(n.f * (columnas + 1) + n.c);
            if (cota != cotas.end()) contorno.emplace_back(xs[std::size_t(n.c)], ys[std::size_t(n.f)], cota->second, 0);
        }
    }
    return contornos;
}

int CDEM::DameBase(CDibujo<int>& dibujo) const {
    const CCoor3D<double> origen(m_Semilla.GetX(), m_Semilla.GetY(), m_Semilla.GetZ(), 0);
    const double precision = m_Semilla.Precision();
    std::vector<CLinea<int>> lineas;
    for (const auto& contorno : m_bListaCeldas ? ContornosLista() : ContornosMatriz()) {
        CLinea<int>& linea = lineas.emplace_back(CString(L"LIMITE"));
        linea.Reserva(contorno.size() + 1);
        for (const CCoor3D<double>& p : contorno) {
            CCoor3D<int> entero;
            if (!AEntero(p - origen, precision, entero)) return 0;
            linea << entero;
        }
        linea << linea.Punto(0);
    }
    for (const CLinea<int>& linea : lineas)
        dibujo.Inserta(linea);
    return 1;
}

}  // namespace Vertiz
