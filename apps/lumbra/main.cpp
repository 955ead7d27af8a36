// lumbra: draws elevation grids and tells about them, from the command line.

#include <CLI/CLI.hpp>
#include <charconv>
#include <cstdio>
#include <exception>
#include <map>
#include <optional>
#include <stdexcept>
#include <string>

#include "Informacion.h"
#include "Progreso.h"
#include "Vista.h"
#include "io/LeeDEM.h"
#include "platform/Conversiones.h"

namespace {

struct Orden {
    std::string fichero, salida, tamano = "1200x900", luz, fondo, superficie;
    std::optional<double> nulo;
    bool cenital = false, ortografica = false, sinBase = false, sinLuz = false, grados = false, gl = false;
    OpcionesVista vista;
};

int Entero(std::string_view texto) {
    int valor = 0;
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
    if (error != std::errc() || fin != texto.data() + texto.size() || texto.empty())
        throw std::runtime_error("'" + std::string(texto) + "' is not a whole number");
    return valor;
}

double Real(std::string_view texto) {
    double valor = 0;
    const auto [fin, error] = std::from_chars(texto.data(), texto.data() + texto.size(), valor);
    if (error != std::errc() || fin != texto.data() + texto.size() || texto.empty())
        throw std::runtime_error("'" + std::string(texto) + "' is not a number");
    return valor;
}

// Two values with a separator between them: 1200x900, 315,45.
std::pair<std::string_view, std::string_view> Parte(std::string_view texto, char separador, const char* opcion) {
    const std::size_t lugar = texto.find(separador);
    if (lugar == std::string_view::npos)
        throw std::runtime_error(std::string(opcion) + " takes two values with '" + separador +
                                 "' between them, not '" + std::string(texto) + "'");
    return {texto.substr(0, lugar), texto.substr(lugar + 1)};
}

// #rrggbb as the library keeps colours, with red in the low byte.
int Color(std::string_view texto) {
    unsigned rgb = 0;
    const bool forma = texto.size() == 7 && texto[0] == '#';
    const auto [fin, error] = std::from_chars(texto.data() + 1, texto.data() + texto.size(), rgb, 16);
    if (!forma || error != std::errc() || fin != texto.data() + texto.size())
        throw std::runtime_error("'" + std::string(texto) + "' is not a colour like #e0f1fe");
    return static_cast<int>((rgb >> 16 & 0xFF) | (rgb & 0xFF00) | (rgb & 0xFF) << 16);
}

std::string SalidaPorDefecto(const std::string& fichero) {
    const std::size_t barra = fichero.find_last_of('/'), punto = fichero.find_last_of('.');
    const std::size_t inicio = barra == std::string::npos ? 0 : barra + 1;
    return fichero.substr(inicio, punto == std::string::npos || punto <= inicio ? std::string::npos : punto - inicio) +
           ".png";
}

// The options that come as texts.
void Completa(Orden& orden) {
    OpcionesVista& v = orden.vista;
    const auto [ancho, alto] = Parte(orden.tamano, 'x', "--size");
    v.ancho = Entero(ancho);
    v.alto = Entero(alto);
    if (v.ancho < 1 || v.alto < 1) throw std::runtime_error("--size " + orden.tamano + ": a side has at least 1 pixel");
    if (!orden.luz.empty()) {
        const auto [azimut, elevacion] = Parte(orden.luz, ',', "--light");
        v.luzAzimut = Real(azimut);
        v.luzElevacion = Real(elevacion);
    }
    if (!orden.fondo.empty()) v.colorFondo = Color(orden.fondo);
    if (!orden.superficie.empty()) v.colorDEM = Color(orden.superficie);
    if (orden.cenital) {
        v.azimut = 180.0;
        v.elevacion = 90.0;
    }
    v.perspectiva = !orden.ortografica;
    v.base = !orden.sinBase;
    v.luz = !orden.sinLuz;
    if (orden.salida.empty()) orden.salida = SalidaPorDefecto(orden.fichero);
}

Vertiz::CResultadoDEM Lee(const Orden& orden, Progreso& progreso) {
    Vertiz::CDataLeeDEM opciones;
    opciones.m_Nulo = orden.nulo;
    opciones.m_bConservaGrados = orden.grados;
    Vertiz::CResultadoDEM leido = LeeDEM(CString(DeUtf8(orden.fichero)), opciones, &progreso);
    progreso.Termina(1, 0);
    if (leido.m_nResultado != 1) throw std::runtime_error(AUtf8(leido.m_Error.Texto()));
    for (const auto* textos : {&leido.m_Mensajes, &leido.m_Avisos})
        for (const CString& texto : *textos)
            std::fprintf(stderr, "%s: %s%s\n", orden.fichero.c_str(), textos == &leido.m_Avisos ? "warning: " : "",
                         AUtf8(texto.Texto()).c_str());
    return leido;
}

void Dibuja(Orden& orden, Progreso& progreso) {
    Completa(orden);
    Vertiz::CResultadoDEM leido = Lee(orden, progreso);
    const ResultadoVista vista = DibujaDEM(*leido.m_pDEM, orden.vista);
    EscribePng(orden.salida, vista.imagen);
    std::printf("%s -> %s: %d x %d pixels, heights x %g", orden.fichero.c_str(), orden.salida.c_str(),
                vista.imagen.ancho, vista.imagen.alto, vista.exageracion);
    if (vista.pasoMalla > 1) std::printf(", one sample in %d of rows and columns", vista.pasoMalla);
    std::printf("\n");
}

void Cuenta(const Orden& orden, Progreso& progreso) {
    if (orden.gl && !CuentaGL()) throw std::runtime_error("no rendering context can be had; the reasons stand above");
    if (orden.fichero.empty()) return;
    const Vertiz::CResultadoDEM leido = Lee(orden, progreso);
    std::printf("%s\n", orden.fichero.c_str());
    CuentaDEM(leido);
}

void DeclaraLectura(CLI::App& orden, Orden& o) {
    orden.add_option("--nodata", o.nulo, "Height that stands for 'no height', where the file doesn't say it");
    orden.add_flag("--degrees", o.grados, "Leave a grid in degrees as it is, instead of bringing it to UTM");
}

void DeclaraDibujo(CLI::App& orden, Orden& o) {
    OpcionesVista& v = o.vista;
    const std::map<std::string, unsigned> colores = {{"wire", 0}, {"plain", 1}, {"height", 2}, {"cutfill", 6}};
    const std::map<std::string, unsigned> mallas = {{"strips", 0}, {"quads", 1}, {"points", 2}};
    orden.add_option("file", o.fichero, "Elevation grid: GeoTIFF, ESRI ASCII grid, SRTM, USGS DEM ...")->required();
    orden.add_option("-o,--output", o.salida, "Picture to write, PNG; by default the file's name with .png, here");
    orden.add_option("--size", o.tamano, "Width and height in pixels")->capture_default_str();
    orden.add_option("--smooth", v.muestreo, "Draw so many times as large and average, for smooth edges")
        ->check(CLI::Range(1, 4))
        ->capture_default_str();
    DeclaraLectura(orden, o);

    orden.add_option("--azimuth", v.azimut, "Where the viewer stands, degrees clockwise from north")
        ->capture_default_str()
        ->group("View");
    orden.add_option("--elevation", v.elevacion, "How high the viewer stands, degrees over the horizon")
        ->check(CLI::Range(-90.0, 90.0))
        ->capture_default_str()
        ->group("View");
    orden.add_flag("--top", o.cenital, "Look straight down, north up")->group("View");
    orden.add_flag("--orthographic", o.ortografica, "Without perspective: lengths can be measured")->group("View");
    orden.add_option("--exaggeration", v.exageracion, "Factor of heights; by default one that shows the relief")
        ->check(CLI::Range(0.001, 1000.0))
        ->group("View");

    orden.add_option("--color", v.color, "Colour of the surface: height, plain, cutfill (above and below 0), wire")
        ->transform(CLI::CheckedTransformer(colores, CLI::ignore_case))
        ->group("Look");
    orden.add_option("--ramp", v.rampa, "Colours of heights: \"height red green blue; ...\"")->group("Look");
    orden.add_option("--surface", o.superficie, "Colour of a plain surface, #rrggbb")->group("Look");
    orden.add_option("--background", o.fondo, "Colour behind the model, #rrggbb")->group("Look");
    orden.add_flag("--tints", v.sombraCeldas, "Four tints a cell on a plain surface, to see the cells")->group("Look");
    orden.add_option("--light", o.luz, "Where the light comes from: azimuth,elevation; by default 315,45")
        ->group("Look");
    orden.add_flag("--no-light", o.sinLuz, "Colours as they are, without shading")->group("Look");
    orden.add_flag("--no-base", o.sinBase, "Without walls and floor")->group("Look");
    orden.add_flag("--limits", v.limites, "Box and outline of the grid")->group("Look");
    orden.add_flag("--axes", v.ejes, "Axes in the corner of an orthographic picture")->group("Look");
    orden.add_option("--mesh", v.malla, "How the surface is made: quads, strips, points")
        ->transform(CLI::CheckedTransformer(mallas, CLI::ignore_case))
        ->group("Look");
    orden.add_option("--step", v.paso, "Below 0: leave samples out, -1 takes every second one")
        ->check(CLI::Range(-1000, 20))
        ->group("Look");
}

}  // namespace

