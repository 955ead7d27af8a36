// The grid's surface: heights between the samples, points and lines put on it, and the vectors that smooth it.
#include "model/CDEM.h"

#include "model/CIndiceCeldas.h"
#include "model/Parche.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace Vertiz {

namespace {

/// How far, in fractions of a cell, a coordinate may be off for having been worked out in doubles.
/// @param mayor  the greatest number that took part
double Tolerancia(double mayor, double celda) {
    return 1e-9 + 4.0 * std::numeric_limits<double>::epsilon() * std::abs(mayor) / celda;
}

/// Parts a distance in cells into a cell and a fraction of it. False outside; the last sample belongs to the last cell.
bool ParteCelda(double distancia, double tolerancia, unsigned muestras, unsigned& celda, double& fraccion) {
    const double ultima = double(muestras) - 1.0;
    if (!std::isfinite(distancia) || distancia < -tolerancia || distancia > ultima + tolerancia) return false;
    const double cercana = std::round(distancia);
    // What is at a sample but for rounding belongs to it alone: a void beside it must not matter.
    const double d = std::clamp(std::abs(distancia - cercana) <= tolerancia ? cercana : distancia, 0.0, ultima);
    const double primera = std::min(std::floor(d), std::max(ultima - 1.0, 0.0));
    celda = unsigned(primera);
    fraccion = d - primera;
    return true;
}

/// The slope between neighbours at a distance of one cell; one-sided beside a void, 0 between two.
double Pendiente(bool bAntes, double antes, double cota, bool bDespues, double despues, double celda) {
    if (bAntes && bDespues) return (despues - antes) / (2.0 * celda);
    if (bDespues) return (despues - cota) / celda;
    return bAntes ? (cota - antes) / celda : 0.0;
}

EsquinaParche Esquina(float cota, float vx, float vy, float vz, double ancho, double alto) {
    const double pendienteX = -double(vx) / double(vz) * ancho, pendienteY = -double(vy) / double(vz) * alto;
    const bool bInclinada = vz > 0.0f && std::isfinite(pendienteX) && std::isfinite(pendienteY);
    return {cota, bInclinada ? pendienteX : 0.0, bInclinada ? pendienteY : 0.0};
}

}  // namespace

bool CDEM::TieneVectores() const {
    if (!m_bSuavizado) return false;
    const auto como = [this](const CMatriz<float>& m) {
        return m.GetFilas() == GetFilas() && m.GetColumnas() == GetColumnas();
    };
    return m_bListaCeldas || (como(m_VectorX) && como(m_VectorY) && como(m_VectorZ));
}

/// The surface of a cell, as far as its part between a and b needs it: nothing where a corner that counts there is
/// missing or a void. In the list the row is the cell's index.
std::optional<Parche> CDEM::DameParche(unsigned fila, unsigned columna, const PuntoParche& a, const PuntoParche& b,
                                       bool bSuavizado) const {
    const bool bSuave = bSuavizado && TieneVectores();
    const bool bOeste = a.u < 1.0 || b.u<1.0, bEste = a.u> 0.0 || b.u > 0.0;
    const bool bSur = a.v < 1.0 || b.v<1.0, bNorte = a.v> 0.0 || b.v > 0.0;
    const bool cuentan[4] = {bSur && bOeste, bSur && bEste, bNorte && bOeste, bNorte && bEste};
    std::array<EsquinaParche, 4> esquinas{};

    if (m_bListaCeldas) {
        RectanguloCelda r;
        if (fila >= m_Celdas.size() || !DameRectangulo(fila, r)) return std::nullopt;
        static constexpr int kOrden[4] = {0, 3, 1, 2};  // the list goes round the cell, the patch row by row
        for (int i = 0; i < 4; ++i) {
            const CPunto& p = m_Puntos[m_Celdas[fila].m_nPuntos[kOrden[i]]];
            if (!cuentan[i]) continue;
            if (!EsCota(p.m_fCota)) return std::nullopt;
            esquinas[i] = bSuave ? Esquina(p.m_fCota, p.m_fVectorX, p.m_fVectorY, p.m_fVectorZ, r.m_dEste - r.m_dOeste,
                                           r.m_dNorte - r.m_dSur)
                                 : EsquinaParche{p.m_fCota, 0.0, 0.0};
        }
        return Parche(esquinas, bSuave);
    }

    if (fila >= GetFilas() || columna >= GetColumnas()) return std::nullopt;
    for (unsigned i = 0; i < 4; ++i) {
        const unsigned f = fila + i / 2, c = columna + i % 2;
        if (!cuentan[i]) continue;
        if (!EsValido(f, c)) return std::nullopt;
        esquinas[i] = bSuave ? Esquina(m_Matriz.Get(f, c), m_VectorX.Get(f, c), m_VectorY.Get(f, c),
                                       m_VectorZ.Get(f, c), m_dCeldaX, m_dCeldaY)
                             : EsquinaParche{m_Matriz.Get(f, c), 0.0, 0.0};
    }
    return Parche(esquinas, bSuave);
}

