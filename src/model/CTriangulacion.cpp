// From a drawing to points and sides, through the triangulation, to the triangles of a terrain.

#include "model/CTriangulacion.h"

#include "model/CSetPuntos.h"
#include "model/CruceLados.h"
#include "model/Delaunay.h"
#include "model/IPorcentaje.h"
#include "model/RecorteTriangulos.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <utility>

namespace Vertiz {

using geometria::CDelaunay;
using geometria::CLadoPedido;
using predicados::CLugar;

namespace {

constexpr int kNivelProgreso = 3;
// The sides of triangles, four places for each of two triangles a point, have to fit in an int; and so do the points of
// crossings, of which there are fewer than 17 million.
constexpr std::size_t kPuntosMaximos = 250'000'000;
constexpr int kLadosPorPaso = 4096;

CDigiTab TodosLosCodigos() {
    CDigiTab tabla;
    tabla.Inserta(CElementoDigiTab(CTipoEntidad::Linea, L"*", 70, 70, 70, 0.0F, 0, CString(), 1), true);
    return tabla;
}

bool Toma(const CDigiTab& tabla, const CTipoDat& tipo) {
    return tabla.Busca(tipo.GetCodigo(), tipo.GetTipoEntidad()) != nullptr;
}

bool EsCerradaEnPlanta(const CEntidadDigi<int>& linea) {
    return linea.NPuntos() >= 3 && CLugar(linea.Puntos().front()) == CLugar(linea.Puntos().back());
}

// Of a drawing, what is to be triangulated.
struct CMaterial {
    std::vector<CPuntoTIN> puntos;
    std::vector<CLadoPedido> tramos;
};

class CToma {
  public:
    CToma(const CDataTriangulacion& data, int modo, CMaterial& material)
        : m_Data(data), m_nModo(modo), m_Material(material) {}

    void Dibujo(const CDibujo<int>& dibujo) {
        m_Material.puntos.reserve(m_Material.puntos.size() + dibujo.CantidadPuntos());
        for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
            const CEntidadDigi<int>& entidad = *dibujo[i];
            if (entidad.EsBorrado() || entidad.EsTexto() || !Toma(m_Data.m_Puntos, entidad)) continue;
            if (const auto* nube = dynamic_cast<const CSetPuntos<int>*>(&entidad))
                Nube(*nube);
            else if (entidad.EsGrafico())
                Linea(entidad);
        }
    }

  private:
    bool TieneCota(const CCoor3D<int>& p) const { return p.z >= m_Data.m_dCotaMinima && p.z <= m_Data.m_dCotaMaxima; }

    void Nube(const CSetPuntos<int>& nube) {
        for (unsigned i = 0; i < nube.NPuntos(); ++i)
            if (const CCoor3D<int>& p = nube.Punto(static_cast<int>(i)); TieneCota(p))
                m_Material.puntos.emplace_back(p, nube.Info(i));
    }

    void Linea(const CEntidadDigi<int>& linea) {
        const bool bSigue = m_nModo == 0 && Toma(m_Data.m_Rupturas, linea);
        const bool bCerrada = bSigue && EsCerradaEnPlanta(linea);
        const bool bIsla = bCerrada && Toma(m_Data.m_Islas, linea);
        const bool bLimite = bCerrada && !bIsla && Toma(m_Data.m_Limites, linea);
        const std::uint32_t marcas = bIsla ? geometria::LADO_ISLA : bLimite ? geometria::LADO_LIMITE : 0U;
        int primero = -1, anterior = -1;
        const auto une = [&](int a, int b) {
            if (!bSigue || a < 0) return;
            const std::vector<CPuntoTIN>& puntos = m_Material.puntos;
            if (CLugar(puntos[static_cast<std::size_t>(a)]) != CLugar(puntos[static_cast<std::size_t>(b)]))
                m_Material.tramos.push_back({a, b, marcas});
        };
        for (const CCoor3D<int>& p : linea.Puntos()) {
            if (!TieneCota(p)) continue;
            const int i = static_cast<int>(m_Material.puntos.size());
            m_Material.puntos.emplace_back(p);
            une(anterior, i);
            anterior = i;
            if (primero < 0) primero = i;
        }
        if (marcas != 0) une(anterior, primero);  // where the points of one place were left out for their heights
    }

