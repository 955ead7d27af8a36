#pragma once
// Windows. With a display they are real ones; without, a window is a size in memory that can be drawn on all the same.

#include "platform/CPoint.h"
#include "platform/Exporta.h"
#include "platform/Mensajes.h"
#include "platform/Tipos.h"

#include <cstdint>

class CDC;
class CWnd;

namespace plataforma {
struct Evento;
}

/// A window by handle.
using HWND = struct HandleVentana*;

constexpr DWORD WS_OVERLAPPEDWINDOW = 0x00CF0000;
constexpr DWORD WS_CHILD = 0x40000000;
constexpr DWORD WS_VISIBLE = 0x10000000;
constexpr DWORD WS_CLIPSIBLINGS = 0x04000000;
constexpr DWORD WS_CLIPCHILDREN = 0x02000000;

constexpr int SW_HIDE = 0;
constexpr int SW_SHOW = 5;

constexpr UINT SIZE_RESTORED = 0;

/// Buttons and keys held during an action of the mouse.
constexpr UINT MK_LBUTTON = 0x0001;
constexpr UINT MK_RBUTTON = 0x0002;
constexpr UINT MK_SHIFT = 0x0004;
constexpr UINT MK_CONTROL = 0x0008;
constexpr UINT MK_MBUTTON = 0x0010;

constexpr short WHEEL_DELTA = 120;

constexpr UINT VK_BACK = 0x08;
constexpr UINT VK_TAB = 0x09;
constexpr UINT VK_RETURN = 0x0D;
constexpr UINT VK_SHIFT = 0x10;
constexpr UINT VK_CONTROL = 0x11;
constexpr UINT VK_ESCAPE = 0x1B;
constexpr UINT VK_SPACE = 0x20;
constexpr UINT VK_PRIOR = 0x21;
constexpr UINT VK_NEXT = 0x22;
constexpr UINT VK_END = 0x23;
constexpr UINT VK_HOME = 0x24;
constexpr UINT VK_LEFT = 0x25;
constexpr UINT VK_UP = 0x26;
constexpr UINT VK_RIGHT = 0x27;
constexpr UINT VK_DOWN = 0x28;
constexpr UINT VK_INSERT = 0x2D;
constexpr UINT VK_DELETE = 0x2E;
constexpr UINT VK_ADD = 0x6B;
constexpr UINT VK_SUBTRACT = 0x6D;
constexpr UINT VK_F1 = 0x70;         ///< F2 to F12 follow
constexpr UINT VK_OEM_PLUS = 0xBB;   ///< + or = beside the letters
constexpr UINT VK_OEM_MINUS = 0xBD;  ///< - beside the letters
constexpr UINT VK_OEM_2 = 0xBF;      ///< / or ?

/// What a window is made with; `PreCreateWindow` may change it.
struct CREATESTRUCT {
    CWnd* hwndParent;  ///< null: a window of its own
    int cx, cy;        ///< client size, pixels
    int x, y;          ///< pixels, of the screen or of the parent's client area
    DWORD style;
    DWORD dwExStyle;
    const wchar_t* lpszName;   ///< title
    const wchar_t* lpszClass;  ///< not read
};
using LPCREATESTRUCT = CREATESTRUCT*;

/// Two presses of a button are a double click when they are this many milliseconds apart at most,
constexpr unsigned DOUBLE_CLICK_TIME = 500;
/// and this many pixels in each direction.
constexpr int DOUBLE_CLICK_DISTANCE = 4;

/// A window. Derive from it and override the handlers. What happens to the window is called by `DespachaEventos`, on
/// the thread that calls it: each event becomes a message for `WindowProc`, which calls the handler. Sizes and
/// movements of the mouse that wait together are told once, the last of them, and painting comes after everything else,
/// once. A window's functions belong to the thread that made it.
///
/// A display that goes away closes all windows: `OnDestroy` is called, `GetSafeHwnd` is null, and new windows are
/// refused. UltimoFalloGL tells why.
class LUMBRA_API CWnd {
  public:
    CWnd();
    /// Destroys the window when there is one.
    virtual ~CWnd();
    CWnd(const CWnd&) = delete;
    CWnd& operator=(const CWnd&) = delete;

    /// Makes the window. `rect` is the client area: pixels of the screen, or of the parent's client area with a parent.
    /// @param clase not read
    /// @param padre null: a window of its own; must outlive this one
    /// @return FALSE when there is a window already, when a side of `rect` is below 1 or above 32767, when `OnCreate`
    ///         gives -1, or when the display refuses
    BOOL Create(LPCWSTR clase, LPCWSTR titulo, DWORD estilo, const CRect& rect, CWnd* padre = nullptr, UINT id = 0);
    /// The same with an extended style, which nothing reads.
    BOOL CreateEx(DWORD estiloEx, LPCWSTR clase, LPCWSTR titulo, DWORD estilo, const CRect& rect, CWnd* padre = nullptr,
                  UINT id = 0);

    /// Wraps a window of the host's toolkit. Nothing of it is changed: it isn't destroyed with this object, and its
    /// events stay the toolkit's, so the host sends the messages that it needs, WM_CREATE too. What `Invalidate` asks
    /// for is painted by `UpdateWindow`, or by `DespachaEventos` where the host calls that.
    /// @param nativa X11 window on the same display
    /// @return FALSE when there is no such window, or no display
    BOOL Attach(std::uintptr_t nativa);
    /// Forgets the window. One that was wrapped lives on; one's own is destroyed.
    void Detach();

    /// Destroys the window; a context current on it on this thread is released first. `OnDestroy` is called before.
    /// @return FALSE when there is none
    virtual BOOL DestroyWindow();

