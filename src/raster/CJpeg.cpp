// JPEG through libjpeg. The library reports a failure by a jump out of its call, so every call stands inside Intenta,
// where nothing with a destructor lives between the mark and the call. What is to be freed belongs to the objects
// around it.

#include "raster/CJpeg.h"

#include "raster/OrdenCanales.h"
#include "raster/Resultados.h"
#include "raster/SalidaImagen.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"
#include "platform/Memoria.h"

#include <jerror.h>
#include <jpeglib.h>

#include <algorithm>
#include <csetjmp>
#include <cstdio>  // jpeglib.h needs it
#include <limits>
#include <utility>

namespace Vertiz {

namespace {

static_assert(JPEG_LIB_VERSION == 62, "the structures are those of this interface");
constexpr int kCalidad = 75;
constexpr std::size_t kBuffer = 65536;

// libjpeg-turbo swaps red and blue while it converts colours; elsewhere it is a pass of its own.
#ifdef JCS_EXTENSIONS
constexpr J_COLOR_SPACE kOrden = JCS_EXT_BGR;
#else
constexpr J_COLOR_SPACE kOrden = JCS_RGB;
#endif

// ---- Errors ------------------------------------------------------------------------------------------------------

struct Errores {
    jpeg_error_mgr base;  // first: what the library has is a pointer to it
    std::jmp_buf vuelta;
    char texto[JMSG_LENGTH_MAX];  // the error, or the first warning
};

[[noreturn]] void AlFallar(j_common_ptr jpeg) {
    auto* const errores = reinterpret_cast<Errores*>(jpeg->err);
    errores->base.format_message(jpeg, errores->texto);
    std::longjmp(errores->vuelta, 1);
}

void AlAvisar(j_common_ptr jpeg, int nivel) {
    if (nivel >= 0) return;  // what it tells of sound files
    auto* const errores = reinterpret_cast<Errores*>(jpeg->err);
    if (errores->base.num_warnings++ == 0) errores->base.format_message(jpeg, errores->texto);
}

void NoImprime(j_common_ptr) {}

// A compressor or a decompressor with its errors.
template <class Jpeg>
class Motor {
  public:
    Motor() {
        m_Jpeg.err = jpeg_std_error(&m_Errores.base);
        m_Errores.base.error_exit = AlFallar;
        m_Errores.base.emit_message = AlAvisar;
        m_Errores.base.output_message = NoImprime;
    }
    // Also right for one that was never made: all is 0 then.
    ~Motor() { jpeg_destroy(reinterpret_cast<j_common_ptr>(&m_Jpeg)); }
    Motor(const Motor&) = delete;
    Motor& operator=(const Motor&) = delete;

    /// Why it failed, or the first thing that was wrong with the file; empty when all was well.
    CString Texto() const { return m_Errores.texto; }

  protected:
    // Makes calls into the library; false when one fails. Their function may hold nothing that needs a destructor.
    template <class Llamadas>
    bool Intenta(Llamadas llamadas) {
        if (setjmp(m_Errores.vuelta) != 0) return false;
        llamadas();
        return true;
    }

    Jpeg m_Jpeg{};
    Errores m_Errores{};
};

// ---- Reading -----------------------------------------------------------------------------------------------------

struct Fuente {
    jpeg_source_mgr base;  // first
    CFile* fichero;
    bool vacia;
    JOCTET datos[kBuffer];
};

// At the end of the file the library gets an end of image, so that it gives what it has.
boolean Carga(j_decompress_ptr jpeg) {
    auto* const fuente = reinterpret_cast<Fuente*>(jpeg->src);
    std::size_t n = fuente->fichero->Read(fuente->datos, kBuffer);
    if (n == 0) {
        if (fuente->vacia) ERREXIT(jpeg, JERR_INPUT_EMPTY);
        WARNMS(jpeg, JWRN_JPEG_EOF);
        fuente->datos[0] = 0xFF;
        fuente->datos[1] = JPEG_EOI;
        n = 2;
    }
    fuente->vacia = false;
    fuente->base.next_input_byte = fuente->datos;
    fuente->base.bytes_in_buffer = n;
    return TRUE;
}

void PasaPorAlto(j_decompress_ptr jpeg, long n) {
    if (n <= 0) return;
    auto saltar = static_cast<std::size_t>(n);
    for (; saltar > jpeg->src->bytes_in_buffer; Carga(jpeg))
        saltar -= jpeg->src->bytes_in_buffer;
    jpeg->src->next_input_byte += saltar;
    jpeg->src->bytes_in_buffer -= saltar;
}

// A few bytes make a scan, and each goes over the whole picture: a file of nothing but scans would take hours.
void VigilaPasadas(j_common_ptr jpeg) {
    constexpr int kPasadas = 500;
    if (reinterpret_cast<j_decompress_ptr>(jpeg)->input_scan_number > kPasadas)
        ERREXIT(reinterpret_cast<j_decompress_ptr>(jpeg), JERR_BAD_PROGRESSION);
}

}  // namespace

class CJpeg::Lector : public Motor<jpeg_decompress_struct> {
  public:
    explicit Lector(CFile& fichero) {
        m_Fuente.base.init_source = [](j_decompress_ptr) {};
        m_Fuente.base.fill_input_buffer = Carga;
        m_Fuente.base.skip_input_data = PasaPorAlto;
        m_Fuente.base.resync_to_restart = jpeg_resync_to_restart;
        m_Fuente.base.term_source = [](j_decompress_ptr) {};
        m_Fuente.fichero = &fichero;
        m_Fuente.vacia = true;
        m_Vigia.progress_monitor = VigilaPasadas;
        fichero.SeekToBegin();
    }

