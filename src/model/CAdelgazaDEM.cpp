// Thinning a grid. The triangulation is made on the lattice of rows and columns, where samples that stand in line lie
// exactly in line, whatever the cells measure; only the result takes terrain coordinates.

#include "model/CAdelgazaDEM.h"

#include "model/CTriangulacion.h"
#include "model/IPorcentaje.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace Vertiz {
namespace {

constexpr int kNivelMensajes = 3;
constexpr int kRondas = 100;  // of which progress tells; a dozen is usual

// What a stored unit is, and where the terrain's origin.
struct CEscala {
    CDataSemilla semilla;
    double precision = 1.0;

    [[nodiscard]] int Cota(double cota) const { return ACoordenada<int>((cota - semilla.GetZ()) * precision); }
};

// As many decimals as cells and heights ask for, as far as the integers go.
bool Escala(const CDEM& dem, CEscala& escala) {
    constexpr int habituales = 3, maximos = 9;
    constexpr double unidades = 100.0, extremo = std::numeric_limits<int>::max();
    const CMaximas<double>& caja = dem.GetMaximasTotalDouble();
    const double celda = std::min(dem.GetCeldaX(), dem.GetCeldaY());
    const auto intenta = [&](double x, double y, double z) {
        const double alcance =
            std::max({std::abs(caja.Minima().x - x), std::abs(caja.Maxima().x - x), std::abs(caja.Minima().y - y),
                      std::abs(caja.Maxima().y - y), std::abs(caja.Minima().z - z), std::abs(caja.Maxima().z - z)});
        int decimales = habituales;
        while (decimales < maximos && celda * std::pow(10.0, decimales) < unidades)
            ++decimales;
        while (decimales > -maximos && !(alcance * std::pow(10.0, decimales) < extremo))
            --decimales;
        escala = {CDataSemilla(decimales, x, y, z), std::pow(10.0, decimales)};
        // Neighbouring samples have to stay apart.
        return celda * escala.precision >= 2.0 && alcance * escala.precision < extremo;
    };
    const CDataSemilla& propia = dem.GetSemilla();
    if (intenta(propia.GetX(), propia.GetY(), propia.GetZ()) && escala.semilla.GetDecimales() >= habituales)
        return true;
    return intenta(caja.Minima().x, caja.Minima().y, propia.GetZ());
}

// The grid as samples of one unit by one unit, so that its outlines come as rows and columns.
CDEM Reticula(const CDEM& dem) {
    CDEM reticula(dem.GetFilas(), dem.GetColumnas(), 1.0, 1.0, 0.0, 0.0);
    for (unsigned f = 0; f < dem.GetFilas(); ++f)
        for (unsigned c = 0; c < dem.GetColumnas(); ++c)
            reticula.Matriz().Set(f, c, dem.EsValido(f, c) ? 0.0F : float(CDEM::kNuloHabitual));
    reticula.ActualizaCantidades();
    return reticula;
}

// A grid being thinned.
class CMallaCreciente {
  public:
    CMallaCreciente(const CDEM& dem, const CEscala& escala, double tolerancia)
        : m_Dem(dem), m_Escala(escala), m_dTolerancia(tolerancia * escala.precision) {
        // Triangles are well shaped on the terrain, not on the lattice.
        constexpr double pasos = 64.0, extremo = 1e9;
        const double menor = std::min(dem.GetCeldaX(), dem.GetCeldaY());
        const double x = std::round(dem.GetCeldaX() / menor * pasos), y = std::round(dem.GetCeldaY() / menor * pasos);
        if (dem.GetCeldaX() != dem.GetCeldaY() && x * dem.GetColumnas() < extremo && y * dem.GetFilas() < extremo)
            m_nPasoX = int(x), m_nPasoY = int(y);
    }

    // Begins with the outlines, their corners only. @return false without any
    bool Empieza() {
        CDibujo<int> base;
        Reticula(m_Dem).DameBase(base);
        for (unsigned i = 0; i < base.Cantidad(); ++i)
            m_Contornos.Inserta(Esquinas(*base[i]));
        return m_Contornos.Cantidad() > 0;
    }

    // Triangulates, and looks for samples to add. @return 1 none is left, 2 some were added, 0 it can't be done
    int Ronda() {
        if (CTriangulacion().Run(m_Puntos, m_Contornos, m_Tin, nullptr, nullptr) != 1) return 0;
        if (m_Tin.BorraTriangulosSegunLimite() == 0) return 0;
        const std::size_t antes = m_Puntos.size();
        for (unsigned i = 0; i < m_Tin.CantidadTriangulos(); ++i)
            if (!m_Tin.Fila(i).EsBorrado()) BuscaPeor(i);
        return m_Puntos.size() == antes ? 1 : 2;
    }

    // The triangles on the terrain's coordinates.
    void Acaba(CTIN& tin) const {
        std::vector<CPuntoTIN> puntos;
        puntos.reserve(m_Tin.CantidadPuntos());
        const CDataSemilla& semilla = m_Escala.semilla;
        for (const CPuntoTIN& p : m_Tin.Puntos()) {
            const int c = p.x / m_nPasoX, f = p.y / m_nPasoY;
            puntos.emplace_back(CCoor3D<int>(
                (m_Dem.GetOeste() + c * m_Dem.GetCeldaX() - semilla.GetX()) * m_Escala.precision,
                (m_Dem.GetSur() + f * m_Dem.GetCeldaY() - semilla.GetY()) * m_Escala.precision, double(Cota(f, c))));
        }
        std::vector<CTIN::CFila> triangulos;
        triangulos.reserve(m_Tin.CantidadTriangulos());
        for (unsigned i = 0; i < m_Tin.CantidadTriangulos(); ++i) {
            CTIN::CFila& fila = triangulos.emplace_back(m_Tin.Fila(i));
            for (int k = 0; k < 3; ++k)
                fila.SetRuptura(k, false);  // an outline isn't a line of the terrain
        }
        tin = CTIN(tin.GetTipo(), tin.GetMensajes(), semilla, tin.GetData());
        tin.Toma(std::move(puntos), std::move(triangulos));
    }

