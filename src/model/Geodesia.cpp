// PROJ contexts and operations, by thread.

#include "model/Geodesia.h"

#include "platform/Numeros.h"

#include <proj.h>

#include <cmath>
#include <limits>
#include <memory>
#include <unordered_map>

namespace Vertiz::geodesia {
namespace {

struct CierraContexto {
    void operator()(PJ_CONTEXT* contexto) const { proj_context_destroy(contexto); }
};
struct CierraOperacion {
    void operator()(PJ* operacion) const { proj_destroy(operacion); }
};

// What a thread has of PROJ. Operations go before the context that they live in: members die in reverse order.
class CTaller {
  public:
    CTaller() : m_Contexto(proj_context_create()) {
        proj_log_level(m_Contexto.get(), PJ_LOG_NONE);  // A library doesn't print.
        proj_context_set_enable_network(m_Contexto.get(), 0);
    }

    PJ* Operacion(const std::string& definicion) {
        if (const auto hallada = m_Operaciones.find(definicion); hallada != m_Operaciones.end())
            return hallada->second.get();
        std::unique_ptr<PJ, CierraOperacion> nueva(proj_create(m_Contexto.get(), definicion.c_str()));
        if (!nueva) return nullptr;  // Not remembered: a grid file may be there the next time.
        if (m_Operaciones.size() >= kMaxOperaciones) m_Operaciones.clear();
        return m_Operaciones.emplace(definicion, std::move(nueva)).first->second.get();
    }

  private:
    // A survey uses a handful; the limit is for a host that runs through all zones and ellipsoids.
    static constexpr std::size_t kMaxOperaciones = 32;

    std::unique_ptr<PJ_CONTEXT, CierraContexto> m_Contexto;
    std::unordered_map<std::string, std::unique_ptr<PJ, CierraOperacion>> m_Operaciones;
};

}  // namespace

std::string NombreFichero(const CString& nombre) {
    std::string texto = "\"";
    for (const char c : nombre.Utf8()) {
        if (c == '"') texto += '"';
        texto += c;
    }
    return texto + '"';
}

std::string UTM(const CElipsoide& elipsoide, int huso, bool norte) {
    std::string texto = "+proj=utm +zone=" + std::to_string(huso) + " +a=" + TextoExacto(elipsoide.DameA()) +
                        " +es=" + TextoExacto(elipsoide.DameE2());
    if (!norte) texto += " +south";
    return texto;
}

PJ* Operacion(const std::string& definicion) {
    static thread_local CTaller taller;
    return taller.Operacion(definicion);
}

bool Aplica(PJ* operacion, Sentido sentido, std::span<CCoor3D<double>> puntos) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    bool todos = true;
    for (auto& p : puntos) {
        PJ_COORD c = proj_coord(p.x, p.y, p.z, 0.0);
        proj_errno_reset(operacion);
        c = proj_trans(operacion, sentido == Sentido::Directo ? PJ_FWD : PJ_INV, c);
        const bool bien =
            proj_errno(operacion) == 0 && std::isfinite(c.xyz.x) && std::isfinite(c.xyz.y) && std::isfinite(c.xyz.z);
        if (!bien) c = proj_coord(nan, nan, nan, 0.0);
        p.x = c.xyz.x;
        p.y = c.xyz.y;
        p.z = c.xyz.z;
        todos = todos && bien;
    }
    return todos;
}

}  // namespace Vertiz::geodesia
