// The tiles of a terrain's images: laying them out, filling a texture object from the file, putting them together to a
// picture, and cutting all of them anew.

#include "terrain/CEscenaMDT.h"
#include "terrain/FicheroTexturas.h"
#include "frame/TexturaGL.h"
#include "raster/CBloques.h"
#include "raster/IRaster.h"
#include "raster/OrdenCanales.h"
#include "model/IPorcentaje.h"
#include "platform/Ficheros.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <span>
#include <vector>

using Vertiz::CBloques;
using Vertiz::IRaster;

// ---- Layout --------------------------------------------------------------------------------------------------------

namespace {

// Tiles of `tesela` pixels, in a row, that hold an image of `imagen` pixels.
int CuantasTeselas(int imagen, int tesela) {
    return imagen / tesela + (imagen % tesela != 0 ? 1 : 0);
}

// At most a third of the image's size is wasted.
bool AprovechaTeselas(int imagen, int tesela, int cuantas) {
    return std::int64_t{tesela} * cuantas <= std::int64_t{4} * imagen / 3;
}

}  // namespace

bool CEscenaMDT::SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& registro) {
    registro.m_nNumFilas = registro.m_nNumCols = 0;
    if (filasTextura < 1 || colsTextura < 1 || filas < 1 || cols < 1) return false;
    bool cambiado = false;
    for (;;) {
        const int teselasFila = CuantasTeselas(filas, filasTextura), teselasCol = CuantasTeselas(cols, colsTextura);
        if (AprovechaTeselas(filas, filasTextura, teselasFila) && AprovechaTeselas(cols, colsTextura, teselasCol)) {
            if (std::int64_t{teselasFila} * teselasCol > std::numeric_limits<std::int32_t>::max()) return cambiado;
            registro.m_nNumFilas = teselasFila;
            registro.m_nNumCols = teselasCol;
            registro.m_nAltoUtil = filasTextura;
            registro.m_nAnchoUtil = colsTextura;
            return cambiado;
        }
        filasTextura = std::max(filasTextura / 2, 1);  // tiles needn't be square: the shorter side stays a pixel
        colsTextura = std::max(colsTextura / 2, 1);
        cambiado = true;
    }
}

// ---- Filling -------------------------------------------------------------------------------------------------------

namespace {

// Without smoothing, and from the halved copies where there are any.
bool PreparaTesela(GLuint nombre, bool bPiramide) {
    if (!PreparaTextura(nombre)) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MAG_FILTER, GL_NEAREST);
    if (HayErrorGL()) return false;
    glTexParameteri(GL_TEXTURE_2D, GL_TEXTURE_MIN_FILTER, bPiramide ? GL_NEAREST_MIPMAP_NEAREST : GL_NEAREST);
    return !HayErrorGL();
}

}  // namespace

bool CEscenaMDT::Textura(unsigned index, unsigned fila, unsigned col) {
    if (index >= m_Texturas.size()) return false;
    CDataTexturas& registro = m_Texturas[index];
    if (!registro.TieneFichero() || !AseguraTexturas(index)) return false;
    const GLuint nombre = registro.IdTextura(fila, col);
    if (nombre == 0) return false;
    const std::size_t tesela = registro.Tesela(fila, col);
    registro.m_pTexturas->llenas[tesela] = 0;
    if (!PreparaTesela(nombre, registro.m_bPiramidales != 0)) return false;
    std::vector<BYTE> pixeles;
    const std::vector<CNivelTexturas> niveles = NivelesTexturas(registro);
    char llena = 1;
    for (std::size_t l = 0; l < niveles.size(); ++l) {
        const CNivelTexturas& nivel = niveles[l];
        if (nivel.ancho > m_nMaxTexDim || nivel.alto > m_nMaxTexDim) {
            llena = 0;
            continue;
        }
        pixeles.resize(static_cast<std::size_t>(nivel.bytes));
        if (!LeeTesela(*registro.m_pFichero, nivel.Posicion(tesela), pixeles)) return false;
        // The driver compresses; the file stays plain.
        glTexImage2D(GL_TEXTURE_2D, static_cast<GLint>(l), GL_COMPRESSED_RGB, nivel.ancho, nivel.alto, 0, GL_RGB,
                     GL_UNSIGNED_BYTE, pixeles.data());
        if (HayErrorGL()) return false;
    }
    registro.m_pTexturas->llenas[tesela] = llena;
    return true;
}

