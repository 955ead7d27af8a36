#pragma once
// Windows. With a display they are real ones; without, a window is a size in memory that can be drawn on all the same.

#include "platform/CPoint.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <cstdint>

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
constexpr UINT VK_F1 = 0x70;  ///< F2 to F12 follow

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

/// A window. Derive from it and override the handlers; they are called by `DespachaEventos` on the thread that calls
/// it. A window's functions belong to the thread that made it.
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
    /// events stay the toolkit's, so the host calls the handlers that it needs.
    /// @param nativa X11 window on the same display
    /// @return FALSE when there is no such window, or no display
    BOOL Attach(std::uintptr_t nativa);
    /// Forgets the window. One that was wrapped lives on; one's own is destroyed.
    void Detach();

    /// Destroys the window; a context current on it on this thread is released first. `OnDestroy` is called before.
    /// @return FALSE when there is none
    virtual BOOL DestroyWindow();

    BOOL ShowWindow(int modo);
    /// Moves and sizes the client area. `OnSize` follows by `DespachaEventos`; without a display it is called at once.
    BOOL MoveWindow(int x, int y, int ancho, int alto, BOOL repinta = TRUE);
    BOOL SetWindowText(LPCWSTR titulo);
    /// The client area: 0, 0 to its size in pixels.
    void GetClientRect(CRect* rect) const;
    /// Has `OnPaint` called by the next `DespachaEventos`.
    void Invalidate(BOOL borra = TRUE);

    HWND GetSafeHwnd() const { return m_hWnd; }
    /// @return X11 window; 0 without a display
    std::uintptr_t VentanaNativa() const;

    /// Calls the handlers of all windows for what has happened, then returns. To be called on the thread that made
    /// them.
    /// @param espera milliseconds to wait when nothing has happened yet; negative: for ever. Without a display nothing
    ///               ever happens but what `Invalidate` asked for, and there is no wait.
    /// @return how many events there were
    static int DespachaEventos(int espera = 0);

    HWND m_hWnd = nullptr;

  protected:
    /// First call of `Create`: may change size, style and title.
    /// @return FALSE: the window isn't made
    virtual BOOL PreCreateWindow(CREATESTRUCT& cs);
    /// The window stands, but isn't shown yet.
    /// @return -1: it is destroyed again and `Create` fails
    virtual int OnCreate(LPCREATESTRUCT cs);
    virtual void OnDestroy();
    /// The client area has a new size, pixels. It follows `OnCreate` once.
    virtual void OnSize(UINT tipo, int cx, int cy);
    virtual void OnPaint();
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
    /// @param delta WHEEL_DELTA a notch, positive away from the user
    virtual BOOL OnMouseWheel(UINT flags, short delta, CPoint pt);
    /// Keys: letters and digits by their capital's ASCII code, others by the VK_ values above.
    virtual void OnKeyDown(UINT tecla, UINT repeticiones, UINT flags);
    virtual void OnKeyUp(UINT tecla, UINT repeticiones, UINT flags);

  private:
    void AvisaTamano(int cx, int cy);
    void Despacha(const plataforma::Evento& e);
    static CWnd* Busca(std::uintptr_t nativa);
    static CWnd* Busca(HWND hWnd);

    CWnd* m_pPadre = nullptr;
    bool m_bEnvuelta = false;       // the window is somebody else's
    bool m_bRepinta = false;        // OnPaint is due
    int m_nAncho = 0, m_nAlto = 0;  // of the last OnSize
};