  private:
    [[nodiscard]] double Altura(int f, int c) const { return double(m_Dem.Matriz().Get(unsigned(f), unsigned(c))); }
    [[nodiscard]] int Cota(int f, int c) const { return m_Escala.Cota(Altura(f, c)); }
    [[nodiscard]] CCoor3D<int> Lugar(int f, int c) const { return {c * m_nPasoX, f * m_nPasoY, 0}; }

    [[nodiscard]] CLinea<int> Esquinas(const CEntidadDigi<int>& contorno) const {
        CLinea<int> linea(L"LIMITE");
        const int n = int(contorno.NPuntos()) - 1;
        for (int i = 0; i < n; ++i) {
            const CCoor3D<int>&a = contorno.Punto(i == 0 ? n - 1 : i - 1), &b = contorno.Punto(i),
                  &c = contorno.Punto(i + 1);
            if ((a.x == b.x) != (b.x == c.x)) linea << Lugar(b.y, b.x);
        }
        linea.Cierra();
        return linea;
    }

    // The sample of a triangle that lies farthest from it, if too far, becomes a point.
    void BuscaPeor(unsigned i) {
        struct CVertice {
            std::int64_t f, c;
            double z;
        };
        std::array<CVertice, 3> v;
        for (int k = 0; k < 3; ++k) {
            const CPuntoTIN& p = m_Tin.Vertice(i, k);
            const int f = p.y / m_nPasoY, c = p.x / m_nPasoX;
            v[std::size_t(k)] = {f, c, double(Cota(f, c))};
        }
        const double ux = double(v[1].c - v[0].c), uy = double(v[1].f - v[0].f), uz = v[1].z - v[0].z;
        const double vx = double(v[2].c - v[0].c), vy = double(v[2].f - v[0].f), vz = v[2].z - v[0].z;
        const double area = ux * vy - uy * vx;
        const double gx = (uz * vy - vz * uy) / area, gy = (ux * vz - vx * uz) / area;
        // What rounding a corner to stored units may do to the plane.
        const double margen = std::abs(gx) / (m_Dem.GetCeldaX() * m_Escala.precision) +
                              std::abs(gy) / (m_Dem.GetCeldaY() * m_Escala.precision);
        double peor = std::max(m_dTolerancia - margen, 0.5);
        int peorF = -1, peorC = -1;
        const auto [f1, f2] = std::ranges::minmax({v[0].f, v[1].f, v[2].f});
        for (std::int64_t f = f1; f <= f2; ++f) {
            std::int64_t desde = std::min({v[0].c, v[1].c, v[2].c}), hasta = std::max({v[0].c, v[1].c, v[2].c});
            for (std::size_t k = 0; k < 3; ++k) {
                // Left of the side a b: (bc - ac) (f - af) >= (bf - af) (c - ac).
                const CVertice &a = v[k], &b = v[(k + 1) % 3];
                const std::int64_t df = b.f - a.f, n = (b.c - a.c) * (f - a.f);
                const auto suelo = [](std::int64_t p, std::int64_t q) { return p >= 0 ? p / q : -((-p + q - 1) / q); };
                if (df > 0) hasta = std::min(hasta, a.c + suelo(n, df));
                if (df < 0) desde = std::max(desde, a.c - suelo(n, -df));
            }
            double z = v[0].z + gx * double(desde - v[0].c) + gy * double(f - v[0].f);
            for (std::int64_t c = desde; c <= hasta; ++c, z += gx) {
                if (!m_Dem.EsValido(unsigned(f), unsigned(c))) continue;
                const double altura = (Altura(int(f), int(c)) - m_Escala.semilla.GetZ()) * m_Escala.precision;
                const double distancia = std::abs(altura - z);
                if (distancia <= peor) continue;
                peor = distancia;
                peorF = int(f), peorC = int(c);
            }
        }
        const auto esVertice = [&](const CVertice& w) { return w.f == peorF && w.c == peorC; };
        if (peorF >= 0 && std::ranges::none_of(v, esVertice)) m_Puntos.emplace_back(Lugar(peorF, peorC));
    }

    const CDEM& m_Dem;
    CEscala m_Escala;
    double m_dTolerancia;  // stored units
    int m_nPasoX = 1, m_nPasoY = 1;
    CDibujo<int> m_Contornos;
    std::vector<CPuntoTIN> m_Puntos;  // samples within them
    CTIN m_Tin;
};

}  // namespace

int CAdelgazaDEM::Run(const CDEM& dem, CTIN& tin, IPorcentaje* porcentaje) const {
    tin.Clear();
    CEscala escala;
    if (!std::isfinite(m_dTolerancia) || dem.EsListaCeldas() || dem.DameCeldas() == 0 || !Escala(dem, escala)) return 0;
    CMallaCreciente malla(dem, escala, std::max(m_dTolerancia, 1.0 / escala.precision));
    if (!malla.Empieza()) return 0;
    for (int ronda = 1;; ++ronda) {
        if (porcentaje != nullptr && porcentaje->Paso(kNivelMensajes, std::min(ronda, kRondas), kRondas, 0) == 0)
            return 2;
        const int resultado = malla.Ronda();
        if (resultado == 0) return 0;
        if (resultado == 1) break;
    }
    malla.Acaba(tin);
    return 1;
}

}  // namespace Vertiz
