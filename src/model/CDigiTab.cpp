// The table of styles: rows in the order given, found by code through a sorted index, or by pattern.

#include "model/CDigiTab.h"

#include <algorithm>
#include <utility>

namespace Vertiz {
namespace {

bool EsPatron(const CTipoDat& tipo) {
    return tipo.GetCodigo().Find(L'*') >= 0;
}

// How well a row serves a kind: 2 its own, 1 as a line, 0 not at all.
int Aptitud(const CTipoDat& fila, CTipoEntidad tipo) {
    if (fila.GetTipoEntidad() == tipo) return 2;
    return fila.GetTipoEntidad() == CTipoEntidad::Linea ? 1 : 0;
}

}  // namespace

// Where the pair of code and row stands, or would stand, in m_Orden.
auto CDigiTab::Lugar(const CString& codigo, unsigned i) const {
    return std::lower_bound(m_Orden.begin(), m_Orden.end(), i, [&](unsigned a, unsigned b) {
        const CString& deA = m_Elementos[a].GetCodigo();
        return deA == codigo ? a < b : deA < codigo;
    });
}

void CDigiTab::Coloca(unsigned i) {
    m_Orden.insert(Lugar(m_Elementos[i].GetCodigo(), i), i);
    if (EsPatron(m_Elementos[i])) m_Patrones.insert(std::lower_bound(m_Patrones.begin(), m_Patrones.end(), i), i);
}

void CDigiTab::Descoloca(unsigned i) {
    m_Orden.erase(Lugar(m_Elementos[i].GetCodigo(), i));
    std::erase(m_Patrones, i);
}

int CDigiTab::BuscaRepetido(const CTipoDat& tipo) const {
    for (auto i = Lugar(tipo.GetCodigo(), 0); i != m_Orden.end(); ++i) {
        if (m_Elementos[*i].GetCodigo() != tipo.GetCodigo()) break;
        if (m_Elementos[*i].GetTipoEntidad() == tipo.GetTipoEntidad()) return int(*i);
    }
    return -1;
}

bool CDigiTab::Inserta(const CElementoDigiTab& elemento, bool sustituye) {
    const int repetido = BuscaRepetido(elemento);
    if (repetido >= 0) {
        if (sustituye) m_Elementos[unsigned(repetido)] = elemento;
        return sustituye;
    }
    m_Elementos.push_back(elemento);
    Coloca(Cantidad() - 1);
    return true;
}

bool CDigiTab::ModificaElemento(unsigned i, const CElementoDigiTab& elemento, bool repetido) {
    if (i >= Cantidad()) return false;
    const int otro = BuscaRepetido(elemento);
    if (!repetido && otro >= 0 && unsigned(otro) != i) return false;
    Descoloca(i);
    m_Elementos[i] = elemento;
    Coloca(i);
    return true;
}

const CElementoDigiTab* CDigiTab::Busca(const CString& codigo, CTipoEntidad tipo) const {
    const CElementoDigiTab* mejor = nullptr;
    int aptitud = 0;
    const auto prueba = [&](unsigned i) {
        const int apto = Aptitud(m_Elementos[i], tipo);
        if (apto > aptitud) mejor = &m_Elementos[i], aptitud = apto;
    };
    for (auto i = Lugar(codigo, 0); i != m_Orden.end() && m_Elementos[*i].GetCodigo() == codigo; ++i)
        prueba(*i);
    if (mejor || m_Patrones.empty()) return mejor;

    const CTipoDat buscado(tipo, codigo);
    for (unsigned i : m_Patrones) {
        if (buscado.ComparaCodigo(m_Elementos[i].GetCodigo())) prueba(i);
    }
    return mejor;
}

bool CDigiTab::GetElemento(const CTipoDat& tipo, CElementoDigiTab& elemento) const {
    return GetElemento(tipo.GetCodigo(), tipo.GetTipoEntidad(), elemento);
}

bool CDigiTab::GetElemento(const CString& codigo, CTipoEntidad tipo, CElementoDigiTab& elemento) const {
    const CElementoDigiTab* fila = Busca(codigo, tipo);
    if (fila) elemento = *fila;
    return fila != nullptr;
}

CDigiTab CDigiTab::DameOcultos() const {
    CDigiTab ocultos;
    for (const CElementoDigiTab& e : m_Elementos) {
        if (!e.EsVisible()) ocultos.Inserta(e, false);
    }
    return ocultos;
}

void CDigiTab::clear() {
    *this = CDigiTab();
}

}  // namespace Vertiz
