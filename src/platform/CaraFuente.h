#pragma once
// Internal. The face behind a font: found among the installed ones, its outlines brought to chords, its bitmaps.

#include "platform/ContornoGlifo.h"
#include "platform/Fuentes.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

struct FT_FaceRec_;

namespace plataforma {

struct Fuente;

/// Where a face lies.
struct LugarCara {
    std::string m_Fichero;
    int m_nCara = 0;  ///< which one of the file
};

/// The installed face that comes nearest to a font; empty, with the reason noted, when none with outlines is installed.
std::optional<LugarCara> BuscaCara(const Fuente& fuente);

/// A glyph of a bit a pixel.
struct MapaGlifo {
    int m_nAncho = 0, m_nAlto = 0;                                 ///< pixels, from 1
    float m_fOrigenX = 0.0F, m_fOrigenY = 0.0F, m_fAvance = 0.0F;  ///< as glBitmap takes them
    std::vector<BYTE> m_Bits;                                      ///< rows from the bottom up, whole bytes each
};

/// A face that is opened for one thread. Any number of them may be open at once, on the same file too.
class Cara {
  public:
    /// @return null, with the reason noted, when the face can't be found or read
    static std::unique_ptr<Cara> Abre(const Fuente& fuente);
    ~Cara();
    Cara(const Cara&) = delete;
    Cara& operator=(const Cara&) = delete;

    /// Outlines and metrics of a code's glyph, in parts of the em square's side; that of the missing glyph when the
    /// face has none for it.
    /// @param desviacion most that chords may be from the curves; 0 is a unit of the design
    /// @return false when the file is damaged
    bool LeeContornos(DWORD codigo, double desviacion, std::vector<Contorno>& contornos, GLYPHMETRICSFLOAT& medidas);
    /// Height of the font's em square, in pixels.
    int Alto() const;
    /// Bitmap of a code's glyph, at that height.
    bool LeeMapa(DWORD codigo, MapaGlifo& mapa);

  private:
    Cara() = default;

    FT_FaceRec_* m_pCara = nullptr;
};

}  // namespace plataforma
