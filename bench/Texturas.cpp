// An image over a grid: cutting it into tiles, filling texture objects from them, and the memory that cutting takes.
//
// The floor of cutting is reading every row of the image once and writing as many tiles; that of filling is OpenGL's
// own call with pixels that are ready in memory.

#include "MemoriaViva.h"
#include "Turnos.h"
#include "terrain/CEscenaDEM.h"
#include "raster/CBmp.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/CFile.h"
#include "platform/Ficheros.h"

#include <benchmark/benchmark.h>

#include <cstddef>
#include <vector>

namespace {

constexpr int kCeldas = 400;
constexpr double kOeste = 500000, kSur = 4500000;

CString CarpetaTemporal() {
    wchar_t texto[MAX_PATH]{};
    return GetTempPathW(MAX_PATH, texto) < MAX_PATH ? CString(texto) : CString();
}

// A flat grid, and the scene on a bitmap.
struct Terreno {
    explicit Terreno(double celda) : dem(kCeldas + 1, kCeldas + 1, celda, celda, kOeste, kSur), escena(&dem) {
        for (unsigned r = 0; r <= kCeldas; ++r)
            for (unsigned c = 0; c <= kCeldas; ++c)
                dem.Matriz().Set(r, c, 10.0F);
        dem.ActualizaCantidades();
        bitmap.CreateBitmap(64, 64, 24);
        dc.CreateCompatibleDC(nullptr);
        dc.SelectObject(&bitmap);
        bien = escena.Crear(&dc, PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL) != 0;
        escena.OnZoomExtension();
    }

    // An image of `lado` pixels, one unit each, over the grid.
    bool Drapea(Vertiz::IRaster& raster, double resolucion) {
        Vertiz::CDataImagen imagen(kOeste, kSur + kCeldas * dem.GetCeldaY(), 1, 1, Vertiz::CDataImagen::ABSOLUTA);
        CDataCargarImagen opciones;
        opciones.m_dResolucion = resolucion;
        CEscenaMDT& mdt = escena;
        return mdt.CargarImagen(&raster, imagen, opciones, CarpetaTemporal(), 0) == 1;
    }
    CDataTexturas Registro() const {
        CDataTexturas registro;
        escena.GetDataTexturas(0, registro);
        return registro;
    }

    CBitmap bitmap;
    CDC dc;
    Vertiz::CDEM dem;
    CEscenaDEM escena;
    bool bien = false;
};

// A picture of 24 bits with something in every pixel.
bool Pinta(Vertiz::CBmp& raster, int lado) {
    if (!raster.Crear(lado, lado, 24, 100.0F, false, nullptr, nullptr, false)) return false;
    std::vector<BYTE> fila(3 * std::size_t(lado));
    for (int r = 0; r < lado; ++r) {
        for (std::size_t i = 0; i < fila.size(); ++i)
            fila[i] = BYTE(i * 7 + std::size_t(r) * 3);
        if (!raster.SetFila(fila.data(), r, 0, lado)) return false;
    }
    return true;
}

// Reads every row of the image, and writes so many slots to a file of its own.
bool LeeYEscribe(const Vertiz::IRaster& raster, int lado, std::size_t ranuras, std::size_t bytes) {
    std::vector<BYTE> fila(3 * std::size_t(lado)), ranura(bytes, 100);
    for (int r = 0; r < lado; ++r)
        if (!raster.GetFila(fila.data(), r, 0, lado)) return false;
    const CString ruta = JuntaRuta(CarpetaTemporal(), L"bench_texturas.tmp");
    bool bien = true;
    {
        CFile fichero(ruta, CFile::modeCreate | CFile::modeReadWrite);
        for (std::size_t i = 0; i < ranuras && bien; ++i)
            bien = fichero.Write(ranura.data(), bytes);
    }
    return DeleteFileW(ruta) && bien;
}

// ---- Cutting -------------------------------------------------------------------------------------------------------

void Corta(benchmark::State& state) {
    constexpr int kLado = 16000;
    const double razon = double(state.range(1));
    Vertiz::CBmp raster(int(state.range(0)));
    Terreno terreno(double(kLado) / kCeldas);
    if (!terreno.bien || !Pinta(raster, kLado)) return state.SkipWithError("no scene or no picture");
    std::size_t pico = 0;
    Turnos turnos;
    for (auto _ : state) {
        bool bien = true;
        const std::size_t antes = memoria.maximo = memoria.ahora;
        turnos.Propio([&] { bien = terreno.Drapea(raster, razon); });
        pico = memoria.maximo - antes;
        const CDataTexturas r = terreno.Registro();
        turnos.Suelo([&] { bien = bien && LeeYEscribe(raster, kLado, r.NumTeselas(), std::size_t(r.m_nSizeTextura)); });
        terreno.escena.DescargarImagen(0, 1, 1, 1);
        if (!bien) return state.SkipWithError("not cut");
    }
    turnos.Informa(state);
    state.counters["peak_MB"] = double(pico) / 1e6;
}
BENCHMARK(Corta)
    ->Args({1, 1})
    ->Args({0, 1})
    ->Args({1, 2})
    ->ArgNames({"file", "ratio"})
    ->Iterations(3)
    ->Unit(benchmark::kMillisecond);

// ---- Filling -------------------------------------------------------------------------------------------------------

void Llena(benchmark::State& state) {
    constexpr int kLado = 4000;
    Vertiz::CBmp raster;
    Terreno terreno(double(kLado) / kCeldas);
    if (!terreno.bien || !Pinta(raster, kLado) || !terreno.Drapea(raster, 1) || !terreno.escena.MakeCurrent(nullptr))
        return state.SkipWithError("no scene or no picture");
    const CDataTexturas r = terreno.Registro();
    // What the tiles hold, ready in memory.
    std::vector<std::vector<BYTE>> teselas(r.NumTeselas(), std::vector<BYTE>(std::size_t(r.m_nSizeTextura)));
    CFile fichero(terreno.escena.GetFicheroTexturasTemp(0), CFile::modeRead);
    for (auto& tesela : teselas)
        fichero.Read(tesela.data(), tesela.size());
    std::vector<GLuint> nombres(teselas.size());
    glGenTextures(GLsizei(nombres.size()), nombres.data());
    glPixelStorei(GL_UNPACK_ALIGNMENT, 1);
    const auto suelo = [&] {
        for (std::size_t i = 0; i < teselas.size(); ++i) {
            glBindTexture(GL_TEXTURE_2D, nombres[i]);
            glTexImage2D(GL_TEXTURE_2D, 0, GL_COMPRESSED_RGB, r.m_nAnchoTextura, r.m_nAltoTextura, 0, GL_RGB,
                         GL_UNSIGNED_BYTE, teselas[i].data());
        }
        glFinish();
    };
    bool bien = true;
    const auto propio = [&] {
        for (int i = 0; i < r.m_nNumFilas; ++i)
            for (int j = 0; j < r.m_nNumCols; ++j)
                bien = bien && terreno.escena.Textura(0, unsigned(i), unsigned(j));
        glFinish();
    };
    suelo(), propio();  // once each unmeasured: the driver takes its memory
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo(suelo);
        turnos.Propio(propio);
    }
    turnos.Informa(state);
    if (!bien || glGetError() != GL_NO_ERROR) state.SkipWithError("not filled");
    glDeleteTextures(GLsizei(nombres.size()), nombres.data());
}
BENCHMARK(Llena)->Iterations(5)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