bool CDEM::DamePunto(CPuntoDEM& punto, double fraccionX, double fraccionY, double origenX, double origenY,
                     bool bSuavizado, bool bSoloCota) const {
    if (!(fraccionX >= 0.0 && fraccionX <= 1.0 && fraccionY >= 0.0 && fraccionY <= 1.0)) return false;
    const PuntoParche p{fraccionX, fraccionY};
    const std::optional<Parche> parche = DameParche(punto.m_nFila, punto.m_nColumna, p, p, bSuavizado);
    if (!parche) return false;
    punto.z = parche->Cota(p);
    if (bSoloCota) return true;

    RectanguloCelda r{m_dOeste, m_dSur, m_dOeste + m_dCeldaX, m_dSur + m_dCeldaY};
    double columna = punto.m_nColumna, fila = punto.m_nFila;
    if (m_bListaCeldas) {
        DameRectangulo(punto.m_nFila, r);
        columna = fila = 0.0;
    }
    punto.x = r.m_dOeste - origenX + (columna + fraccionX) * (m_bListaCeldas ? r.m_dEste - r.m_dOeste : m_dCeldaX);
    punto.y = r.m_dSur - origenY + (fila + fraccionY) * (m_bListaCeldas ? r.m_dNorte - r.m_dSur : m_dCeldaY);
    return true;
}

/// Finds the cell under a point and the surface's absolute height there. Coordinates are absolute less an origin.
bool CDEM::Sitio(double x, double y, double origenX, double origenY, CPuntoDEM& celda) const {
    const double mayor = std::max({std::abs(x), std::abs(y), std::abs(origenX), std::abs(origenY)});
    const auto parte = [mayor](double v, double inicio, double paso, unsigned muestras, unsigned& i, double& fraccion) {
        return ParteCelda((v - inicio) / paso, Tolerancia(mayor + std::abs(inicio), paso), muestras, i, fraccion);
    };
    double u = 0.0, v = 0.0;
    if (!m_bListaCeldas) {
        return parte(x, m_dOeste - origenX, m_dCeldaX, GetColumnas(), celda.m_nColumna, u) &&
               parte(y, m_dSur - origenY, m_dCeldaY, GetFilas(), celda.m_nFila, v) &&
               DamePunto(celda, u, v, origenX, origenY, true, true);
    }
    if (!m_pIndice) return false;
    for (const std::uint32_t i : m_pIndice->Cerca(x + origenX, y + origenY)) {
        RectanguloCelda r;
        unsigned nada = 0;
        if (i >= m_Celdas.size() || !DameRectangulo(i, r)) continue;
        celda.m_nFila = i;
        celda.m_nColumna = 0;
        if (parte(x, r.m_dOeste - origenX, r.m_dEste - r.m_dOeste, 2, nada, u) &&
            parte(y, r.m_dSur - origenY, r.m_dNorte - r.m_dSur, 2, nada, v) &&
            DamePunto(celda, u, v, origenX, origenY, true, true))
            return true;
    }
    return false;
}

bool CDEM::Proyecta(CCoor3D<double>& punto, CPuntoDEM* celda, bool bAbsolutas) const {
    CPuntoDEM sitio;
    if (!Sitio(punto.x, punto.y, bAbsolutas ? 0.0 : m_Semilla.GetX(), bAbsolutas ? 0.0 : m_Semilla.GetY(), sitio))
        return false;
    punto.z = bAbsolutas ? sitio.z : sitio.z - m_Semilla.GetZ();
    if (celda) {
        static_cast<CCoor3D<double>&>(*celda) = punto;
        celda->m_nFila = sitio.m_nFila;
        celda->m_nColumna = sitio.m_nColumna;
    }
    return true;
}

/// Where a segment crosses the grid's rows and columns: fractions of it, between its ends, in order.
std::vector<double> CDEM::Cortes(const CCoor3D<double>& a, const CCoor3D<double>& b, double origenX,
                                 double origenY) const {
    std::vector<double> cortes;
    const auto corta = [&cortes](double desde, double hasta, double linea) {
        const double t = (linea - desde) / (hasta - desde);
        if (t > 0.0 && t < 1.0) cortes.push_back(t);
    };
    const auto cortaLista = [&](double desde, double hasta, const std::vector<double>& lineas, double origen) {
        for (const double linea : lineas)
            corta(desde, hasta, linea - origen);
    };
    const auto cortaReticula = [&](double desde, double hasta, double inicio, double paso, unsigned lineas) {
        const double ultima = double(lineas) - 1.0;
        const double menor = std::clamp(std::floor((std::min(desde, hasta) - inicio) / paso), 0.0, ultima);
        const double mayor = std::clamp(std::ceil((std::max(desde, hasta) - inicio) / paso), 0.0, ultima);
        for (double i = menor; i <= mayor; ++i)
            corta(desde, hasta, inicio + i * paso);
    };
    if (m_bListaCeldas) {
        cortaLista(a.x, b.x, m_ListaX, origenX);
        cortaLista(a.y, b.y, m_ListaY, origenY);
    } else if (GetFilas() > 0) {
        cortaReticula(a.x, b.x, m_dOeste - origenX, m_dCeldaX, GetColumnas());
        cortaReticula(a.y, b.y, m_dSur - origenY, m_dCeldaY, GetFilas());
    }
    // A crossing of a corner is one point, and one that rounding puts on an end is that end.
    constexpr double kJuntos = 1e-12;
    std::sort(cortes.begin(), cortes.end());
    cortes.erase(std::unique(cortes.begin(), cortes.end(), [](double t, double u) { return u - t < kJuntos; }),
                 cortes.end());
    std::erase_if(cortes, [](double t) { return t < kJuntos || t > 1.0 - kJuntos; });
    return cortes;
}

