// Decoding through OpenJPEG: codec and stream over the platform's files, headers, windows.

#include "raster/NCSOpenJPEG.h"

#include "platform/CFile.h"
#include "platform/Hilos.h"
#include "platform/Memoria.h"

#include <openjpeg.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstring>
#include <limits>
#include <numeric>

namespace NCS {

namespace {

// ---- The stream: OpenJPEG calls these with the CFile.

OPJ_SIZE_T LeeFlujo(void* bytes, OPJ_SIZE_T n, void* fichero) {
    const size_t leidos = static_cast<CFile*>(fichero)->Read(bytes, n);
    return leidos > 0 ? leidos : std::numeric_limits<OPJ_SIZE_T>::max();  // the end
}

OPJ_OFF_T SaltaFlujo(OPJ_OFF_T n, void* fichero) {
    return static_cast<CFile*>(fichero)->Seek(n, CFile::current) == CFile::posicionMala ? -1 : n;
}

OPJ_BOOL BuscaFlujo(OPJ_OFF_T p, void* fichero) {
    return p >= 0 && static_cast<CFile*>(fichero)->Seek(p, CFile::begin) != CFile::posicionMala ? OPJ_TRUE : OPJ_FALSE;
}

// ---- The codec.

/// A decoder on an open file, its header read.
class CDecodificador {
  public:
    CDecodificador() = default;
    CDecodificador(const CDecodificador&) = delete;
    CDecodificador& operator=(const CDecodificador&) = delete;

    CError Abre(const CString& ruta, bool codestream, int hilos);
    /// Decodes the window of the reference grid; the whole picture when null.
    CError Decodifica(const std::array<OPJ_INT32, 4>* ventana);
    opj_image_t* Imagen() { return m_pImagen.get(); }
    std::unique_ptr<opj_image, BorraImagen> SueltaImagen() { return std::move(m_pImagen); }

  private:
    struct CierraFlujo {
        void operator()(opj_stream_t* flujo) const { opj_stream_destroy(flujo); }
    };
    struct CierraCodec {
        void operator()(opj_codec_t* codec) const { opj_destroy_codec(codec); }
    };

    // The first message tells what is wrong, those that follow are its consequences.
    static void AnotaFallo(const char* texto, void* fallo) {
        auto& anotado = *static_cast<std::array<char, 256>*>(fallo);
        if (anotado[0] != '\0') return;
        std::snprintf(anotado.data(), anotado.size(), "%s", texto);
        anotado[std::strcspn(anotado.data(), "\r\n")] = '\0';
    }
    CError Fallo(const char* que) const {
        return {kFallo, m_szFallo[0] != '\0' ? std::string(que) + ": " + m_szFallo.data() : que};
    }

