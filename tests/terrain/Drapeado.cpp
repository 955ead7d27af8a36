#include "Drapeado.h"

#include <cmath>
#include <cstring>
#include <fstream>
#include <iterator>

std::unique_ptr<Vertiz::CBmp> Pinta(int ancho, int alto, const Pintor& pintor, int modo) {
    auto raster = std::make_unique<Vertiz::CBmp>(modo);
    EXPECT_TRUE(raster->Crear(ancho, alto, 24, 100.0F, false, nullptr, nullptr, false));
    std::vector<BYTE> fila(3 * std::size_t(ancho));
    for (int r = 0; r < alto; ++r) {
        for (int c = 0; c < ancho; ++c) {
            const Color color = pintor(r, c);
            for (int b = 0; b < 3; ++b)
                fila[3 * std::size_t(c) + std::size_t(b)] = color[std::size_t(2 - b)];
        }
        EXPECT_TRUE(raster->SetFila(fila.data(), alto - 1 - r, 0, ancho));
    }
    return raster;
}

std::unique_ptr<Vertiz::CBmp> PintaGris(int ancho, int alto, const Pintor& pintor, int modo, const BYTE* paleta) {
    auto raster = std::make_unique<Vertiz::CBmp>(modo);
    EXPECT_TRUE(raster->Crear(ancho, alto, 8, 100.0F, false, nullptr, paleta, false));
    std::vector<BYTE> fila(static_cast<std::size_t>(ancho));
    for (int r = 0; r < alto; ++r) {
        for (int c = 0; c < ancho; ++c)
            fila[std::size_t(c)] = pintor(r, c)[0];
        EXPECT_TRUE(raster->SetFila(fila.data(), alto - 1 - r, 0, ancho));
    }
    return raster;
}

Color Abigarrado(int fila, int columna) {
    return {BYTE(17 + 31 * columna + 7 * fila), BYTE(101 + 13 * fila), BYTE(200 - 5 * columna + fila)};
}

// ---- What a file should hold ---------------------------------------------------------------------------------------

namespace {

// Truncates; a number that division has put a hair beside a whole one is that one.
int Entera(double v) {
    return int(std::abs(v - std::round(v)) < 1e-7 ? std::round(v) : std::trunc(v));
}

double MedioSigno(double v) {
    return v > 1e-7 ? 0.5 : v < -1e-7 ? -0.5 : 0.0;
}

}  // namespace

struct TeselasEsperadas::Imagen {
    int ancho, alto, bytes;
    std::vector<BYTE> pixeles;

    // Every second pixel of every second row.
    Imagen Mitad() const {
        Imagen m{(ancho + 1) / 2, (alto + 1) / 2, bytes, {}};
        for (int r = 0; r < m.alto; ++r)
            for (int c = 0; c < m.ancho; ++c)
                for (int b = 0; b < bytes; ++b)
                    m.pixeles.push_back(pixeles[std::size_t((2 * r * ancho + 2 * c) * bytes + b)]);
        return m;
    }
};

TeselasEsperadas::TeselasEsperadas(const Vertiz::CDEM& dem, int maxTexDim, int ancho, int alto, int bytes,
                                   std::vector<BYTE> pixeles, const Carga& carga) {
    const double r = carga.resolucion / carga.pixel;
    anchoImagen = int(std::ceil(ancho / r - 1e-7)), altoImagen = int(std::ceil(alto / r - 1e-7));
    Dispone(dem, maxTexDim, carga.resolucion);

    const double celdaX = dem.GetCeldaX(), celdaY = dem.GetCeldaY();
    const double norteDem = dem.GetSur() + (dem.GetFilas() - 1.0) * celdaY, sur = carga.norte - alto * carga.pixel;
    const double dx = dem.GetOeste() - carga.oeste, dy = altoUtil * numFilas * carga.resolucion + sur - norteDem;
    despCol = Entera(dx / celdaX), despFila = Entera(dy / celdaY);
    const double fx = dx / celdaX - despCol, fy = dy / celdaY - despFila;
    origenX = dem.GetOeste() - despCol * celdaX;

    Imagen imagen{ancho, alto, bytes, std::move(pixeles)};
    std::size_t inicio = 0;
    for (int nivel = 0, lado = tesela; lado > 0; ++nivel, lado /= 2) {
        if (nivel > 0) imagen = imagen.Mitad();
        const double py = celdaY / carga.resolucion / (1 << nivel), px = celdaX / carga.resolucion / (1 << nivel);
        const int sr = int(fy * py * r + MedioSigno(fy)), sc = int(fx * px * r + MedioSigno(fx));
        if (nivel == 0) origenY = sur - carga.pixel * sr;
        Corta(inicio, nivel, imagen, r, sr, sc);
        inicio = fichero.size();
        if (carga.piramide == 0) break;
    }
}

