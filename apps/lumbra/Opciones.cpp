// The command line: its options, their checks, and their help. All numbers are read without the locale.

#include "Opciones.h"

#include "Ajustes.h"
#include "Convierte.h"
#include "model/CDataGamaColor.h"
#include "platform/Conversiones.h"
#include "platform/Numeros.h"

#include <CLI/CLI.hpp>

#include <algorithm>
#include <charconv>
#include <cmath>
#include <initializer_list>
#include <stdexcept>
#include <string_view>
#include <tuple>
#include <utility>
#include <vector>

namespace {

// Options that are texts until all of them are known.
struct Textos {
    std::string tamano, luz, fondo, superficie, mirada;
    bool cenital = false, ortografica = false, sinBase = false, sinLuz = false;
};

template <class T>
T Numero(std::string_view texto, const char* clase) {
    T valor{};
    std::string_view resto = texto;
    if (resto.starts_with('+')) resto.remove_prefix(1);
    const auto [fin, error] = std::from_chars(resto.data(), resto.data() + resto.size(), valor);
    if (error != std::errc() || fin != resto.data() + resto.size())
        throw std::invalid_argument("'" + std::string(texto) + "' is not " + clase);
    return valor;
}

int Entero(std::string_view texto) {
    return Numero<int>(texto, "a whole number");
}

double Real(std::string_view texto) {
    const auto valor = Numero<double>(texto, "a number; decimals are written with a point");
    if (!std::isfinite(valor)) throw std::invalid_argument("'" + std::string(texto) + "' is not a finite number");
    return valor;
}

// A check for the parser, which wants the fault as a text, out of one that throws.
template <class Comprueba>
CLI::Validator Regla(std::string descripcion, Comprueba comprueba) {
    return {[comprueba](std::string& texto) {
                try {
                    comprueba(texto);
                } catch (const std::invalid_argument& fallo) {
                    return std::string(fallo.what());
                }
                return std::string();
            },
            std::move(descripcion)};
}

CLI::Validator EsReal(double desde, double hasta) {
    return Regla("", [=](const std::string& texto) {
        const double valor = Real(texto);
        if (valor < desde || valor > hasta)
            throw std::invalid_argument(texto + " is not between " + TextoExacto(desde) + " and " + TextoExacto(hasta));
    });
}

CLI::Validator EsEntero(int desde, int hasta) {
    return Regla("", [=](const std::string& texto) {
        const int valor = Entero(texto);
        if (valor < desde || valor > hasta)
            throw std::invalid_argument(texto + " is not between " + std::to_string(desde) + " and " +
                                        std::to_string(hasta));
    });
}

// One of some names, which the option keeps as its number.
CLI::Validator UnoDe(std::initializer_list<std::pair<const char*, unsigned>> nombres) {
    std::string lista;
    for (const auto& nombre : nombres)
        lista += (lista.empty() ? "" : ", ") + std::string(nombre.first);
    const std::vector<std::pair<const char*, unsigned>> tabla(nombres);
    return Regla("", [=](std::string& texto) {
        for (const auto& [nombre, valor] : tabla)
            if (texto == nombre) {
                texto = std::to_string(valor);
                return;
            }
        throw std::invalid_argument("'" + texto + "' is none of " + lista);
    });
}

CLI::Validator EsRampa() {
    return Regla("", [](const std::string& texto) {
        if (Vertiz::CDataGamaColor(CString(DeUtf8(texto))).Paradas().size() < 2)
            throw std::invalid_argument("'" + texto +
                                        "' is not a ramp: at least two stops \"height red green blue\", channels from "
                                        "0 to 255, parted by semicolons, as in \"0 0 97 71; 900 255 255 255\"");
    });
}

CLI::Validator NoVacio(const char* que) {
    return Regla("", [=](const std::string& texto) {
        if (texto.empty()) throw std::invalid_argument(std::string("an empty name; ") + que);
    });
}

// Two values with a separator between them: 1200x900, 315,45.
std::pair<std::string_view, std::string_view> Parte(std::string_view texto, char separador) {
    const std::size_t lugar = texto.find(separador);
    if (lugar == std::string_view::npos)
        throw std::invalid_argument("'" + std::string(texto) + "' is not two values with '" + separador +
                                    "' between them");
    return {texto.substr(0, lugar), texto.substr(lugar + 1)};
}

std::pair<int, int> Tamano(std::string_view texto) {
    const auto [ancho, alto] = Parte(texto, 'x');
    const std::pair<int, int> tamano = {Entero(ancho), Entero(alto)};
    if (tamano.first < 1 || tamano.second < 1) throw std::invalid_argument("a picture's side has at least 1 pixel");
    return tamano;
}

void TamanoVentana(std::string_view texto) {
    constexpr int kMayor = 16384;
    const auto [ancho, alto] = Tamano(texto);
    if (std::max(ancho, alto) > kMayor)
        throw std::invalid_argument("a window's side has at most " + std::to_string(kMayor) + " pixels");
}

std::pair<double, double> Direccion(std::string_view texto) {
    const auto [azimut, elevacion] = Parte(texto, ',');
    return {Real(azimut), Real(elevacion)};
}

std::pair<double, double> Mirada(std::string_view texto) {
    const std::pair<double, double> mirada = Direccion(texto);
    if (std::abs(mirada.second) > 90.0)
        throw std::invalid_argument("an elevation lies between -90, straight down, and 90, straight up");
    return mirada;
}

// #rrggbb as the library keeps colours, with red in the low byte.
int Color(std::string_view texto) {
    unsigned rgb = 0;
    const bool forma = texto.size() == 7 && texto[0] == '#';
    const char* const fin = texto.data() + texto.size();
    if (!forma || std::from_chars(texto.data() + 1, fin, rgb, 16).ptr != fin)
        throw std::invalid_argument("'" + std::string(texto) + "' is not a colour like #e0f1fe");
    return static_cast<int>((rgb >> 16 & 0xFF) | (rgb & 0xFF00) | (rgb & 0xFF) << 16);
}

std::string SalidaPorDefecto(const std::string& fichero) {
    const std::size_t barra = fichero.find_last_of('/'), punto = fichero.find_last_of('.');
    const std::size_t inicio = barra == std::string::npos ? 0 : barra + 1;
    return fichero.substr(inicio, punto == std::string::npos || punto <= inicio ? std::string::npos : punto - inicio) +
           ".png";
}

void Completa(Orden& orden, const Textos& textos) {
    OpcionesVista& v = orden.montaje.vista;
    if (!textos.tamano.empty()) std::tie(v.lienzo.ancho, v.lienzo.alto) = Tamano(textos.tamano);
    if (!textos.mirada.empty()) {
        const auto [azimut, elevacion] = Mirada(textos.mirada);
        orden.panorama.mirada = {azimut, elevacion};
    }
    if (!textos.luz.empty()) std::tie(v.luzAzimut, v.luzElevacion) = Direccion(textos.luz);
    if (!textos.fondo.empty()) v.colorFondo = Color(textos.fondo);
    if (!textos.superficie.empty()) v.colorDEM = Color(textos.superficie);
    if (textos.cenital) {
        v.azimut = 180.0;
        v.elevacion = 90.0;
    }
    // Flags only take away: without them a window has what it had the last time.
    v.perspectiva = v.perspectiva && !textos.ortografica;
    v.base = v.base && !textos.sinBase;
    v.luz = v.luz && !textos.sinLuz;
    if (orden.tarea == Tarea::kDibuja && orden.salida.empty()) orden.salida = SalidaPorDefecto(orden.montaje.fichero);
}

void DeclaraLectura(CLI::App& orden, Orden& o) {
    orden
        .add_option_function<unsigned>(
            "--as", [&o](unsigned como) { o.foto = como == 1; },
            "What the file holds: picture, terrain; by default as it looks")
        ->transform(UnoDe({{"picture", 1}, {"terrain", 0}}))
        ->type_name("WHAT");
    orden
        .add_option("--nodata", o.montaje.terreno.nulo,
                    "Height that stands for 'no height', where the file doesn't say it")
        ->check(Regla("", [](const std::string& texto) { Real(texto); }))
        ->type_name("HEIGHT");
    orden.add_flag("--degrees", o.montaje.terreno.grados,
                   "Leave a grid in degrees as it is, instead of bringing it to UTM");
}

void DeclaraVista(CLI::App& orden, Orden& o, Textos& t) {
    OpcionesVista& v = o.montaje.vista;
    constexpr double kMuchos = 1e6;
    orden.add_option("--azimuth", v.azimut, "Where the viewer stands, clockwise from north")
        ->check(EsReal(-kMuchos, kMuchos))
        ->type_name("DEGREES")
        ->capture_default_str()
        ->group("View");
    orden.add_option("--elevation", v.elevacion, "How high the viewer stands over the horizon, -90 to 90")
        ->check(EsReal(-90.0, 90.0))
        ->type_name("DEGREES")
        ->capture_default_str()
        ->group("View");
    orden.add_flag("--top", t.cenital, "Look straight down, north up")->group("View");
    orden.add_flag("--orthographic", t.ortografica, "Without perspective: lengths can be measured")->group("View");
    orden
        .add_option("--exaggeration", v.exageracion,
                    "Heights times this; by default what shows the relief, 1 with buildings and trees")
        ->check(EsReal(0.001, 1000.0))
        ->type_name("FACTOR")
        ->group("View");
}

void DeclaraAspecto(CLI::App& orden, Orden& o, Textos& t) {
    OpcionesVista& v = o.montaje.vista;
    const CLI::Validator esColor = Regla("", [](const std::string& texto) { Color(texto); });
    orden
        .add_option("--color", v.color,
                    "Colour of the surface: height (by a ramp), plain, cutfill (above and below 0), wire")
        ->transform(UnoDe({{"height", 2}, {"plain", 1}, {"cutfill", 6}, {"wire", 0}}))
        ->type_name("HOW")
        ->group("Look");
    orden.add_option("--ramp", v.rampa, "Colours of heights: \"height red green blue; ...\"")
        ->check(EsRampa())
        ->type_name("STOPS")
        ->group("Look");
    orden.add_option("--surface", t.superficie, "Colour of a plain surface")
        ->check(esColor)
        ->type_name("#RRGGBB")
        ->group("Look");
    orden.add_option("--background", t.fondo, "Colour behind the model")
        ->check(esColor)
        ->type_name("#RRGGBB")
        ->group("Look");
    orden.add_flag("--tints", v.sombraCeldas, "Four tints a cell on a plain surface, to see the cells")->group("Look");
    orden.add_option("--light", t.luz, "Where the light comes from, in degrees; by default 315,45")
        ->check(Regla("", [](const std::string& texto) { Direccion(texto); }))
        ->type_name("AZIMUTH,ELEVATION")
        ->group("Look");
    orden.add_flag("--no-light", t.sinLuz, "Colours as they are, without shading")->group("Look");
    orden.add_flag("--no-base", t.sinBase, "Without walls and floor")->group("Look");
    orden.add_flag("--limits", v.limites, "Box and outline of the grid")->group("Look");
    orden.add_flag("--axes", v.ejes, "Axes in the corner of an orthographic picture")->group("Look");
    orden.add_option("--mesh", v.malla, "How the surface is made: quads, strips (which bridge voids), points")
        ->transform(UnoDe({{"quads", 1}, {"strips", 0}, {"points", 2}}))
        ->type_name("HOW")
        ->group("Look");
    orden
        .add_option("--step", v.paso, "Take one sample in so many of rows and columns; large grids do it by themselves")
        ->check(EsEntero(1, 100000))
        ->type_name("N")
        ->group("Look");
}

void DeclaraEscenario(CLI::App& orden, Orden& o) {
    OpcionesEscenario& e = o.montaje.escenario;
    constexpr const char* kGrupo = "On the terrain";
    const auto fichero = [&](const char* nombre, std::string& ruta, const char* que, const char* ayuda) {
        return orden.add_option(nombre, ruta, ayuda)->check(NoVacio(que))->type_name("FILE")->group(kGrupo);
    };
    fichero("--drape", e.imagen, "name a picture",
            "Picture of the terrain from above, of any system of coordinates: GeoTIFF, JPEG with a world file ...");
    CLI::Option* edificios = fichero(
        "--buildings", e.edificios, "name a file of outlines",
        "Outlines of buildings with heights, as z of the eaves or as an attribute, over the ground: GeoPackage, "
        "Shapefile, GeoJSON, DXF ...");
    orden
        .add_option("--height-field", e.campoAltura, "Attribute that holds the buildings' heights; by default 'height'")
        ->check(NoVacio("name the attribute"))
        ->needs(edificios)
        ->type_name("NAME")
        ->group(kGrupo);
    CLI::Option* arboles = fichero("--trees", e.arboles, "name a file of points",
                                   "Points where trees stand, with an attribute 'height' or without");
    orden.add_option("--tree-height", e.alturaArboles, "Height of trees that have none")
        ->check(EsReal(0.001, 1e6))
        ->needs(arboles)
        ->type_name("HEIGHT")
        ->capture_default_str()
        ->group(kGrupo);
    orden.add_flag("--conifers", e.coniferas, "The trees are conifers")->needs(arboles)->group(kGrupo);
    fichero("--breaklines", e.rupturas, "name a file of lines",
            "Lines to draw on the terrain: as text (.txt, see docs/breaklines.md), or GeoPackage, Shapefile, DXF ...");
    fichero("--sky", e.cielo, "name a picture",
            "Picture of a sky all round (equirectangular), its middle in the north");
}

void DeclaraComposicion(CLI::App& orden, Orden& o) {
    const auto ficheros = [&](const char* nombre, std::vector<std::string>& rutas, const char* ayuda) {
        orden.add_option(nombre, rutas, ayuda)
            ->check(NoVacio("name a model"))
            ->take_all()
            ->allow_extra_args(false)
            ->type_name("FILE")
            ->group("Beside the terrain");
    };
    ficheros("--reference", o.montaje.composicion.referencias,
             "Another grid in the same frame, of any system of coordinates; a window can hide it. May be repeated");
    ficheros("--link", o.montaje.composicion.vinculos, "Another grid that is always shown. May be repeated");
}

void DeclaraPanorama(CLI::App& orden, Orden& o, Textos& t) {
    CLI::Option* esfera =
        orden.add_flag("--sphere", o.esfera, "The picture is a panorama (equirectangular): look at it from inside")
            ->group("Panorama");
    orden
        .add_option(
            "--look", t.mirada,
            "Where to look, in degrees: clockwise from north, or from the picture's middle where it doesn't tell "
            "its heading; and over the horizon")
        ->check(Regla("", [](const std::string& texto) { Mirada(texto); }))
        ->needs(esfera)
        ->type_name("AZIMUTH,ELEVATION")
        ->group("Panorama");
    orden.add_option("--fov", o.panorama.campo, "Height of the view")
        ->check(EsReal(1.0, 170.0))
        ->needs(esfera)
        ->type_name("DEGREES")
        ->capture_default_str()
        ->group("Panorama");
}

// What renders and windows have in common.
void DeclaraModelo(CLI::App& orden, Orden& o, Textos& t) {
    DeclaraLectura(orden, o);
    DeclaraVista(orden, o, t);
    DeclaraAspecto(orden, o, t);
    DeclaraEscenario(orden, o);
    DeclaraComposicion(orden, o);
    DeclaraPanorama(orden, o, t);
}

void DeclaraDibujo(CLI::App& orden, Orden& o, Textos& t) {
    orden
        .add_option(
            "file", o.montaje.fichero,
            "Elevation grid (GeoTIFF, ESRI ASCII grid, SRTM, USGS DEM ...) or picture (TIFF, BMP, JPEG, JPEG 2000)")
        ->check(NoVacio("name an elevation grid or a picture"))
        ->required();
    orden.add_option("-o,--output", o.salida, "Picture to write, PNG; by default the file's name with .png, here")
        ->check(NoVacio("name the picture to write"))
        ->type_name("FILE");
    orden.add_option("--size", t.tamano, "Width and height in pixels; a picture keeps its own, or is fitted in")
        ->check(Regla("", [](const std::string& texto) { Tamano(texto); }))
        ->type_name("WxH")
        ->default_str("1200x900");
    orden
        .add_option("--smooth", o.montaje.vista.lienzo.muestreo,
                    "Draw 1 to 4 times as large and average, for smooth edges; by default 2 where that fits")
        ->check(EsEntero(1, 4))
        ->type_name("N");
    DeclaraModelo(orden, o, t);
    orden.footer(
        "Examples:\n"
        "  lumbra render dem.tif\n"
        "  lumbra render dem.tif -o north.png --azimuth 0 --elevation 25\n"
        "  lumbra render dem.tif -o plan.png --top --orthographic --size 3000x3000\n"
        "  lumbra render dem.tif --drape ortho.tif --buildings houses.gpkg --trees trees.gpkg --sky sky.jpg\n"
        "  lumbra render dem.tif --reference older.tif --link next.tif\n"
        "  lumbra render panorama.jpg --sphere --look 90,10 --fov 75");
}

void DeclaraVentana(CLI::App& orden, Orden& o, Textos& t) {
    // What earlier windows left is the default of what the command line says.
    orden.preparse_callback([&o](std::size_t) {
        o.montaje.vista.lienzo = {1000, 750, 1};
        RecuerdaAjustes(o.montaje.vista);
    });
    orden
        .add_option("file", o.ficheros,
                    "Elevation grid (GeoTIFF, ESRI ASCII grid, SRTM, USGS DEM ...), and others to show beside it; or, "
                    "with --sphere, a panorama")
        ->check(NoVacio("name an elevation grid or a panorama"))
        ->required();
    orden.add_option("--size", t.tamano, "Width and height of the window; by default as it was the last time")
        ->check(Regla("", [](const std::string& texto) { TamanoVentana(texto); }))
        ->type_name("WxH");
    DeclaraModelo(orden, o, t);
    orden.footer(
        "In the window, ? lists what mouse and keys do.\n"
        "Examples:\n"
        "  lumbra view dem.tif\n"
        "  lumbra view dem.tif next.tif --drape ortho.tif --buildings houses.gpkg\n"
        "  lumbra view panorama.jpg --sphere");
}

void DeclaraConversion(CLI::App& orden, Orden& o) {
    orden.add_option("file", o.montaje.fichero, "Picture to read: TIFF, BMP, JPEG, JPEG 2000")
        ->check(NoVacio("name a picture"))
        ->required();
    orden.add_option("output", o.salida, "Picture to write: a name that ends in .bmp, .tif, .jpg or .png")
        ->check(Regla("",
                      [](const std::string& ruta) {
                          if (!EsSalidaFoto(ruta))
                              throw std::invalid_argument("'" + ruta + "' doesn't end in .bmp, .tif, .jpg or .png");
                      }))
        ->required();
}

// What goes with a terrain doesn't go with a panorama.
void CompruebaPanorama(const Orden& orden) {
    const char* const opcion = orden.montaje.DelTerreno();
    if (!orden.esfera || opcion == nullptr) return;
    throw std::invalid_argument(orden.ficheros.size() > 1
                                    ? std::string("a panorama is shown alone; name one file")
                                    : std::string(opcion) + " goes with an elevation grid, not with --sphere");
}

// The parser's fault in one line, with where to read on.
std::string Fallo(const CLI::ParseError& error, const CLI::App& programa) {
    const auto ordenes = programa.get_subcommands();
    const std::string ayuda = ordenes.empty() ? "lumbra --help" : "lumbra " + ordenes.front()->get_name() + " --help";
    std::string texto = error.what();
    texto.erase(texto.find_last_not_of("\n ") + 1);
    for (char& c : texto)
        if (c == '\n') c = ' ';
    return texto + " (" + ayuda + " lists the options)";
}

}  // namespace

