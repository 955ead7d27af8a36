// Faces through fontconfig and FreeType.

#include "platform/CaraFuente.h"

#include "platform/Objetos.h"

#include <fontconfig/fontconfig.h>
#include <ft2build.h>
#include FT_FREETYPE_H
#include FT_OUTLINE_H

#include <algorithm>
#include <cmath>
#include <mutex>

namespace plataforma {

namespace {

// The process's FreeType. Faces are opened and closed one at a time; each then serves one thread without a lock.
class BibliotecaTipos {
  public:
    BibliotecaTipos() {
        if (FT_Init_FreeType(&m_Biblioteca) != 0) m_Biblioteca = nullptr;
    }

    FT_Face Abre(const LugarCara& lugar) {
        const std::lock_guard cierre(m_Cerrojo);
        FT_Face cara = nullptr;
        if (!m_Biblioteca || FT_New_Face(m_Biblioteca, lugar.m_Fichero.c_str(), lugar.m_nCara, &cara) != 0)
            return nullptr;
        return cara;
    }
    void Cierra(FT_Face cara) {
        const std::lock_guard cierre(m_Cerrojo);
        FT_Done_Face(cara);
    }

  private:
    std::mutex m_Cerrojo;
    FT_Library m_Biblioteca = nullptr;
};

BibliotecaTipos& Biblioteca() {
    static auto& b = *new BibliotecaTipos;
    return b;
}

// Height of the em square in pixels.
FT_UInt AltoEm(const FT_FaceRec& cara, int alto) {
    const int celda = cara.ascender - cara.descender;
    if (alto < 0 || celda <= 0) return static_cast<FT_UInt>(std::abs(alto));
    return static_cast<FT_UInt>(std::max(MulDiv(alto, cara.units_per_EM, celda), 1));
}

// Takes the pieces of an outline, in the design's units, and lays chords along its curves.
class Aplanador {
  public:
    Aplanador(std::vector<Contorno>& contornos, double tolerancia, double escala)
        : m_Contornos(contornos), m_dTolerancia(tolerancia), m_dEscala(escala) {}

    void Empieza(const FT_Vector& p) {
        m_Contornos.emplace_back();
        m_Pluma = Punto(p);
        Anade(m_Pluma);
    }
    void Recta(const FT_Vector& p) {
        m_Pluma = Punto(p);
        Anade(m_Pluma);
    }
    // The chords of n equal parts of the parameter are at most a quarter of |a - 2 b + c| / n² from a parabola.
    void Parabola(const FT_Vector& control, const FT_Vector& fin) {
        const PuntoPlano a = m_Pluma, b = Punto(control), c = Punto(fin);
        const int n = Partes(std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y) / 4);
        for (int i = 1; i < n; ++i) {
            const double t = double(i) / n, u = 1 - t;
            Anade({u * u * a.x + 2 * u * t * b.x + t * t * c.x, u * u * a.y + 2 * u * t * b.y + t * t * c.y});
        }
        Recta(fin);
    }
    // And from a cubic at most an eighth of its second derivative, which is largest at an end.
    void Cubica(const FT_Vector& control1, const FT_Vector& control2, const FT_Vector& fin) {
        const PuntoPlano a = m_Pluma, b = Punto(control1), c = Punto(control2), d = Punto(fin);
        const int n = Partes(0.75 * std::max(std::hypot(a.x - 2 * b.x + c.x, a.y - 2 * b.y + c.y),
                                             std::hypot(b.x - 2 * c.x + d.x, b.y - 2 * c.y + d.y)));
        for (int i = 1; i < n; ++i) {
            const double t = double(i) / n, u = 1 - t;
            const double wa = u * u * u, wb = 3 * u * u * t, wc = 3 * u * t * t, wd = t * t * t;
            Anade({wa * a.x + wb * b.x + wc * c.x + wd * d.x, wa * a.y + wb * b.y + wc * c.y + wd * d.y});
        }
        Recta(fin);
    }