    const CDataTriangulacion& m_Data;
    int m_nModo;
    CMaterial& m_Material;
};

// One run: what it is made of, and how it goes on when lines cross.
class CCarrera {
  public:
    CCarrera(CMaterial& material, const CDataTriangulacion& data, IPorcentaje* porcentaje,
             CInformeTriangulacion& informe)
        : m_Puntos(material.puntos),
          m_Tramos(material.tramos),
          m_Data(data),
          m_pPorcentaje(porcentaje),
          m_Informe(informe) {}

    int Corre(CTIN& tin) {
        if (const int resultado = Triangula(); resultado != 1) return resultado;
        if (!m_Rechazados.empty()) {
            if (!ResuelveCruces()) return m_bCancelada ? 2 : 0;
            if (const int resultado = Triangula(); resultado != 1) return resultado;
            if (!m_Rechazados.empty()) return 0;
        }
        if (m_Data.m_bRecorta) m_Informe.m_nFuera = geometria::RecortaPorLimites(*m_pDelaunay);
        if (m_Data.m_dLadoMaximo > 0.0)
            m_Informe.m_nLargos =
                geometria::RecortaPorLado(*m_pDelaunay, m_Data.m_dLadoMaximo, m_Data.m_bLadoMaximoDentro);
        Entrega(tin);
        return 1;
    }

  private:
    bool Sigue(int hechos) const {
        const int total = m_pDelaunay->CantidadVertices() + static_cast<int>(m_Tramos.size());
        return m_pPorcentaje == nullptr || m_pPorcentaje->Paso(kNivelProgreso, hechos, total, 0) != 0;
    }

    std::vector<CLugar> Lugares() const { return {m_Puntos.begin(), m_Puntos.end()}; }

    // Points and sides; those that cross others are left.
    int Triangula() {
        m_pDelaunay.emplace(Lugares());
        m_Rechazados.clear();
        if (!m_pDelaunay->Triangula([this](int hechos) { return Sigue(hechos); })) return 2;
        if (m_pDelaunay->Cantidad() == 0) return 1;
        for (std::size_t i = 0; i < m_Tramos.size(); ++i) {
            if (i % kLadosPorPaso == 0 && !Sigue(m_pDelaunay->CantidadVertices() + static_cast<int>(i))) return 2;
            const CLadoPedido& tramo = m_Tramos[i];
            if (!m_pDelaunay->InsertaLado(tramo.a, tramo.b, tramo.marcas)) m_Rechazados.push_back(static_cast<int>(i));
        }
        return 1;
    }

    bool ResuelveCruces() {
        const std::vector<CLugar> lugares = Lugares();
        const int hechos = m_pDelaunay->CantidadVertices() + static_cast<int>(m_Tramos.size());
        const auto sigue = [&] {
            m_bCancelada = m_bCancelada || !Sigue(hechos);
            return !m_bCancelada;
        };
        const auto cruces = geometria::LugaresDeCruce(*m_pDelaunay, lugares, m_Tramos, std::move(m_Rechazados), sigue);
        m_Informe.m_bDemasiadosCruces = !cruces && !m_bCancelada;
        if (!cruces) return false;
        std::vector<CLugar> nuevos;
        const auto resueltos = geometria::ResuelveCruces(lugares, m_Tramos, *cruces, nuevos, sigue);
        if (!resueltos) return false;
        const std::vector<geometria::CTrozoLado>& trozos = *resueltos;
        const std::size_t viejos = m_Puntos.size();
        AgregaPuntos(nuevos, trozos);
        AnotaCruces(*cruces, viejos);
        std::vector<CLadoPedido> tramos;
        tramos.reserve(trozos.size());
        for (const geometria::CTrozoLado& trozo : trozos)
            tramos.push_back({trozo.a, trozo.b, m_Tramos[static_cast<std::size_t>(trozo.tramo)].marcas});
        m_Tramos = std::move(tramos);
        return m_Data.m_bResuelveCruces;
    }

