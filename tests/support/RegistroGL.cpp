// The recording entry points and what they note. A call costs an atomic read while nothing listens; while a recorder
// lives, its arguments go as plain words into one block, and become text only when a test asks for them.

#include "support/RegistroGL.h"

#include <dlfcn.h>

#include <algorithm>
#include <atomic>
#include <bit>
#include <charconv>
#include <concepts>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <mutex>
#include <optional>
#include <utility>

namespace {

enum class Funcion : std::uint16_t {
#define LISTA(nombre, formato, parametros, argumentos) nombre,
#define FUNCION(clase, R, nombre, formato, parametros, argumentos, anotados) nombre,
#define A_MANO(nombre, formato) nombre,
#include "support/TablaGL.inc"
    ninguna
};

struct Descripcion {
    std::string_view nombre;
    std::string_view formato;
};

constexpr Descripcion kDescripciones[] = {
#define LISTA(nombre, formato, parametros, argumentos) {#nombre, formato},
#define FUNCION(clase, R, nombre, formato, parametros, argumentos, anotados) {#nombre, formato},
#define A_MANO(nombre, formato) {#nombre, formato},
#include "support/TablaGL.inc"
};

Funcion Busca(std::string_view nombre) {
    const auto it = std::ranges::find(kDescripciones, nombre, &Descripcion::nombre);
    return static_cast<Funcion>(it - std::begin(kDescripciones));
}

struct Llamada {
    std::size_t palabras;  // where its arguments begin
    GLuint lista;          // 0 when no list is open
    Funcion funcion;
    bool ejecutada;
};

struct Cinta {
    std::vector<Llamada> llamadas;
    std::vector<std::uint64_t> palabras;
    bool anotarErrores = false;
};

struct Fallo {
    Funcion funcion;
    int faltan;
    GLenum error;
    bool ocurrido = false;
};

std::atomic<bool> activo{false};
std::mutex cerrojo;  // guards what follows
std::optional<Cinta> cinta;
std::optional<Fallo> fallo;
GLenum errorPendiente = GL_NO_ERROR;

// The open list belongs to the thread's current context; it is read back from OpenGL where it can change.
thread_local GLuint listaAbierta = 0;
thread_local bool listaEjecuta = false;
thread_local int profundidad = 0;

void ActualizaActivo() {
    activo = cinta || fallo || errorPendiente != GL_NO_ERROR;
}

// The linker may leave out libraries all of whose entry points this program defines; they are loaded by name then.
template <class F>
F* Real(const char* nombre) {
    void* funcion = dlsym(RTLD_NEXT, nombre);
    for (const char* biblioteca : {"libGL.so.1", "libGLU.so.1"}) {
        if (funcion != nullptr) break;
        if (void* asa = dlopen(biblioteca, RTLD_LAZY | RTLD_GLOBAL)) funcion = dlsym(asa, nombre);
    }
    return reinterpret_cast<F*>(funcion);
}

// ---- what is noted ----

template <class T>
struct Serie {
    const T* datos;
    std::size_t cuenta;
    Serie(const T* d, GLsizei n) : datos(d), cuenta(d != nullptr && n > 0 ? static_cast<std::size_t>(n) : 0) {}
};

int CuentaLuz(GLenum nombre) {
    const bool cuatro = nombre == GL_AMBIENT || nombre == GL_DIFFUSE || nombre == GL_SPECULAR || nombre == GL_POSITION;
    return cuatro ? 4 : nombre == GL_SPOT_DIRECTION ? 3 : 1;
}
int CuentaMaterial(GLenum nombre) {
    return nombre == GL_SHININESS ? 1 : nombre == GL_COLOR_INDEXES ? 3 : 4;
}
int CuentaModeloLuz(GLenum nombre) {
    return nombre == GL_LIGHT_MODEL_AMBIENT ? 4 : 1;
}
int CuentaNiebla(GLenum nombre) {
    return nombre == GL_FOG_COLOR ? 4 : 1;
}
int CuentaEntorno(GLenum nombre) {
    return nombre == GL_TEXTURE_ENV_COLOR || nombre == GL_OBJECT_PLANE || nombre == GL_EYE_PLANE ? 4 : 1;
}
int CuentaParametro(GLenum nombre) {
    return nombre == GL_TEXTURE_BORDER_COLOR ? 4 : 1;
}

std::vector<GLint> Indices(GLsizei n, GLenum tipo, const GLvoid* datos) {
    std::vector<GLint> indices(datos != nullptr ? std::max(n, 0) : 0);
    for (std::size_t i = 0; i < indices.size(); ++i) {
        switch (tipo) {
            case GL_BYTE:
                indices[i] = static_cast<const GLbyte*>(datos)[i];
                break;
            case GL_UNSIGNED_BYTE:
                indices[i] = static_cast<const GLubyte*>(datos)[i];
                break;
            case GL_SHORT:
                indices[i] = static_cast<const GLshort*>(datos)[i];
                break;
            case GL_UNSIGNED_SHORT:
                indices[i] = static_cast<const GLushort*>(datos)[i];
                break;
            default:
                indices[i] = static_cast<const GLint*>(datos)[i];
                break;
        }
    }
    return indices;
}

void Empaqueta(std::vector<std::uint64_t>& p, float v) {
    p.push_back(std::bit_cast<std::uint32_t>(v));
}
void Empaqueta(std::vector<std::uint64_t>& p, double v) {
    p.push_back(std::bit_cast<std::uint64_t>(v));
}
void Empaqueta(std::vector<std::uint64_t>& p, const void* v) {
    p.push_back(v != nullptr);
}
template <std::integral T>
void Empaqueta(std::vector<std::uint64_t>& p, T v) {
    p.push_back(static_cast<std::uint64_t>(static_cast<std::int64_t>(v)));
}
template <class T>
void Empaqueta(std::vector<std::uint64_t>& p, const Serie<T>& serie) {
    p.push_back(serie.cuenta);
    for (std::size_t i = 0; i < serie.cuenta; ++i)
        Empaqueta(p, serie.datos[i]);
}
void Empaqueta(std::vector<std::uint64_t>& p, const std::vector<GLint>& v) {
    Empaqueta(p, Serie(v.data(), static_cast<GLsizei>(v.size())));
}

constexpr bool kCompila = true;
constexpr bool kInmediata = false;

// One call on its way: calls made from inside it (by GLU) pass unseen.
class Paso {
  public:
    explicit Paso(Funcion funcion) : m_funcion(funcion) { ++profundidad; }
    ~Paso() { --profundidad; }
    Paso(const Paso&) = delete;
    Paso& operator=(const Paso&) = delete;

