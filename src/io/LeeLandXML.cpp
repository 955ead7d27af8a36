// From a LandXML file to triangulated terrains. Expat reads the file piece by piece; of all its elements only those of
// surfaces, units and the coordinate system are looked at.

#include "io/LeeLandXML.h"

#include "io/Lectura.h"
#include "platform/Ficheros.h"

#include <expat.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <exception>
#include <functional>
#include <limits>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace Vertiz {
namespace {

using namespace io;

constexpr int kTrozo = 1 << 16;
constexpr std::size_t kProfundidadMaxima = 200;
constexpr std::size_t kPuntosMaximos = std::size_t{1} << 29;

// A surface as the file has it.
struct CCruda {
    std::string nombre, descripcion;
    std::vector<CCoor3D<double>> puntos;
    std::unordered_map<std::int64_t, std::uint32_t> lugares;  // of points, from 1, by their id
    std::vector<CTIN::CFila> caras;
    std::vector<std::vector<CCoor3D<double>>> rupturas;
    std::size_t degeneradas = 0;
};

enum class Elemento : std::uint8_t { Otro, Superficie, Puntos, Punto, Caras, Cara, Ruptura, Lista };

class CAnalizador {
  public:
    explicit CAnalizador(CResultadoLandXML& resultado) : m_pXML(XML_ParserCreate(nullptr)), m_Resultado(resultado) {
        if (m_pXML == nullptr) throw std::bad_alloc();
        XML_SetUserData(m_pXML, this);
        XML_SetElementHandler(m_pXML, &Abre, &Cierra);
        XML_SetCharacterDataHandler(m_pXML, &Texto);
        XML_SetStartDoctypeDeclHandler(m_pXML, &Doctype);
    }
    ~CAnalizador() { XML_ParserFree(m_pXML); }
    CAnalizador(const CAnalizador&) = delete;
    CAnalizador& operator=(const CAnalizador&) = delete;

    // How many pieces there are to read from here, where the file is at its start; 0 where it can't tell.
    static int Trozos(std::FILE* fichero) {
        const bool bSabe = std::fseek(fichero, 0, SEEK_END) == 0;
        const std::int64_t bytes = bSabe ? std::ftell(fichero) : -1;
        std::rewind(fichero);
        return bytes < 0 ? 0 : int(std::min<std::int64_t>(bytes / kTrozo + 1, INT32_MAX));
    }

    void Lee(std::FILE* fichero, const CAvance& avance) {
        const int pasos = Trozos(fichero);
        for (int paso = 1;; ++paso) {
            void* const sitio = XML_GetBuffer(m_pXML, kTrozo);
            if (sitio == nullptr) throw std::bad_alloc();
            const std::size_t n = std::fread(sitio, 1, kTrozo, fichero);
            if (std::ferror(fichero) != 0) throw CFallo("it can't be read to its end");
            const bool bUltimo = n < std::size_t(kTrozo);
            const XML_Status estadoXML = XML_ParseBuffer(m_pXML, int(n), bUltimo);
            if (m_Excepcion) std::rethrow_exception(m_Excepcion);
            if (estadoXML != XML_STATUS_OK) Falla(XML_ErrorString(XML_GetErrorCode(m_pXML)));
            if (bUltimo) break;
            if (pasos > 0) avance.Paso(std::min(paso, pasos), pasos);
        }
        if (!m_bLandXML) throw CFallo("it isn't a LandXML file");
    }

    std::vector<CCruda>& Superficies() { return m_Superficies; }

  private:
    // What the library calls from C must not throw.
    template <class F>
    static void Guarda(void* este, F hace) noexcept {
        auto& yo = *static_cast<CAnalizador*>(este);
        if (yo.m_Excepcion) return;
        try {
            hace(yo);
        } catch (...) {
            yo.m_Excepcion = std::current_exception();
            XML_StopParser(yo.m_pXML, XML_FALSE);
        }
    }
    static void XMLCALL Abre(void* este, const char* nombre, const char** atributos) {
        Guarda(este, [&](CAnalizador& yo) { yo.AlAbrir(nombre, atributos); });
    }
    static void XMLCALL Cierra(void* este, const char*) {
        Guarda(este, [](CAnalizador& yo) { yo.AlCerrar(); });
    }
    static void XMLCALL Texto(void* este, const char* texto, int n) {
        Guarda(este, [&](CAnalizador& yo) {
            if (yo.m_bTexto) yo.m_Texto.append(texto, std::size_t(n));
        });
    }
    static void XMLCALL Doctype(void* este, const char*, const char*, const char*, int interno) {
        Guarda(este, [&](CAnalizador& yo) {
            if (interno != 0) yo.Falla("it declares entities or elements of its own, which LandXML has no use for");
        });
    }

