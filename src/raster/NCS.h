#pragma once
// Internal. The reader behind CECW: a view of a file tells its measures and gives the lines of a window; threads, locks
// and events for the workers that read come with it. Here it reads JPEG 2000 through OpenJPEG. ECW has a closed codec:
// whoever has a kit for it builds with its header in place of what follows (CMake: LUMBRA_ECW_SDK), and CECW then reads
// both formats through the kit.

#ifdef LUMBRA_ECW_KIT
#include LUMBRA_ECW_KIT
#else

#include "platform/Tipos.h"

#include <condition_variable>
#include <memory>
#include <mutex>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace NCS {

/// A path, in UTF-8.
using CString = std::string;

/// What went wrong; number 0 is success.
class CError {
  public:
    CError() = default;
    CError(int numero, std::string texto) : m_nNumero(numero), m_sTexto(std::move(texto)) {}

    int GetErrorNumber() const { return m_nNumero; }
    const std::string& Texto() const { return m_sTexto; }

  private:
    int m_nNumero = 0;
    std::string m_sTexto;
};

/// The reason of a failure, one line in English.
inline const std::string& NCSGetLastErrorText(const CError& error) {
    return error.Texto();
}

/// Measures and place of an open file.
struct CFileInfo {
    int m_nAncho = 0;   ///< pixels
    int m_nAlto = 0;    ///< pixels
    int m_nBandas = 0;  ///< as stored: one for a picture with a palette
    /// Step in the terrain from one column to the next and from one row, counted from the top, to the next: y is
    /// negative as a rule. A file that doesn't tell its place has 1, 1 and origin 0, 0.
    double m_dCeldaX = 1.0, m_dCeldaY = 1.0;
    double m_dOrigenX = 0.0, m_dOrigenY = 0.0;  ///< outer corner of the top left pixel, terrain units
};

struct CBandaJ2K;
class CImagenJ2K;
class CVentanaJ2K;

/// A view of a window of a file, read line by line. One thread uses a view; any number of views may read one file. All
/// open views of a file whose windows lie in the window that another has set take their lines from the same decoding.
class CView {
  public:
    CView();
    ~CView();
    CView(const CView&) = delete;
    CView& operator=(const CView&) = delete;

    /// Opens a file and reads its header. The format is told by the content, not by the name.
    CError Open(const CString& ruta);
    /// Of the open file.
    const CFileInfo& GetFileInfo() const { return m_Informacion; }
    /// Sets what ReadLineBGR gives: columns x0 to x1 and rows y0 to y1, both ends included, rows from the top.
    /// @param bandas       indices of the bands wanted
    /// @param ancho, alto  size of the view, which has to be the window's: views are at full resolution
    CError SetView(const std::vector<UINT>& bandas, int x0, int y0, int x1, int y1, int ancho, int alto);
    /// The next line of the view, 3 bytes a pixel. @return 0; not 0 when it can't be had, and UltimoError tells why
    int ReadLineBGR(BYTE* linea);
    const CError& UltimoError() const { return m_Error; }
    CError Close();

  private:
    void TomaBanda();

    CFileInfo m_Informacion;
    CError m_Error;
    std::shared_ptr<CImagenJ2K> m_pImagen;
    std::shared_ptr<CVentanaJ2K> m_pVentana;
    std::shared_ptr<const CBandaJ2K> m_pBanda;  // the one with the last line
    int m_nX = 0, m_nAncho = 0;                 // columns of the window
    int m_nPrimera = 0;                         // row of the window
    int m_nFila = 0, m_nFinal = 0;              // next row, and the one after the last
    std::vector<BYTE> m_Componentes;            // a line, component after component
};

class CMutex {
  public:
    void Lock() { m_Mutex.lock(); }
    void Unlock() { m_Mutex.unlock(); }

  private:
    std::mutex m_Mutex;
};

/// Holds a lock while it lives.
class CMutexLock {
  public:
    explicit CMutexLock(CMutex& mutex) : m_Mutex(mutex) { m_Mutex.Lock(); }
    ~CMutexLock() { m_Mutex.Unlock(); }
    CMutexLock(const CMutexLock&) = delete;
    CMutexLock& operator=(const CMutexLock&) = delete;

  private:
    CMutex& m_Mutex;
};

/// Once set it stays so.
class CEvent {
  public:
    void Set();
    void Wait();
    /// @return false when the time was over first
    bool Wait(unsigned milisegundos);

  private:
    std::mutex m_Mutex;
    std::condition_variable m_Aviso;
    bool m_bActivo = false;
};

/// A thread that runs Work once.
class CThread {
  public:
    CThread() = default;
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;
    /// A class that derives from it waits in its own destructor, before its members go.
    virtual ~CThread() { Join(); }

    /// @param dato passed to Work; has to live until it ends
    /// @return false when the system has no more threads: nothing runs then
    bool Start(void* dato);
    /// Waits until Work has ended.
    void Join();

    virtual void Work(void* dato) = 0;

  private:
    std::thread m_Hilo;
};

}  // namespace NCS

#endif