    template <class... A>
    void Anota(bool vaALista, const A&... argumentos) const {
        if (profundidad > 1) return;
        const std::lock_guard guarda(cerrojo);
        if (!cinta) return;
        const GLuint lista = vaALista ? listaAbierta : 0;
        cinta->llamadas.push_back({cinta->palabras.size(), lista, m_funcion, lista == 0 || listaEjecuta});
        (Empaqueta(cinta->palabras, argumentos), ...);
    }

    bool Falla() const {
        if (profundidad > 1) return false;
        const std::lock_guard guarda(cerrojo);
        if (!fallo || fallo->funcion != m_funcion || --fallo->faltan != 0) return false;
        fallo->ocurrido = true;
        errorPendiente = fallo->error;
        return true;
    }

  private:
    Funcion m_funcion;
};

template <class R>
R Nada() {
    return R();
}

}  // namespace

// ---- the entry points ----

#define LISTA(nombre, formato, parametros, argumentos) \
    FUNCION(kCompila, void, nombre, formato, parametros, argumentos, argumentos)
#define FUNCION(clase, R, nombre, formato, parametros, argumentos, anotados)                          \
    static const auto real_##nombre = Real<decltype(nombre)>(#nombre);                                \
    extern "C" R nombre parametros {                                                                  \
        if (!activo.load(std::memory_order_relaxed)) [[likely]]                                       \
            return real_##nombre argumentos;                                                          \
        const Paso paso(Funcion::nombre);                                                             \
        [[maybe_unused]] const auto anota = [&](const auto&... nota) { paso.Anota(clase, nota...); }; \
        anota anotados;                                                                               \
        if (paso.Falla()) return Nada<R>();                                                           \
        return real_##nombre argumentos;                                                              \
    }
#define A_MANO(nombre, formato) static const auto real_##nombre = Real<decltype(nombre)>(#nombre);
#include "support/TablaGL.inc"

