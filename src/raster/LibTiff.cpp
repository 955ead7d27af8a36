// The page of a TIFF, through libtiff: opening, directory, georeferencing, and tables of values. Pictures are in
// LibTiffPixeles.cpp.

#include "raster/LibTiff.h"

#include "raster/EtiquetasTiff.h"
#include "raster/GeoTiff.h"
#include "raster/LibTiffPagina.h"
#include "raster/MediaPrecision.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "model/Etapa.h"
#include "platform/Memoria.h"

#include <tiffio.h>

#include <algorithm>
#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace Vertiz {

namespace {

// ---- GeoTIFF tags ------------------------------------------------------------------------------------------------

char nombreEscala[] = "GeoPixelScale", nombrePuntos[] = "GeoTiePoints", nombreMatriz[] = "GeoTransformationMatrix",
     nombreClaves[] = "GeoKeyDirectory", nombreDobles[] = "GeoDoubleParams", nombreTextos[] = "GeoASCIIParams";

// As other libraries in the process define them: who comes first decides, and all have to get along.
const TIFFFieldInfo kCampos[] = {
    {etiqueta::kModelPixelScale, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, nombreEscala},
    {etiqueta::kModelTiepoint, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, nombrePuntos},
    {etiqueta::kModelTransformation, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, nombreMatriz},
    {etiqueta::kGeoKeyDirectory, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_SHORT, FIELD_CUSTOM, 1, 1, nombreClaves},
    {etiqueta::kGeoDoubleParams, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_DOUBLE, FIELD_CUSTOM, 1, 1, nombreDobles},
    {etiqueta::kGeoAsciiParams, TIFF_VARIABLE, TIFF_VARIABLE, TIFF_ASCII, FIELD_CUSTOM, 1, 0, nombreTextos},
};

// A damaged directory makes libtiff ask for hundreds of gigabytes; no strip that is worth reading is as large as this.
constexpr tmsize_t kMayorBloque = tmsize_t{1} << 32;

TIFFExtendProc extensionAnterior = nullptr;

void AnadeCampos(TIFF* tiff) {
    TIFFMergeFieldInfo(tiff, kCampos, static_cast<std::uint32_t>(std::size(kCampos)));
    if (extensionAnterior != nullptr) extensionAnterior(tiff);
}

// libtiff forgets merged tags whenever it reads a directory, so that it has to be asked once for all to add them.
void DaAConocerCampos() {
    [[maybe_unused]] static const bool hecho = [] {
        extensionAnterior = TIFFSetTagExtender(AnadeCampos);
        return true;
    }();
}

template <class T>
std::vector<T> Lista(TIFF* tiff, std::uint32_t tag, TIFFDataType tipo) {
    const TIFFField* const campo = TIFFFindField(tiff, tag, TIFF_ANY);
    if (campo == nullptr || TIFFFieldDataType(campo) != tipo || TIFFFieldPassCount(campo) == 0) return {};
    const T* datos = nullptr;
    if (TIFFFieldReadCount(campo) == TIFF_VARIABLE2) {
        std::uint32_t n = 0;
        if (TIFFGetField(tiff, tag, &n, &datos) != 1 || datos == nullptr) return {};
        return {datos, datos + n};
    }
    std::uint16_t n = 0;
    if (TIFFGetField(tiff, tag, &n, &datos) != 1 || datos == nullptr) return {};
    return {datos, datos + n};
}

EtiquetasGeoTiff Etiquetas(TIFF* tiff) {
    EtiquetasGeoTiff e;
    e.m_Escala = Lista<double>(tiff, etiqueta::kModelPixelScale, TIFF_DOUBLE);
    e.m_PuntosControl = Lista<double>(tiff, etiqueta::kModelTiepoint, TIFF_DOUBLE);
    e.m_Transformacion = Lista<double>(tiff, etiqueta::kModelTransformation, TIFF_DOUBLE);
    e.m_Claves = Lista<std::uint16_t>(tiff, etiqueta::kGeoKeyDirectory, TIFF_SHORT);
    e.m_Dobles = Lista<double>(tiff, etiqueta::kGeoDoubleParams, TIFF_DOUBLE);
    return e;
}

// ---- Messages ----------------------------------------------------------------------------------------------------

// The first complaint is the cause, later ones follow from it.
int AnotaFallo(TIFF*, void* fallo, const char*, const char* formato, va_list argumentos) {
    char texto[512];
    std::vsnprintf(texto, sizeof texto, formato, argumentos);
    auto& anotado = *static_cast<std::string*>(fallo);
    if (anotado.empty()) anotado = texto;
    return 1;
}

int CallaAviso(TIFF*, void*, const char*, const char*, va_list) {
    return 1;
}

// ---- Values ------------------------------------------------------------------------------------------------------

// The values of a row in the machine's byte order, as floats.
void AFloat(const LibTiff::Pagina& pagina, const BYTE* datos, std::span<float> valores) {
    const auto cada = [&]<class T>(T, auto conversion) {
        for (std::size_t i = 0; i < valores.size(); ++i) {
            T valor;
            std::memcpy(&valor, datos + i * sizeof valor, sizeof valor);
            valores[i] = static_cast<float>(conversion(valor));
        }
    };
    const auto igual = [](auto v) { return v; };
    if (pagina.bits == 64)
        cada(double{}, igual);
    else if (pagina.bits == 32)
        cada(float{}, igual);
    else if (pagina.formato == SAMPLEFORMAT_IEEEFP)
        cada(std::uint16_t{}, DeMediaPrecision);
    else if (pagina.formato == SAMPLEFORMAT_INT)
        cada(std::int16_t{}, igual);
    else
        cada(std::uint16_t{}, igual);
}

std::optional<CMatriz<float>> HazTabla(unsigned filas, unsigned columnas, unsigned limiteCeldas) {
    const ULONGLONG celdas = ULONGLONG{filas} * columnas;
    const bool enMemoria = (limiteCeldas == 0 || celdas <= limiteCeldas) && HayMemoria(celdas * sizeof(float));
    try {
        CMatriz<float> tabla = enMemoria ? CMatriz<float>(filas, columnas) : CMatriz<float>::EnFichero(filas, columnas);
        if (tabla.GetFilas() != 0) return tabla;
    } catch (const std::bad_alloc&) {  // less memory than it seemed
    }
    return std::nullopt;
}

// Rows of values, in order from the top, each strip or tile decoded once.
class Valores {
  public:
    Valores(TIFF* tiff, const LibTiff::Pagina& pagina) : m_pTiff(tiff), m_Pagina(pagina) {}

