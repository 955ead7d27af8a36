#pragma once
// The worker that makes a range of glyph lists.

#include "model/CHilo.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/Contextos.h"

class CGL;

namespace Vertiz {

/// Makes outlines of glyphs, in polygons a tenth of an em deep, from a context of its own that shares lists with the
/// scene's. They are of the font that is selected in the scene's device context as it runs: a host selects one, starts
/// workers for ranges of their own, and waits for them (Stop) before it selects another or draws. No scene starts it.
class LUMBRA_API CHiloCreaFuentes : public CHilo {
  public:
    CHiloCreaFuentes() = default;
    /// Waits for the end of the thread, as Start does for that of an earlier one.
    ~CHiloCreaFuentes() override;

    /// Starts the thread, at normal priority. All pointers are borrowed and outlive it. Without a scene or a context
    /// it ends at once.
    /// @param indice     index of the worker among its fellows
    /// @param fin        kept for the host; the worker doesn't set it. May be null
    /// @param contexto   the worker's own, joined to the scene's
    /// @param primero    first code
    /// @param ultimo     how many codes: it is taken as a count from `primero` on, whatever its name
    /// @param base       the first list, for code `primero`; there have to be `ultimo` of them
    /// @param desviacion of the outlines: see wglUseFontOutlinesW
    /// @param seccion    shared: guards the taking and leaving of contexts. May be null for a single worker
    void Start(unsigned indice, CEvent* fin, CGL* escena, HGLRC contexto, unsigned short primero, unsigned short ultimo,
               unsigned base, float desviacion, CCriticalSection* seccion);

    /// The thread's body.
    void Run();

  private:
    CEvent* m_pFin = nullptr;
    CGL* m_pEscena = nullptr;
    HGLRC m_hContexto = nullptr;
    unsigned short m_nPrimero = 0;
    unsigned short m_nUltimo = 0;
    unsigned m_nBase = 0;
    float m_fDesviacion = 0.0F;
    CCriticalSection* m_pSeccion = nullptr;
};

}  // namespace Vertiz