    [[noreturn]] void Falla(const std::string& causa) const {
        throw CFallo("line " + std::to_string(XML_GetCurrentLineNumber(m_pXML)) + ": " + causa);
    }

    static std::string_view SinPrefijo(std::string_view nombre) { return nombre.substr(nombre.rfind(':') + 1); }

    // An attribute, or empty.
    static std::string_view Atributo(const char** atributos, std::string_view nombre) {
        for (; atributos[0] != nullptr; atributos += 2)
            if (SinPrefijo(atributos[0]) == nombre) return atributos[1];
        return {};
    }

    [[nodiscard]] Elemento Reconoce(std::string_view nombre) const {
        const Elemento padre = m_Pila.empty() ? Elemento::Otro : m_Pila.back();
        if (nombre == "Surface") return Elemento::Superficie;
        if (m_Superficies.empty() || !m_bEnSuperficie) return Elemento::Otro;
        if (nombre == "Pnts") return Elemento::Puntos;
        if (nombre == "Faces") return Elemento::Caras;
        if (nombre == "P" && padre == Elemento::Puntos) return Elemento::Punto;
        if (nombre == "F" && padre == Elemento::Caras) return Elemento::Cara;
        if (nombre == "Breakline") return Elemento::Ruptura;
        if (nombre == "PntList3D" && padre == Elemento::Ruptura) return Elemento::Lista;
        return Elemento::Otro;
    }

    void AlAbrir(std::string_view nombreCompleto, const char** atributos) {
        const std::string_view nombre = SinPrefijo(nombreCompleto);
        if (m_Pila.size() >= kProfundidadMaxima) Falla("elements are nested too deep");
        if (m_Pila.empty()) m_bLandXML = nombre == "LandXML";
        const Elemento elemento = Reconoce(nombre);
        m_Pila.push_back(elemento);
        if (nombre == "Metric" || nombre == "Imperial")
            m_Resultado.m_Unidad = Mostrado(Atributo(atributos, "linearUnit"));
        if (nombre == "CoordinateSystem") m_Resultado.m_EPSG = Mostrado(Atributo(atributos, "epsgCode"));
        switch (elemento) {
            case Elemento::Superficie:
                if (m_bEnSuperficie) Falla("a surface inside another");
                m_bEnSuperficie = true;
                m_Superficies.emplace_back();
                m_Superficies.back().nombre = Atributo(atributos, "name");
                m_Superficies.back().descripcion = Atributo(atributos, "desc");
                break;
            case Elemento::Punto:
                m_Id = Atributo(atributos, "id");
                break;
            case Elemento::Cara: {
                const std::string_view invisible = Atributo(atributos, "i");
                m_bInvisible = invisible == "1" || invisible == "true";
                break;
            }
            default:
                break;
        }
        m_bTexto = elemento == Elemento::Punto || elemento == Elemento::Cara || elemento == Elemento::Lista;
        m_Texto.clear();
    }

    void AlCerrar() {
        switch (m_Pila.back()) {
            case Elemento::Superficie:
                m_bEnSuperficie = false;
                break;
            case Elemento::Punto:
                AgregaPunto();
                break;
            case Elemento::Cara:
                AgregaCara();
                break;
            case Elemento::Lista:
                AgregaRuptura();
                break;
            default:
                break;
        }
        m_Pila.pop_back();
        m_bTexto = false;
    }

    static CString Mostrado(std::string_view utf8) { return CString(std::string(utf8).c_str()); }

    // The numbers of the text, parted by blanks.
    template <class T>
    [[nodiscard]] std::vector<T> Numeros(const char* que) const {
        std::vector<T> numeros;
        const char *p = m_Texto.data(), *const fin = p + m_Texto.size();
        for (;;) {
            while (p != fin && (*p == ' ' || *p == '\t' || *p == '\n' || *p == '\r' || *p == ','))
                ++p;
            if (p == fin) return numeros;
            if (*p == '+') ++p;
            T valor{};
            const auto [sigue, error] = std::from_chars(p, fin, valor);
            bool bFinito = true;
            if constexpr (std::is_floating_point_v<T>) bFinito = std::isfinite(valor);
            if (error != std::errc() || !bFinito ||
                (sigue != fin && std::string_view(" \t\n\r,").find(*sigue) == std::string_view::npos))
                Falla(std::string(que) + " has a text that isn't a number");
            numeros.push_back(valor);
            p = sigue;
        }
    }

