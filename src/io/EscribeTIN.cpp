// Triangulated terrains to files. A file is written beside the one that it is to become, and takes its place once it is
// whole.

#include "io/EscribeTIN.h"

#include "io/Lectura.h"
#include "platform/Ficheros.h"
#include "platform/Numeros.h"

#include <cerrno>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <new>
#include <string>
#include <string_view>

namespace Vertiz {
namespace {

using io::CFallo;

class CFicheroNuevo {
  public:
    explicit CFicheroNuevo(std::string ruta) : m_Ruta(std::move(ruta)) {
        for (int i = 0; i < 1000 && m_pFichero == nullptr; ++i) {
            m_Provisional = m_Ruta + "." + std::to_string(i) + ".tmp";
            m_pFichero = std::fopen(m_Provisional.c_str(), "wxb");
            if (m_pFichero == nullptr && errno != EEXIST) break;
        }
        if (m_pFichero == nullptr) Falla();
    }
    ~CFicheroNuevo() {
        if (m_pFichero != nullptr) std::fclose(m_pFichero);
        if (!m_bAcabado) std::remove(m_Provisional.c_str());
    }
    CFicheroNuevo(const CFicheroNuevo&) = delete;
    CFicheroNuevo& operator=(const CFicheroNuevo&) = delete;

    void Escribe(std::string_view texto) {
        m_Texto += texto;
        if (m_Texto.size() >= kTrozo) Vacia();
    }
    void Acaba() {
        Vacia();
        const int cerrado = std::fclose(std::exchange(m_pFichero, nullptr));
        if (cerrado != 0 || std::rename(m_Provisional.c_str(), m_Ruta.c_str()) != 0) Falla();
        m_bAcabado = true;
    }

  private:
    static constexpr std::size_t kTrozo = 1 << 16;

    [[noreturn]] static void Falla() { throw CFallo(std::string("it can't be written: ") + std::strerror(errno)); }
    void Vacia() {
        if (std::fwrite(m_Texto.data(), 1, m_Texto.size(), m_pFichero) != m_Texto.size()) Falla();
        m_Texto.clear();
    }

    std::string m_Ruta, m_Provisional, m_Texto;
    std::FILE* m_pFichero = nullptr;
    bool m_bAcabado = false;
};

// A stored coordinate as an absolute one. A sum rounds to more digits than the terrain has: those are cut off.
std::string Numero(int valor, double origen, const CDataSemilla& semilla) {
    const double absoluto = valor / semilla.Precision() + origen;
    constexpr int sobran = 3;
    const int decimales = std::max(semilla.GetDecimales(), 0) + sobran;
    const double escala = std::pow(10.0, decimales), redondo = std::round(absoluto * escala) / escala;
    return TextoExacto(std::abs(absoluto * escala) < 9e15 ? redondo : absoluto);
}

std::string X(const CCoor3D<int>& p, const CDataSemilla& s) {
    return Numero(p.x, s.GetX(), s);
}
std::string Y(const CCoor3D<int>& p, const CDataSemilla& s) {
    return Numero(p.y, s.GetY(), s);
}
std::string Z(const CCoor3D<int>& p, const CDataSemilla& s) {
    return Numero(p.z, s.GetZ(), s);
}

// A text as the value of an attribute. What XML has no place for becomes a blank.
std::string Atributo(const CString& texto) {
    std::string salida;
    for (const char c : texto.Utf8()) {
        switch (c) {
            case '&':
                salida += "&amp;";
                break;
            case '<':
                salida += "&lt;";
                break;
            case '>':
                salida += "&gt;";
                break;
            case '"':
                salida += "&quot;";
                break;
            default:
                salida += static_cast<unsigned char>(c) < 0x20 ? ' ' : c;
        }
    }
    return salida;
}

// The attributes of the file's date: universal time.
std::string Fecha() {
    const std::time_t ahora = std::time(nullptr);
    std::tm partes{};
    gmtime_r(&ahora, &partes);
    char texto[64];
    std::snprintf(texto, sizeof texto, "date=\"%04d-%02d-%02d\" time=\"%02d:%02d:%02d\"", partes.tm_year + 1900,
                  partes.tm_mon + 1, partes.tm_mday, partes.tm_hour, partes.tm_min, partes.tm_sec);
    return texto;
}

bool TienePuntos(const CTIN& tin, unsigned i) {
    for (const std::uint32_t v : tin.Fila(i).m_nVertices)
        if (v == 0 || tin.Punto(v - 1).EsBorrado()) return false;
    return true;
}

void EscribeSuperficie(CFicheroNuevo& fichero, const CSuperficieEscrita& superficie) {
    const CTIN& tin = *superficie.m_pTIN;
    const CDataSemilla& s = tin.GetSemilla();
    fichero.Escribe("    <Surface name=\"" + Atributo(superficie.m_Nombre) + "\">\n");
    CDigiTab todas;
    todas.Inserta(CElementoDigiTab(CTipoEntidad::Linea, L"*", 70, 70, 70, 0.0F, 0, CString(), 1), true);
    CDibujo<int> rupturas(s);
    tin.DameLineasRuptura(todas, rupturas, false, false, nullptr, nullptr, true);
    if (rupturas.Cantidad() > 0) {
        fichero.Escribe("      <SourceData>\n        <Breaklines>\n");
        for (unsigned i = 0; i < rupturas.Cantidad(); ++i) {
            fichero.Escribe("          <Breakline brkType=\"standard\"><PntList3D>");
            for (const CCoor3D<int>& p : rupturas[i]->Puntos())
                fichero.Escribe(Y(p, s) + " " + X(p, s) + " " + Z(p, s) + " ");
            fichero.Escribe("</PntList3D></Breakline>\n");
        }
        fichero.Escribe("        </Breaklines>\n      </SourceData>\n");
    }
    fichero.Escribe("      <Definition surfType=\"TIN\">\n        <Pnts>\n");
    for (const CPuntoTIN& p : tin.Puntos())
        if (!p.EsBorrado())
            fichero.Escribe("          <P id=\"" + std::to_string(p.GetNumero()) + "\">" + Y(p, s) + " " + X(p, s) +
                            " " + Z(p, s) + "</P>\n");
    fichero.Escribe("        </Pnts>\n        <Faces>\n");
    for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
        if (!TienePuntos(tin, i)) continue;
        const auto& v = tin.Fila(i).m_nVertices;
        fichero.Escribe(std::string("          <F") + (tin.EsVisible(i) ? ">" : " i=\"1\">") + std::to_string(v[0]) +
                        " " + std::to_string(v[1]) + " " + std::to_string(v[2]) + "</F>\n");
    }
    fichero.Escribe("        </Faces>\n      </Definition>\n    </Surface>\n");
}

// Runs a writing, and makes what it throws a message.
template <class Escribe>
bool Protegida(const CString& fichero, CString& error, Escribe escribe) {
    error = CString();
    try {
        CFicheroNuevo nuevo(RutaSistema(fichero));
        escribe(nuevo);
        nuevo.Acaba();
        return true;
    } catch (const CFallo& fallo) {
        error = io::Texto(fichero.Utf8() + ": " + fallo.what());
    } catch (const std::bad_alloc&) {
        error = io::Texto(fichero.Utf8() + ": there isn't enough memory to write it");
    }
    return false;
}

}  // namespace