namespace {

void LeeListaAbierta() {
    GLint indice = 0;
    GLint modo = 0;
    real_glGetIntegerv(GL_LIST_INDEX, &indice);
    real_glGetIntegerv(GL_LIST_MODE, &modo);
    listaAbierta = static_cast<GLuint>(indice);
    listaEjecuta = modo == GL_COMPILE_AND_EXECUTE;
}

}  // namespace

extern "C" void glNewList(GLuint lista, GLenum modo) {
    if (!activo.load(std::memory_order_relaxed)) [[likely]]
        return real_glNewList(lista, modo);
    const Paso paso(Funcion::glNewList);
    paso.Anota(kInmediata, lista, modo);
    if (paso.Falla()) return;
    real_glNewList(lista, modo);
    if (profundidad == 1) LeeListaAbierta();
}

extern "C" void glEndList() {
    if (!activo.load(std::memory_order_relaxed)) [[likely]]
        return real_glEndList();
    const Paso paso(Funcion::glEndList);
    paso.Anota(kInmediata);
    if (paso.Falla()) return;
    real_glEndList();
    if (profundidad == 1) LeeListaAbierta();
}

extern "C" GLenum glGetError() {
    if (!activo.load(std::memory_order_relaxed)) [[likely]]
        return real_glGetError();
    const Paso paso(Funcion::glGetError);
    bool anota = false;
    {
        const std::lock_guard guarda(cerrojo);
        anota = cinta && cinta->anotarErrores;
    }
    if (anota) paso.Anota(kInmediata);
    paso.Falla();
    if (profundidad == 1) {
        const std::lock_guard guarda(cerrojo);
        if (errorPendiente != GL_NO_ERROR) {
            const GLenum error = std::exchange(errorPendiente, GL_NO_ERROR);
            ActualizaActivo();
            return error;
        }
    }
    return real_glGetError();
}

// ---- reading what was noted ----

