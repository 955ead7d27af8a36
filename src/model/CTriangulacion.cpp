// From a drawing to points and sides, through the triangulation, to the triangles of a terrain.

#include "model/CTriangulacion.h"

#include "model/Delaunay.h"
#include "model/IPorcentaje.h"
#include "model/Predicados.h"

#include <cstddef>
#include <cstdint>
#include <unordered_map>
#include <utility>

namespace Vertiz {

using geometria::CDelaunay;

namespace {

constexpr int kNivelMensajes = 3;
// Beyond, the indices of triangles, two for each point, would not fit in an int.
constexpr std::size_t kPuntosMaximos = std::size_t{1} << 29;
constexpr int kLadosPorPaso = 4096;

CDigiTab TodosLosCodigos() {
    CDigiTab tabla;
    tabla.Inserta(CElementoDigiTab(CTipoEntidad::Linea, L"*", 70, 70, 70, 0.0F, 0, CString(), 1), true);
    return tabla;
}

struct CTramo {
    int a, b;
    bool bLimite;
};

// What is triangulated: vertices, different in plan, and segments between them.
struct CTrabajo {
    std::vector<CPuntoTIN> puntos;
    std::vector<CTramo> tramos;
    std::unordered_map<std::uint64_t, int> indices;  // of vertices, by their place in plan