  private:
    static PuntoPlano Punto(const FT_Vector& p) { return {double(p.x), double(p.y)}; }
    void Anade(const PuntoPlano& p) { m_Contornos.back().push_back({p.x * m_dEscala, p.y * m_dEscala}); }
    int Partes(double flecha) const {
        constexpr double kMaximo = 64;
        return static_cast<int>(std::clamp(std::ceil(std::sqrt(flecha / m_dTolerancia)), 1.0, kMaximo));
    }

    std::vector<Contorno>& m_Contornos;
    double m_dTolerancia;
    double m_dEscala;
    PuntoPlano m_Pluma{};
};

void Aplana(FT_Outline& trazo, Aplanador& aplanador) {
    FT_Outline_Funcs funciones{};
    funciones.move_to = [](const FT_Vector* p, void* quien) {
        static_cast<Aplanador*>(quien)->Empieza(*p);
        return 0;
    };
    funciones.line_to = [](const FT_Vector* p, void* quien) {
        static_cast<Aplanador*>(quien)->Recta(*p);
        return 0;
    };
    funciones.conic_to = [](const FT_Vector* c, const FT_Vector* p, void* quien) {
        static_cast<Aplanador*>(quien)->Parabola(*c, *p);
        return 0;
    };
    funciones.cubic_to = [](const FT_Vector* c, const FT_Vector* d, const FT_Vector* p, void* quien) {
        static_cast<Aplanador*>(quien)->Cubica(*c, *d, *p);
        return 0;
    };
    FT_Outline_Decompose(&trazo, &funciones, &aplanador);
}

// Outlines come closed: the last point is the first one again.
void QuitaRepetidos(std::vector<Contorno>& contornos) {
    const auto iguales = [](const PuntoPlano& a, const PuntoPlano& b) { return a.x == b.x && a.y == b.y; };
    for (Contorno& c : contornos) {
        c.erase(std::unique(c.begin(), c.end(), iguales), c.end());
        while (c.size() > 1 && iguales(c.front(), c.back()))
            c.pop_back();
    }
    std::erase_if(contornos, [](const Contorno& c) { return c.size() < 3; });
}

}  // namespace

std::optional<LugarCara> BuscaCara(const Fuente& fuente) {
    using Patron = std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)>;
    const auto texto = [](const char* s) { return reinterpret_cast<const FcChar8*>(s); };
    const Patron pedido(FcPatternCreate(), &FcPatternDestroy);
    FcPatternAddString(pedido.get(), FC_FAMILY, texto(fuente.m_Cara.c_str()));
    FcPatternAddString(pedido.get(), FC_FAMILY, texto("Liberation Sans"));
    FcPatternAddInteger(pedido.get(), FC_WEIGHT, FcWeightFromOpenType(fuente.m_nPeso));
    FcPatternAddInteger(pedido.get(), FC_SLANT, fuente.m_bCursiva ? FC_SLANT_ITALIC : FC_SLANT_ROMAN);
    FcPatternAddBool(pedido.get(), FC_OUTLINE, FcTrue);
    FcConfigSubstitute(nullptr, pedido.get(), FcMatchPattern);
    FcDefaultSubstitute(pedido.get());
    FcResult resultado = FcResultNoMatch;
    const Patron hallado(FcFontMatch(nullptr, pedido.get(), &resultado), &FcPatternDestroy);
    FcChar8* fichero = nullptr;
    FcBool bTrazos = FcFalse;
    LugarCara lugar;
    if (!hallado || FcPatternGetString(hallado.get(), FC_FILE, 0, &fichero) != FcResultMatch ||
        FcPatternGetBool(hallado.get(), FC_OUTLINE, 0, &bTrazos) != FcResultMatch || !bTrazos) {
        AnotaFallo("no outline font is installed: a package like fonts-liberation has some.");
        return std::nullopt;
    }
    FcPatternGetInteger(hallado.get(), FC_INDEX, 0, &lugar.m_nCara);
    lugar.m_Fichero = reinterpret_cast<const char*>(fichero);
    return lugar;
}