    bool Reserva() {
        const std::uint64_t fila = std::uint64_t{m_Pagina.ancho} * m_Pagina.BytesValor();
        if (!m_Pagina.HayTeselas())
            return HayMemoria(fila) && TIFFScanlineSize64(m_pTiff) >= fila && Amplia(TIFFScanlineSize64(m_pTiff));
        const std::uint64_t tesela = TIFFTileSize64(m_pTiff), n = (m_Pagina.ancho - 1) / m_Pagina.anchoTesela + 1;
        const std::uint64_t minimo = std::uint64_t{m_Pagina.anchoTesela} * m_Pagina.altoTesela * m_Pagina.BytesValor();
        return tesela >= minimo && tesela <= std::numeric_limits<std::uint64_t>::max() / n && Amplia(tesela * n);
    }

    /// Fills a row; false for a damaged one.
    bool Lee(std::uint32_t fila, std::span<float> valores) {
        if (!m_Pagina.HayTeselas()) {
            if (TIFFReadScanline(m_pTiff, m_Bytes.data(), fila, 0) != 1) return false;
            AFloat(m_Pagina, m_Bytes.data(), valores);
            return true;
        }
        const std::uint32_t enTesela = fila % m_Pagina.altoTesela;
        if (enTesela == 0 && !LeeTeselas(fila)) return false;
        const auto tesela = static_cast<std::size_t>(TIFFTileSize64(m_pTiff));
        const std::size_t ancho = m_Pagina.anchoTesela, salto = enTesela * ancho * m_Pagina.BytesValor();
        for (std::size_t c = 0, i = 0; c < valores.size(); c += ancho, ++i)
            AFloat(m_Pagina, m_Bytes.data() + i * tesela + salto,
                   valores.subspan(c, std::min(ancho, valores.size() - c)));
        return true;
    }