    // New vertices with the mean height of the lines that pass there.
    void AgregaPuntos(const std::vector<CLugar>& nuevos, const std::vector<geometria::CTrozoLado>& trozos) {
        struct CSuma {
            double z = 0.0;
            int cuantas = 0;
        };
        std::vector<CSuma> sumas(nuevos.size());
        for (const geometria::CTrozoLado& trozo : trozos) {
            const std::size_t b = static_cast<std::size_t>(trozo.b);
            if (b < m_Puntos.size()) continue;
            const std::size_t i = b - m_Puntos.size();
            const CLadoPedido& tramo = m_Tramos[static_cast<std::size_t>(trozo.tramo)];
            sumas[i].z += Altura(m_Puntos[static_cast<std::size_t>(tramo.a)],
                                 m_Puntos[static_cast<std::size_t>(tramo.b)], nuevos[i]);
            ++sumas[i].cuantas;
        }
        for (std::size_t i = 0; i < nuevos.size(); ++i)
            m_Puntos.emplace_back(
                CCoor3D<double>(nuevos[i].x, nuevos[i].y, sumas[i].z / std::max(1, sumas[i].cuantas)));
    }

    // The height of a line beside which a place lies.
    static double Altura(const CPuntoTIN& a, const CPuntoTIN& b, const CLugar& p) {
        const double x = double(b.x) - a.x, y = double(b.y) - a.y;
        const double parte = ((double(p.x) - a.x) * x + (double(p.y) - a.y) * y) / (x * x + y * y);
        return std::lerp(double(a.z), double(b.z), std::clamp(parte, 0.0, 1.0));
    }

    // `cruces` and the new ones among the points are in the same order; the rest lies at points.
    void AnotaCruces(const std::vector<CLugar>& cruces, std::size_t viejos) {
        std::vector<std::pair<CLugar, int>> cotas;
        for (std::size_t i = 0; i < viejos; ++i)
            if (std::ranges::binary_search(cruces, CLugar(m_Puntos[i]))) cotas.emplace_back(m_Puntos[i], m_Puntos[i].z);
        std::ranges::stable_sort(cotas, {}, [](const auto& cota) { return cota.first; });
        std::size_t nuevo = viejos;
        for (const CLugar& cruce : cruces) {
            if (nuevo < m_Puntos.size() && CLugar(m_Puntos[nuevo]) == cruce) {
                m_Informe.m_Cruces.push_back(m_Puntos[nuevo++]);
                continue;
            }
            const auto cota = std::ranges::lower_bound(cotas, cruce, {}, [](const auto& c) { return c.first; });
            m_Informe.m_Cruces.emplace_back(cruce.x, cruce.y, cota->second);
        }
    }

    // Points that are vertices are numbered as they come.
    void Entrega(CTIN& tin) {
        std::vector<int> numeros(m_Puntos.size(), 0);
        std::vector<CPuntoTIN>& puntos = m_Puntos;
        std::size_t quedan = 0;
        for (std::size_t i = 0; i < puntos.size(); ++i) {
            const auto primero = static_cast<std::size_t>(m_pDelaunay->Primero(static_cast<int>(i)));
            if (primero != i) {
                ++m_Informe.m_nRepetidos;
                const auto lugar = static_cast<std::size_t>(numeros[primero] - 1);
                if (puntos[lugar].z != puntos[i].z) m_Informe.m_Cotas.emplace_back(puntos[i]);
                continue;
            }
            puntos[quedan] = puntos[i];
            numeros[i] = static_cast<int>(++quedan);
        }
        puntos.erase(puntos.begin() + static_cast<std::ptrdiff_t>(quedan), puntos.end());
        std::vector<CTIN::CFila> triangulos = m_pDelaunay->Entrega(numeros);
        m_pDelaunay.reset();
        m_Informe.m_bSinTriangulos = quedan > 0 && triangulos.empty();
        tin.Toma(std::move(puntos), std::move(triangulos));
    }

