#pragma once
// The application object, and the store of its settings.

#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

/// The application. A host derives its own and keeps one object of it for as long as it runs; what it derives from
/// besides (IPorcentaje, for one) is found from AfxGetApp by dynamic_cast. The library has one of its own, for a host
/// that has none.
///
/// Settings live by section and key in an INI file (see Perfil.h for what a file may hold):
///
///     $XDG_CONFIG_HOME or ~/.config / company, after SetRegistryKey / application / m_pszProfileName
///
/// The four profile operations may be called from several threads. They are virtual, so that a host can keep its
/// settings elsewhere. The fields are set before the first of these calls.
class LUMBRA_API CWinApp {
  public:
    /// From now on AfxGetApp gives this object.
    /// @param nombre name of the application, copied; null or empty: that of the program's file
    explicit CWinApp(LPCWSTR nombre = nullptr);
    CWinApp(const CWinApp&) = delete;
    CWinApp& operator=(const CWinApp&) = delete;
    /// AfxGetApp gives again the object that it gave before.
    virtual ~CWinApp();

    /// For the host to begin and to end: nothing calls them but the host. TRUE and 0 here.
    virtual BOOL InitInstance();
    virtual int ExitInstance();

    /// Puts the application's folder under one of the company's name.
    void SetRegistryKey(LPCWSTR empresa);

    /// Reads an integer: `defecto` when the key isn't there or is empty, 0 when its text isn't a number.
    virtual UINT GetProfileInt(LPCWSTR seccion, LPCWSTR clave, int defecto);
    /// Reads a text: `defecto` when the key isn't there; null counts as empty.
    virtual CString GetProfileString(LPCWSTR seccion, LPCWSTR clave, LPCWSTR defecto = nullptr);
    /// Writes an integer; makes the folder, the file and the section where they are missing. 0 on failure, and the
    /// store is then as it was.
    virtual BOOL WriteProfileInt(LPCWSTR seccion, LPCWSTR clave, int valor);
    /// Writes a text; a null text takes the key away, a null key the whole section. 0 on failure.
    virtual BOOL WriteProfileString(LPCWSTR seccion, LPCWSTR clave, LPCWSTR texto);

    /// The file that the settings are in; empty when there is no folder for it (neither XDG_CONFIG_HOME nor HOME).
    CString DameFicheroPerfil() const;

    CString m_pszAppName;      ///< name of the application
    CString m_pszExeName;      ///< name of the program's file, without its extension
    CString m_pszRegistryKey;  ///< company; empty without SetRegistryKey
    CString m_pszProfileName;  ///< name of the INI file, "perfil.ini" by default; an absolute path stays as it is

  protected:
    /// Marks the library's own object, which gives way to any other.
    struct DeLaBiblioteca {};
    CWinApp(LPCWSTR nombre, DeLaBiblioteca);

  private:
    friend CWinApp* AfxGetApp();
    static CWinApp* s_pUltima;      // the host's newest object; the older ones hang from it
    static CWinApp* s_pBiblioteca;  // the library's

    void PonNombres(LPCWSTR nombre);

    CWinApp* m_pAnterior = nullptr;
};

/// The current application: the host's object, or the newest when it has several, else the library's, whichever was
/// built first. Null only before the library is loaded or after it ends. May be called from any thread; the object
/// lives as long as its owner lets it.
LUMBRA_API CWinApp* AfxGetApp();
