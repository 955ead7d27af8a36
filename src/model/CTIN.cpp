// The triangulated terrain: what it holds, how it changes, and what of it lies within limits.

#include "model/CTIN.h"

#include "model/BusquedaTIN.h"
#include "model/CDataHelmertNTV2.h"
#include "model/Predicados.h"

#include <algorithm>
#include <cstddef>
#include <utility>

namespace Vertiz {

CTIN::CTIN(const CDataSemilla& semilla) : m_Semilla(semilla) {}

CTIN::CTIN(int tipo, CNivelMensajes mensajes, const CDataSemilla& semilla, const CDataTIN& data)
    : m_nTipo(static_cast<std::uint8_t>(tipo)), m_Semilla(semilla), m_Data(data) {
    Mensajes(mensajes);
}

CTIN::CTIN(CTIN&&) noexcept = default;
CTIN& CTIN::operator=(CTIN&&) noexcept = default;
CTIN::CTIN(const CTIN&) = default;
CTIN& CTIN::operator=(const CTIN&) = default;
CTIN::~CTIN() = default;

// ---- Points and triangles ------------------------------------------------------------------------------------------

CTriangulo CTIN::Triangulo(unsigned i) const {
    const CFila& fila = m_Triangulos[i];
    const auto punto = [&](std::size_t k) {
        return fila.m_nVertices[k] == 0 ? nullptr : m_Puntos.data() + (fila.m_nVertices[k] - 1);
    };
    CTriangulo triangulo(punto(0), punto(1), punto(2), fila.m_nVecinos[0], fila.m_nVecinos[1], fila.m_nVecinos[2]);
    static_cast<CMarcasTriangulo&>(triangulo) = fila;
    return triangulo;
}

bool CTIN::EsVisible(unsigned i) const {
    const CFila& fila = m_Triangulos[i];
    return !fila.EsBorrado() && std::ranges::all_of(fila.m_nVertices, [this](std::uint32_t v) {
        return v != 0 && !m_Puntos.at(v - 1).EsBorrado();
    });
}

unsigned CTIN::CantidadVisibles() const {
    unsigned cuantos = 0;
    for (unsigned i = 0; i < CantidadTriangulos(); ++i)
        cuantos += EsVisible(i) ? 1 : 0;
    return cuantos;
}

void CTIN::Toma(std::vector<CPuntoTIN> puntos, std::vector<CFila> triangulos) {
    std::int32_t numero = 0;
    for (CPuntoTIN& punto : puntos) {
        ++numero;
        punto.SetNumero(punto.EsBorrado() ? -numero : numero);
    }
    const auto nPuntos = static_cast<std::uint32_t>(puntos.size());
    const auto nTriangulos = static_cast<std::int32_t>(triangulos.size());
    for (CFila& fila : triangulos) {
        for (std::uint32_t& v : fila.m_nVertices)
            v = v > nPuntos ? 0 : v;
        for (std::int32_t& vecino : fila.m_nVecinos)
            vecino = vecino >= nTriangulos ? -1 : std::max(vecino, -1);
    }
    m_Puntos = CSetPuntosMdt(std::move(puntos));
    m_Triangulos = std::move(triangulos);
    BorraCurvas();
    ActualizaCantidades();
}

namespace {

// A side of a triangle as its two vertices, the lower number first, and where it stands.
struct CLado {
    std::uint64_t clave;
    std::uint32_t triangulo;
    std::uint8_t lado;
    bool bDirecto;  // from the lower number to the higher
};

}  // namespace

void CTIN::TomaSueltos(std::vector<CPuntoTIN> puntos, std::vector<CFila> triangulos) {
    const auto valido = [&](const CFila& fila) {
        return std::ranges::all_of(fila.m_nVertices, [&](std::uint32_t v) { return v != 0 && v <= puntos.size(); });
    };
    std::vector<CLado> lados;
    lados.reserve(triangulos.size() * 3);
    for (std::size_t i = 0; i < triangulos.size(); ++i) {
        CFila& fila = triangulos[i];
        fila.m_nVecinos = {-1, -1, -1};
        if (!valido(fila)) continue;
        const auto plano = [&](std::size_t k) { return predicados::CPlano(puntos[fila.m_nVertices[k] - 1]); };
        if (predicados::Orientacion(plano(0), plano(1), plano(2)) < 0) {
            std::swap(fila.m_nVertices[1], fila.m_nVertices[2]);
            // Sides 0 and 2 change places, the one between the two stays.
            const bool ruptura = fila.EsRuptura(0), limite = fila.EsLimite(0);
            fila.SetRuptura(0, fila.EsRuptura(2)), fila.SetLimite(0, fila.EsLimite(2));
            fila.SetRuptura(2, ruptura), fila.SetLimite(2, limite);
        }
        for (std::size_t k = 0; k < 3; ++k) {
            const std::uint64_t a = fila.m_nVertices[k], b = fila.m_nVertices[(k + 1) % 3];
            if (a == b) continue;
            lados.push_back({std::min(a, b) << 32 | std::max(a, b), static_cast<std::uint32_t>(i),
                             static_cast<std::uint8_t>(k), a < b});
        }
    }
    std::ranges::sort(lados, [](const CLado& a, const CLado& b) {
        return a.clave != b.clave ? a.clave < b.clave : a.triangulo < b.triangulo;
    });
    for (std::size_t i = 0; i < lados.size();) {
        std::size_t fin = i + 1;
        while (fin < lados.size() && lados[fin].clave == lados[i].clave)
            ++fin;
        // The first one, and the first of those that run the other way.
        for (std::size_t j = i + 1; j < fin; ++j) {
            if (lados[j].bDirecto == lados[i].bDirecto) continue;
            triangulos[lados[i].triangulo].m_nVecinos[lados[i].lado] = static_cast<std::int32_t>(lados[j].triangulo);
            triangulos[lados[j].triangulo].m_nVecinos[lados[j].lado] = static_cast<std::int32_t>(lados[i].triangulo);
            break;
        }
        i = fin;
    }
    Toma(std::move(puntos), std::move(triangulos));
}

bool CTIN::ModificaPunto(const CPuntoTIN& punto, unsigned i) {
    if (i >= CantidadPuntos()) return false;
    const auto numero = static_cast<std::int32_t>(i) + 1;
    m_Puntos.at(i) = punto;
    m_Puntos.at(i).SetNumero(punto.EsBorrado() ? -numero : numero);
    return true;
}

bool CTIN::ModificaTriangulo(const CTriangulo& triangulo, unsigned i) {
    if (i >= CantidadTriangulos()) return false;
    CFila& fila = m_Triangulos[i];
    static_cast<CMarcasTriangulo&>(fila) = triangulo;
    for (int k = 0; k < 3; ++k) {
        const CPuntoTIN* const punto = triangulo.Punto(k);
        const bool bPropio = punto != nullptr && !m_Puntos.empty() && !std::less<>()(punto, m_Puntos.data()) &&
                             std::less<>()(punto, m_Puntos.data() + CantidadPuntos());
        const int vecino = triangulo.Vecino(k);
        fila.m_nVertices[static_cast<std::size_t>(k)] =
            bPropio ? static_cast<std::uint32_t>(punto - m_Puntos.data()) + 1 : 0;
        fila.m_nVecinos[static_cast<std::size_t>(k)] =
            vecino >= 0 && static_cast<unsigned>(vecino) < CantidadTriangulos() ? vecino : -1;
    }
    return true;
}

bool CTIN::BorraTriangulo(unsigned i) {
    if (i >= CantidadTriangulos()) return false;
    m_Triangulos[i].SetBorrado(true);
    return true;
}

// From outside in: each side that is a limit changes sides.
unsigned CTIN::BorraTriangulosSegunLimite() {
    enum class Lugar : std::uint8_t { Desconocido, Fuera, Dentro };
    std::vector<Lugar> lugares(m_Triangulos.size(), Lugar::Desconocido);
    std::vector<std::size_t> pendientes;
    const auto anota = [&](std::size_t i, bool dentro) {
        if (lugares[i] != Lugar::Desconocido) return;
        lugares[i] = dentro ? Lugar::Dentro : Lugar::Fuera;
        pendientes.push_back(i);
    };
    for (std::size_t i = 0; i < m_Triangulos.size(); ++i)
        for (int lado = 0; lado < 3; ++lado)
            if (m_Triangulos[i].m_nVecinos[static_cast<std::size_t>(lado)] < 0)
                anota(i, m_Triangulos[i].EsLimite(lado));
    while (!pendientes.empty()) {
        const std::size_t i = pendientes.back();
        pendientes.pop_back();
        const bool dentro = lugares[i] == Lugar::Dentro;
        for (int lado = 0; lado < 3; ++lado) {
            const int vecino = m_Triangulos[i].m_nVecinos[static_cast<std::size_t>(lado)];
            if (vecino >= 0) anota(static_cast<std::size_t>(vecino), dentro != m_Triangulos[i].EsLimite(lado));
        }
    }
    unsigned quedan = 0;
    for (std::size_t i = 0; i < m_Triangulos.size(); ++i) {
        if (lugares[i] != Lugar::Dentro) m_Triangulos[i].SetBorrado(true);
        if (!m_Triangulos[i].EsBorrado()) ++quedan;
    }
    return quedan;
}

// ---- Types and textures --------------------------------------------------------------------------------------------

void CTIN::GetTiposTriangulos(std::vector<int>& tipos, std::vector<unsigned>* cantidades,
                              std::vector<double>* superficies) const {
    std::array<unsigned, 256> cuantos{};
    std::array<double, 256> areas{};
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        const unsigned tipo = m_Triangulos[i].GetTipoTriangulo();
        if (m_Triangulos[i].EsBorrado()) continue;
        ++cuantos[tipo];
        if (superficies != nullptr && EsVisible(i)) areas[tipo] += Triangulo(i).SuperficiePlana();
    }
    tipos.clear();
    if (cantidades != nullptr) cantidades->clear();
    if (superficies != nullptr) superficies->clear();
    for (unsigned tipo = 1; tipo < cuantos.size(); ++tipo) {
        if (cuantos[tipo] == 0) continue;
        tipos.push_back(static_cast<int>(tipo));
        if (cantidades != nullptr) cantidades->push_back(cuantos[tipo]);
        if (superficies != nullptr) superficies->push_back(areas[tipo] / (Precision() * Precision()));
    }
}

