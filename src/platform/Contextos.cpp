// Rendering contexts: which one is current where, who shares lists with whom, and when the native ones are made.

#include "platform/Contextos.h"

#include "platform/Objetos.h"

#include <algorithm>

namespace plataforma {

namespace {

struct Contexto;

// Contexts that see each other's lists and textures.
struct Grupo {
    std::vector<Contexto*> m_Miembros;

    ContextoNativo* Nativo() const;
};

// What an HGLRC stands for. `CerrojoContextos` guards its fields.
struct Contexto {
    explicit Contexto(int formato) : m_nFormato(formato), m_Grupo(std::make_shared<Grupo>()) {
        m_Grupo->m_Miembros.push_back(this);
    }
    ~Contexto() {
        std::lock_guard cierre(CerrojoContextos());
        std::erase(m_Grupo->m_Miembros, this);
        m_Nativo.reset();
    }

    int m_nFormato;
    std::shared_ptr<Grupo> m_Grupo;
    // Made at the first use: a native context takes its share group when it is made and can't change it later.
    std::unique_ptr<ContextoNativo> m_Nativo;
    std::thread::id m_Hilo;  // where it is current
};

ContextoNativo* Grupo::Nativo() const {
    auto it =
        std::find_if(m_Miembros.begin(), m_Miembros.end(), [](const Contexto* c) { return c->m_Nativo != nullptr; });
    return it == m_Miembros.end() ? nullptr : (*it)->m_Nativo.get();
}

Tabla<HGLRC, Contexto>& Contextos() {
    static auto& t = *new Tabla<HGLRC, Contexto>;
    return t;
}

// What is current on a thread; released when the thread ends.
struct Vinculo {
    HGLRC m_hRC = nullptr;
    HDC m_hDC = nullptr;
    std::shared_ptr<Contexto> m_Contexto;
    std::shared_ptr<Lienzo> m_Lienzo;
    std::shared_ptr<Superficie> m_Superficie;  // null: no surface

    Vinculo() = default;
    ~Vinculo() { Libera(); }

    // Gives back the claims on context and surface; the native side has been dealt with.
    void Olvida() {
        if (m_Contexto) {
            std::lock_guard cierre(CerrojoContextos());
            m_Contexto->m_Hilo = {};
            if (m_Superficie && m_Lienzo->m_Hilo == std::this_thread::get_id()) m_Lienzo->m_Hilo = {};
        }
        m_hRC = nullptr;
        m_hDC = nullptr;
        // The last holder destroys; surfaces go before the window that they draw on.
        m_Superficie.reset();
        m_Lienzo.reset();
        m_Contexto.reset();
    }
    void Libera() {
        if (!m_Contexto) return;  // a context of the host's own may be current: it stays
        BackendActual()->Suelta();
        Olvida();
    }
};

thread_local Vinculo t_Vinculo;

// Claims context and surface for this thread and makes the native context; false with the reason noted.
bool Reclama(Backend& backend, Contexto& contexto, Lienzo& lienzo, std::shared_ptr<Superficie>& superficie) {
    const auto yo = std::this_thread::get_id();
    std::lock_guard cierre(CerrojoContextos());
    if (lienzo.m_nFormato == 0) return AnotaFallo("the device context has no pixel format.");
    if (lienzo.m_nFormato != contexto.m_nFormato)
        return AnotaFallo("the context was made for another pixel format than the device context's.");
    if (contexto.m_Hilo != std::thread::id() && contexto.m_Hilo != yo)
        return AnotaFallo("the context is current on another thread.");
    const bool ocupada = backend.UnHiloPorSuperficie() && lienzo.m_Hilo != std::thread::id() && lienzo.m_Hilo != yo;
    if (!ocupada) {
        if (!lienzo.PreparaSuperficie(backend)) return false;
        superficie = lienzo.m_Superficie;
    }
    if (!contexto.m_Nativo) {
        std::string motivo;
        contexto.m_Nativo = backend.CreaContexto(backend.Formatos()[static_cast<std::size_t>(contexto.m_nFormato) - 1],
                                                 contexto.m_Grupo->Nativo(), motivo);
        if (!contexto.m_Nativo) return AnotaFallo(motivo);
    }
    contexto.m_Hilo = yo;
    if (superficie && backend.UnHiloPorSuperficie()) lienzo.m_Hilo = yo;
    return true;
}

}  // namespace

std::mutex& CerrojoContextos() {
    static auto& m = *new std::mutex;
    return m;
}

Actual ActualDelHilo() {
    const Vinculo& v = t_Vinculo;
    return {v.m_Lienzo.get(), v.m_Superficie != nullptr};
}

}  // namespace plataforma

