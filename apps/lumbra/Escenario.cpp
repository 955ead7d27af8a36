// From files of vectors and pictures to what a terrain's scene takes.

#include "Escenario.h"

#include "Foto.h"
#include "terrain/CEscenaDEM.h"
#include "io/LeeVectores.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>

namespace {

using Vertiz::CDEM;
using Vertiz::CDibujo;
using Vertiz::CFiguraVector;
using Punto = Vertiz::CCoor3D<double>;

// How much of a model's width lines are lifted, so that they don't sink into the surface that they lie on.
constexpr double kRealce = 0.001;

class Lector {
  public:
    Lector(Vertiz::CResultadoDEM& terreno, Progreso& progreso, const std::function<void(const std::string&)>& avisa)
        : m_Terreno(terreno), m_DEM(*terreno.m_pDEM), m_Progreso(progreso), m_Avisa(avisa) {}

    Vertiz::CResultadoImagen Imagen(const std::string& ruta, double pixelMinimo) {
        Vertiz::CDataLeeImagen opciones;
        opciones.m_WKT = m_Terreno.m_WKT;
        opciones.m_Zona = m_DEM.GetMaximasTotalDouble();
        opciones.m_dPixelMinimo = pixelMinimo;
        opciones.m_dCelda = m_DEM.GetCeldaX();
        Vertiz::CResultadoImagen imagen = Vertiz::LeeImagen(CString(DeUtf8(ruta)), opciones, &m_Progreso);
        Comprueba(imagen.m_nResultado, imagen.m_Error);
        Di(ruta, imagen.m_Mensajes);
        return imagen;
    }

    void Edificios(const std::string& ruta, const std::string& campo, Escenario& escenario) {
        const Vertiz::CResultadoVectores leidos = Vectores(ruta, campo);
        int fuera = 0, sinAltura = 0;
        for (const CFiguraVector& figura : leidos.m_Figuras) {
            if (figura.m_nClase != CFiguraVector::AREA) continue;
            if (!(figura.m_Altura ? *figura.m_Altura > 0.0 : figura.m_bConCota))
                ++sinAltura;
            else if (!AgregaEdificio(figura, escenario))
                ++fuera;
        }
        if (escenario.edificios.empty()) {
            if (fuera > 0) throw std::runtime_error(ruta + ": no building lies on the terrain");
            if (sinAltura > 0)
                throw std::runtime_error(ruta +
                                         ": no building has a height: neither a z nor an attribute 'height'; name "
                                         "the attribute by --height-field");
            throw std::runtime_error(ruta + ": no area in it, so there are no buildings");
        }
        Omitidos(ruta, fuera, "building", "off the terrain");
        Omitidos(ruta, sinAltura, "building", "without a height");
    }

    void Arboles(const std::string& ruta, double alturaUsual, Escenario& escenario) {
        std::map<double, CDibujo<int>> porAltura;
        int fuera = 0, malas = 0;
        for (const CFiguraVector& figura : Vectores(ruta, "").m_Figuras) {
            if (figura.m_nClase != CFiguraVector::PUNTO) continue;
            const Punto& pie = figura.m_Lineas.front().Punto(0);
            const std::optional<double> suelo = Suelo(pie);
            const double altura = figura.m_Altura.value_or(alturaUsual);
            if (!suelo) {
                ++fuera;
            } else if (!(altura > 0.0)) {
                ++malas;
            } else {
                const Punto base(pie.x, pie.y, *suelo, 0), copa(pie.x, pie.y, *suelo + altura, 0);
                escenario.maximas.Nuevo(Local(base));
                escenario.maximas.Nuevo(Local(copa));
                Vertiz::CLinea<int> arbol;
                arbol << EnModelo(base);
                porAltura.try_emplace(altura, m_DEM.GetSemilla()).first->second.Inserta(arbol);
            }
        }
        if (porAltura.empty())
            throw std::runtime_error(
                ruta + (fuera > 0 ? ": no tree lies on the terrain" : ": no point in it, so there are no trees"));
        Omitidos(ruta, fuera, "tree", "off the terrain");
        Omitidos(ruta, malas, "tree", "of no height");
        escenario.arboles.assign(std::make_move_iterator(porAltura.begin()), std::make_move_iterator(porAltura.end()));
    }

