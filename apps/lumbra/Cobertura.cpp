// Coverage from metadata, or from the picture's shape.

#include "Cobertura.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <fstream>
#include <string_view>
#include <vector>

namespace {

// The head of a file, where metadata stand.
std::string Cabecera(const std::string& ruta) {
    constexpr std::size_t kBytes = 256 * 1024;
    std::string texto(kBytes, '\0');
    std::ifstream fichero(ruta, std::ios::binary);
    fichero.read(texto.data(), static_cast<std::streamsize>(kBytes));
    texto.resize(static_cast<std::size_t>(fichero.gcount()));
    return texto;
}

// A number that XMP gives as an attribute, Name="5", or as an element, <Name>5</Name>.
std::optional<double> Propiedad(std::string_view xmp, const std::string& nombre) {
    for (const char* fin : {"=\"", "='", ">"}) {
        const std::string clave = "GPano:" + nombre + fin;
        const std::size_t lugar = xmp.find(clave);
        if (lugar == std::string_view::npos) continue;
        const std::string_view resto = xmp.substr(lugar + clave.size());
        double valor = 0.0;
        const bool leido = std::from_chars(resto.data(), resto.data() + resto.size(), valor).ec == std::errc();
        if (leido && std::isfinite(valor)) return valor;
    }
    return {};
}

// Shares of a whole, when they lie in it.
bool Reparte(std::optional<double> desde, std::optional<double> cuanto, std::optional<double> total, double& parteDesde,
             double& parteCuanto) {
    if (!desde || !cuanto || !total || !(*cuanto > 0.0) || !(*desde >= 0.0) || *desde + *cuanto > *total) return false;
    parteDesde = *desde / *total;
    parteCuanto = *cuanto / *total;
    return true;
}

}  // namespace

Cobertura LeeCobertura(const std::string& ruta, int ancho, int alto) {
    const std::string xmp = Cabecera(ruta);
    const auto propiedad = [&](const char* nombre) { return Propiedad(xmp, nombre); };
    Cobertura c;
    c.rumbo = propiedad("PoseHeadingDegrees");
    double arriba = 0.0;
    if (Reparte(propiedad("CroppedAreaLeftPixels"), propiedad("CroppedAreaImageWidthPixels"),
                propiedad("FullPanoWidthPixels"), c.izquierda, c.ancho) &&
        Reparte(propiedad("CroppedAreaTopPixels"), propiedad("CroppedAreaImageHeightPixels"),
                propiedad("FullPanoHeightPixels"), arriba, c.alto)) {
        c.abajo = 1.0 - arriba - c.alto;
        return c;
    }
    c.izquierda = 0.0;
    c.ancho = 1.0;
    c.alto = std::min(1.0, 2.0 * alto / ancho);
    c.abajo = (1.0 - c.alto) / 2.0;
    return c;
}