using namespace plataforma;

HGLRC wglCreateContext(HDC hdc) {
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) {
        AnotaFallo("unknown device context.");
        return nullptr;
    }
    int formato = 0;
    {
        std::lock_guard cierre(CerrojoContextos());
        formato = dispositivo->m_Lienzo->m_nFormato;
    }
    if (formato == 0) {
        AnotaFallo("the device context has no pixel format.");
        return nullptr;
    }
    return Contextos().Inserta(std::make_shared<Contexto>(formato));
}

BOOL wglDeleteContext(HGLRC hrc) {
    if (hrc && t_Vinculo.m_hRC == hrc) t_Vinculo.Libera();
    const auto contexto = Contextos().Busca(hrc);
    if (!contexto) return AnotaFallo("unknown rendering context.");
    {
        std::lock_guard cierre(CerrojoContextos());
        if (contexto->m_Hilo != std::thread::id()) return AnotaFallo("the context is current on another thread.");
        Contextos().Saca(hrc);
    }
    return TRUE;
}

BOOL wglMakeCurrent(HDC hdc, HGLRC hrc) {
    Vinculo& v = t_Vinculo;
    if (!hrc) {
        v.Libera();
        return TRUE;
    }
    const auto contexto = Contextos().Busca(hrc);
    if (!contexto) return AnotaFallo("unknown rendering context.");
    const auto dispositivo = Dispositivos().Busca(hdc);
    if (!dispositivo) return AnotaFallo("unknown device context.");
    Backend* backend = BackendActual();
    if (!backend) return FALSE;

    const std::shared_ptr<Lienzo> lienzo = dispositivo->m_Lienzo;
    std::shared_ptr<Superficie> superficie;
    if (!Reclama(*backend, *contexto, *lienzo, superficie)) return FALSE;

    std::string motivo;
    const bool hecho = backend->HazActual(superficie.get(), *contexto->m_Nativo, motivo);
    {
        // Of the claims of the former and the new binding, those of the one that isn't current are given back.
        std::lock_guard cierre(CerrojoContextos());
        Contexto* pierde = hecho ? v.m_Contexto.get() : contexto.get();
        Contexto* queda = hecho ? contexto.get() : v.m_Contexto.get();
        if (pierde && pierde != queda) pierde->m_Hilo = {};
        Lienzo* lienzoPierde = hecho ? v.m_Lienzo.get() : lienzo.get();
        Lienzo* lienzoQueda = hecho ? lienzo.get() : v.m_Lienzo.get();
        if (lienzoPierde && lienzoPierde != lienzoQueda && lienzoPierde->m_Hilo == std::this_thread::get_id())
            lienzoPierde->m_Hilo = {};
    }
    if (!hecho) return AnotaFallo(motivo);
    v.m_hRC = hrc;
    v.m_hDC = hdc;
    v.m_Superficie = superficie;
    v.m_Lienzo = lienzo;
    v.m_Contexto = contexto;
    return TRUE;
}

HGLRC wglGetCurrentContext() {
    return t_Vinculo.m_hRC;
}

HDC wglGetCurrentDC() {
    return t_Vinculo.m_hDC;
}

BOOL wglShareLists(HGLRC uno, HGLRC otro) {
    const auto a = Contextos().Busca(uno);
    const auto b = Contextos().Busca(otro);
    if (!a || !b) return AnotaFallo("unknown rendering context.");
    std::lock_guard cierre(CerrojoContextos());
    if (a->m_Grupo == b->m_Grupo) return TRUE;
    if (a->m_Grupo->Nativo() && b->m_Grupo->Nativo())
        return AnotaFallo("too late to join the contexts: both have been used already.");
    const std::shared_ptr<Grupo> deja = b->m_Grupo;
    for (Contexto* c : deja->m_Miembros) {
        c->m_Grupo = a->m_Grupo;
        a->m_Grupo->m_Miembros.push_back(c);
    }
    deja->m_Miembros.clear();
    return TRUE;
}