    // Lines of the text format, or of any vector format; those without heights are laid on the terrain.
    void Rupturas(const std::string& ruta) {
        const unsigned antes = m_DEM.Rupturas().Cantidad();
        if (EsTexto(ruta))
            RupturasDeTexto(ruta);
        else
            RupturasDeVectores(ruta);
        CDibujo<int>& lineas = m_DEM.Rupturas();
        const Vertiz::CMaximas<double> m = m_DEM.GetMaximasDouble();
        const double realce = kRealce * std::max(m.Maxima().x - m.Minima().x, m.Maxima().y - m.Minima().y);
        bool bDentro = false;
        for (unsigned i = antes; i < lineas.Cantidad(); ++i) {
            lineas[i]->Mover(0.0, 0.0, realce * lineas.Precision());
            bDentro = bDentro || m.InterMax(Vertiz::CMaximas<double>(lineas[i]->GetMaximas()) / lineas.Precision(), 0);
        }
        lineas.ActualizaCantidades();
        if (!bDentro) throw std::runtime_error(ruta + ": no line in it lies on the terrain");
    }

  private:
    static bool EsTexto(const std::string& ruta) {
        return TerminaEn(ruta, ".txt") || TerminaEn(ruta, ".dat") || TerminaEn(ruta, ".xyz");
    }

    static void Comprueba(int resultado, const CString& error) {
        if (resultado != 1) throw std::runtime_error(resultado == 2 ? "cancelled" : AUtf8(error.Texto()));
    }

    void Di(const std::string& ruta, const std::vector<CString>& textos) const {
        for (const CString& texto : textos)
            m_Avisa(ruta + ": " + AUtf8(texto.Texto()));
    }

    void Omitidos(const std::string& ruta, int cuantos, const std::string& que, const char* porQue) const {
        if (cuantos > 0)
            m_Avisa(ruta + ": warning: " + std::to_string(cuantos) + " " + que + (cuantos == 1 ? "" : "s") + " " +
                    porQue + "; left out");
    }

    Vertiz::CResultadoVectores Vectores(const std::string& ruta, const std::string& campo) {
        Vertiz::CDataLeeVectores opciones;
        opciones.m_WKT = m_Terreno.m_WKT;
        opciones.m_CampoAltura = CString(DeUtf8(campo));
        Vertiz::CResultadoVectores leidos = Vertiz::LeeVectores(CString(DeUtf8(ruta)), opciones, &m_Progreso);
        Comprueba(leidos.m_nResultado, leidos.m_Error);
        Di(ruta, leidos.m_Mensajes);
        for (const CString& texto : leidos.m_Avisos)
            m_Avisa(ruta + ": warning: " + AUtf8(texto.Texto()));
        return leidos;
    }

    std::optional<double> Suelo(const Punto& p) const {
        Punto q = p;
        if (!m_DEM.Proyecta(q, nullptr, true)) return {};
        return q.z;
    }

    // An absolute point in the model's coordinates, and as its integers.
    Punto Local(const Punto& p) const {
        const Vertiz::CDataSemilla& s = m_DEM.GetSemilla();
        return {p.x - s.GetX(), p.y - s.GetY(), p.z - s.GetZ(), 0};
    }
    Vertiz::CCoor3D<int> EnModelo(const Punto& p) const {
        return Vertiz::CCoor3D<int>(Local(p) * m_DEM.GetSemilla().Precision());
    }