  private:
    bool Amplia(std::uint64_t bytes) {
        if (!HayMemoria(bytes)) return false;
        m_Bytes.resize(bytes);
        return true;
    }

    bool LeeTeselas(std::uint32_t fila) {
        const auto tesela = static_cast<std::size_t>(TIFFTileSize64(m_pTiff));
        BYTE* destino = m_Bytes.data();
        for (std::uint64_t c = 0; c < m_Pagina.ancho; c += m_Pagina.anchoTesela, destino += tesela)
            if (TIFFReadTile(m_pTiff, destino, static_cast<std::uint32_t>(c), fila, 0, 0) < 0) return false;
        return true;
    }

    TIFF* m_pTiff;
    const LibTiff::Pagina& m_Pagina;
    std::vector<BYTE> m_Bytes;
};

}  // namespace

// ---- File --------------------------------------------------------------------------------------------------------

LibTiff::~LibTiff() {
    LibTiff::CierraFichero();
}

bool LibTiff::SetFichero(CFile* fichero) {
    CierraFichero();
    m_pFuente = nullptr;
    if (fichero == nullptr) return false;
    if (Abre(fichero->GetFilePath(), false)) return CRasterDIB::SetFichero(fichero);
    Comunica(m_sFallo.c_str());
    return false;
}

bool LibTiff::Abre(const CString& ruta, bool mapeado) {
    CierraFichero();
    DaAConocerCampos();
    const std::unique_ptr<TIFFOpenOptions, decltype(&TIFFOpenOptionsFree)> opciones(TIFFOpenOptionsAlloc(),
                                                                                    TIFFOpenOptionsFree);
    if (opciones == nullptr) return false;
    TIFFOpenOptionsSetErrorHandlerExtR(opciones.get(), AnotaFallo, &m_sFallo);
    TIFFOpenOptionsSetWarningHandlerExtR(opciones.get(), CallaAviso, nullptr);
    TIFFOpenOptionsSetMaxSingleMemAlloc(opciones.get(), kMayorBloque);
    m_sFallo.clear();
    m_bMapeado = mapeado;
    m_pTiff = TIFFOpenExt(ruta.Utf8().c_str(), mapeado ? "r" : "rm", opciones.get());
    return m_pTiff != nullptr;
}

bool LibTiff::CierraFichero() {
    if (m_pTiff != nullptr) TIFFClose(m_pTiff);
    m_pTiff = nullptr;
    return true;
}

bool LibTiff::LeeDirectorio(Pagina& p) {
    if (TIFFSetDirectory(m_pTiff, 0) != 1) return false;
    constexpr std::uint32_t kMaximo = std::numeric_limits<int>::max();
    if (TIFFGetField(m_pTiff, TIFFTAG_IMAGEWIDTH, &p.ancho) != 1 || p.ancho == 0 || p.ancho > kMaximo) return false;
    if (TIFFGetField(m_pTiff, TIFFTAG_IMAGELENGTH, &p.alto) != 1 || p.alto == 0 || p.alto > kMaximo) return false;
    TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_SAMPLESPERPIXEL, &p.muestras);
    TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_BITSPERSAMPLE, &p.bits);
    TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_RESOLUTIONUNIT, &p.unidad);
    TIFFGetFieldDefaulted(m_pTiff, TIFFTAG_SAMPLEFORMAT, &p.formato);
    TIFFGetField(m_pTiff, TIFFTAG_XRESOLUTION, &p.resolucionX);
    TIFFGetField(m_pTiff, TIFFTAG_YRESOLUTION, &p.resolucionY);
    if (TIFFIsTiled(m_pTiff) != 0) {
        TIFFGetField(m_pTiff, TIFFTAG_TILEWIDTH, &p.anchoTesela);
        TIFFGetField(m_pTiff, TIFFTAG_TILELENGTH, &p.altoTesela);
        if (p.anchoTesela == 0 || p.altoTesela == 0) return false;
    }
    const EtiquetasGeoTiff etiquetas = Etiquetas(m_pTiff);
    m_bGeorreferenciada = etiquetas.HayAlguna() ? 1 : 0;
    if (m_bGeorreferenciada != 0) {
        m_Georreferencia = {};  // nothing stays of a file read before
        etiquetas.Llena(m_Georreferencia);
    }
    return true;
}