    /// @return 1; 2 when it isn't a JPEG; kCabeceraMala
    int LeeCabecera() {
        int leido = 0;
        const bool bien = Intenta([&] {
            jpeg_CreateDecompress(&m_Jpeg, JPEG_LIB_VERSION, sizeof m_Jpeg);
            m_Jpeg.src = &m_Fuente.base;
            m_Jpeg.progress = &m_Vigia;
            leido = jpeg_read_header(&m_Jpeg, TRUE);
        });
        if (!bien) return 2;
        return leido == JPEG_HEADER_OK ? 1 : kCabeceraMala;
    }

    // Known once the header is read.
    int Ancho() const { return static_cast<int>(m_Jpeg.image_width); }
    int Alto() const { return static_cast<int>(m_Jpeg.image_height); }

    /// A file that is cut short is shown, but one that holds next to nothing of a large picture lies about its size.
    bool CabeEnFichero() {
        constexpr ULONGLONG kPocos = ULONGLONG{1} << 20, kPorByte = 128;  // the plainest blocks take 32 bytes
        const ULONGLONG bloques = (ULONGLONG{m_Jpeg.image_width} + 7) / 8 * ((m_Jpeg.image_height + 7) / 8);
        if (bloques <= kPocos || bloques / kPorByte <= m_Fuente.fichero->GetLength()) return true;
        return Falla(JERR_INPUT_EOF);
    }

    bool Empieza() {
        if (!HayMemoria(BytesCoeficientes())) return Falla(JERR_OUT_OF_MEMORY);
        return Intenta([&] {
            if (SeMuestra()) m_Jpeg.out_color_space = kOrden;
            jpeg_start_decompress(&m_Jpeg);
            if (SeMuestra()) return;
            const auto muestras = m_Jpeg.output_width * static_cast<JDIMENSION>(m_Jpeg.output_components);
            m_pDescarte = m_Jpeg.mem->alloc_sarray(reinterpret_cast<j_common_ptr>(&m_Jpeg), JPOOL_IMAGE, muestras, 1);
        });
    }

    /// The next row, blue, green and red, the top one first; one that isn't shown is left as it is.
    bool LeeFila(BYTE* fila) {
        if (!SeMuestra()) fila = m_pDescarte[0];
        if (!Intenta([&] { jpeg_read_scanlines(&m_Jpeg, &fila, 1); })) return false;
        if (kOrden == JCS_RGB && SeMuestra()) CambiaRojoAzul({fila, std::size_t{m_Jpeg.output_width} * 3});
        return true;
    }

    bool Acaba() {
        return Intenta([&] { jpeg_finish_decompress(&m_Jpeg); });
    }

  private:
    bool SeMuestra() const { return m_Jpeg.num_components == 1 || m_Jpeg.num_components == 3; }

    // What the library takes at once: of a picture in several scans, all coefficients.
    ULONGLONG BytesCoeficientes() {
        ULONGLONG bytes = 0;
        if (jpeg_has_multiple_scans(&m_Jpeg))
            for (int i = 0; i < m_Jpeg.num_components; ++i)
                bytes += ULONGLONG{m_Jpeg.comp_info[i].width_in_blocks} * m_Jpeg.comp_info[i].height_in_blocks *
                         sizeof(JBLOCK);
        return bytes;
    }

    bool Falla(int codigo) {
        return Intenta([&] { ERREXIT1(&m_Jpeg, static_cast<J_MESSAGE_CODE>(codigo), 0); });
    }