bool EscribeLandXML(const CString& fichero, std::span<const CSuperficieEscrita> superficies, const CString& unidad,
                    const CString& epsg, CString& error) {
    return Protegida(fichero, error, [&](CFicheroNuevo& nuevo) {
        const bool bMetrica = unidad.IsEmpty() || unidad.Utf8().find("eter") != std::string::npos;
        nuevo.Escribe(
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
            "<LandXML xmlns=\"http://www.landxml.org/schema/LandXML-1.2\" version=\"1.2\" " +
            Fecha() + " language=\"English\" readOnly=\"false\">\n");
        nuevo.Escribe(bMetrica ? "  <Units><Metric areaUnit=\"squareMeter\" linearUnit=\"" +
                                     (unidad.IsEmpty() ? std::string("meter") : Atributo(unidad)) +
                                     "\" volumeUnit=\"cubicMeter\" temperatureUnit=\"celsius\" "
                                     "pressureUnit=\"milliBars\"/></Units>\n"
                               : "  <Units><Imperial areaUnit=\"squareFoot\" linearUnit=\"" + Atributo(unidad) +
                                     "\" volumeUnit=\"cubicFeet\" temperatureUnit=\"fahrenheit\" "
                                     "pressureUnit=\"inchHG\"/></Units>\n");
        if (!epsg.IsEmpty()) nuevo.Escribe("  <CoordinateSystem epsgCode=\"" + Atributo(epsg) + "\"/>\n");
        nuevo.Escribe("  <Surfaces>\n");
        for (const CSuperficieEscrita& superficie : superficies)
            EscribeSuperficie(nuevo, superficie);
        nuevo.Escribe("  </Surfaces>\n</LandXML>\n");
    });
}

bool EscribeOBJ(const CString& fichero, const CTIN& tin, CString& error) {
    return Protegida(fichero, error, [&](CFicheroNuevo& nuevo) {
        const CDataSemilla& s = tin.GetSemilla();
        std::vector<std::size_t> numeros(tin.CantidadPuntos(), 0);
        std::size_t cuantos = 0;
        for (const CPuntoTIN& p : tin.Puntos()) {
            if (p.EsBorrado()) continue;
            numeros[std::size_t(p.GetNumero()) - 1] = ++cuantos;
            nuevo.Escribe("v " + X(p, s) + " " + Y(p, s) + " " + Z(p, s) + "\n");
        }
        for (unsigned i = 0; i < tin.CantidadTriangulos(); ++i) {
            if (!tin.EsVisible(i)) continue;
            std::string linea = "f";
            for (const std::uint32_t v : tin.Fila(i).m_nVertices)
                linea += " " + std::to_string(numeros[v - 1]);
            nuevo.Escribe(linea + "\n");
        }
    });
}

}  // namespace Vertiz