std::unique_ptr<Cara> Cara::Abre(const Fuente& fuente) {
    const std::optional<LugarCara> lugar = BuscaCara(fuente);
    if (!lugar) return nullptr;
    std::unique_ptr<Cara> cara(new Cara);
    cara->m_pCara = Biblioteca().Abre(*lugar);
    if (!cara->m_pCara || !FT_IS_SCALABLE(cara->m_pCara) || cara->m_pCara->units_per_EM == 0 ||
        FT_Set_Pixel_Sizes(cara->m_pCara, 0, AltoEm(*cara->m_pCara, fuente.m_nAlto)) != 0) {
        AnotaFallo("the font file " + lugar->m_Fichero + " can't be read.");
        return nullptr;
    }
    return cara;
}

Cara::~Cara() {
    if (m_pCara) Biblioteca().Cierra(m_pCara);
}

bool Cara::LeeContornos(DWORD codigo, double desviacion, std::vector<Contorno>& contornos, GLYPHMETRICSFLOAT& medidas) {
    contornos.clear();
    if (FT_Load_Char(m_pCara, codigo, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) != 0)
        return AnotaFallo("the glyph of code " + std::to_string(codigo) + " is damaged.");
    const FT_GlyphSlot glifo = m_pCara->glyph;
    const FT_Glyph_Metrics& m = glifo->metrics;
    const double em = m_pCara->units_per_EM;
    const auto parte = [em](FT_Pos v) { return static_cast<float>(double(v) / em); };
    medidas = {
        parte(m.width), parte(m.height), {parte(m.horiBearingX), parte(m.horiBearingY)}, parte(m.horiAdvance), 0.0F};
    Aplanador aplanador(contornos, desviacion > 0.0 ? desviacion * em : 1.0, 1.0 / em);
    Aplana(glifo->outline, aplanador);
    QuitaRepetidos(contornos);
    return true;
}

int Cara::Alto() const {
    return m_pCara->size->metrics.y_ppem;
}

bool Cara::LeeMapa(DWORD codigo, MapaGlifo& mapa) {
    if (FT_Load_Char(m_pCara, codigo, FT_LOAD_RENDER | FT_LOAD_NO_BITMAP | FT_LOAD_TARGET_MONO) != 0)
        return AnotaFallo("the glyph of code " + std::to_string(codigo) + " can't be drawn at this height.");
    const FT_GlyphSlot glifo = m_pCara->glyph;
    const FT_Bitmap& bits = glifo->bitmap;
    mapa = {};
    mapa.m_fAvance = static_cast<float>(glifo->advance.x) / 64.0F;
    if (glifo->outline.n_points == 0) {  // one pixel that isn't set: drivers refuse an empty bitmap in a list
        mapa.m_nAncho = mapa.m_nAlto = 1;
        mapa.m_Bits = {0};
        return true;
    }
    mapa.m_nAncho = static_cast<int>(bits.width);
    mapa.m_nAlto = static_cast<int>(bits.rows);
    mapa.m_fOrigenX = static_cast<float>(-glifo->bitmap_left);
    mapa.m_fOrigenY = static_cast<float>(mapa.m_nAlto - glifo->bitmap_top);
    const std::size_t fila = (bits.width + 7) / 8;
    mapa.m_Bits.resize(fila * bits.rows);
    for (unsigned i = 0; i < bits.rows; ++i)  // FreeType's first row is the top one
        std::copy_n(bits.buffer + std::ptrdiff_t{bits.pitch} * i, fila,
                    mapa.m_Bits.begin() + static_cast<std::ptrdiff_t>((bits.rows - 1 - i) * fila));
    return true;
}

}  // namespace plataforma