void TeselasEsperadas::Dispone(const Vertiz::CDEM& dem, int maxTexDim, double resolucion) {
    const double px = dem.GetCeldaX() / resolucion, py = dem.GetCeldaY() / resolucion;
    const auto cuantas = [](int imagen, int lado) { return imagen / lado + (imagen % lado ? 1 : 0); };
    for (tesela = maxTexDim;; tesela /= 2) {
        numFilas = cuantas(altoImagen, tesela), numCols = cuantas(anchoImagen, tesela);
        if (tesela * numFilas <= 4 * altoImagen / 3 && tesela * numCols <= 4 * anchoImagen / 3) break;
        if (tesela == 1) break;
    }
    for (; Entera(tesela / px) == 0 || Entera(tesela / py) == 0;) {
        tesela *= 2;
        numFilas = altoImagen / tesela, numCols = anchoImagen / tesela;
    }
    celdasCol = Entera(tesela / px), celdasFila = Entera(tesela / py);
    altoUtil = std::max(Entera(celdasFila * py), 1), anchoUtil = std::max(Entera(celdasCol * px), 1);
    while (numFilas * altoUtil < altoImagen)
        ++numFilas;
    while (numCols * anchoUtil < anchoImagen)
        ++numCols;
}

void TeselasEsperadas::Corta(std::size_t inicio, int nivel, const Imagen& imagen, double r, int sr, int sc) {
    const int lado = tesela >> nivel, ranura = (lado * 24 + 31) / 32 * 4 * lado;
    const auto distancia = [&](int util0, int util, int teselas) {
        const double exacta = double(util0) / (1 << nivel);
        return exacta < 1 || (exacta - util) * teselas > 1 ? exacta : util;
    };
    const int alto = std::max(altoUtil >> nivel, 1), ancho = std::max(anchoUtil >> nivel, 1);
    const double pasoY = distancia(altoUtil, alto, numFilas), pasoX = distancia(anchoUtil, ancho, numCols);
    const auto n = std::size_t(numFilas * numCols);
    fichero.resize(inicio + std::size_t(ranura) * n);
    m_tocadas.resize(n);
    // A tile that gets nothing at a smaller level though it has pixels at the full one is filled with the nearest.
    const auto llena = [&](int t, int u, bool sujeta, std::vector<BYTE>& pixeles) {
        bool hay = false;
        int i = 0;
        for (; i < alto; ++i) {
            int s = int(std::floor(((numFilas - t) * pasoY - i) * r + 0.5)) - sr - 1;
            if (sujeta) s = std::clamp(s, 0, imagen.alto - 1);
            if (s < 0) break;
            if (s >= imagen.alto) continue;
            int ultima = -1;
            for (int j = 0; j < ancho; ++j) {
                int c = int(std::floor((pasoX * u + j) * r + 0.5)) + sc;
                if (sujeta) c = std::clamp(c, 0, imagen.ancho - 1);
                if (c < 0) continue;
                if (c >= imagen.ancho) break;
                hay = true;
                ultima = j;
                if (imagen.bytes == 1 && r == 1.0) continue;  // stays white
                const BYTE* p = &imagen.pixeles[std::size_t((s * imagen.ancho + c) * imagen.bytes)];
                for (int b = 0; b < 3; ++b)
                    pixeles[std::size_t((i * lado + j) * 3 + b)] = imagen.bytes == 1 ? p[0] : p[2 - b];
            }
            BYTE* fila = &pixeles[std::size_t(i * lado * 3)];
            for (int j = ultima + 1; ultima >= 0 && j < lado; ++j)
                std::memcpy(fila + j * 3, fila + ultima * 3, 3);
        }
        for (; i > 0 && alto < lado && i < lado; ++i)
            std::memcpy(&pixeles[std::size_t(i * lado * 3)], &pixeles[std::size_t((i - 1) * lado * 3)],
                        std::size_t(lado) * 3);
        return hay;
    };
    for (int t = 0; t < numFilas; ++t)
        for (int u = 0; u < numCols; ++u) {
            const auto k = std::size_t(t * numCols + u);
            std::vector<BYTE> pixeles(std::size_t(ranura), 255);
            bool hay = llena(t, u, false, pixeles);
            if (!hay && m_tocadas[k]) {
                pixeles.assign(pixeles.size(), 255);
                hay = llena(t, u, true, pixeles);
            }
            if (!hay) continue;
            m_tocadas[k] = true;
            std::memcpy(&fichero[inicio + std::size_t(ranura) * k], pixeles.data(), pixeles.size());
        }
}

// ---- The scene -----------------------------------------------------------------------------------------------------

void Drapeado::TearDown() {
    Terreno::TearDown();
    m_escena.Destruir();
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u) << "a file was left behind";
}

int Drapeado::Drapea(Vertiz::IRaster& raster, const Carga& carga, int nivel) {
    Vertiz::CDataImagen imagen(carga.oeste, carga.norte, carga.pixel, carga.pixel, carga.tipo);
    CDataCargarImagen opciones;
    opciones.m_dResolucion = carga.resolucion;
    opciones.m_bPiramidales = carga.piramide;
    CEscenaMDT& escena = m_escena;
    return escena.CargarImagen(&raster, imagen, opciones, Carpeta(), nivel);
}

CDataTexturas Drapeado::Registro(unsigned index) const {
    CDataTexturas registro;
    EXPECT_TRUE(m_escena.GetDataTexturas(index, registro)) << "no image " << index;
    return registro;
}

std::size_t Drapeado::CuentaRegistros() const {
    std::vector<CDataTexturas> registros;
    m_escena.GetDataTexturas(registros);
    return registros.size();
}

std::vector<BYTE> Drapeado::Fichero(unsigned index) const {
    std::ifstream fichero(m_escena.GetFicheroTexturasTemp(index).Utf8(), std::ios::binary);
    EXPECT_TRUE(fichero.is_open());
    return {std::istreambuf_iterator<char>(fichero), {}};
}
