#pragma once
// Progress of long operations: the interface that an application implements, and how an operation finds it.

#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// Shows the progress of an operation and lets the user cancel it.
///
/// The application object (a CWinApp) derives from this class too; operations find it with PorcentajeActual(). Every
/// call comes from the thread that runs the operation. `nivel` is the level of messages of whoever calls: the
/// application shows what is at or above the level it cares for.
class LUMBRA_API IPorcentaje {
  public:
    /// One step done.
    /// @param actual  steps done so far, from 1 to total
    /// @param flag    0 from every caller; kept for applications that tell kinds of steps apart
    /// @return 0 cancels the operation, anything else lets it go on
    virtual int Paso(int nivel, int actual, int total, int flag) = 0;
    /// Opens a stage. @param idTexto  number of a text that the application owns
    virtual void Empieza(int nivel, unsigned idTexto) = 0;
    /// Closes the stage last opened. @param flag  0
    virtual void Termina(int nivel, int flag) = 0;
    /// Tells how many stages are to come.
    virtual void Pasos(int nivel, int cantidad) = 0;
    /// Starts the count again. @param modo 2 @param flag 0
    virtual void Reinicia(int nivel, int modo, int flag) = 0;
    /// Shows a line of text. The text is only valid during the call. @param flag 1
    virtual void Mensaje(int nivel, const CString& texto, int flag) = 0;

    virtual ~IPorcentaje();  // Out of line: type information must be one object for dynamic_cast between libraries.
};

/// The progress interface of the current application object, or null when there is none.
LUMBRA_API IPorcentaje* PorcentajeActual();

}  // namespace Vertiz