    void AgregaPunto() {
        CCruda& superficie = m_Superficies.back();
        const std::vector<double> n = Numeros<double>("a point");
        if (n.size() != 3) Falla("a point isn't northing, easting and height");
        std::int64_t id = std::int64_t(superficie.puntos.size()) + 1;
        if (!m_Id.empty()) {
            const auto [sigue, error] = std::from_chars(m_Id.data(), m_Id.data() + m_Id.size(), id);
            if (error != std::errc() || sigue != m_Id.data() + m_Id.size()) Falla("the id of a point isn't a number");
        }
        if (superficie.puntos.size() >= kPuntosMaximos) Falla("there are too many points");
        superficie.puntos.emplace_back(n[1], n[0], n[2]);
        if (!superficie.lugares.emplace(id, std::uint32_t(superficie.puntos.size())).second)
            Falla("there are two points of id " + std::to_string(id));
    }

    void AgregaCara() {
        CCruda& superficie = m_Superficies.back();
        const std::vector<std::int64_t> ids = Numeros<std::int64_t>("a face");
        if (ids.size() != 3 && ids.size() != 4) Falla("a face doesn't have three or four points");
        std::vector<std::uint32_t> v;
        for (const std::int64_t id : ids) {
            const auto lugar = superficie.lugares.find(id);
            if (lugar == superficie.lugares.end())
                Falla("a face has the point " + std::to_string(id) + ", which the surface doesn't have");
            v.push_back(lugar->second);
        }
        for (std::size_t i = 2; i < v.size(); ++i) {
            if (v[0] == v[i - 1] || v[0] == v[i] || v[i - 1] == v[i]) {
                ++superficie.degeneradas;
                continue;
            }
            CTIN::CFila& fila = superficie.caras.emplace_back();
            fila.m_nVertices = {v[0], v[i - 1], v[i]};
            fila.SetBorrado(m_bInvisible);
        }
    }

    void AgregaRuptura() {
        const std::vector<double> n = Numeros<double>("a breakline");
        if (n.size() % 3 != 0) Falla("a breakline's list isn't northings, eastings and heights");
        auto& linea = m_Superficies.back().rupturas.emplace_back();
        for (std::size_t i = 0; i < n.size(); i += 3)
            linea.emplace_back(n[i + 1], n[i], n[i + 2]);
    }

