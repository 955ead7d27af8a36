// From features of any vector format to points, lines and areas.

#include "io/LeeVectores.h"

#include "io/Lectura.h"
#include "platform/Numeros.h"

#include <ogr_api.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace Vertiz {
namespace {

using namespace io;

struct LiberaTransformacion {
    void operator()(OGRCoordinateTransformationH t) const { OCTDestroyCoordinateTransformation(t); }
};
using Transformacion = std::unique_ptr<std::remove_pointer_t<OGRCoordinateTransformationH>, LiberaTransformacion>;

struct LiberaFigura {
    void operator()(OGRFeatureH f) const { OGR_F_Destroy(f); }
};
using Figura = std::unique_ptr<std::remove_pointer_t<OGRFeatureH>, LiberaFigura>;

struct LiberaGeometria {
    void operator()(OGRGeometryH g) const { OGR_G_DestroyGeometry(g); }
};
using Geometria = std::unique_ptr<std::remove_pointer_t<OGRGeometryH>, LiberaGeometria>;

bool MismoNombre(std::string_view a, std::string_view b) {
    constexpr auto minuscula = [](char c) { return c >= 'A' && c <= 'Z' ? char(c + 'a' - 'A') : c; };
    return std::ranges::equal(a, b, {}, minuscula, minuscula);
}

int BuscaCampo(OGRFeatureDefnH definicion, std::string_view nombre) {
    for (int i = 0; i < OGR_FD_GetFieldCount(definicion); ++i)
        if (MismoNombre(OGR_Fld_GetNameRef(OGR_FD_GetFieldDefn(definicion, i)), nombre)) return i;
    return -1;
}

int CampoAltura(OGRFeatureDefnH definicion, const std::string& pedido) {
    if (!pedido.empty()) return BuscaCampo(definicion, pedido);
    for (const char* nombre : {"height", "altura", "hoehe", "hauteur"})
        if (const int campo = BuscaCampo(definicion, nombre); campo >= 0) return campo;
    return -1;
}

// A number, also one that is a text with a unit behind it.
std::optional<double> Altura(OGRFeatureH figura, int campo) {
    if (campo < 0 || !OGR_F_IsFieldSetAndNotNull(figura, campo)) return {};
    std::string_view texto = OGR_F_GetFieldAsString(figura, campo);
    texto.remove_prefix(std::min(texto.find_first_not_of(" +"), texto.size()));
    double valor = 0.0;
    if (std::from_chars(texto.data(), texto.data() + texto.size(), valor).ec != std::errc() || !std::isfinite(valor))
        return {};
    return valor;
}

// One layer's figures, as they come.
class Capa {
  public:
    Capa(OGRLayerH capa, OGRSpatialReferenceH terreno, const std::string& campoPedido) : m_hCapa(capa) {
        const OGRFeatureDefnH definicion = OGR_L_GetLayerDefn(capa);
        m_nCampoAltura = CampoAltura(definicion, campoPedido);
        if (m_nCampoAltura >= 0) m_sCampo = OGR_Fld_GetNameRef(OGR_FD_GetFieldDefn(definicion, m_nCampoAltura));
        m_nCampoCodigo = BuscaCampo(definicion, "Layer");
        m_Sistema = Copia(OGR_L_GetSpatialRef(capa));
        if (!terreno || !m_Sistema || OSRIsSame(terreno, m_Sistema.get())) return;
        m_Transformacion.reset(OCTNewCoordinateTransformation(m_Sistema.get(), terreno));
        if (!m_Transformacion) throw CFallo("its coordinates can't be brought to the terrain's system");
    }

    bool SinSistema() const { return m_Sistema == nullptr; }
    bool Transforma() const { return m_Transformacion != nullptr; }
    const std::string& Campo() const { return m_sCampo; }
    int SinSitio() const { return m_nSinSitio; }

    /// Takes the next feature. @return false at the end
    bool Siguiente(std::vector<CFiguraVector>& figuras) {
        const Figura figura(OGR_L_GetNextFeature(m_hCapa));
        if (!figura) return false;
        const OGRGeometryH geometria = OGR_F_GetGeometryRef(figura.get());
        if (!geometria) return true;
        const Geometria lineal(OGR_G_GetLinearGeometry(geometria, 0.0, nullptr));
        if (!lineal || OGR_G_IsEmpty(lineal.get())) return true;
        if (m_Transformacion) {
            const CMensajesGdal callados;
            if (OGR_G_Transform(lineal.get(), m_Transformacion.get()) != OGRERR_NONE) {
                ++m_nSinSitio;
                return true;
            }
        }
        m_Codigo =
            Texto(m_nCampoCodigo >= 0 ? OGR_F_GetFieldAsString(figura.get(), m_nCampoCodigo) : OGR_L_GetName(m_hCapa));
        m_Altura = Altura(figura.get(), m_nCampoAltura);
        Reparte(lineal.get(), figuras);
        return true;
    }

  private:
    // A collection comes apart into its members.
    void Reparte(OGRGeometryH g, std::vector<CFiguraVector>& figuras) {
        switch (wkbFlatten(OGR_G_GetGeometryType(g))) {
            case wkbPoint:
                return Agrega(CFiguraVector::PUNTO, {g}, figuras);
            case wkbLineString:
            case wkbLinearRing:
                return Agrega(CFiguraVector::LINEA, {g}, figuras);
            case wkbPolygon:
            case wkbTriangle: {
                std::vector<OGRGeometryH> anillos;
                for (int i = 0; i < OGR_G_GetGeometryCount(g); ++i)
                    anillos.push_back(OGR_G_GetGeometryRef(g, i));
                return Agrega(CFiguraVector::AREA, anillos, figuras);
            }
            default:
                for (int i = 0; i < OGR_G_GetGeometryCount(g); ++i)
                    Reparte(OGR_G_GetGeometryRef(g, i), figuras);
        }
    }