int main(int argc, char** argv) {
    Orden orden;
    CLI::App programa{"Draws elevation grids, and tells about them. Needs no display."};
    programa.require_subcommand(1);
    programa.set_version_flag("--version", LUMBRA_VERSION);
    CLI::App* dibuja = programa.add_subcommand("render", "Draw an elevation grid into a picture");
    DeclaraDibujo(*dibuja, orden);
    CLI::App* cuenta = programa.add_subcommand("info", "Tell about an elevation grid, or about the machine's OpenGL");
    cuenta->add_option("file", orden.fichero, "Elevation grid");
    cuenta->add_flag("--gl", orden.gl, "Which way to OpenGL serves, its limits, and why the others don't");
    DeclaraLectura(*cuenta, orden);
    CLI11_PARSE(programa, argc, argv);

    try {
        Progreso progreso;
        if (dibuja->parsed()) Dibuja(orden, progreso);
        if (cuenta->parsed()) {
            if (orden.fichero.empty() && !orden.gl) throw std::runtime_error("info: name a file, or ask for --gl");
            Cuenta(orden, progreso);
        }
    } catch (const std::bad_alloc&) {
        std::fprintf(stderr, "lumbra: not enough memory\n");
        return 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "lumbra: %s\n", error.what());
        return 1;
    }
    return 0;
}
