// The surface of a grid of 2000 x 2000 samples: compiling its list, drawing it, and the memory that it takes.
//
// The floor of the first two is a plain loop that sends the same normals, colours and vertices from ready arrays into a
// list.

#include "Colinas.h"
#include "MemoriaViva.h"
#include "Turnos.h"
#include "frame/CTintaAlturas.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

namespace {

constexpr int kLado = 2000;
constexpr int kAncho = 800, kAlto = 600;
constexpr unsigned kTiras = 0, kQuads = 1;

// The scene, with what the floor needs of it: the same positions and colours.
class Escena : public CEscenaDEM {
  public:
    using CEscenaDEM::CEscenaDEM;
    using CEscenaDEM::operator=;
    using CEscenaDEM::m_nListaSuperficie;
    CDataGL& Data() { return m_Data; }
};

// Rolling hills in a scene on a bitmap, built but for the list.
struct Terreno : Colinas<Escena> {
    explicit Terreno(unsigned quad)
        : Colinas(
              kLado, kAncho, kAlto,
              [](unsigned r, unsigned c) { return 500 + 300 * std::sin(r * 0.01) * std::cos(c * 0.013); },
              [quad](Colinas& t) {
                  t.escena.SetQuad(quad);
                  t.escena.SetEjes(0);
                  t.escena.SetTipoColorMDT(2);
                  t.escena.Data().m_GamaColor = Vertiz::CDataGamaColor::Terreno(200, 800);
              }) {
        bien = bien && escena.MakeCurrent(nullptr);
    }
};

// The ready arrays: a vertex and a colour for each sample, from the north by rows, and a normal for each cell.
struct Suelo {
    explicit Suelo(const Terreno& t)
        : vertices(3 * std::size_t(kLado) * kLado), colores(vertices.size()), normales(vertices.size()) {
        const CDataGL data = t.escena.GetData();
        CTintaAlturas tinta(data.m_GamaColor.Paradas());
        for (int r = 0; r < kLado; ++r)
            for (int c = 0; c < kLado; ++c) {
                const float h = t.dem.Matriz().Get(unsigned(kLado - 1 - r), unsigned(c));
                double x = 0, y = 0, z = 0;
                t.escena.TerrenoAGL({500000.0 + c * 5.0, 4500000.0 + (kLado - 1 - r) * 5.0, h, 0}, x, y, z, 1.0, false);
                float* v = &vertices[Lugar(r, c)];
                v[0] = float(x), v[1] = float(y), v[2] = float(z);
                const std::array<float, 3> color = tinta(h, true, -1.0);
                std::ranges::copy(color, &colores[Lugar(r, c)]);
            }
        for (int r = 0; r + 1 < kLado; ++r)
            for (int c = 0; c < kLado; ++c) {
                const int k = std::min(c, kLado - 2);  // a strip's last normal is the one before it
                const float *v0 = &vertices[Lugar(r, k)], *v1 = &vertices[Lugar(r + 1, k)], *v2 = v0 + 3;
                const float a[3] = {v0[0] - v1[0], v0[1] - v1[1], v0[2] - v1[2]};
                const float b[3] = {v2[0] - v0[0], v2[1] - v0[1], v2[2] - v0[2]};
                const float n[3] = {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
                const float largo = std::sqrt(n[0] * n[0] + n[1] * n[1] + n[2] * n[2]);
                for (int i = 0; i < 3; ++i)
                    normales[Lugar(r, c) + std::size_t(i)] = n[i] / largo;
            }
    }

    static std::size_t Lugar(int r, int c) { return 3 * (std::size_t(r) * kLado + std::size_t(c)); }

    void Vertice(std::size_t i) const {
        glColor3fv(&colores[i]);
        glVertex3fv(&vertices[i]);
    }

    // Compiles the list; the loop has nothing in it but the calls.
    void Compila(GLuint lista, unsigned quad) const {
        glNewList(lista, GL_COMPILE);
        if (quad == kQuads) glBegin(GL_QUADS);
        for (int r = 0; r + 1 < kLado; ++r) {
            if (quad == kTiras) glBegin(GL_QUAD_STRIP);
            const std::size_t norte = Lugar(r, 0), sur = Lugar(r + 1, 0);
            const std::size_t fin = 3 * std::size_t(quad == kQuads ? kLado - 1 : kLado);
            for (std::size_t i = 0; i < fin; i += 3) {
                glNormal3fv(&normales[norte + i]);
                Vertice(norte + i);
                Vertice(sur + i);
                if (quad == kQuads) {
                    Vertice(sur + i + 3);
                    Vertice(norte + i + 3);
                }
            }
            if (quad == kTiras) glEnd();
        }
        if (quad == kQuads) glEnd();
        glEndList();
    }

    std::vector<float> vertices, colores, normales;
};

void Compila(benchmark::State& state) {
    const auto quad = unsigned(state.range(0));
    Terreno terreno(quad);
    if (!terreno.bien) return state.SkipWithError("no scene");
    const Suelo suelo(terreno);
    const GLuint lista = glGenLists(1);
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] { suelo.Compila(lista, quad); });
        glNewList(lista, GL_COMPILE);  // lets the last contents go before the scene's turn
        glEndList();
        turnos.Propio([&] { terreno.escena.OnIniciar(); });
        glDeleteLists(terreno.escena.m_nListaSuperficie, 1);
    }
    turnos.Informa(state);
    if (glGetError() != GL_NO_ERROR) state.SkipWithError("OpenGL error");
}
BENCHMARK(Compila)->Arg(kTiras)->Arg(kQuads)->ArgName("quad")->Iterations(5)->Unit(benchmark::kMillisecond);

void Dibuja(benchmark::State& state) {
    const auto quad = unsigned(state.range(0));
    Terreno terreno(quad);
    if (!terreno.bien) return state.SkipWithError("no scene");
    const GLuint lista = glGenLists(1);
    Suelo(terreno).Compila(lista, quad);
    const auto llama = [](GLuint l) {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        glCallList(l);
        glFinish();
    };
    // Once each unmeasured: the driver prepares a list at its first call.
    llama(lista);
    llama(terreno.escena.m_nListaSuperficie);
    Turnos turnos;
    for (auto _ : state) {
        turnos.Suelo([&] { llama(lista); });
        turnos.Propio([&] { llama(terreno.escena.m_nListaSuperficie); });
    }
    turnos.Informa(state);
    glDeleteLists(lista, 1);
}
BENCHMARK(Dibuja)->Arg(kTiras)->Arg(kQuads)->ArgName("quad")->Iterations(10)->Unit(benchmark::kMillisecond);

// Bytes a sample that the library takes while it compiles, and that it still holds afterwards. The list is the
// driver's, in its own memory.
void Memoria(benchmark::State& state) {
    Terreno terreno(unsigned(state.range(0)));
    if (!terreno.bien) return state.SkipWithError("no scene");
    std::size_t antes = 0, pico = 0, despues = 0;
    for (auto _ : state) {
        antes = memoria.maximo = memoria.ahora;
        terreno.escena.OnIniciar();
        pico = memoria.maximo;
        despues = memoria.ahora;
    }
    const double muestras = double(kLado) * kLado;
    state.counters["while_building"] = double(pico - antes) / muestras;
    state.counters["afterwards"] = (double(despues) - double(antes)) / muestras;
}
BENCHMARK(Memoria)->Arg(kTiras)->Arg(kQuads)->ArgName("quad")->Iterations(2)->Unit(benchmark::kMillisecond);

}  // namespace

BENCHMARK_MAIN();
