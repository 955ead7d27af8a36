#pragma once
// The worker that fills the texture objects of an image, in parallel with others.

#include "terrain/CDataTexturas.h"
#include "model/CHilo.h"
#include "platform/CCriticalSection.h"
#include "platform/CEvent.h"
#include "platform/Contextos.h"

#include <vector>

class CEscenaMDT;
class CGL;

namespace Vertiz {

/// Fills the tiles of one image, row by row, from a context of its own that shares objects with the scene's. Any number
/// of workers share the rows of an image; a host starts them, waits, and draws with the names, which don't change.
///
/// Tiles that are full already stay as they are. Where the surface is made of triangles, only those tiles are filled
/// that one uses, here or in a reference or link; a grid has none, and fills its tiles itself.
class LUMBRA_API CHiloCargaTextura : public CHilo {
  public:
    CHiloCargaTextura() = default;
    ~CHiloCargaTextura() override;

    /// Starts the thread. All pointers are borrowed and outlive it; the workers of an image share those marked so.
    /// `fila` is 0 before the first of them.
    /// @param id          index of the worker among its fellows
    /// @param fin         shared: set whenever a worker has ended, with its context finished and released
    /// @param contador    shared: progress in rows, for the host to read
    /// @param registros   shared: the records of the scene, which stay as they are meanwhile
    /// @param index       the record to fill
    /// @param tipo        the scene's type; for 3, an image by itself, every tile is filled
    /// @param referencias, vinculos  shared: the scene's children
    /// @param contexto    the worker's own, joined to the scene's
    /// @param seccion     shared: guards `fila`, `contador` and the taking of contexts
    /// @param fila        shared: the next row to fill
    /// @param parar       shared: ends the workers after their tile. Every Start sets it to false; a worker that failed
    ///                    and a host that cancels, to true
    void Start(unsigned id, CEvent* fin, long* contador, std::vector<CDataTexturas>* registros, unsigned index,
               int tipo, std::vector<CGL*>* referencias, std::vector<CGL*>* vinculos, CEscenaMDT* escena,
               HGLRC contexto, CCriticalSection* seccion, unsigned* fila, bool* parar);
    /// Waits for the end of the thread, without limit.
    void Stop() override;

    /// The thread's body.
    void Run();

  private:
    void Calculo(unsigned fila);
    bool HayTriangulos(unsigned fila, unsigned col) const;
    bool HayQueParar() const;
    void Para();

    CEvent* m_pFin = nullptr;
    long* m_pContador = nullptr;
    std::vector<CDataTexturas>* m_pRegistros = nullptr;
    unsigned m_nRegistro = 0;
    int m_nTipo = 0;
    std::vector<CGL*>* m_pReferencias = nullptr;
    std::vector<CGL*>* m_pVinculos = nullptr;
    CEscenaMDT* m_pEscena = nullptr;
    HGLRC m_hContexto = nullptr;
    CCriticalSection* m_pSeccion = nullptr;
    unsigned* m_pFila = nullptr;
    bool* m_pParar = nullptr;
};

}  // namespace Vertiz
