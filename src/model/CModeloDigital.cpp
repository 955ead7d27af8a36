// A terrain with its objects.

#include "model/CModeloDigital.h"

#include <cstddef>

namespace Vertiz {
namespace {

std::unique_ptr<CTIN> Copia(const std::unique_ptr<CTIN>& tin) {
    return tin ? std::make_unique<CTIN>(*tin) : nullptr;
}

CCoor3D<double> Origen(const CTIN& tin) {
    return {tin.GetSemilla().GetX(), tin.GetSemilla().GetY(), tin.GetSemilla().GetZ()};
}

}  // namespace

CModeloDigital::CModeloDigital(const CModeloDigital& otro) : CObjetoFichero(otro), m_pTIN(Copia(otro.m_pTIN)) {
    m_Objetos.reserve(otro.m_Objetos.size());
    for (const auto& objeto : otro.m_Objetos)
        m_Objetos.push_back(Copia(objeto));
}

CModeloDigital& CModeloDigital::operator=(const CModeloDigital& otro) {
    return *this = CModeloDigital(otro);
}

CModeloDigital::~CModeloDigital() = default;

unsigned CModeloDigital::InsertaObjeto(std::unique_ptr<CTIN> objeto) {
    m_Objetos.push_back(std::move(objeto));
    return CantidadObjetos() - 1;
}

bool CModeloDigital::BorraObjeto(unsigned i) {
    if (i >= m_Objetos.size()) return false;
    m_Objetos.erase(m_Objetos.begin() + static_cast<std::ptrdiff_t>(i));
    return true;
}

void CModeloDigital::Clear() {
    m_pTIN.reset();
    m_Objetos.clear();
}

CMaximas<double> CModeloDigital::GetMaximasDouble() const {
    CMaximas<double> maximas;
    if (m_pTIN) maximas = m_pTIN->GetMaximasDouble();
    for (const auto& objeto : m_Objetos)
        if (objeto)
            maximas.Nuevo(objeto->GetMaximasDouble() -= (m_pTIN ? Origen(*m_pTIN) : Origen(*objeto)) - Origen(*objeto));
    return maximas;
}

void CModeloDigital::SetMaximasDouble(const CMaximas<double>& maximas) {
    if (m_pTIN) m_pTIN->SetMaximasDouble(maximas);
}

int CModeloDigital::Transformacion(const CDataHelmertNTV2& data) {
    CModeloDigital nuevo(*this);
    if (nuevo.m_pTIN && nuevo.m_pTIN->Transformacion(data) == 0) return 0;
    for (const auto& objeto : nuevo.m_Objetos)
        if (objeto && objeto->Transformacion(data) == 0) return 0;
    // The terrains stay where they are: others may point to them.
    if (m_pTIN) *m_pTIN = std::move(*nuevo.m_pTIN);
    for (std::size_t i = 0; i < m_Objetos.size(); ++i)
        if (m_Objetos[i]) *m_Objetos[i] = std::move(*nuevo.m_Objetos[i]);
    return 1;
}

void CModeloDigital::ActualizaCantidades() {
    if (m_pTIN) m_pTIN->ActualizaCantidades();
    for (const auto& objeto : m_Objetos)
        if (objeto) objeto->ActualizaCantidades();
}

int CModeloDigital::Convexos(CDibujo<int>& dibujo) const {
    return dibujo.GeneraConvexos();
}

}  // namespace Vertiz
