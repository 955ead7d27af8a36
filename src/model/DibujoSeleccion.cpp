// What of a drawing is shown, selected, erased, and in which order it stands.

#include "model/CDibujo.h"
#include "model/CSetPuntos.h"
#include "model/DibujoInterno.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace Vertiz {
namespace {

bool Oculta(const CDigiTab& tabla, const CString& codigo) {
    const CElementoDigiTab* fila = tabla.Busca(codigo, CTipoEntidad::Linea);
    return fila && !fila->EsVisible();
}

template <class T>
double Cantidad(const CEntidadDigi<T>& e, int criterio, int registro) {
    if (criterio == 3) return e.DameRegistro(short(registro));
    if (e.GetTipoEntidad() != CTipoEntidad::Linea) return 0;
    const auto& linea = static_cast<const CLinea<T>&>(e);
    if (criterio == 1) return linea.Longitud(0);
    return e.EsCerrada() ? std::abs(linea.Superficie()) : 0;
}

// The run of positions of one entity, from i on.
std::size_t FinDeEntidad(const std::vector<CPosicionEntidad>& posiciones, std::size_t i) {
    const int entidad = posiciones[i].m_nEntidad;
    while (i < posiciones.size() && posiciones[i].m_nEntidad == entidad)
        i++;
    return i;
}

// Takes the points at these indices, ascending, out of a set and into a new erased one.
template <class T>
std::unique_ptr<CSetPuntos<T>> ApartaPuntos(CSetPuntos<T>& set, const std::vector<int>& indices) {
    auto apartado = std::make_unique<CSetPuntos<T>>(set.GetCodigo());
    for (const CAtrDigi& a : set.Atributos())
        apartado->InsertaAtr(a);
    apartado->Reserva(indices.size());
    for (int i : indices) {
        if (set.TieneInfo()) {
            apartado->Inserta(set.Punto(i), set.Info(unsigned(i)));
        } else {
            *apartado << set.Punto(i);
        }
    }
    apartado->SetBorrado(true);
    set.BorraPuntos(indices);
    return apartado;
}

}  // namespace

CVisibilidad::CVisibilidad(const CDigiTab* digi, const CDigiTab* lidar, const CDigiTab* eco) {
    if (digi && digi->DameOcultos().Cantidad() > 0) m_pDigi = digi;
    CString codigo;
    for (unsigned clase = 0; lidar && clase < m_ClaseOculta.size(); clase++) {
        codigo.Format(L"%d", clase);
        m_ClaseOculta[clase] = Oculta(*lidar, codigo);
        m_bPuntosOcultos |= m_ClaseOculta[clase];
    }
    for (unsigned i = 0; eco && i < m_EcoOculto.size(); i++) {
        codigo.Format(L"%d-%d", i % 8, i / 8);
        m_EcoOculto[i] = Oculta(*eco, codigo);
        m_bPuntosOcultos |= m_EcoOculto[i];
    }
}

bool CVisibilidad::Ve(const CTipoDat& tipo) const {
    if (!m_pDigi) return true;
    const CElementoDigiTab* fila = m_pDigi->Busca(tipo.GetCodigo(), tipo.GetTipoEntidad());
    return !fila || fila->EsVisible();
}

template <class T>
void CDibujo<T>::Sort(int criterio, int ascendente, int registro) {
    std::vector<unsigned> orden(m_Entidades.size());
    std::iota(orden.begin(), orden.end(), 0U);
    const auto ordena = [&](auto menor) {
        std::stable_sort(orden.begin(), orden.end(),
                         [&](unsigned a, unsigned b) { return ascendente ? menor(a, b) : menor(b, a); });
    };
    if (criterio < 1 || criterio > 3) {
        ordena([&](unsigned a, unsigned b) { return *m_Entidades[a] < *m_Entidades[b]; });
    } else {
        std::vector<double> cantidades;
        for (const auto& e : m_Entidades)
            cantidades.push_back(Vertiz::Cantidad(*e, criterio, registro));
        ordena([&](unsigned a, unsigned b) { return cantidades[a] < cantidades[b]; });
    }
    std::vector<std::unique_ptr<CEntidadDigi<T>>> ordenadas;
    ordenadas.reserve(orden.size());
    for (unsigned i : orden)
        ordenadas.push_back(std::move(m_Entidades[i]));
    m_Entidades = std::move(ordenadas);
    m_pExtremos.reset();
}