    XML_Parser m_pXML;
    CResultadoLandXML& m_Resultado;
    std::exception_ptr m_Excepcion;
    std::vector<CCruda> m_Superficies;
    std::vector<Elemento> m_Pila;
    bool m_bLandXML = false, m_bEnSuperficie = false, m_bTexto = false, m_bInvisible = false;
    std::string m_Texto, m_Id;
};

// ---- From what the file has to integers on one seed

CDataSemilla Semilla(const std::vector<CCruda>& superficies) {
    constexpr int habituales = 3, maximos = 9;
    constexpr double extremo = std::numeric_limits<int>::max(), pocas = 10000.0;
    CMaximas<double> caja;
    for (const CCruda& superficie : superficies)
        for (const CCoor3D<double>& p : superficie.puntos)
            caja.Nuevo(p);
    if (caja.EstanVacias(true)) return CDataSemilla(habituales);
    // The offset is a round number below the coordinates, if these are large; heights rarely need one.
    const auto origen = [](double minimo, double maximo) {
        if (std::max(std::abs(minimo), std::abs(maximo)) < 1e5) return 0.0;
        return std::floor(minimo / 1000.0) * 1000.0;
    };
    const CCoor3D<double>&a = caja.Minima(), &b = caja.Maxima();
    const double x = origen(a.x, b.x), y = origen(a.y, b.y), z = origen(a.z, b.z);
    const double alcance = std::max({std::abs(a.x - x), std::abs(b.x - x), std::abs(a.y - y), std::abs(b.y - y),
                                     std::abs(a.z - z), std::abs(b.z - z)});
    const double ancho = std::max(b.x - a.x, b.y - a.y);
    int decimales = habituales;
    while (decimales < maximos && ancho > 0.0 && ancho * std::pow(10.0, decimales) < pocas)
        ++decimales;
    while (alcance * std::pow(10.0, decimales) >= extremo)
        if (--decimales < -maximos) throw CFallo("its coordinates are beyond all measure");
    return CDataSemilla(decimales, x, y, z);
}

std::uint64_t Clave(std::uint32_t a, std::uint32_t b) {
    return std::uint64_t{std::min(a, b)} << 32 | std::max(a, b);
}

// Marks the sides that breaklines run along. @return how many of their pieces run along none
std::size_t MarcaRupturas(const std::vector<CPuntoTIN>& puntos, std::vector<CTIN::CFila>& caras,
                          const std::vector<std::vector<CCoor3D<int>>>& rupturas) {
    if (rupturas.empty()) return 0;
    struct CMezcla {
        std::size_t operator()(const std::pair<int, int>& p) const {
            return std::hash<std::uint64_t>()(std::uint64_t(std::uint32_t(p.first)) * 0x9E3779B97F4A7C15U ^
                                              std::uint32_t(p.second));
        }
    };
    std::unordered_map<std::pair<int, int>, std::uint32_t, CMezcla> numeros;
    for (std::uint32_t i = 0; i < puntos.size(); ++i)
        numeros.emplace(std::pair(puntos[i].x, puntos[i].y), i + 1);
    std::unordered_map<std::uint64_t, bool> tramos;  // true once a side was found for it
    std::size_t sueltos = 0;
    for (const auto& linea : rupturas)
        for (std::size_t i = 1; i < linea.size(); ++i) {
            const auto a = numeros.find({linea[i - 1].x, linea[i - 1].y}), b = numeros.find({linea[i].x, linea[i].y});
            if (a == numeros.end() || b == numeros.end()) {
                ++sueltos;
            } else if (a != b) {
                tramos.emplace(Clave(a->second, b->second), false);
            }
        }
    for (CTIN::CFila& cara : caras)
        for (std::size_t k = 0; k < 3; ++k) {
            const auto tramo = tramos.find(Clave(cara.m_nVertices[k], cara.m_nVertices[(k + 1) % 3]));
            if (tramo == tramos.end()) continue;
            tramo->second = true;
            cara.SetRuptura(int(k));
        }
    return sueltos + std::size_t(std::ranges::count_if(tramos, [](const auto& t) { return !t.second; }));
}

CSuperficieLandXML Hace(CCruda& cruda, const CDataSemilla& semilla, std::vector<CString>& avisos) {
    const CCoor3D<double> origen(semilla.GetX(), semilla.GetY(), semilla.GetZ());
    const auto entero = [&](const CCoor3D<double>& p) { return CCoor3D<int>((p - origen) * semilla.Precision()); };
    CSuperficieLandXML superficie{Texto(cruda.nombre), Texto(cruda.descripcion), std::make_unique<CTIN>(semilla)};
    const auto avisa = [&](const std::string& texto) {
        avisos.push_back(Texto("surface \"" + cruda.nombre + "\": " + texto));
    };
    std::vector<CPuntoTIN> puntos;
    puntos.reserve(cruda.puntos.size());
    for (const CCoor3D<double>& p : cruda.puntos)
        puntos.emplace_back(entero(p));
    std::vector<std::vector<CCoor3D<int>>> rupturas;
    for (const auto& linea : cruda.rupturas) {
        auto& nueva = rupturas.emplace_back();
        for (const CCoor3D<double>& p : linea)
            nueva.push_back(entero(p));
    }
    const std::size_t sueltos = MarcaRupturas(puntos, cruda.caras, rupturas);
    if (cruda.caras.empty()) avisa("it has no triangles");
    if (cruda.degeneradas > 0) avisa(std::to_string(cruda.degeneradas) + " faces with a point twice are left out");
    if (sueltos > 0) avisa(std::to_string(sueltos) + " pieces of breaklines aren't sides of its triangles");
    superficie.m_pTIN->TomaSueltos(std::move(puntos), std::move(cruda.caras));
    superficie.m_pTIN->SetNombre(superficie.m_Nombre);
    return superficie;
}

struct CCierraFichero {
    void operator()(std::FILE* f) const { std::fclose(f); }
};

}  // namespace

CResultadoLandXML LeeLandXML(const CString& fichero, IPorcentaje* porcentaje) {
    return Protege<CResultadoLandXML>(fichero, "surfaces", [&](const std::string&, CResultadoLandXML& resultado) {
        const std::unique_ptr<std::FILE, CCierraFichero> entrada(std::fopen(RutaSistema(fichero).c_str(), "rb"));
        if (!entrada) throw CFallo("it can't be opened");
        CAnalizador analizador(resultado);
        analizador.Lee(entrada.get(), CAvance(porcentaje));
        if (analizador.Superficies().empty()) throw CFallo("it has no surfaces");
        const CDataSemilla semilla = Semilla(analizador.Superficies());
        for (CCruda& cruda : analizador.Superficies()) {
            resultado.m_Superficies.push_back(Hace(cruda, semilla, resultado.m_Avisos));
            cruda = CCruda();
        }
    });
}

}  // namespace Vertiz