Orden LeeOrden(int argc, char** argv) {
    Orden orden;
    Textos textos;
    CLI::App programa{
        "Shows and draws elevation grids and panoramas, tells about files, and converts pictures. Only view needs a "
        "display.",
        "lumbra"};
    programa.require_subcommand(0, 1);
    programa.set_version_flag("--version", "lumbra " LUMBRA_VERSION);
    CLI::App* dibuja = programa.add_subcommand(
        "render", "Draw an elevation grid, a picture as itself, or a view from inside a panorama, into a PNG");
    DeclaraDibujo(*dibuja, orden, textos);
    CLI::App* mira =
        programa.add_subcommand("view", "Show an elevation grid, or the inside of a panorama, in a window");
    DeclaraVentana(*mira, orden, textos);
    CLI::App* cuenta =
        programa.add_subcommand("info", "Tell about an elevation grid, a picture, or the machine's OpenGL");
    cuenta->add_option("file", orden.montaje.fichero, "Elevation grid or picture")->check(NoVacio("name a file"));
    cuenta->add_flag("--gl", orden.gl, "Which way to OpenGL serves, its limits, and why the others don't");
    DeclaraLectura(*cuenta, orden);
    CLI::App* convierte = programa.add_subcommand("convert", "Write a picture in another format");
    DeclaraConversion(*convierte, orden);
    try {
        programa.parse(argc, argv);
    } catch (const CLI::Success& ayuda) {
        programa.exit(ayuda);
        return orden;
    } catch (const CLI::ParseError& error) {
        throw std::invalid_argument(Fallo(error, programa));
    }
    if (dibuja->parsed()) {
        orden.tarea = Tarea::kDibuja;
        orden.tamanoPedido = dibuja->count("--size") > 0;
        Completa(orden, textos);
    } else if (mira->parsed()) {
        orden.tarea = Tarea::kMira;
        orden.montaje.fichero = orden.ficheros.front();
        orden.montaje.composicion.vinculos.insert(orden.montaje.composicion.vinculos.begin(),
                                                  orden.ficheros.begin() + 1, orden.ficheros.end());
        Completa(orden, textos);
        CompruebaPanorama(orden);
    } else if (cuenta->parsed()) {
        orden.tarea = Tarea::kCuenta;
        if (orden.montaje.fichero.empty() && !orden.gl)
            throw std::invalid_argument("info: name a file, or ask for --gl");
    } else if (convierte->parsed()) {
        orden.tarea = Tarea::kConvierte;
    } else {
        throw std::invalid_argument(
            "say what to do: lumbra view FILE, lumbra render FILE, lumbra info FILE, or lumbra convert FILE OUTPUT "
            "(lumbra --help tells "
            "more)");
    }
    return orden;
}
