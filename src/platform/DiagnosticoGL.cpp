// What `info --gl` tells: the way that serves, its limits, and why the others don't.

#include "platform/DiagnosticoGL.h"

#include "platform/Backend.h"
#include "platform/OpenGL.h"

#include <algorithm>

using namespace plataforma;

namespace {

// Why a way doesn't serve: it failed when it was its turn, or its turn never came.
std::string Motivo(const ViaBackend& via, const std::string& sirve) {
    const auto& fallidas = ViasFallidas();
    const auto fallida =
        std::find_if(fallidas.begin(), fallidas.end(), [&](const ViaFallida& f) { return f.m_Nombre == via.m_Nombre; });
    if (fallida != fallidas.end()) return fallida->m_Motivo;
    std::string motivo;
    if (via.m_pConecta(motivo)) return "it would serve too, but " + sirve + " does already.";
    return motivo;
}

}  // namespace

CDiagnosticoGL DiagnosticoGL() {
    CDiagnosticoGL d;
    const Backend* backend = BackendActual();
    d.m_bHay = backend != nullptr;
    d.m_Via = NombreBackendActual();
    for (const ViaBackend& via : Vias()) {
        CViaGL v{via.m_Nombre, via.m_Descripcion, via.m_Nombre == d.m_Via, ""};
        if (!v.m_bSirve) v.m_Motivo = Motivo(via, d.m_Via);
        d.m_Vias.push_back(std::move(v));
    }
    if (!backend) return d;

    const CapacidadesGL& c = backend->Capacidades();
    const FormatoPixel& formato = backend->Formatos().front();
    d.m_Fabricante = c.m_Fabricante;
    d.m_Renderizador = c.m_Renderizador;
    d.m_Version = c.m_Version;
    d.m_VersionGLU = reinterpret_cast<const char*>(gluGetString(GLU_VERSION));
    d.m_bDirecto = c.m_bDirecto;
    d.m_bVentanas = backend->HayVentanas();
    d.m_nMaxTextura = c.m_nMaxTextura;
    d.m_nMaxAnchoVista = c.m_nMaxAncho;
    d.m_nMaxAltoVista = c.m_nMaxAlto;
    d.m_nBitsProfundidad = formato.m_nProfundidad;
    d.m_nBitsEstarcido = formato.m_nEstarcido;
    d.m_nMaxAnidamiento = c.m_nMaxAnidamiento;
    d.m_nMaxLuces = c.m_nMaxLuces;
    d.m_nMaxPilaVista = c.m_nMaxPilaVista;
    d.m_bPresentaCopiando = c.m_bPresentaCopiando;
    return d;
}
