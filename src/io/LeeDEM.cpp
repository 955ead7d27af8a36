// From a raster file to an elevation model, with what its user should know.

#include "io/LeeDEM.h"

#include "io/Rejilla.h"
#include "platform/Numeros.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <span>
#include <string>
#include <utility>

namespace Vertiz {
namespace {

using namespace io;

constexpr double kNuloHabitual = CDEM::kNuloHabitual;

std::string Muestras(std::size_t n) {
    return std::to_string(n) + (n == 1 ? " sample" : " samples");
}

// ---- Coordinate systems

bool EnGrados(const Rejilla& r) {
    return r.m_Sistema && OSRIsGeographic(r.m_Sistema.get());
}

struct Limites {
    double m_dOeste, m_dEste, m_dSur, m_dNorte;
};

// The middles of the outer samples.
Limites LimitesDe(const Rejilla& r) {
    const auto& t = r.m_Colocacion;
    const double c = r.Columnas() - 1.0, f = r.Filas() - 1.0;
    const double x[] = {t[0], t[0] + c * t[1], t[0] + f * t[2], t[0] + c * t[1] + f * t[2]};
    const double y[] = {t[3], t[3] + c * t[4], t[3] + f * t[5], t[3] + c * t[4] + f * t[5]};
    return {*std::min_element(x, x + 4), *std::max_element(x, x + 4), *std::min_element(y, y + 4),
            *std::max_element(y, y + 4)};
}

// A grid without a system whose coordinates can only be degrees: they fit on the globe, and in any other unit the
// terrain would be a needle, twice as high as wide.
bool ParecenGrados(const Rejilla& r, const Resumen& s) {
    if (r.m_Sistema || !r.m_bGeorreferida) return false;
    const Limites l = LimitesDe(r);
    return l.m_dOeste >= -180.5 && l.m_dEste <= 180.5 && l.m_dSur >= -90.5 && l.m_dNorte <= 90.5 &&
           s.m_dMax - s.m_dMin > 2.0 * std::max(l.m_dEste - l.m_dOeste, l.m_dNorte - l.m_dSur);
}

Sistema SistemaEPSG(int codigo) {
    Sistema s(OSRNewSpatialReference(nullptr));
    if (!s || OSRImportFromEPSG(s.get(), codigo) != OGRERR_NONE)
        throw CFallo("the coordinate system EPSG:" + std::to_string(codigo) +
                     " isn't known: PROJ's database is missing");
    OSRSetAxisMappingStrategy(s.get(), OAMS_TRADITIONAL_GIS_ORDER);
    return s;
}

// WGS 84 / UTM in the zone of the grid's centre.
Sistema UTMDelCentro(const Rejilla& r) {
    constexpr double kMaxAncho = 24.0, kMaxLatitud = 84.0;
    const Limites l = LimitesDe(r);
    if (l.m_dEste - l.m_dOeste > kMaxAncho)
        throw CFallo("a grid in degrees, " + TextoGeneral(l.m_dEste - l.m_dOeste, 4) +
                     " of longitude wide: too wide for a UTM zone; cut out a part of it, or keep the degrees");
    if (l.m_dNorte > kMaxLatitud || l.m_dSur < -kMaxLatitud)
        throw CFallo("a grid in degrees beyond 84 of latitude, where UTM ends; keep the degrees");
    const double lon = std::remainder((l.m_dOeste + l.m_dEste) / 2.0, 360.0);
    const int huso = std::clamp(static_cast<int>(std::floor((lon + 180.0) / 6.0)) + 1, 1, 60);
    return SistemaEPSG(((l.m_dSur + l.m_dNorte) / 2.0 >= 0.0 ? 32600 : 32700) + huso);
}

// The system's name; one that has none is told by its datum and its UTM zone.
CString NombreSistema(const Rejilla& r) {
    const OGRSpatialReferenceH s = r.m_Sistema.get();
    if (!s) return {};
    const auto texto = [](const char* t) { return std::string(t ? t : ""); };
    const std::string nombre = texto(OSRGetName(s));
    if (!nombre.empty() && nombre != "unnamed" && nombre != "unknown") return Texto(nombre);
    std::string propio = texto(OSRGetAttrValue(s, "GEOGCS", 0));
    int norte = 0;
    if (const int huso = OSRGetUTMZone(s, &norte); huso != 0)
        propio += " / UTM zone " + std::to_string(huso) + (norte ? "N" : "S");
    return Texto(propio.empty() ? "unnamed" : propio);
}

CString Unidad(const Rejilla& r) {
    if (!r.m_Sistema) return {};
    char* nombre = nullptr;
    if (EnGrados(r))
        OSRGetAngularUnits(r.m_Sistema.get(), &nombre);
    else
        OSRGetLinearUnits(r.m_Sistema.get(), &nombre);
    return nombre ? CString(nombre) : CString();
}

// ---- What the heights tell

// The least or the greatest height stands alone: repeated, and further from the rest than the rest is wide.
bool EsMarca(double extremo, double siguiente, double otroExtremo, std::size_t repite) {
    return repite >= 2 && siguiente != extremo &&
           std::abs(extremo - siguiente) > 2.0 * std::abs(siguiente - otroExtremo) + 100.0;
}

// The level below which samples are voids, and the marks that no header declares.
double NivelNulo(const Resumen& s, CResultadoDEM& resultado) {
    const bool marcaBaja = EsMarca(s.m_dMin, s.m_dMin2, s.m_dMax, s.m_nRepiteMin);
    const bool marcaAlta = EsMarca(s.m_dMax, s.m_dMax2, s.m_dMin, s.m_nRepiteMax);
    const double minimo = marcaBaja ? s.m_dMin2 : s.m_dMin;
    // An ocean trench goes deeper than the usual level; a grid of one value below it is all void.
    const double nulo =
        s.m_dMin == s.m_dMax || minimo > kNuloHabitual ? kNuloHabitual : -std::numeric_limits<float>::max();
    if (marcaBaja) resultado.m_Marcas.push_back({s.m_dMin, s.m_nRepiteMin, s.m_dMin <= nulo});
    if (marcaAlta) resultado.m_Marcas.push_back({s.m_dMax, s.m_nRepiteMax, s.m_dMax <= nulo});
    return nulo;
}

// Voids get the one value that stands for them, and are counted.
std::size_t MarcaVacios(CMatriz<float>& alturas, double nulo) {
    const float vacio = nulo == kNuloHabitual ? Rejilla::kVacio : -std::numeric_limits<float>::max();
    std::size_t vacios = 0;
    for (unsigned i = 0; i < alturas.GetFilas(); ++i) {
        float* const fila = alturas.Fila(i);
        for (unsigned j = 0; j < alturas.GetColumnas(); ++j) {
            if (fila[j] > nulo) continue;  // false for NaN
            fila[j] = vacio;
            ++vacios;
        }
    }
    return vacios;
}

// ---- The model

// The offset is the south-west corner brought down to whole thousands (of whole units when the grid is in degrees), so
// that local coordinates are small; the decimals are as many as the integers of a drawing on it have room for.
CDataSemilla Semilla(const Limites& l, const Resumen& s, bool grados) {
    const double redondeo = grados ? 1.0 : 1000.0;
    const double x = std::floor(l.m_dOeste / redondeo) * redondeo, y = std::floor(l.m_dSur / redondeo) * redondeo;
    const double mayor = std::max({l.m_dEste - x, l.m_dNorte - y, std::abs(s.m_dMin), std::abs(s.m_dMax), 1.0});
    const int caben = static_cast<int>(std::floor(std::log10(std::numeric_limits<int>::max() / mayor)));
    return CDataSemilla(std::clamp(caben, -6, grados ? 7 : 3), x, y);
}

std::unique_ptr<CDEM> HazModelo(Rejilla& r, const Resumen& s, double nulo) {
    const auto& t = r.m_Colocacion;
    auto dem = std::make_unique<CDEM>();
    if (!dem->SetCelda(t[1], t[5])) throw CFallo("its georeference has cells without area");
    dem->SetOrigen(t[0], t[3]);
    dem->SetNulo(nulo);
    dem->Semilla() = Semilla(LimitesDe(r), s, EnGrados(r));
    dem->Matriz() = std::move(r.m_Alturas);
    dem->ActualizaCantidades();
    return dem;
}

void CompruebaAlturas(const Rejilla& r, const Resumen& s, CResultadoDEM& resultado) {
    if (s.m_nInfinitas > 0)
        resultado.m_Avisos.push_back(
            Texto(Muestras(s.m_nInfinitas) + (s.m_nInfinitas == 1 ? " is" : " are") + " infinite; taken as void"));
    if (s.m_nValidas == 0)
        throw CFallo("none of its " + std::to_string(std::size_t(r.Filas()) * r.Columnas()) +
                     " samples holds a height");
}

void TrasReproyectar(const Rejilla& r, const std::string& antes, const char* unidad, CResultadoDEM& resultado) {
    resultado.m_bReproyectado = true;
    resultado.m_Mensajes.push_back(Texto(antes + ": resampled to " + std::to_string(r.Columnas()) + " x " +
                                         std::to_string(r.Filas()) + " samples of " +
                                         TextoGeneral(r.m_Colocacion[1], 6) + " " + unidad));
}

// Brings the grid to the system that is asked for. @return false when it is in it already
bool LlevaASistema(Rejilla& r, const CDataLeeDEM& opciones, const CAvance& avance, CResultadoDEM& resultado) {
    Sistema pedido = SistemaDe(opciones.m_WKT.Utf8());
    if (!r.m_Sistema) {
        resultado.m_Mensajes.emplace_back(L"no coordinate system given; taken as the terrain's");
        r.m_Sistema = std::move(pedido);
        return false;
    }
    if (OSRIsSame(pedido.get(), r.m_Sistema.get())) return false;
    const std::string de = NombreSistema(r).Utf8();
    r = Reproyecta(r, pedido.get(), opciones.m_nMaxMuestras, avance);
    TrasReproyectar(r, "from " + de + " to " + NombreSistema(r).Utf8(), EnGrados(r) ? "degrees" : "units", resultado);
    return true;
}

// Brings the grid to plane coordinates, north up, where it isn't yet; to the system that is asked for, if any.
void Endereza(Rejilla& r, const Resumen& s, const CDataLeeDEM& opciones, const CAvance& avance,
              CResultadoDEM& resultado) {
    if (!opciones.m_bConservaGrados && opciones.m_WKT.IsEmpty() && ParecenGrados(r, s)) {
        r.m_Sistema = SistemaEPSG(4326);
        resultado.m_Avisos.emplace_back(
            L"the file names no coordinate system; its coordinates look like degrees, taken "
            L"as WGS 84");
    }
    const bool girada = r.m_Colocacion[2] != 0.0 || r.m_Colocacion[4] != 0.0;
    const bool pedido = !opciones.m_WKT.IsEmpty();
    if (pedido && LlevaASistema(r, opciones, avance, resultado)) return;
    if (!pedido && EnGrados(r) && !opciones.m_bConservaGrados) {
        const Sistema utm = UTMDelCentro(r);
        const std::string de = NombreSistema(r).Utf8();
        r = Reproyecta(r, utm.get(), opciones.m_nMaxMuestras, avance);
        TrasReproyectar(r, "from degrees (" + de + ") to " + NombreSistema(r).Utf8(), "m", resultado);
    } else if (girada) {
        r = Reproyecta(r, nullptr, opciones.m_nMaxMuestras, avance);
        TrasReproyectar(r, "a rotated grid, turned north up", "units", resultado);
    }
}

void Lee(const std::string& ruta, const CDataLeeDEM& opciones, const CAvance& avance, CResultadoDEM& resultado) {
    const CMensajesGdal mensajes;
    Resumen resumen;
    Rejilla r = LeeRejilla(ruta, opciones, avance, resultado, resumen);
    if (resultado.m_nPaso > 1)
        resultado.m_Mensajes.push_back(Texto("a large grid: one sample of every " + std::to_string(resultado.m_nPaso) +
                                             " taken in rows and columns"));
    if (!r.m_bGeorreferida)
        resultado.m_Mensajes.emplace_back(L"no georeference: samples stand one unit apart, from 0, 0");
    CompruebaAlturas(r, resumen, resultado);

    const double nulo = NivelNulo(resumen, resultado);
    for (unsigned i = 0; i < r.Filas(); ++i)
        for (float& v : std::span(r.m_Alturas.Fila(i), r.Columnas()))
            if (v <= nulo) v = std::numeric_limits<float>::quiet_NaN();
    Endereza(r, resumen, opciones, avance, resultado);

    resultado.m_Sistema = NombreSistema(r);
    resultado.m_WKT = Texto(WKT(r.m_Sistema.get()));
    resultado.m_Unidad = Unidad(r);
    resultado.m_nVacios = MarcaVacios(r.m_Alturas, nulo);
    if (resultado.m_nVacios == std::size_t(r.Filas()) * r.Columnas()) throw CFallo("no sample holds a height");
    resultado.m_pDEM = HazModelo(r, resumen, nulo);
}

}  // namespace

CResultadoDEM LeeDEM(const CString& fichero, const CDataLeeDEM& opciones, IPorcentaje* porcentaje) {
    return Protege<CResultadoDEM>(fichero, "grid", [&](const std::string& ruta, CResultadoDEM& resultado) {
        Lee(ruta, opciones, CAvance(porcentaje), resultado);
    });
}

}  // namespace Vertiz