// ---- As one picture ------------------------------------------------------------------------------------------------

void CEscenaMDT::GetImagen(IRaster* destino, unsigned index) {
    if (!destino || index >= m_Texturas.size()) return;
    const CDataTexturas& registro = m_Texturas[index];
    const std::vector<CNivelTexturas> niveles = NivelesTexturas(registro);
    const std::int64_t ancho = std::int64_t{registro.m_nAnchoTextura} * registro.m_nNumCols;
    const std::int64_t alto = std::int64_t{registro.m_nAltoTextura} * registro.m_nNumFilas;
    constexpr std::int64_t kMaximo = std::numeric_limits<std::int32_t>::max();
    if (niveles.empty() || registro.NumTeselas() == 0 || !registro.TieneFichero()) return;
    const CNivelTexturas& nivel = niveles.front();
    if (ancho > kMaximo || alto > kMaximo || nivel.bytes > kMaximo) return;

    CBloques bloques;
    if (!bloques.Reserva(static_cast<UINT>(registro.NumTeselas()), static_cast<UINT>(nivel.bytes))) return;
    const std::int64_t bytesFila = BytesFilaTextura(ancho);
    std::vector<BYTE> pixeles(static_cast<std::size_t>(nivel.bytes));
    for (std::size_t tesela = 0; tesela < registro.NumTeselas(); ++tesela) {
        if (!LeeTesela(*registro.m_pFichero, nivel.Posicion(tesela), pixeles)) return;
        Vertiz::CambiaRojoAzul(pixeles);
        const auto fila = static_cast<std::int64_t>(tesela) / registro.m_nNumCols;
        const auto col = static_cast<std::int64_t>(tesela) % registro.m_nNumCols;
        for (int i = 0; i < nivel.alto; ++i)
            bloques.Escribe(static_cast<ULONGLONG>((fila * nivel.alto + i) * bytesFila + col * nivel.ancho * 3),
                            &pixeles[nivel.BytesFila() * static_cast<std::size_t>(i)], nivel.BytesFila());
    }
    destino->Crear(static_cast<int>(ancho), static_cast<int>(alto), 24, 100.0F, false, &bloques, nullptr, false);
}

// ---- Cutting anew --------------------------------------------------------------------------------------------------