    /// @param modo SW_HIDE, or anything else to show it
    /// @return FALSE without a window; so do the next two
    BOOL ShowWindow(int modo);
    /// Moves and sizes the client area. `OnSize` follows by `DespachaEventos`; without a display it is called at once.
    /// @param ancho, alto pixels; refused below 1 and above 32767
    BOOL MoveWindow(int x, int y, int ancho, int alto, BOOL repinta = TRUE);
    /// @param titulo copied; null for none
    BOOL SetWindowText(LPCWSTR titulo);
    /// The client area: 0, 0 to its size in pixels.
    void GetClientRect(CRect* rect) const;
    /// Has `OnPaint` called by the next `DespachaEventos`. What is invalid is the smallest rectangle round all that was
    /// asked for since the last time.
    /// @param borra not read: what was there isn't wiped before
    void Invalidate(BOOL borra = TRUE);
    /// @param rect pixels of the client area; null: all of it
    void InvalidateRect(const RECT* rect, BOOL borra = TRUE);
    /// Calls `OnPaint` at once when anything is invalid.
    void UpdateWindow();

    /// Calls `WindowProc` at once.
    /// @return its result; 0 without a window
    LRESULT SendMessage(UINT mensaje, WPARAM w = 0, LPARAM l = 0);

    HWND GetSafeHwnd() const { return m_hWnd; }
    /// @return X11 window; 0 without a display
    std::uintptr_t VentanaNativa() const;

    /// Calls the handlers of all windows for what has happened, then returns. To be called on the thread that made
    /// them.
    /// @param espera milliseconds to wait when nothing has happened yet; negative: for ever. Without a display nothing
    ///               ever happens but what `Invalidate` asked for, and there is no wait.
    /// @return how many events there were
    static int DespachaEventos(int espera = 0);

    /// @return the object that stands for a window; null for an unknown one
    static CWnd* FromHandle(HWND hWnd);

    HWND m_hWnd = nullptr;

  protected:
    /// Turns a message into a call of its handler. Override it for messages that have none here, and call it for the
    /// others.
    virtual LRESULT WindowProc(UINT mensaje, WPARAM w, LPARAM l);

    /// First call of `Create`: may change size, style and title.
    /// @return FALSE: the window isn't made
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    /// The window stands, but isn't shown yet.
    /// @return -1: it is destroyed again and `Create` fails
    virtual int OnCreate(LPCREATESTRUCT cs);
    virtual void OnDestroy();
    /// The client area has a new size, pixels. It follows `OnCreate` once.
    virtual void OnSize(UINT tipo, int cx, int cy);
    /// Something is invalid, and counts as valid from now on. A `CPaintDC` knows what.
    virtual void OnPaint();
    /// A command, of a menu or a key of the host's; nobody else sends it.
    /// @return FALSE when it isn't known
    virtual BOOL OnCommand(WPARAM w, LPARAM l);
    /// Another window has changed the display's palette, and this one may choose its colours anew.
    virtual void OnPaletteChanged(CWnd* otra);
    virtual BOOL OnQueryNewPalette();
    /// The user wants the window closed. It is destroyed, unless this is overridden.
    virtual void OnClose();

    /// Mouse: `flags` are MK_ values, points are pixels of the client area, y downwards.
    virtual void OnMouseMove(UINT flags, CPoint pt);
    virtual void OnLButtonDown(UINT flags, CPoint pt);
    virtual void OnLButtonUp(UINT flags, CPoint pt);
    virtual void OnMButtonDown(UINT flags, CPoint pt);
    virtual void OnMButtonUp(UINT flags, CPoint pt);
    virtual void OnRButtonDown(UINT flags, CPoint pt);
    virtual void OnRButtonUp(UINT flags, CPoint pt);
    /// The second press of a double click, in the place of that of `On.ButtonDown`, which is called here. A third press
    /// is a first one again.
    virtual void OnLButtonDblClk(UINT flags, CPoint pt);
    virtual void OnMButtonDblClk(UINT flags, CPoint pt);
    virtual void OnRButtonDblClk(UINT flags, CPoint pt);
    /// @param delta WHEEL_DELTA a notch, positive away from the user
    virtual BOOL OnMouseWheel(UINT flags, short delta, CPoint pt);
    /// Keys: letters and digits by their capital's ASCII code, others by the VK_ values above.
    virtual void OnKeyDown(UINT tecla, UINT repeticiones, UINT flags);
    virtual void OnKeyUp(UINT tecla, UINT repeticiones, UINT flags);

  private:
    friend class CPaintDC;

    void AvisaTamano(int cx, int cy);
    void Despacha(const plataforma::Evento& e);
    LRESULT MensajeRaton(UINT mensaje, WPARAM w, LPARAM l);
    bool EsDobleClic(const plataforma::Evento& e);
    static void CierraTodas();
    static CWnd* Busca(std::uintptr_t nativa);

    // The last press of a button; none when m_nBoton is 0.
    struct Pulsacion {
        int m_nBoton = 0;
        CPoint m_Punto;
        unsigned m_nInstante = 0;
    };

    CWnd* m_pPadre = nullptr;
    bool m_bEnvuelta = false;       // the window is somebody else's
    CRect m_Invalido;               // waits for OnPaint
    CRect m_Pintando;               // what the OnPaint that runs is for
    int m_nAncho = 0, m_nAlto = 0;  // of the last OnSize
    Pulsacion m_Pulsacion;
};

/// `CWnd::InvalidateRect` by handle. @return FALSE for an unknown window
LUMBRA_API BOOL InvalidateRect(HWND hWnd, const RECT* rect, BOOL borra);