bool CDEM::Proyecta(CLinea<double>& linea, bool bInserta, bool bConserva, bool bAbsolutas) const {
    const double origenX = bAbsolutas ? 0.0 : m_Semilla.GetX(), origenY = bAbsolutas ? 0.0 : m_Semilla.GetY();
    std::vector<CCoor3D<double>> puntos;
    bool bTodos = true;
    for (unsigned i = 0; i < linea.NPuntos(); ++i) {
        const CCoor3D<double> a = linea.Punto(int(i));
        CCoor3D<double> p = a;
        const bool bEncima = Proyecta(p, nullptr, bAbsolutas);
        bTodos = bTodos && bEncima;
        if (bEncima || bConserva) puntos.push_back(p);
        if (!bInserta || i + 1 == linea.NPuntos()) continue;
        const CCoor3D<double> b = linea.Punto(int(i) + 1);
        for (const double t : Cortes(a, b, origenX, origenY)) {
            CCoor3D<double> corte(a.x + (b.x - a.x) * t, a.y + (b.y - a.y) * t, 0.0, a.GetTipoCompleto());
            if (Proyecta(corte, nullptr, bAbsolutas)) puntos.push_back(corte);
        }
    }
    while (linea.NPuntos() > puntos.size())
        linea.BorraPunto(int(linea.NPuntos()) - 1, 1);
    for (unsigned i = 0; i < puntos.size(); ++i) {
        if (i < linea.NPuntos())
            linea.ModificaPunto(i, puntos[i], false);
        else
            linea << puntos[i];
    }
    linea.CalculaMaximas();
    return bTodos;
}

void CDEM::CalculaVectores() {
    m_bSuavizado = true;
    if (m_bListaCeldas) {
        CalculaVectoresLista();
        return;
    }
    const unsigned filas = GetFilas(), columnas = GetColumnas();
    for (CMatriz<float>* vector : {&m_VectorX, &m_VectorY, &m_VectorZ})
        vector->Redimensiona(filas, columnas, 0);
    for (unsigned f = 0; f < filas; ++f) {
        for (unsigned c = 0; c < columnas; ++c) {
            // Before the first sample the index turns into the greatest one, which is outside.
            const double cota = m_Matriz.Get(f, c);
            const bool bValido = EsValido(f, c);
            const double x = Pendiente(EsValido(f, c - 1), m_Matriz.Get(f, c - 1), cota, EsValido(f, c + 1),
                                       m_Matriz.Get(f, c + 1), m_dCeldaX);
            const double y = Pendiente(EsValido(f - 1, c), m_Matriz.Get(f - 1, c), cota, EsValido(f + 1, c),
                                       m_Matriz.Get(f + 1, c), m_dCeldaY);
            m_VectorX.Set(f, c, bValido ? float(-x) : 0.0f);
            m_VectorY.Set(f, c, bValido ? float(-y) : 0.0f);
            m_VectorZ.Set(f, c, 1.0f);
        }
    }
}

void CDEM::CalculaVectoresLista() {
    struct Suma {
        double x = 0.0, y = 0.0, n = 0.0;
    };
    std::vector<Suma> sumas(m_Puntos.size());
    for (unsigned i = 0; i < m_Celdas.size(); ++i) {
        RectanguloCelda r;
        if (!EsCeldaValida(i, 0, 1) || !DameRectangulo(i, r)) continue;
        const auto& p = m_Celdas[i].m_nPuntos;
        const auto cota = [&](int k) { return double(m_Puntos[p[k]].m_fCota); };
        const double ancho = r.m_dEste - r.m_dOeste, alto = r.m_dNorte - r.m_dSur;
        const double sur = (cota(3) - cota(0)) / ancho, norte = (cota(2) - cota(1)) / ancho;
        const double oeste = (cota(1) - cota(0)) / alto, este = (cota(2) - cota(3)) / alto;
        const double pendientes[4][2] = {{sur, oeste}, {norte, oeste}, {norte, este}, {sur, este}};
        for (int k = 0; k < 4; ++k) {
            Suma& suma = sumas[p[k]];
            suma = {suma.x + pendientes[k][0], suma.y + pendientes[k][1], suma.n + 1.0};
        }
    }
    for (std::size_t i = 0; i < m_Puntos.size(); ++i) {
        const double n = std::max(sumas[i].n, 1.0);
        m_Puntos[i].m_fVectorX = float(-sumas[i].x / n);
        m_Puntos[i].m_fVectorY = float(-sumas[i].y / n);
        m_Puntos[i].m_fVectorZ = 1.0f;
    }
}

}  // namespace Vertiz