    // Walls from the lowest ground at the outline up to the roof, which is level when an attribute gives its height.
    // @return false off the terrain
    bool AgregaEdificio(const CFiguraVector& figura, Escenario& escenario) const {
        double pie = std::numeric_limits<double>::max();
        for (const auto& linea : figura.m_Lineas)
            for (const Punto& p : linea.Puntos()) {
                const std::optional<double> suelo = Suelo(p);
                if (!suelo) return false;
                pie = std::min(pie, *suelo);
            }
        CDataEdificio edificio;
        edificio.m_ColorPared = {222, 214, 200, 0};
        edificio.m_ColorTejado = {168, 92, 72, 0};
        edificio.m_Superior = edificio.m_Inferior = CDibujo<int>(m_DEM.GetSemilla());
        for (const auto& linea : figura.m_Lineas) {
            Vertiz::CLinea<int> alero, zocalo;
            for (const Punto& p : linea.Puntos()) {
                const Punto arriba(p.x, p.y, figura.m_Altura ? pie + *figura.m_Altura : p.z, 0);
                const Punto abajo(p.x, p.y, pie, 0);
                escenario.maximas.Nuevo(Local(arriba));
                escenario.maximas.Nuevo(Local(abajo));
                alero << EnModelo(arriba);
                zocalo << EnModelo(abajo);
            }
            edificio.m_Superior.Inserta(alero);
            edificio.m_Inferior.Inserta(zocalo);
        }
        escenario.edificios.AgregaEdificio(edificio);
        return true;
    }

    void RupturasDeTexto(const std::string& ruta) {
        CEscenaDEM lectora(&m_DEM);
        m_Progreso.Calla();
        const int resultado = lectora.InsertaRupturas(CString(DeUtf8(ruta)));
        const std::vector<std::string> mensajes = m_Progreso.Habla();
        if (resultado == 1) return;
        throw std::runtime_error(mensajes.empty() ? ruta + ": can't be read as lines" : mensajes.back());
    }

    void RupturasDeVectores(const std::string& ruta) {
        for (const CFiguraVector& figura : Vectores(ruta, "").m_Figuras) {
            if (figura.m_nClase == CFiguraVector::PUNTO) continue;
            for (Vertiz::CLinea<double> linea : figura.m_Lineas) {
                if (!figura.m_bConCota) m_DEM.Proyecta(linea, true, false, true);
                Vertiz::CLinea<int> ruptura(linea.GetCodigo());
                for (const Punto& p : linea.Puntos())
                    ruptura << EnModelo(p);
                m_DEM.InsertaRuptura(ruptura);
            }
        }
    }

    Vertiz::CResultadoDEM& m_Terreno;
    CDEM& m_DEM;
    Progreso& m_Progreso;
    const std::function<void(const std::string&)>& m_Avisa;
};

}  // namespace

const char* OpcionesEscenario::Primera() const {
    if (!imagen.empty()) return "--drape";
    if (!edificios.empty()) return "--buildings";
    if (!arboles.empty()) return "--trees";
    if (!rupturas.empty()) return "--breaklines";
    return cielo.empty() ? nullptr : "--sky";
}

Escenario LeeEscenario(const OpcionesEscenario& opciones, Vertiz::CResultadoDEM& terreno, double pixelMinimo,
                       Progreso& progreso, const std::function<void(const std::string&)>& avisa) {
    Lector lector(terreno, progreso, avisa);
    Escenario escenario;
    if (!opciones.cielo.empty()) escenario.cielo = std::make_unique<Cielo>(Foto(opciones.cielo, progreso));
    escenario.coniferas = opciones.coniferas;
    if (!opciones.rupturas.empty()) lector.Rupturas(opciones.rupturas);
    if (!opciones.edificios.empty()) lector.Edificios(opciones.edificios, opciones.campoAltura, escenario);
    if (!opciones.arboles.empty()) lector.Arboles(opciones.arboles, opciones.alturaArboles, escenario);
    if (!opciones.imagen.empty()) escenario.imagen = lector.Imagen(opciones.imagen, pixelMinimo);
    return escenario;
}
