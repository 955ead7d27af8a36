// What `lumbra info` prints.

#include "Informacion.h"

#include "platform/Conversiones.h"
#include "platform/DiagnosticoGL.h"
#include "platform/Numeros.h"

#include <cstdio>
#include <string>

namespace {

void Linea(const char* nombre, const std::string& valor) {
    std::printf("  %-14s %s\n", nombre, valor.c_str());
}

// A coordinate or a height, without zeros that say nothing.
std::string Numero(double v) {
    std::string texto = TextoReal(v, 6);
    texto.erase(texto.find_last_not_of('0') + 1);
    if (texto.back() == '.') texto.pop_back();
    return texto;
}

std::string Rango(double desde, double hasta) {
    return Numero(desde) + " to " + Numero(hasta);
}

std::string FormatoFoto(const Vertiz::IRaster& raster) {
    switch (raster.Tipo()) {
        case 20:
            return "TIFF";
        case 21:
            return "BMP";
        case 22:
            return "JPEG";
        default:  // one class reads both, where there is a kit for ECW
            return TerminaEn(AUtf8(raster.Nombre()), "ecw") ? "ECW" : "JPEG 2000";
    }
}

std::string Texto(const CString& s) {
    return AUtf8(s.Texto());
}

}  // namespace

void CuentaDEM(const Vertiz::CResultadoDEM& leido) {
    const Vertiz::CDEM& dem = *leido.m_pDEM;
    const Vertiz::CMaximas<double>& m = dem.GetMaximasTotalDouble();
    Linea("format", Texto(leido.m_Formato));
    Linea("samples", std::to_string(leido.m_nColumnasFichero) + " x " + std::to_string(leido.m_nFilasFichero) +
                         " in the file" +
                         (leido.m_nPaso > 1 ? ", one in " + std::to_string(leido.m_nPaso) + " taken" : ""));
    Linea("grid", std::to_string(dem.GetColumnas()) + " x " + std::to_string(dem.GetFilas()) + " samples, cells of " +
                      Numero(dem.GetCeldaX()) + " x " + Numero(dem.GetCeldaY()));
    Linea("coordinates", leido.m_Sistema.IsEmpty() ? "none given" : Texto(leido.m_Sistema));
    if (!leido.m_Unidad.IsEmpty()) Linea("unit", Texto(leido.m_Unidad));
    Linea("x", Rango(m.Minima().x, m.Maxima().x));
    Linea("y", Rango(m.Minima().y, m.Maxima().y));
    Linea("heights", Rango(m.Minima().z, m.Maxima().z));
    if (leido.m_Nulo) Linea("void value", Numero(*leido.m_Nulo));
    Linea("voids", std::to_string(leido.m_nVacios) + " samples");
}

void CuentaFoto(const Foto& foto) {
    Vertiz::IRaster& raster = foto.Raster();
    Linea("format", FormatoFoto(raster));
    Linea("pixels", std::to_string(foto.Ancho()) + " x " + std::to_string(foto.Alto()));
    if (raster.BytesPixel() > 0)
        Linea("bits a pixel",
              std::to_string(8 * raster.BytesPixel()) + (raster.TienePaleta() ? ", with a palette" : ""));
    if (raster.Resolucion() > 1.0F) Linea("resolution", Numero(raster.Resolucion()) + " dots per inch");
    if (!raster.TieneGeorreferencia()) return;
    const Vertiz::CGeorreferencia& g = *raster.Georreferencia();
    Linea("pixel size", Numero(g.m_dEscala[0]) + " x " + Numero(g.m_dEscala[1]));
    for (const auto& p : g.m_PuntosControl)
        Linea("tie point",
              "pixel " + Numero(p[0]) + ", " + Numero(p[1]) + " is at " + Numero(p[3]) + ", " + Numero(p[4]));
}

bool CuentaGL() {
    const CDiagnosticoGL gl = DiagnosticoGL();
    std::printf("Ways to a rendering context, in the order in which they are tried:\n");
    for (const CViaGL& via : gl.m_Vias) {
        std::printf("  %-16s %s\n", via.m_Nombre.c_str(), via.m_Descripcion.c_str());
        std::printf("  %-16s %s\n", "", via.m_bSirve ? "serves" : via.m_Motivo.c_str());
    }
    if (!gl.m_bHay) return false;
    std::printf("OpenGL through %s:\n", gl.m_Via.c_str());
    const auto si = [](bool v) { return std::string(v ? "yes" : "no"); };
    Linea("vendor", gl.m_Fabricante);
    Linea("renderer", gl.m_Renderizador);
    Linea("version", gl.m_Version);
    Linea("GLU", gl.m_VersionGLU);
    Linea("windows", si(gl.m_bVentanas));
    Linea("direct", si(gl.m_bDirecto));
    Linea("presents", gl.m_bPresentaCopiando ? "by copying, since the swap loses the front buffer" : "by swapping");
    Linea("largest view", std::to_string(gl.m_nMaxAnchoVista) + " x " + std::to_string(gl.m_nMaxAltoVista));
    Linea("largest tile", std::to_string(gl.m_nMaxTextura));
    Linea("depth", std::to_string(gl.m_nBitsProfundidad) + " bits");
    Linea("stencil", std::to_string(gl.m_nBitsEstarcido) + " bits");
    Linea("lights", std::to_string(gl.m_nMaxLuces));
    Linea("list nesting", std::to_string(gl.m_nMaxAnidamiento));
    Linea("matrix stack", std::to_string(gl.m_nMaxPilaVista));
    return true;
}