    void Agrega(CFiguraVector::Clase clase, const std::vector<OGRGeometryH>& partes,
                std::vector<CFiguraVector>& figuras) {
        CFiguraVector figura;
        figura.m_nClase = clase;
        figura.m_Altura = m_Altura;
        for (const OGRGeometryH parte : partes) {
            CLinea<double> linea(m_Codigo);
            const int n = OGR_G_GetPointCount(parte);
            linea.Reserva(static_cast<std::size_t>(n));
            for (int i = 0; i < n; ++i)
                linea << CCoor3D<double>(OGR_G_GetX(parte, i), OGR_G_GetY(parte, i), OGR_G_GetZ(parte, i), 0);
            if (!std::ranges::all_of(linea.Puntos(), [](const auto& p) { return p.EsFinito(); })) {
                ++m_nSinSitio;
                return;
            }
            if (clase == CFiguraVector::AREA) linea.Cierra();
            figura.m_bConCota = figura.m_bConCota || OGR_G_Is3D(parte) != 0;
            if (n > 0) figura.m_Lineas.push_back(std::move(linea));
        }
        if (!figura.m_Lineas.empty()) figuras.push_back(std::move(figura));
    }

    OGRLayerH m_hCapa;
    int m_nCampoAltura = -1, m_nCampoCodigo = -1, m_nSinSitio = 0;
    std::string m_sCampo;
    Sistema m_Sistema;
    Transformacion m_Transformacion;
    CString m_Codigo;  // of the feature at hand
    std::optional<double> m_Altura;
};

// The names of all attributes, for a user who named one that isn't there.
std::string Campos(GDALDatasetH datos) {
    std::string lista;
    for (int i = 0; i < GDALDatasetGetLayerCount(datos); ++i) {
        const OGRFeatureDefnH definicion = OGR_L_GetLayerDefn(GDALDatasetGetLayer(datos, i));
        for (int j = 0; j < OGR_FD_GetFieldCount(definicion); ++j)
            lista += (lista.empty() ? "" : ", ") + std::string(OGR_Fld_GetNameRef(OGR_FD_GetFieldDefn(definicion, j)));
    }
    return lista.empty() ? "it has none" : "it has " + lista;
}

void LeeCapa(Capa& capa, OGRLayerH hCapa, const CAvance& avance, CResultadoVectores& resultado) {
    const auto total = static_cast<int>(std::clamp<GIntBig>(OGR_L_GetFeatureCount(hCapa, FALSE), 0, 1'000'000'000));
    OGR_L_ResetReading(hCapa);
    const CMensajesGdal mensajes;
    for (int i = 0; capa.Siguiente(resultado.m_Figuras); ++i)
        avance.Paso(std::min(i + 1, total), total);
    if (const std::string error = mensajes.Error(""); !error.empty())
        throw CFallo("the file is damaged or cut off (" + error + ")");
}

void Lee(const std::string& ruta, const CDataLeeVectores& opciones, const CAvance& avance,
         CResultadoVectores& resultado) {
    const Datos datos = Abre(ruta, GDAL_OF_VECTOR);
    const Sistema terreno = SistemaDe(opciones.m_WKT.Utf8());
    const std::string pedido = opciones.m_CampoAltura.Utf8();
    bool transformadas = false, sinSistema = false;
    int sinSitio = 0;
    for (int i = 0; i < GDALDatasetGetLayerCount(datos.get()); ++i) {
        const OGRLayerH hCapa = GDALDatasetGetLayer(datos.get(), i);
        Capa capa(hCapa, terreno.get(), pedido);
        if (!capa.Campo().empty()) resultado.m_CampoAltura = Texto(capa.Campo());
        transformadas = transformadas || capa.Transforma();
        sinSistema = sinSistema || capa.SinSistema();
        LeeCapa(capa, hCapa, avance, resultado);
        sinSitio += capa.SinSitio();
    }
    if (!pedido.empty() && resultado.m_CampoAltura.IsEmpty())
        throw CFallo("no attribute '" + pedido + "'; " + Campos(datos.get()));
    if (resultado.m_Figuras.empty()) throw CFallo("it holds no point, line or area");
    if (transformadas) resultado.m_Mensajes.emplace_back(L"brought to the terrain's coordinates");
    if (terreno && sinSistema) resultado.m_Mensajes.emplace_back(L"no coordinate system given; taken as the terrain's");
    if (sinSitio > 0)
        resultado.m_Avisos.push_back(
            Texto(std::to_string(sinSitio) + " figures have no place in the terrain's coordinate system; left out"));
}

}  // namespace

CResultadoVectores LeeVectores(const CString& fichero, const CDataLeeVectores& opciones, IPorcentaje* porcentaje) {
    return Protege<CResultadoVectores>(fichero, "figures", [&](const std::string& ruta, CResultadoVectores& resultado) {
        Lee(ruta, opciones, CAvance(porcentaje), resultado);
    });
}

}  // namespace Vertiz