    CFile m_Fichero;
    std::array<char, 256> m_szFallo{};
    std::unique_ptr<opj_stream_t, CierraFlujo> m_pFlujo;
    std::unique_ptr<opj_codec_t, CierraCodec> m_pCodec;
    std::unique_ptr<opj_image, BorraImagen> m_pImagen;
};

CError CDecodificador::Abre(const CString& ruta, bool codestream, int hilos) {
    if (!m_Fichero.Open(::CString(ruta.c_str()), CFile::modeRead | CFile::shareDenyNone))
        return {kFallo, "the file can't be opened"};
    constexpr OPJ_SIZE_T kBuffer = 1U << 16;  // what a band passes over is hardly read
    m_pFlujo.reset(opj_stream_create(kBuffer, OPJ_TRUE));
    m_pCodec.reset(opj_create_decompress(codestream ? OPJ_CODEC_J2K : OPJ_CODEC_JP2));
    if (!m_pFlujo || !m_pCodec) return {kFallo, "there is not enough memory"};
    opj_stream_set_user_data(m_pFlujo.get(), &m_Fichero, nullptr);
    opj_stream_set_user_data_length(m_pFlujo.get(), m_Fichero.GetLength());
    opj_stream_set_read_function(m_pFlujo.get(), LeeFlujo);
    opj_stream_set_skip_function(m_pFlujo.get(), SaltaFlujo);
    opj_stream_set_seek_function(m_pFlujo.get(), BuscaFlujo);
    opj_set_error_handler(m_pCodec.get(), AnotaFallo, &m_szFallo);

    opj_dparameters_t opciones;
    opj_set_default_decoder_parameters(&opciones);
    if (!opj_setup_decoder(m_pCodec.get(), &opciones)) return Fallo("the decoder can't be set up");
    if (hilos > 1) opj_codec_set_threads(m_pCodec.get(), hilos);
    opj_image_t* imagen = nullptr;
    const OPJ_BOOL leida = opj_read_header(m_pFlujo.get(), m_pCodec.get(), &imagen);
    m_pImagen.reset(imagen);
    if (!leida || m_pImagen == nullptr) return Fallo("the header is damaged");
    constexpr OPJ_UINT32 kLadoMaximo = std::numeric_limits<int>::max();
    if (imagen->numcomps == 0 || imagen->comps[0].w == 0 || imagen->comps[0].h == 0 ||
        imagen->comps[0].w > kLadoMaximo || imagen->comps[0].h > kLadoMaximo)
        return {kFallo, "the picture has no pixels"};
    return {};
}

CError CDecodificador::Decodifica(const std::array<OPJ_INT32, 4>* v) {
    // Samples of 4 bytes, in the tile and in the picture.
    std::uint64_t bytes = 0;
    const opj_image_t& imagen = *m_pImagen;
    for (OPJ_UINT32 i = 0; i < imagen.numcomps; i++) {
        const auto& c = imagen.comps[i];
        const std::uint64_t ancho = v != nullptr ? static_cast<std::uint64_t>((*v)[2] - (*v)[0]) / c.dx + 1 : c.w;
        const std::uint64_t alto = v != nullptr ? static_cast<std::uint64_t>((*v)[3] - (*v)[1]) / c.dy + 1 : c.h;
        bytes += 2 * sizeof(OPJ_INT32) * ancho * alto;
    }
    if (!HayMemoria(bytes)) return {kFallo, "there is not enough memory to decode it"};
    if (v != nullptr && !opj_set_decode_area(m_pCodec.get(), m_pImagen.get(), (*v)[0], (*v)[1], (*v)[2], (*v)[3]))
        return Fallo("the window can't be decoded");
    if (!opj_decode(m_pCodec.get(), m_pFlujo.get(), m_pImagen.get())) return Fallo("the picture is damaged");
    return {};
}

// The least distance on the reference grid, in x and y, at which all components have a sample.
std::array<std::int64_t, 2> PasoComun(const opj_image_t& imagen) {
    std::array<std::int64_t, 2> paso{1, 1};
    for (OPJ_UINT32 i = 0; i < std::min(imagen.numcomps, 4U); i++) {
        paso[0] = std::lcm(paso[0], std::int64_t{imagen.comps[i].dx});
        paso[1] = std::lcm(paso[1], std::int64_t{imagen.comps[i].dy});
    }
    return paso;
}

// The window in the reference grid. It begins where all components have a sample, so that a window shows what the whole
// picture shows there.
std::array<OPJ_INT32, 4> EnReferencia(const opj_image_t& imagen, const CRectangulo& ventana) {
    const auto [pasoX, pasoY] = PasoComun(imagen);
    const auto& c = imagen.comps[0];
    const auto desde = [](std::int64_t primera, std::int64_t d, std::int64_t paso, std::int64_t limite) {
        return static_cast<OPJ_INT32>(std::max(primera * d / paso * paso, limite));
    };
    const auto hasta = [](std::int64_t ultima, std::int64_t d, std::int64_t limite) {
        return static_cast<OPJ_INT32>(std::min((ultima + 1) * d, limite));
    };
    return {desde(std::int64_t{c.x0} + ventana.x0, c.dx, pasoX, imagen.x0),
            desde(std::int64_t{c.y0} + ventana.y0, c.dy, pasoY, imagen.y0),
            hasta(std::int64_t{c.x0} + ventana.x1 - 1, c.dx, imagen.x1),
            hasta(std::int64_t{c.y0} + ventana.y1 - 1, c.dy, imagen.y1)};
}

// Rows of the picture where bands begin. Every band goes through the file, and keeps what a decoder keeps of all its
// tiles: so there are few of them.
std::vector<int> Cortes(const opj_image_t& imagen, const CEstructuraJ2K& estructura) {
    constexpr std::int64_t kBandas = 32;
    constexpr std::uint64_t kTeselas = 4096;
    std::vector<int> cortes{0};
    if (estructura.m_nTeselas > kTeselas || estructura.m_bCabecerasJuntas) return cortes;
    const auto& c = imagen.comps[0];
    const std::int64_t paso = PasoComun(imagen)[1];
    const std::int64_t alto = estructura.m_nAltoTesela,
                       primera = (std::int64_t{imagen.y0} - estructura.m_nTeselaY) / alto;
    const std::int64_t filas = (std::int64_t{imagen.y1} - estructura.m_nTeselaY - 1) / alto - primera + 1;
    const std::int64_t juntas = (filas + kBandas - 1) / kBandas;
    for (std::int64_t i = juntas; i < filas; i += juntas) {
        const std::int64_t y = estructura.m_nTeselaY + (primera + i) * alto;
        const auto corte = static_cast<int>(y / c.dy - c.y0);
        if (y % paso == 0 && corte > cortes.back() && corte < static_cast<int>(c.h)) cortes.push_back(corte);
    }
    return cortes;
}

}  // namespace

void BorraImagen::operator()(opj_image* imagen) const {
    opj_image_destroy(imagen);
}

// ---- The window --------------------------------------------------------------------------------------------------

CVentanaJ2K::CVentanaJ2K(CString ruta, const CPlanJ2K& plan, const CRectangulo& ventana)
    : m_sRuta(std::move(ruta)), m_Plan(plan), m_Ventana(ventana) {
    const std::vector<int>& cortes = m_Plan.cortes;
    for (int y = ventana.y0; y < ventana.y1;) {
        const auto corte = std::ranges::upper_bound(cortes, y);
        const int fin = corte == cortes.end() ? ventana.y1 : std::min(*corte, ventana.y1);
        m_Lugares.emplace_back().ventana = {ventana.x0, y, ventana.x1, fin};
        y = fin;
    }
    // With bands enough for all, those who read on threads of their own do better by one thread for each band.
    m_nHilos = Procesadores();
    if (m_Lugares.size() >= 2 * static_cast<std::size_t>(m_nHilos)) m_nHilos = 1;
}

CVentanaJ2K::CLugar& CVentanaJ2K::Lugar(int fila) {
    return *std::ranges::find_if(m_Lugares, [fila](const CLugar& lugar) { return fila < lugar.ventana.y1; });
}

std::shared_ptr<const CBandaJ2K> CVentanaJ2K::Banda(int fila) {
    CLugar& lugar = Lugar(fila);
    const std::lock_guard cierre(lugar.mutex);
    if (lugar.banda == nullptr) lugar.banda = std::make_shared<CBandaJ2K>(Decodifica(lugar.ventana));
    return lugar.banda;
}

void CVentanaJ2K::Leidas(const CBandaJ2K& banda, int filas) {
    CLugar& lugar = Lugar(banda.ventana.y0);
    const std::lock_guard cierre(lugar.mutex);
    lugar.leidas += filas;
    if (lugar.leidas < lugar.ventana.y1 - lugar.ventana.y0) return;
    lugar.leidas = 0;
    lugar.banda.reset();
}

CBandaJ2K CVentanaJ2K::Decodifica(const CRectangulo& ventana) const {
    CBandaJ2K banda{ventana, {}, {}, {}};
    CDecodificador decodificador;
    banda.error = decodificador.Abre(m_sRuta, m_Plan.codestream, m_nHilos);
    if (banda.error.GetErrorNumber() != 0) return banda;
    const opj_image_t& imagen = *decodificador.Imagen();
    const CRectangulo todo{0, 0, static_cast<int>(imagen.comps[0].w), static_cast<int>(imagen.comps[0].h)};
    const OPJ_UINT32 x0 = imagen.comps[0].x0, y0 = imagen.comps[0].y0;
    if (!todo.Contiene(m_Ventana)) {
        banda.error = {kFallo, "the file has changed"};
        return banda;
    }
    const std::array<OPJ_INT32, 4> area = EnReferencia(imagen, ventana);
    banda.error = decodificador.Decodifica(!m_Plan.porPartes || ventana.Contiene(todo) ? nullptr : &area);
    if (banda.error.GetErrorNumber() != 0) return banda;
    banda.imagen = decodificador.SueltaImagen();
    if (!banda.color.Prepara(*banda.imagen, x0, y0)) banda.error = {kFallo, "its components can't be shown as colours"};
    return banda;
}

// ---- The file ----------------------------------------------------------------------------------------------------

std::shared_ptr<CImagenJ2K> CImagenJ2K::Abre(const CString& ruta, CError& error) {
    static std::mutex mutex;
    static std::vector<std::weak_ptr<CImagenJ2K>> abiertas;

    CFileStatus estado;
    if (!CFile::GetStatus(::CString(ruta.c_str()), estado)) {
        error = {kFallo, "the file can't be found"};
        return nullptr;
    }
    const std::lock_guard cierre(mutex);
    std::erase_if(abiertas, [](const auto& imagen) { return imagen.expired(); });
    for (const auto& debil : abiertas)
        if (const auto imagen = debil.lock(); imagen && imagen->m_sRuta == ruta && imagen->m_nBytes == estado.m_size &&
                                              imagen->m_nMomento == estado.m_mtime)
            return imagen;

    auto imagen = std::make_shared<CImagenJ2K>();
    imagen->m_sRuta = ruta;
    imagen->m_nBytes = estado.m_size;
    imagen->m_nMomento = estado.m_mtime;
    error = imagen->LeeCabecera();
    if (error.GetErrorNumber() != 0) return nullptr;
    abiertas.push_back(imagen);
    return imagen;
}

CError CImagenJ2K::LeeCabecera() {
    CEstructuraJ2K estructura;
    {
        CFile fichero;
        if (!fichero.Open(::CString(m_sRuta.c_str()), CFile::modeRead | CFile::shareDenyNone))
            return {kFallo, "the file can't be opened"};
        if (CError error = LeeEstructura(fichero, m_sRuta, estructura); error.GetErrorNumber() != 0) return error;
    }
    // What the decoder keeps of each tile and each of its components, whether it is ever seen or not.
    constexpr std::uint64_t kBytesTesela = 6144, kBytesComponente = 1152;
    if (!HayMemoria(estructura.m_nTeselas * (kBytesTesela + estructura.m_nComponentes * kBytesComponente)))
        return {kFallo, "there is not enough memory for its tiles"};

    CDecodificador decodificador;
    if (CError error = decodificador.Abre(m_sRuta, estructura.m_bCodestream, 1); error.GetErrorNumber() != 0)
        return error;
    const opj_image_t& imagen = *decodificador.Imagen();
    m_Informacion.m_nAncho = static_cast<int>(imagen.comps[0].w);
    m_Informacion.m_nAlto = static_cast<int>(imagen.comps[0].h);
    m_Informacion.m_nBandas = static_cast<int>(imagen.numcomps);
    m_Plan = {estructura.m_bCodestream, !estructura.m_bCabecerasJuntas, Cortes(imagen, estructura)};
    LeePosicion(m_sRuta, estructura.m_GeoTIFF, m_Informacion);
    return {};
}

std::shared_ptr<CVentanaJ2K> CImagenJ2K::Ventana(const CRectangulo& ventana) {
    const std::lock_guard cierre(m_Mutex);
    std::erase_if(m_Ventanas, [](const auto& debil) { return debil.expired(); });
    for (const auto& debil : m_Ventanas)
        if (auto otra = debil.lock(); otra && otra->Ventana().Contiene(ventana)) return otra;
    auto nueva = std::make_shared<CVentanaJ2K>(m_sRuta, m_Plan, ventana);
    m_Ventanas.push_back(nueva);
    return nueva;
}

}  // namespace NCS