namespace {

constexpr Vertiz::CNivelMensajes kNivel = 2;
constexpr Vertiz::CNivelMensajes kNivelFallo = 3;

// Bytes of so many pixels.
constexpr std::size_t Bytes(std::int64_t pixeles) {
    return static_cast<std::size_t>(std::max<std::int64_t>(pixeles, 0)) * 3;
}

// What the tiles of a layout hold together, in pixels.
struct Extension {
    std::int64_t ancho, alto;
    std::int64_t bytesFila;  // of the picture of them all
    explicit Extension(const CDataTexturas& r)
        : ancho(std::int64_t{r.m_nNumCols} * r.m_nAnchoUtil),
          alto(std::int64_t{r.m_nNumFilas} * r.m_nAltoUtil),
          bytesFila(BytesFilaTextura(std::int64_t{r.m_nNumCols} * r.m_nAnchoTextura)) {}
};

bool EscribeEn(CFile& fichero, std::int64_t posicion, std::span<const BYTE> datos) {
    return fichero.Seek(posicion, CFile::begin) != CFile::posicionMala && fichero.Write(datos.data(), datos.size());
}

// A layout that can be written and read: tiles above the limit would never show.
bool EsUsable(const CDataTexturas& r, int maximo) {
    return r.NumTeselas() > 0 && r.m_nAnchoTextura <= maximo && r.m_nAltoTextura <= maximo && r.m_nAnchoUtil > 0 &&
           r.m_nAltoUtil > 0 && r.m_nAnchoUtil <= r.m_nAnchoTextura && r.m_nAltoUtil <= r.m_nAltoTextura;
}

// Writes what all tiles hold of the image, at level 0, as one picture from the north.
bool Aplana(const CDataTexturas& registro, CFile& plano) {
    const Extension total(registro);
    const CNivelTexturas nivel = NivelesTexturas(registro).front();
    std::vector<BYTE> pixeles(static_cast<std::size_t>(nivel.bytes));
    for (int t = 0; t < registro.m_nNumFilas; ++t)
        for (int u = 0; u < registro.m_nNumCols; ++u) {
            const auto tesela = registro.Tesela(static_cast<unsigned>(t), static_cast<unsigned>(u));
            if (!LeeTesela(*registro.m_pFichero, nivel.Posicion(tesela), pixeles)) return false;
            for (int i = 0; i < registro.m_nAltoUtil; ++i) {
                const std::int64_t fila = std::int64_t{t} * registro.m_nAltoUtil + i;
                const auto inicio = static_cast<std::int64_t>(Bytes(std::int64_t{u} * registro.m_nAnchoUtil));
                const std::span origen = std::span(pixeles).subspan(nivel.BytesFila() * static_cast<std::size_t>(i));
                if (!EscribeEn(plano, fila * total.bytesFila + inicio, origen.first(Bytes(registro.m_nAnchoUtil))))
                    return false;
            }
        }
    return true;
}

// Cuts that picture into the tiles of another layout. South edges meet: what the new rows have more lies in the north.
class Cortador {
  public:
    Cortador(const CDataTexturas& viejo, const CDataTexturas& nuevo, const CFile& plano)
        : m_Viejo(viejo),
          m_Nuevo(nuevo),
          m_Plano(plano),
          m_Nivel(NivelesTexturas(nuevo).front()),
          m_Pixeles(static_cast<std::size_t>(m_Nivel.bytes)) {}

    bool Corta(CFile& fichero) {
        for (int t = 0; t < m_Nuevo.m_nNumFilas; ++t)
            for (int u = 0; u < m_Nuevo.m_nNumCols; ++u) {
                std::ranges::fill(m_Pixeles, BYTE{255});
                bool bLeida = false;
                if (!LlenaTesela(t, u, bLeida)) return false;
                const auto tesela = m_Nuevo.Tesela(static_cast<unsigned>(t), static_cast<unsigned>(u));
                if (bLeida && !EscribeEn(fichero, m_Nivel.Posicion(tesela), m_Pixeles)) return false;
            }
        return true;
    }

  private:
    // Pixels of a row that tile column u takes. A last one that reaches beyond the old tiles loses what it reaches
    // beyond the first of them.
    std::int64_t PixelesFila(int u) const {
        const std::int64_t fin = (std::int64_t{u} + 1) * m_Nuevo.m_nAnchoUtil;
        if (u + 1 < m_Nuevo.m_nNumCols || fin <= Extension(m_Viejo).ancho) return m_Nuevo.m_nAnchoUtil;
        return std::max<std::int64_t>(m_Nuevo.m_nAnchoUtil - (fin - m_Viejo.m_nAnchoUtil), 0);
    }

    // @return false when reading failed
    bool LlenaTesela(int t, int u, bool& bLeida) {
        const Extension viejo(m_Viejo), nuevo(m_Nuevo);
        const std::int64_t pixeles = PixelesFila(u);
        if (pixeles == 0) return bLeida = true;  // cells show it all the same: white, and not a hole, which is black
        const std::size_t bytesFila = m_Nivel.BytesFila();
        int i = 0;
        for (; i < m_Nuevo.m_nAltoUtil; ++i) {
            const std::int64_t fila = std::int64_t{t} * m_Nuevo.m_nAltoUtil - (nuevo.alto - viejo.alto) + i;
            if (fila < 0) continue;
            if (fila >= viejo.alto) break;
            const std::span destino = std::span(m_Pixeles).subspan(bytesFila * static_cast<std::size_t>(i), bytesFila);
            const auto inicio = static_cast<std::int64_t>(Bytes(std::int64_t{u} * m_Nuevo.m_nAnchoUtil));
            if (!LeeTesela(m_Plano, fila * viejo.bytesFila + inicio, destino.first(Bytes(pixeles)))) return false;
            Repite(destino, 3, Bytes(pixeles));
            bLeida = true;
        }
        if (bLeida) Repite(m_Pixeles, bytesFila, bytesFila * static_cast<std::size_t>(i));
        return true;
    }