    std::vector<CPuntoTIN>& m_Puntos;
    std::vector<CLadoPedido>& m_Tramos;
    const CDataTriangulacion& m_Data;
    IPorcentaje* m_pPorcentaje;
    CInformeTriangulacion& m_Informe;
    std::optional<CDelaunay> m_pDelaunay;
    std::vector<int> m_Rechazados;
    bool m_bCancelada = false;
};

void Cuenta(const CInformeTriangulacion& informe, bool bRechaza, CNivelMensajes nivel, IPorcentaje& porcentaje) {
    const auto di = [&](std::size_t cuantos, const wchar_t* texto) {
        if (cuantos > 0) porcentaje.Mensaje(nivel, CString(std::to_wstring(cuantos).c_str()) + texto, 1);
    };
    di(informe.m_nRepetidos, L" points left out: others lie in the same place");
    di(informe.m_Cotas.size(), L" of them have another height; the first one counts");
    di(informe.m_Cruces.size(), bRechaza ? L" places where lines cross between their points: nothing is triangulated"
                                         : L" places where lines cross between their points: they are joined there");
    if (informe.m_bDemasiadosCruces) porcentaje.Mensaje(nivel, L"lines cross too often: nothing is triangulated", 1);
    if (informe.m_bSinTriangulos) porcentaje.Mensaje(nivel, L"the points lie in line: there are no triangles", 1);
}

}  // namespace

CDataTriangulacion::CDataTriangulacion()
    : m_Puntos(TodosLosCodigos()), m_Rupturas(TodosLosCodigos()), m_Limites(TodosLosCodigos()) {}

CNivelMensajes CTriangulacion::Mensajes(CNivelMensajes nivel) {
    return std::exchange(m_nMensajes, nivel);
}

int CTriangulacion::Run(const CDibujo<int>& dibujo, CTIN& tin, int modo, IPorcentaje* porcentaje, double distancia,
                        CDibujo<int>* cruces) {
    if (!(distancia <= 1.0)) {
        tin.Clear();
        return 0;
    }
    return Corre({}, dibujo, modo, tin, porcentaje, cruces);
}

int CTriangulacion::Run(std::vector<CPuntoTIN> puntos, const CDibujo<int>& dibujo, CTIN& tin, IPorcentaje* porcentaje,
                        CDibujo<int>* cruces) {
    return Corre(std::move(puntos), dibujo, 0, tin, porcentaje, cruces);
}

int CTriangulacion::Corre(std::vector<CPuntoTIN> puntos, const CDibujo<int>& dibujo, int modo, CTIN& tin,
                          IPorcentaje* porcentaje, CDibujo<int>* cruces) {
    tin.Clear();
    m_Informe = {};
    if (puntos.size() + dibujo.CantidadPuntos() > kPuntosMaximos) return 0;
    CMaterial material{std::move(puntos), {}};
    std::erase_if(material.puntos, [this](const CPuntoTIN& p) {
        return p.EsBorrado() || p.z < m_Data.m_dCotaMinima || p.z > m_Data.m_dCotaMaxima;
    });
    CToma(m_Data, modo, material).Dibujo(dibujo);
    const int resultado = CCarrera(material, m_Data, porcentaje, m_Informe).Corre(tin);
    if (cruces != nullptr)
        for (const CCoor3D<int>& cruce : m_Informe.m_Cruces) {
            CLinea<int> linea(L"CRUCE");
            linea << cruce;
            cruces->Inserta(linea);
        }
    if (porcentaje != nullptr && m_nMensajes > 0) Cuenta(m_Informe, resultado == 0, m_nMensajes, *porcentaje);
    return resultado;
}

}  // namespace Vertiz