    int Indice(const CCoor3D<int>& p) {
        const std::uint64_t clave =
            std::uint64_t{static_cast<std::uint32_t>(p.x)} << 32 | static_cast<std::uint32_t>(p.y);
        const auto [lugar, nuevo] = indices.try_emplace(clave, static_cast<int>(puntos.size()));
        if (nuevo) {
            puntos.emplace_back(p);
            puntos.back().SetNumero(static_cast<int>(puntos.size()));
        }
        return lugar->second;
    }
};

bool Toma(const CDigiTab& tabla, const CTipoDat& tipo) {
    return tabla.Busca(tipo.GetCodigo(), tipo.GetTipoEntidad()) != nullptr;
}

bool EsCerradaEnPlanta(const CEntidadDigi<int>& linea) {
    return linea.NPuntos() >= 3 && CCoor2D<int>(linea.Puntos().front()) == CCoor2D<int>(linea.Puntos().back());
}

void TomaLinea(const CEntidadDigi<int>& linea, const CDataTriangulacion& data, int modo, CTrabajo& trabajo) {
    const bool bSigue = modo == 0 && Toma(data.m_Rupturas, linea);
    const bool bLimite = bSigue && EsCerradaEnPlanta(linea) && Toma(data.m_Limites, linea);
    int primero = -1, anterior = -1;
    const auto une = [&](int a, int b) {
        if (bSigue && a >= 0 && a != b) trabajo.tramos.push_back({a, b, bLimite});
    };
    for (const CCoor3D<int>& p : linea.Puntos()) {
        if (p.z < data.m_dCotaMinima || p.z > data.m_dCotaMaxima) continue;
        const int i = trabajo.Indice(p);
        une(anterior, i);
        anterior = i;
        if (primero < 0) primero = i;
    }
    if (bLimite) une(anterior, primero);  // where the points of one place were left out for their heights
}

CTrabajo Prepara(const CDibujo<int>& dibujo, const CDataTriangulacion& data, int modo) {
    CTrabajo trabajo;
    trabajo.indices.reserve(dibujo.CantidadPuntos());
    for (unsigned i = 0; i < dibujo.Cantidad(); ++i) {
        const CEntidadDigi<int>& linea = *dibujo[i];
        if (linea.EsGrafico() && !linea.EsBorrado() && Toma(data.m_Puntos, linea))
            TomaLinea(linea, data, modo, trabajo);
    }
    return trabajo;
}

void AnotaCruce(const CTramo& tramo, const CDelaunay::CLado& lado, const std::vector<CPuntoTIN>& puntos,
                CDibujo<int>* cruces) {
    if (cruces == nullptr) return;
    const auto plano = [&puntos](int i) { return predicados::CPlano(puntos[static_cast<std::size_t>(i)]); };
    CLinea<int> linea(L"CRUCE");
    for (const predicados::CContacto& contacto :
         predicados::Contactos(plano(tramo.a), plano(tramo.b), plano(lado.first), plano(lado.second)))
        linea << CCoor3D<int>(contacto.lugar.x, contacto.lugar.y, 0.0);
    cruces->Inserta(linea);
}

// The triangles of the hull, without the infinite ones.
std::vector<CTIN::CFila> Triangulos(const CDelaunay& delaunay) {
    const std::vector<CDelaunay::CTriangulo>& todos = delaunay.Triangulos();
    std::vector<int> lugares(todos.size(), -1);
    int cuantos = 0;
    for (std::size_t i = 0; i < todos.size(); ++i)
        if (!delaunay.EsInfinito(todos[i])) lugares[i] = cuantos++;
    std::vector<CTIN::CFila> triangulos;
    triangulos.reserve(static_cast<std::size_t>(cuantos));
    for (std::size_t i = 0; i < todos.size(); ++i) {
        if (lugares[i] < 0) continue;
        const std::array<int, 3>&v = todos[i].v, &n = todos[i].n;
        CTIN::CFila& nueva = triangulos.emplace_back();
        for (int k = 0; k < 3; ++k) {
            const auto lado = static_cast<std::size_t>(k);
            const int a = v[lado], b = v[(lado + 1) % 3];
            nueva.m_nVertices[lado] = static_cast<std::uint32_t>(a) + 1;
            // Side k of the result begins at vertex k: it lies opposite to the vertex before.
            nueva.m_nVecinos[lado] = lugares[static_cast<std::size_t>(n[(lado + 2) % 3])];
            if (delaunay.EsFijo(a, b)) nueva.SetRuptura(k);
            if (delaunay.EsLimite(a, b)) nueva.SetLimite(k);
        }
    }
    return triangulos;
}

}  // namespace

CDataTriangulacion::CDataTriangulacion()
    : m_Puntos(TodosLosCodigos()), m_Rupturas(TodosLosCodigos()), m_Limites(TodosLosCodigos()) {}

int CTriangulacion::Run(const CDibujo<int>& dibujo, CTIN& tin, int modo, IPorcentaje* porcentaje, double distancia,
                        CDibujo<int>* cruces) const {
    tin.Clear();
    if (!(distancia <= 1.0) || dibujo.CantidadPuntos() > kPuntosMaximos) return 0;
    CTrabajo trabajo = Prepara(dibujo, m_Data, modo);
    trabajo.indices.clear();
    const int cuantos = static_cast<int>(trabajo.puntos.size()), lados = static_cast<int>(trabajo.tramos.size());
    const auto sigue = [&](int hechos) {
        return porcentaje == nullptr || porcentaje->Paso(kNivelMensajes, hechos, cuantos + lados, 0) != 0;
    };
    CDelaunay delaunay(std::vector<CCoor2D<int>>(trabajo.puntos.begin(), trabajo.puntos.end()));
    if (!delaunay.Triangula(sigue)) return 2;
    bool bCruce = false;
    for (int i = 0; i < lados && !delaunay.Triangulos().empty(); ++i) {
        if (i % kLadosPorPaso == 0 && !sigue(cuantos + i)) return 2;
        const CTramo& tramo = trabajo.tramos[static_cast<std::size_t>(i)];
        if (const auto lado = delaunay.InsertaLado(tramo.a, tramo.b, tramo.bLimite)) {
            bCruce = true;
            AnotaCruce(tramo, *lado, trabajo.puntos, cruces);
        }
    }
    if (bCruce) return 0;
    std::vector<CTIN::CFila> triangulos = Triangulos(delaunay);
    tin.Toma(std::move(trabajo.puntos), std::move(triangulos));
    return 1;
}

}  // namespace Vertiz