// ---- Reading -----------------------------------------------------------------------------------------------------

int LibTiff::Leer(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, int*, const float*, const float*,
                  int col0, int col1, int fila0, int fila1) {
    if (tabla != nullptr) *tabla = nullptr;
    if (m_pTiff == nullptr) return 2;
    const auto lee = [&] {
        if (tabla != nullptr) delete std::exchange(*tabla, nullptr);
        return LeePagina(soloCabecera, tabla, limiteCeldas, {col0, col1, fila0, fila1});
    };
    int resultado = lee();
    if (resultado != 2 && !m_sFallo.empty() && !m_bMapeado)
        resultado = Abre(m_pFuente->GetFilePath(), true) ? lee() : kNoSoportado;
    if (!m_sFallo.empty()) Comunica(m_sFallo.c_str());
    return resultado;
}

int LibTiff::LeePagina(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, Ventana ventana) {
    Limpiar();
    m_sFallo.clear();
    Pagina pagina;
    int resultado = kNoSoportado;
    if (LeeDirectorio(pagina) && ventana.Limita(pagina)) {
        std::optional<Etapa> etapa;
        if (!soloCabecera) etapa.emplace(m_nNivelMensajes, kTextoLeer);
        if (soloCabecera)
            resultado = CreaSoloCabecera(pagina, int(pagina.ancho), int(pagina.alto)) ? 1 : kNoSoportado;
        else if (!pagina.SonValores())
            resultado = LeeImagen(pagina, ventana, *etapa);
        else if (tabla != nullptr)
            resultado = LeeTabla(pagina, ventana, *etapa, *tabla, limiteCeldas);
        else
            Comunica(L"Los valores no son una imagen");
    }
    if (resultado != 1) Limpiar();
    return resultado;
}

bool LibTiff::CreaSoloCabecera(const Pagina& pagina, int ancho, int alto) {
    return Crear(ancho, alto, pagina.bits * std::min<int>(pagina.muestras, 3), 1.0F, false, nullptr, nullptr, true);
}

int LibTiff::LeeTabla(const Pagina& pagina, const Ventana& v, const Etapa& etapa, CMatriz<float>*& tabla,
                      unsigned limiteCeldas) {
    Valores valores(m_pTiff, pagina);
    std::optional<CMatriz<float>> nueva = HazTabla(unsigned(v.Filas()), unsigned(v.Columnas()), limiteCeldas);
    if (!nueva || !valores.Reserva()) {
        Comunica(L"No hay sitio para la tabla");
        return kNoSoportado;
    }
    const bool volteada = pagina.bits == 16;
    std::vector<float> fila(pagina.ancho);
    // From the top even for a window: compressed rows come in order.
    for (int f = 0; f < v.fila1; ++f) {
        if (!valores.Lee(std::uint32_t(f), fila)) return kNoSoportado;
        if (f < v.fila0) continue;
        const int r = f - v.fila0;
        const auto destino = unsigned(volteada ? v.Filas() - 1 - r : r);
        if (float* const directa = nueva->Fila(destino))
            std::copy_n(fila.begin() + v.col0, v.Columnas(), directa);
        else
            for (int c = 0; c < v.Columnas(); ++c)
                nueva->Set(destino, unsigned(c), fila[std::size_t(v.col0 + c)]);
        if (!etapa.Paso(r + 1, v.Filas())) return 2;
    }
    if (!CreaSoloCabecera(pagina, v.Columnas(), v.Filas())) return kNoSoportado;
    tabla = new CMatriz<float>(std::move(*nueva));
    return 1;
}

}  // namespace Vertiz