    Fuente m_Fuente{};
    jpeg_progress_mgr m_Vigia{};
    JSAMPARRAY m_pDescarte = nullptr;
};

bool CJpeg::SetFichero(CFile* fichero) {
    return CRasterDIB::SetFichero(fichero);
}

int CJpeg::Leer(bool soloCabecera) {
    if (m_pFuente == nullptr) return 2;
    const Etapa etapa(m_nNivelMensajes, kTextoLeer);
    Lector lector(*m_pFuente);
    int resultado = lector.LeeCabecera();
    if (resultado == 1 && !lector.CabeEnFichero()) resultado = 2;
    if (resultado == 1) {
        const bool hecha = Crear(lector.Ancho(), lector.Alto(), 24, 1.0F, false, nullptr, nullptr, soloCabecera);
        resultado = !hecha ? 2 : soloCabecera ? 1 : LeePixeles(lector, etapa);
    }
    if (resultado != 1) Limpiar();
    if (const CString texto = lector.Texto(); !texto.IsEmpty()) Comunica(texto);
    return resultado;
}

int CJpeg::LeePixeles(Lector& lector, const Etapa& etapa) {
    if (!lector.Empieza()) return 2;
    const int alto = AltoPixeles();
    std::vector<BYTE> copia;
    for (int i = 0; i < alto; ++i) {
        const int fila = alto - 1 - i;
        if (!etapa.Paso(i + 1, alto)) return 2;
        if (!lector.LeeFila(FilaNueva(fila, copia).data()) || !GuardaFila(fila, copia)) return 2;
    }
    return lector.Acaba() ? 1 : 2;
}

int CJpeg::Leer(bool, CMatriz<float>**, unsigned, int*, const float*, const float*, int, int, int, int) {
    return kNoSoportado;
}

// ---- Writing -----------------------------------------------------------------------------------------------------

namespace {

struct Destino {
    jpeg_destination_mgr base;  // first
    SalidaImagen* salida;
    JOCTET datos[kBuffer];
};

void Vacia(j_compress_ptr jpeg) {
    auto* const destino = reinterpret_cast<Destino*>(jpeg->dest);
    destino->base.next_output_byte = destino->datos;
    destino->base.free_in_buffer = kBuffer;
}

boolean Descarga(j_compress_ptr jpeg) {
    auto* const destino = reinterpret_cast<Destino*>(jpeg->dest);
    if (!destino->salida->Escribe(destino->datos, kBuffer)) ERREXIT(jpeg, JERR_FILE_WRITE);
    Vacia(jpeg);
    return TRUE;
}

void DescargaResto(j_compress_ptr jpeg) {
    auto* const destino = reinterpret_cast<Destino*>(jpeg->dest);
    const std::size_t n = kBuffer - destino->base.free_in_buffer;
    if (!destino->salida->Escribe(destino->datos, n)) ERREXIT(jpeg, JERR_FILE_WRITE);
}

class Escritor : public Motor<jpeg_compress_struct> {
  public:
    explicit Escritor(SalidaImagen& salida) {
        m_Destino.base.init_destination = Vacia;
        m_Destino.base.empty_output_buffer = Descarga;
        m_Destino.base.term_destination = DescargaResto;
        m_Destino.salida = &salida;
    }

    /// @param enColor  rows of red, green and blue; otherwise of a byte a pixel
    bool Empieza(int ancho, int alto, bool enColor) {
        return Intenta([&] {
            jpeg_CreateCompress(&m_Jpeg, JPEG_LIB_VERSION, sizeof m_Jpeg);
            m_Jpeg.dest = &m_Destino.base;
            m_Jpeg.image_width = static_cast<JDIMENSION>(ancho);
            m_Jpeg.image_height = static_cast<JDIMENSION>(alto);
            m_Jpeg.input_components = enColor ? 3 : 1;
            m_Jpeg.in_color_space = enColor ? JCS_RGB : JCS_GRAYSCALE;
            jpeg_set_defaults(&m_Jpeg);
            jpeg_set_quality(&m_Jpeg, kCalidad, TRUE);
            jpeg_start_compress(&m_Jpeg, TRUE);
        });
    }
    bool Escribe(BYTE* fila) {
        return Intenta([&] { jpeg_write_scanlines(&m_Jpeg, &fila, 1); });
    }
    bool Acaba() {
        return Intenta([&] { jpeg_finish_compress(&m_Jpeg); });
    }

  private:
    Destino m_Destino{};
};

// A stored row as three bytes a pixel with the outer two swapped; a shorter one is filled up with 0.
void Prepara(std::span<const BYTE> fila, std::span<BYTE> destino) {
    const auto resto = std::copy_n(fila.begin(), std::min(fila.size(), destino.size()), destino.begin());
    std::fill(resto, destino.end(), BYTE{0});
    CambiaRojoAzul(destino);
}

}  // namespace

int CJpeg::Grabar(CFile* fichero) {
    if (fichero == nullptr || m_Bloques.EstaVacio()) return 2;
    const Etapa etapa(m_nNivelMensajes, kTextoGrabar);
    const int ancho = Ancho(), alto = -Alto();
    const bool enColor = BytesPixel() == 3;
    std::vector<BYTE> fila(std::size_t(ancho) * 3), sinUso;

    SalidaImagen salida(*fichero);
    Escritor escritor(salida);
    bool bien = escritor.Empieza(ancho, alto, enColor);
    for (int r = 0; bien && r < alto; ++r) {
        if (!etapa.Paso(r + 1, alto)) return 2;
        // Rows of one byte a pixel are taken one after the other from a picture laid out with three: known, and kept.
        const int parte = enColor ? 0 : r % 3;
        if (parte == 0) Prepara(FilaAlmacen(alto - 1 - (enColor ? r : r / 3), sinUso), fila);
        bien = escritor.Escribe(fila.data() + std::size_t(parte) * std::size_t(ancho));
    }
    bien = bien && escritor.Acaba() && salida.Acaba();
    if (const CString texto = escritor.Texto(); !texto.IsEmpty()) Comunica(texto);
    return bien ? 1 : 2;
}

}  // namespace Vertiz
