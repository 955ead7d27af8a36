// Planting trees on a grid.

#include "terrain/CEscenaDEM.h"
#include "model/IPorcentaje.h"

#include <cmath>

namespace {

constexpr unsigned kTextoArboles = 12196;
constexpr int kNivelMensajes = 3;

// A tree's height, in stored units.
Vertiz::CAtrDigi RegistroAltura(double altura) {
    return {CEscenaMDT::kRegistroAltura, Vertiz::ACoordenada<int>(altura), CString()};
}

// Trees planted with other decimals, brought to those of a new seed.
void CambiaSemilla(Vertiz::CDibujo<int>& arboles, const Vertiz::CDataSemilla& semilla) {
    const double k = std::pow(10.0, semilla.GetDecimales() - arboles.Semilla().GetDecimales());
    arboles.Semilla() = semilla;
    if (k == 1.0) return;
    for (unsigned i = 0; i < arboles.Cantidad(); ++i) {
        Vertiz::CEntidadDigi<int>& arbol = *arboles[i];
        arbol.Escalar(k, k, k);
        const int altura = arbol.DameRegistro(CEscenaMDT::kRegistroAltura);
        if (altura >= 0) arbol.InsertaAtr(RegistroAltura(altura * k));
    }
    arboles.ActualizaCantidades();
}

}  // namespace

void CEscenaDEM::CargarArboles(const Vertiz::CDibujo<int>& puntos, double altura, int tipo, int agregar,
                               Vertiz::IPorcentaje* progreso) {
    if (m_pDEM == nullptr) return;
    if (agregar == 0) m_Arboles.Clear();
    CambiaSemilla(m_Arboles, puntos.Semilla());
    if (progreso != nullptr) progreso->Empieza(kNivelMensajes, kTextoArboles);
    const double p = puntos.Precision();
    const Vertiz::CAtrDigi registro = RegistroAltura(std::trunc(p * altura));
    for (unsigned i = 0; i < puntos.Cantidad(); ++i) {
        if (progreso != nullptr &&
            progreso->Paso(kNivelMensajes, static_cast<int>(i), static_cast<int>(puntos.Cantidad()), 0) == 0) {
            m_Arboles.Clear();
            break;
        }
        const Vertiz::CEntidadDigi<int>& entidad = *puntos[i];
        if (!entidad.EsGrafico() || entidad.EsBorrado() || entidad.NPuntos() >= 2) continue;
        Vertiz::CLinea<double> arbol(entidad);
        arbol.SetCodigo(tipo == 0 ? L"0" : L"1");
        arbol.InsertaAtr(registro);
        arbol.Escalar(1.0 / p, 1.0 / p, 1.0 / p);
        m_pDEM->Proyecta(arbol, true, true, false);
        arbol.Escalar(p, p, p);
        m_Arboles.Inserta(Vertiz::CLinea<int>(arbol));
    }
    if (progreso != nullptr) progreso->Termina(kNivelMensajes, 0);
    m_bArbolesIniciados = 0;
}