void CTIN::QuitaTexturas(unsigned tipo, int indice) {
    for (CFila& fila : m_Triangulos) {
        if (fila.GetTipoTextura() != tipo) continue;
        const int propio = static_cast<int>(fila.GetIndiceTextura());
        if (indice >= 0 && propio > indice) {
            fila.SetIndiceTextura(static_cast<unsigned>(propio - 1));
        } else if (indice < 0 || propio == indice) {
            fila.SetTipoTextura(CFila::ttNinguna);
            fila.SetIndiceTextura(0);
        }
    }
}

// ---- CObjetoFichero ------------------------------------------------------------------------------------------------

void CTIN::Clear() {
    m_Triangulos.clear();
    m_Puntos.clear();
    BorraCurvas();
    ActualizaCantidades();
}

CMaximas<double> CTIN::GetMaximasDouble() const {
    return CMaximas<double>(m_Maximas) /= Precision();
}

void CTIN::SetMaximasDouble(const CMaximas<double>& maximas) {
    m_Maximas = CMaximas<int>(CMaximas<double>(maximas) /= 1.0 / Precision());
}

int CTIN::Transformacion(const CDataHelmertNTV2& data) {
    const CCoor3D<double> origen(m_Semilla.GetX(), m_Semilla.GetY(), m_Semilla.GetZ());
    const double precision = Precision();
    std::vector<CCoor3D<double>> puntos;
    puntos.reserve(CantidadPuntos());
    for (const CPuntoTIN& p : m_Puntos)
        puntos.push_back(CCoor3D<double>(p) / precision + origen);
    if (!data.Transforma(puntos)) return 0;
    for (CCoor3D<double>& p : puntos) {
        p = (p - origen) * precision;
        // An integer that stopped at the end of its range would be another place.
        if (!CabeEnEnteros(p)) return 0;
    }
    for (unsigned i = 0; i < CantidadPuntos(); ++i)
        m_Puntos.at(i).Actualiza(puntos[i].x, puntos[i].y, puntos[i].z);
    ActualizaCantidades();
    return 1;
}

void CTIN::ActualizaCantidades() {
    m_Maximas.Borra();
    for (const CPuntoTIN& punto : m_Puntos)
        if (!punto.EsBorrado()) m_Maximas.Nuevo(punto);
    m_pBusqueda = m_Triangulos.empty() ? nullptr : std::make_shared<const CBusquedaTIN>(*this);
}

}  // namespace Vertiz