    // From `desde` on, repeats the element of `n` bytes before it.
    static void Repite(std::span<BYTE> datos, std::size_t n, std::size_t desde) {
        for (; desde + n <= datos.size(); desde += n)
            std::copy_n(&datos[desde - n], n, &datos[desde]);
    }

    const CDataTexturas& m_Viejo;
    const CDataTexturas& m_Nuevo;
    const CFile& m_Plano;
    CNivelTexturas m_Nivel;
    std::vector<BYTE> m_Pixeles;  // of one tile
};

void Avisa(const CString& plano, const CString& nuevo) {
    CString texto;
    texto.Format(L"error\n%s\n%s", plano, nuevo);
    if (Vertiz::IPorcentaje* porcentaje = Vertiz::PorcentajeActual()) porcentaje->Mensaje(kNivelFallo, texto, 1);
}

}  // namespace

void CEscenaMDT::CambiaSizeTexturas(int alto, int ancho, const CString& carpeta, int borrarFichero) {
    for (unsigned i = 0; i < m_Texturas.size(); ++i)
        if (!CambiaSizeTextura(i, alto, ancho, carpeta, borrarFichero)) break;
    for (CEscenaMDT* hijo : HijosConImagen())
        hijo->CargarFicheroTexturasTemp(m_Texturas);
}

// One record. It is unloaded only when its new file is complete.
// @return false when no more of them can be tried
bool CEscenaMDT::CambiaSizeTextura(unsigned index, int alto, int ancho, const CString& carpeta, int borrarFichero) {
    const CDataTexturas viejo = m_Texturas[index];
    alto = std::min(alto, m_nMaxTexDim);
    ancho = std::min(ancho, m_nMaxTexDim);
    if (!viejo.TieneFichero() || !EsUsable(viejo, std::numeric_limits<int>::max())) return true;
    const Extension total(viejo);
    constexpr std::int64_t kMaximo = std::numeric_limits<std::int32_t>::max();
    if (total.ancho > kMaximo || total.alto > kMaximo) return true;

    CDataTexturas nuevo = viejo;
    nuevo.m_bPiramidales = 0;
    SetNumFilasCols(alto, ancho, static_cast<int>(total.alto), static_cast<int>(total.ancho), nuevo);
    nuevo.m_nAnchoTextura = ancho;
    nuevo.m_nAltoTextura = alto;
    if (!EsUsable(nuevo, m_nMaxTexDim) || !FijaTamanosTextura(nuevo)) return true;

    FicheroPasajero plano = CreaFicheroTexturas(carpeta);
    if (!plano || !Aplana(viejo, *plano)) return false;
    CString ruta;
    FicheroPasajero fichero = CreaFicheroTexturas(carpeta, &ruta);
    if (!fichero) {
        Avisa(plano->GetFilePath(), ruta);
        return false;
    }
    if (!Cortador(viejo, nuevo, *plano).Corta(*fichero)) return false;
    plano.reset();

    DescargarImagen(index, borrarFichero, 0, 1);
    if (index >= m_Texturas.size()) return false;
    nuevo.m_pFichero = nullptr;
    nuevo.m_pTexturas = nullptr;
    nuevo.m_bPrestada = nuevo.m_bCompartida = nuevo.m_bCargada = 0;
    nuevo.m_sNombreFichero.Empty();
    AjustaTeselas(nuevo);
    m_Texturas[index] = std::move(nuevo);
    return CargarImagen(fichero.release(), index, kNivel) != 0;
}