namespace {

template <class T>
std::string Numero(T valor) {
    char texto[40];
    return {texto, std::to_chars(std::begin(texto), std::end(texto), valor).ptr};
}

std::string Mascara(std::uint64_t bits) {
    std::string texto;
    const auto une = [&](GLbitfield bit, const char* nombre) {
        if (!(bits & bit)) return;
        texto += (texto.empty() ? "" : " | ") + std::string(nombre);
        bits &= ~static_cast<std::uint64_t>(bit);
    };
    une(GL_COLOR_BUFFER_BIT, "GL_COLOR_BUFFER_BIT");
    une(GL_DEPTH_BUFFER_BIT, "GL_DEPTH_BUFFER_BIT");
    une(GL_ACCUM_BUFFER_BIT, "GL_ACCUM_BUFFER_BIT");
    une(GL_STENCIL_BUFFER_BIT, "GL_STENCIL_BUFFER_BIT");
    if (bits != 0 || texto.empty()) texto += (texto.empty() ? "" : " | ") + Numero(bits);
    return texto;
}

std::string Atributos(std::uint64_t bits) {
    if (bits == GL_ALL_ATTRIB_BITS) return "GL_ALL_ATTRIB_BITS";
    static constexpr const char* nombres[] = {
        "GL_CURRENT_BIT",        "GL_POINT_BIT",    "GL_LINE_BIT",      "GL_POLYGON_BIT",      "GL_POLYGON_STIPPLE_BIT",
        "GL_PIXEL_MODE_BIT",     "GL_LIGHTING_BIT", "GL_FOG_BIT",       "GL_DEPTH_BUFFER_BIT", "GL_ACCUM_BUFFER_BIT",
        "GL_STENCIL_BUFFER_BIT", "GL_VIEWPORT_BIT", "GL_TRANSFORM_BIT", "GL_ENABLE_BIT",       "GL_COLOR_BUFFER_BIT",
        "GL_HINT_BIT",           "GL_EVAL_BIT",     "GL_LIST_BIT",      "GL_TEXTURE_BIT",      "GL_SCISSOR_BIT"};
    std::string texto;
    for (std::size_t i = 0; i < std::size(nombres); ++i) {
        if (bits >> i & 1) texto += (texto.empty() ? "" : " | ") + std::string(nombres[i]);
    }
    return texto.empty() ? "0" : texto;
}

std::string Primitiva(std::uint64_t modo) {
    static constexpr const char* nombres[] = {"GL_POINTS",     "GL_LINES",          "GL_LINE_LOOP",    "GL_LINE_STRIP",
                                              "GL_TRIANGLES",  "GL_TRIANGLE_STRIP", "GL_TRIANGLE_FAN", "GL_QUADS",
                                              "GL_QUAD_STRIP", "GL_POLYGON"};
    return modo < std::size(nombres) ? nombres[modo] : NombreGL(static_cast<GLenum>(modo));
}

std::string Constante(std::uint64_t valor, const char* cero) {
    return valor == 0 ? cero : valor == 1 ? "GL_ONE" : NombreGL(static_cast<GLenum>(valor));
}

std::string QuizaConstante(double valor) {
    const bool entero = valor >= 0x100 && valor <= 0xFFFFF && valor == static_cast<GLenum>(valor);
    const std::string nombre = entero ? NombreGL(static_cast<GLenum>(valor)) : "0x";
    return nombre.starts_with("0x") ? Numero(valor) : nombre;
}

float Real32(std::uint64_t p) {
    return std::bit_cast<float>(static_cast<std::uint32_t>(p));
}

std::string TextoDeUno(char letra, std::uint64_t p) {
    switch (letra) {
        case 'p':
            return Primitiva(p);
        case 'e':
            return Constante(p, "GL_NONE");
        case 'z':
            return Constante(p, "GL_ZERO");
        case 'b':
            return p != 0 ? "GL_TRUE" : "GL_FALSE";
        case 'c':
            return Mascara(p);
        case 'a':
            return Atributos(p);
        case 'f':
        case 'F':
            return Numero(Real32(p));
        case 'd':
        case 'D':
            return Numero(std::bit_cast<double>(p));
        case 'g':
            return QuizaConstante(static_cast<double>(static_cast<std::int64_t>(p)));
        case 'G':
            return QuizaConstante(Real32(p));
        case 'h': {
            char texto[24];
            std::snprintf(texto, sizeof texto, "0x%04llX", static_cast<unsigned long long>(p));
            return texto;
        }
        case 'x':
            return p != 0 ? "..." : "nullptr";
        default:
            return Numero(static_cast<std::int64_t>(p));
    }
}

double NumeroDeUno(char letra, std::uint64_t p) {
    switch (letra) {
        case 'f':
        case 'F':
        case 'G':
            return Real32(p);
        case 'd':
        case 'D':
            return std::bit_cast<double>(p);
        default:
            return static_cast<double>(static_cast<std::int64_t>(p));
    }
}

bool EsSerie(char letra) {
    return letra == 'F' || letra == 'D' || letra == 'I';
}

std::string Texto(const Cinta& c, const Llamada& llamada) {
    const auto& [nombre, formato] = kDescripciones[static_cast<std::size_t>(llamada.funcion)];
    const std::uint64_t* p = c.palabras.data() + llamada.palabras;
    std::string texto = std::string(nombre) + "(";
    for (std::size_t k = 0; k < formato.size(); ++k) {
        if (k > 0) texto += ", ";
        if (!EsSerie(formato[k])) {
            texto += TextoDeUno(formato[k], *p++);
            continue;
        }
        texto += "[";
        for (std::uint64_t i = 0, n = *p++; i < n; ++i)
            texto += (i > 0 ? ", " : "") + TextoDeUno(formato[k], *p++);
        texto += "]";
    }
    return texto + ")";
}

template <class Condicion>
LlamadasGL Textos(Condicion condicion) {
    const std::lock_guard guarda(cerrojo);
    LlamadasGL textos;
    for (const Llamada& llamada : cinta->llamadas) {
        if (condicion(llamada)) textos.push_back(Texto(*cinta, llamada));
    }
    return textos;
}

GLuint PrimerArgumento(const Llamada& llamada) {
    return static_cast<GLuint>(cinta->palabras[llamada.palabras]);
}

}  // namespace

RegistroGL::RegistroGL(Errores errores) {
    const std::lock_guard guarda(cerrojo);
    if (cinta) {
        std::fputs("RegistroGL: another recorder is already on\n", stderr);
        std::abort();
    }
    cinta.emplace().anotarErrores = errores == Errores::Anotar;
    LeeListaAbierta();
    ActualizaActivo();
}