template <class T>
void CDibujo<T>::InvierteSeleccion(const std::vector<CPosicionEntidad>& seleccion, std::vector<CPosicionEntidad>& nueva,
                                   const CDigiTab* digi, const CDigiTab* lidar, const CDigiTab* eco) const {
    const CVisibilidad visibilidad(digi, lidar, eco);
    std::vector<CPosicionEntidad> inversa;
    std::size_t k = 0;  // into the selection, kept level with the entity and point looked at
    for (int i = 0; i < int(Cantidad()); i++) {
        const CEntidadDigi<T>& e = *m_Entidades[unsigned(i)];
        while (k < seleccion.size() && seleccion[k].m_nEntidad < i)
            k++;
        const bool tocada = k < seleccion.size() && seleccion[k].m_nEntidad == i;
        if (e.EsBorrado() || e.NPuntos() == 0 || !visibilidad.Ve(e)) continue;
        if (!e.EsSetPuntos()) {
            if (!tocada) inversa.emplace_back(i, -1);
            continue;
        }
        if (tocada && seleccion[k].m_nPunto < 0) continue;
        for (int p = 0; p < int(e.NPuntos()); p++) {
            const CPosicionEntidad aqui(i, p);
            while (k < seleccion.size() && seleccion[k] < aqui)
                k++;
            const bool elegido = k < seleccion.size() && seleccion[k] == aqui;
            if (!elegido && visibilidad.VePunto(e.Punto(p))) inversa.push_back(aqui);
        }
    }
    nueva = std::move(inversa);
}

template <class T>
void CDibujo<T>::MarcaBorrado(const std::vector<CPosicionEntidad>& posiciones) {
    std::vector<CPosicionEntidad> orden(posiciones);
    std::sort(orden.begin(), orden.end());
    orden.erase(std::unique(orden.begin(), orden.end()), orden.end());

    const int cantidad = int(Cantidad());
    for (std::size_t i = 0, fin = 0; i < orden.size(); i = fin) {
        fin = FinDeEntidad(orden, i);
        const int entidad = orden[i].m_nEntidad;
        if (entidad < 0 || entidad >= cantidad) continue;
        CEntidadDigi<T>& e = *m_Entidades[unsigned(entidad)];
        if (e.EsBorrado()) continue;
        if (!e.EsSetPuntos() || orden[i].m_nPunto < 0) {
            e.SetBorrado(true);
            continue;
        }
        std::vector<int> indices;
        for (; i < fin && orden[i].m_nPunto < int(e.NPuntos()); i++)
            indices.push_back(orden[i].m_nPunto);
        if (indices.size() == e.NPuntos()) {
            e.SetBorrado(true);
        } else if (!indices.empty()) {
            m_Entidades.push_back(ApartaPuntos(static_cast<CSetPuntos<T>&>(e), indices));
        }
    }
    Recuenta();
}

template void CDibujo<int>::Sort(int, int, int);
template void CDibujo<double>::Sort(int, int, int);
template void CDibujo<int>::InvierteSeleccion(const std::vector<CPosicionEntidad>&, std::vector<CPosicionEntidad>&,
                                              const CDigiTab*, const CDigiTab*, const CDigiTab*) const;
template void CDibujo<double>::InvierteSeleccion(const std::vector<CPosicionEntidad>&, std::vector<CPosicionEntidad>&,
                                                 const CDigiTab*, const CDigiTab*, const CDigiTab*) const;
template void CDibujo<int>::MarcaBorrado(const std::vector<CPosicionEntidad>&);
template void CDibujo<double>::MarcaBorrado(const std::vector<CPosicionEntidad>&);

}  // namespace Vertiz
