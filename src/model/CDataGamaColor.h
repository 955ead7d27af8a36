#pragma once
// The colour ramp of heights.

#include "platform/CString.h"
#include "platform/Exporta.h"
#include "platform/Tipos.h"

#include <vector>

namespace Vertiz {

/// A height and the colour that the ramp has there.
struct LUMBRA_API CColorCota {
    double m_dCota = 0.0;  ///< terrain units
    BYTE m_nRojo = 0, m_nVerde = 0, m_nAzul = 0;

    bool operator==(const CColorCota&) const = default;
};

/// Colours by height: a sequence of stops, ordered by ascending height, no two at the same one.
///
/// As a text each stop is a height and three channels from 0 to 255, with blanks between, and stops are parted by
/// semicolons: "0 0 97 71;350.5 16 122 47;2000 255 255 255". Numbers have a decimal point whatever the locale. The
/// empty text is a ramp without stops.
class LUMBRA_API CDataGamaColor {
  public:
    CDataGamaColor() = default;
    /// From its text. Stops may come in any order; a text that breaks the form gives a ramp without stops.
    explicit CDataGamaColor(const CString& texto);

    /// A ramp of natural terrain colours, from green lowlands over ochre to white summits, spread over a range of
    /// heights. It reaches a little beyond both ends, since heights at and above the last stop have no colour.
    static CDataGamaColor Terreno(double cotaMin, double cotaMax);

    const std::vector<CColorCota>& Paradas() const { return m_Paradas; }
    bool EstaVacia() const { return m_Paradas.empty(); }
    /// Adds a stop, or changes the colour of the one at that height. A height that isn't finite is refused.
    bool Inserta(const CColorCota& parada);
    void Borra() { m_Paradas.clear(); }
    /// The text that gives the same ramp back, exactly.
    CString Texto() const;

    /// Reads the ramp from the application's profile store, key `prefijo` + "Colores". Without an application object,
    /// without the key or with a text that breaks the form nothing changes.
    void GetProfile(const CString& seccion, const CString& prefijo);
    /// Writes the ramp to the application's profile store; nothing happens without an application object.
    void WriteProfile(const CString& seccion, const CString& prefijo) const;
    /// The same with the INI file `fichero`.
    void GetPrivateProfile(const CString& fichero, const CString& seccion, const CString& prefijo);
    void WritePrivateProfile(const CString& fichero, const CString& seccion, const CString& prefijo) const;

    bool operator==(const CDataGamaColor&) const = default;

  private:
    std::vector<CColorCota> m_Paradas;
};

}  // namespace Vertiz