RegistroGL::~RegistroGL() {
    const std::lock_guard guarda(cerrojo);
    cinta.reset();
    ActualizaActivo();
}

void RegistroGL::Olvida() {
    const std::lock_guard guarda(cerrojo);
    cinta->llamadas.clear();
    cinta->palabras.clear();
}

LlamadasGL RegistroGL::Todas() const {
    return Textos([](const Llamada&) { return true; });
}

LlamadasGL RegistroGL::Ejecutadas() const {
    return Textos([](const Llamada& l) { return l.ejecutada; });
}

LlamadasGL RegistroGL::Lista(GLuint lista) const {
    const std::lock_guard guarda(cerrojo);
    LlamadasGL textos;
    for (const Llamada& l : cinta->llamadas) {
        if (l.funcion == Funcion::glNewList && PrimerArgumento(l) == lista) textos.clear();
        if (l.lista == lista && lista != 0) textos.push_back(Texto(*cinta, l));
    }
    return textos;
}

std::vector<GLuint> RegistroGL::Listas() const {
    const std::lock_guard guarda(cerrojo);
    std::vector<GLuint> listas;
    for (const Llamada& l : cinta->llamadas) {
        if (l.funcion != Funcion::glNewList) continue;
        if (std::ranges::find(listas, PrimerArgumento(l)) == listas.end()) listas.push_back(PrimerArgumento(l));
    }
    return listas;
}

std::size_t RegistroGL::Cuenta(std::string_view nombre) const {
    const std::lock_guard guarda(cerrojo);
    return static_cast<std::size_t>(std::ranges::count(cinta->llamadas, Busca(nombre), &Llamada::funcion));
}

std::vector<std::vector<double>> RegistroGL::Numeros(std::string_view nombre) const {
    const std::lock_guard guarda(cerrojo);
    const Funcion funcion = Busca(nombre);
    std::vector<std::vector<double>> todos;
    for (const Llamada& l : cinta->llamadas) {
        if (l.funcion != funcion) continue;
        const std::uint64_t* p = cinta->palabras.data() + l.palabras;
        std::vector<double>& numeros = todos.emplace_back();
        for (const char letra : kDescripciones[static_cast<std::size_t>(funcion)].formato) {
            const std::uint64_t n = EsSerie(letra) ? *p++ : 1;
            for (std::uint64_t i = 0; i < n; ++i)
                numeros.push_back(NumeroDeUno(letra, *p++));
        }
    }
    return todos;
}

FallaGL::FallaGL(std::string_view nombre, int n, GLenum error) {
    const Funcion funcion = Busca(nombre);
    const std::lock_guard guarda(cerrojo);
    if (funcion == Funcion::ninguna || fallo || n < 1) {
        std::fprintf(stderr, "FallaGL: %.*s can't be made to fail here\n", static_cast<int>(nombre.size()),
                     nombre.data());
        std::abort();
    }
    fallo = Fallo{funcion, n, error};
    ActualizaActivo();
}

FallaGL::~FallaGL() {
    const std::lock_guard guarda(cerrojo);
    fallo.reset();
    errorPendiente = GL_NO_ERROR;
    ActualizaActivo();
}

bool FallaGL::Ocurrida() const {
    const std::lock_guard guarda(cerrojo);
    return fallo->ocurrido;
}

namespace {

LlamadasGL Filtra(const LlamadasGL& llamadas, const std::vector<std::string>& nombres, bool quedan) {
    LlamadasGL resultado;
    std::ranges::copy_if(llamadas, std::back_inserter(resultado), [&](const std::string& llamada) {
        const std::string nombre = llamada.substr(0, llamada.find('('));
        return (std::ranges::find(nombres, nombre) != nombres.end()) == quedan;
    });
    return resultado;
}

}  // namespace

LlamadasGL Solo(const LlamadasGL& llamadas, const std::vector<std::string>& nombres) {
    return Filtra(llamadas, nombres, true);
}

LlamadasGL Sin(const LlamadasGL& llamadas, const std::vector<std::string>& nombres) {
    return Filtra(llamadas, nombres, false);
}

std::string EnLineas(const LlamadasGL& llamadas) {
    std::string texto;
    for (const std::string& llamada : llamadas)
        texto += llamada + "\n";
    return texto;
}
