// Reading a page of a TIFF: its header, and then its pixels or its values, row by row from the top.

#include "raster/CTiff.h"
#include "raster/GeoTiff.h"
#include "raster/RampaGrises.h"
#include "raster/Resultados.h"
#include "raster/TextosProgreso.h"
#include "raster/TiffMuestras.h"
#include "model/Etapa.h"
#include "platform/Errores.h"
#include "platform/Memoria.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <memory>
#include <new>
#include <optional>
#include <utility>
#include <vector>

namespace Vertiz {

/// What the caller of Leer asks for beside the picture.
struct CTiff::Peticion {
    CMatriz<float>** tabla;
    unsigned limiteCeldas;
    int* registro;
    const float *minimo, *maximo;
    int col0, col1, fila0, fila1;

    /// The window, clipped to the page; an axis without one is whole.
    VentanaTiff Ventana(const PaginaTiff& pagina) const {
        VentanaTiff v{0, pagina.ancho, 0, pagina.alto};
        if (col0 != 0 || col1 != 0) v.col0 = std::max(col0, 0), v.col1 = std::min(col1, pagina.ancho);
        if (fila0 != 0 || fila1 != 0) v.fila0 = std::max(fila0, 0), v.fila1 = std::min(fila1, pagina.alto);
        return v;
    }
};

namespace {

// The samples for red, green and blue that a caller's record names. On its way back each of those below 3 tells the
// byte of the stored pixel instead.
std::array<unsigned, 3> Canales(int* registro, const PaginaTiff& pagina) {
    std::array<unsigned, 3> canales{0, 1, 2};
    if (registro == nullptr) return canales;
    for (unsigned i = 0; i < 3; ++i) {
        if (registro[i] >= 0 && unsigned(registro[i]) < pagina.muestras) canales[i] = unsigned(registro[i]);
        if (registro[i] < 3) registro[i] = static_cast<int>(2U - static_cast<unsigned>(registro[i]));
    }
    return canales;
}

// The first entry of a palette with the lowest mean.
int EntradaMasOscura(const std::vector<BYTE>& paleta) {
    int oscura = 0, menor = 3 * 255 + 1;
    for (std::size_t i = 0; i + 3 < paleta.size(); i += 4)
        if (const int suma = paleta[i] + paleta[i + 1] + paleta[i + 2]; suma < menor)
            menor = suma, oscura = static_cast<int>(i / 4);
    return oscura;
}

// What a walk over the values finds.
struct Medida {
    double minimo = 2147483648.0, maximo = -2147483648.0, suma = 0.0;
    std::uint64_t cuenta = 0;

    void Suma(const std::vector<double>& valores) {
        for (const double v : valores) {
            if (std::isnan(v)) continue;
            minimo = std::min(minimo, v);
            maximo = std::max(maximo, v);
            suma += v;
            ++cuenta;
        }
    }
    EscalaTiff Escala() const {
        const double factor = maximo != minimo ? 255.0 / (maximo - minimo) : 0.0;
        return {minimo, std::isfinite(factor) ? factor : 0.0};
    }
};

// What the user is told of values that become greys.
std::vector<CString> Informe(const Medida& medida) {
    CString maximo, media, minimo;
    maximo.Format(L"Máximo : %.2f", medida.maximo);
    minimo.Format(L"Mínimo : %.2f", medida.minimo);
    if (medida.cuenta == 0) return {L"Convirtiendo a valores de gris", maximo, minimo};
    media.Format(L"Media : %.2lf", medida.suma / double(medida.cuenta));
    return {L"Convirtiendo a valores de gris", maximo, media, minimo};
}

// What a row needs on its way into the picture: the bytes of its pieces, as many read ahead, and its values.
std::uint64_t BytesDePaso(const PaginaTiff& p) {
    const std::uint64_t planos = p.planos ? std::min(p.muestras, 4U) : 1;
    return 2 * p.BytesFila() * p.TrozosAncho() * planos + 4 * sizeof(double) * std::uint64_t(p.ancho);
}

// One walk over the rows of the window, with its stage of progress. `fila` gets the number of each row and where the
// rows come from, and has to take one of them.
template <class F>
int Recorre(CFile& fichero, const PaginaTiff& pagina, const VentanaTiff& ventana, const std::vector<unsigned>& planos,
            int nivel, F&& fila) {
    std::optional<Etapa> etapa;
    if (nivel > 1) etapa.emplace(nivel, kTextoLeer);
    FilasTiff filas(fichero, pagina, ventana, planos);
    for (int i = 0; i < ventana.Alto(); ++i) {
        if (!fila(i, filas)) return kNoSoportado;
        if (etapa && !etapa->Paso(i + 1, ventana.Alto())) return 2;
    }
    return 1;
}

}  // namespace

int CTiff::Leer(bool soloCabecera) {
    return Leer(soloCabecera, nullptr, 0, nullptr, nullptr, nullptr, 0, 0, 0, 0);
}

int CTiff::Leer(bool soloCabecera, CMatriz<float>** tabla, unsigned limiteCeldas, int* registro, const float* minimo,
                const float* maximo, int col0, int col1, int fila0, int fila1) {
    if (tabla != nullptr) *tabla = nullptr;
    if (m_pFuente == nullptr || m_nOffsetDirectorio == 0) return 2;
    int resultado = kNoSoportado;
    try {
        resultado = LeePagina(soloCabecera, {tabla, limiteCeldas, registro, minimo, maximo, col0, col1, fila0, fila1});
    } catch (const std::bad_alloc&) {
        Comunica(TextoError(ERROR_NOT_ENOUGH_MEMORY));
    }
    if (resultado != 1) Limpiar();
    return resultado;
}

int CTiff::LeePagina(bool soloCabecera, const Peticion& peticion) {
    const std::uint64_t offset = std::exchange(m_nOffsetDirectorio, 0);
    if (!m_DirectoriosLeidos.insert(offset).second) {
        Comunica(L"El archivo vuelve a una página ya leída");
        return kNoSoportado;
    }
    PaginaTiff pagina;
    CString motivo = LeePaginaTiff(*m_pFuente, {m_nOrdenBytes, m_nVersion, 0}, offset, pagina);
    m_nOffsetDirectorio = pagina.siguiente;
    const VentanaTiff ventana = peticion.Ventana(pagina);
    if (motivo.IsEmpty() && (ventana.Ancho() < 1 || ventana.Alto() < 1)) motivo = L"La ventana está fuera de la imagen";
    if (motivo.IsEmpty() && !TomaCabecera(pagina, ventana.Ancho(), ventana.Alto()))
        motivo = L"La imagen es demasiado ancha";
    if (!motivo.IsEmpty()) {
        Comunica(motivo);
        return kNoSoportado;
    }
    if (soloCabecera) return 1;

    constexpr std::uint64_t kPocos = 1U << 20;  // as much is always read ahead
    if (const std::uint64_t bytes = BytesDePaso(pagina); bytes > kPocos && !HayMemoria(bytes)) throw std::bad_alloc();
    const int resultado = peticion.tabla != nullptr && pagina.EsNumerica() ? LeeTabla(pagina, ventana, peticion)
                                                                           : LeeImagen(pagina, ventana, peticion);
    if (resultado == kNoSoportado) Comunica(L"No se puede leer la imagen");
    return resultado;
}

// ---- Header ------------------------------------------------------------------------------------------------------

bool CTiff::TomaCabecera(const PaginaTiff& pagina, int ancho, int alto) {
    const float porPulgada = ResolucionPulgada(pagina.unidadResolucion, pagina.resolucionX);
    // Of a bit, two greys; of more, the ramp of a byte.
    const auto paleta = pagina.fotometrica == fotometrica::kPaleta
                            ? PaletaTiff(pagina)
                            : RampaGrises(pagina.bits == 1 ? 2 : 256, pagina.fotometrica == fotometrica::kCeroBlanco);
    if (!CreaCabecera(ancho, -alto, pagina.EsDeUnByte() ? 8 : 24, porPulgada, paleta.data())) return false;

    m_nUnidadResolucion = static_cast<std::uint16_t>(pagina.unidadResolucion);
    m_fResolucionX = pagina.resolucionX;
    m_fResolucionY = pagina.resolucionY;
    m_fResolucionImagen = porPulgada;
    m_nMuestrasPixel = static_cast<std::uint16_t>(pagina.muestras);
    m_BitsMuestra.assign(pagina.muestras, static_cast<std::uint16_t>(pagina.bits));
    m_nBytesMuestra = static_cast<std::uint16_t>(std::min(pagina.BytesMuestra(), 0xFFFFU));
    m_nFotometrica = static_cast<std::uint16_t>(pagina.fotometrica);
    if (pagina.fotometrica == fotometrica::kPaleta) m_nOscuro = EntradaMasOscura(m_Paleta);
    m_bGeorreferenciada = pagina.georreferencia.has_value();
    if (pagina.georreferencia) m_Georreferencia = *pagina.georreferencia;
    return true;
}

// From now on the fields tell of the stored pixels: greys have black as 0, and everything is of 8 bits.
void CTiff::TomaAspecto(const PaginaTiff& pagina) {
    const bool unByte = pagina.EsDeUnByte();
    m_nMuestrasPixel = unByte ? 1 : 3;
    m_BitsMuestra.assign(m_nMuestrasPixel, 8);
    m_nBytesMuestra = m_nMuestrasPixel;
    if (!unByte) {
        m_nFotometrica = fotometrica::kRGB;
    } else if (pagina.fotometrica != fotometrica::kPaleta) {
        m_nFotometrica = fotometrica::kCeroNegro;
        std::ranges::copy(RampaGrises(256), m_Paleta.begin());
    }
}

// ---- Values ------------------------------------------------------------------------------------------------------

int CTiff::LeeTabla(const PaginaTiff& pagina, const VentanaTiff& ventana, const Peticion& peticion) {
    const auto filas = unsigned(ventana.Alto()), columnas = unsigned(ventana.Ancho());
    const std::uint64_t celdas = std::uint64_t{filas} * columnas;
    const bool enFichero =
        (peticion.limiteCeldas != 0 && celdas > peticion.limiteCeldas) || !HayMemoria(celdas * sizeof(float));
    auto tabla = enFichero ? std::make_unique<CMatriz<float>>(CMatriz<float>::EnFichero(filas, columnas))
                           : std::make_unique<CMatriz<float>>(filas, columnas, 0);
    if (tabla->GetFilas() == 0) return kNoSoportado;

    const MuestrasTiff muestras(pagina, {0, 0, 0});
    std::vector<double> valores(columnas);
    std::vector<float> fila(columnas);
    const int resultado = Recorre(*m_pFuente, pagina, ventana, {0}, m_nNivelMensajes, [&](int i, FilasTiff& origen) {
        if (!origen.Siguiente([&](const TramoTiff& t) { muestras.Valores(t, 0, &valores[t.columna]); })) return false;
        std::ranges::transform(valores, fila.begin(), [](double v) { return static_cast<float>(v); });
        tabla->SetFila(filas - 1 - unsigned(i), fila.data());
        return true;
    });
    if (resultado == 1) *peticion.tabla = tabla.release();
    return resultado;
}

// ---- Pixels ------------------------------------------------------------------------------------------------------

int CTiff::LeeImagen(const PaginaTiff& pagina, const VentanaTiff& ventana, const Peticion& peticion) {
    MuestrasTiff muestras(pagina, Canales(peticion.registro, pagina));
    if (!ReservaPixeles()) return kNoSoportado;
    if (pagina.bits > 8 || pagina.EsNumerica())
        if (const int r = MideEscala(pagina, ventana, peticion, muestras); r != 1) return r;

    const std::size_t bytesPixel = pagina.EsDeUnByte() ? 1 : 3;
    std::vector<BYTE> copia;
    const auto lee = [&](int i, FilasTiff& filas) {
        const int fila = ventana.Alto() - 1 - i;
        BYTE* const pixeles = FilaNueva(fila, copia).data();
        const auto pon = [&](const TramoTiff& t) { muestras.Pixeles(t, pixeles + t.columna * bytesPixel); };
        return filas.Siguiente(pon, pixeles) && GuardaFila(fila, copia);
    };
    const int resultado = Recorre(*m_pFuente, pagina, ventana, muestras.Planos(), m_nNivelMensajes, lee);
    if (resultado == 1) TomaAspecto(pagina);
    return resultado;
}

int CTiff::MideEscala(const PaginaTiff& pagina, const VentanaTiff& ventana, const Peticion& peticion,
                      MuestrasTiff& muestras) {
    const bool numerica = pagina.EsNumerica();
    // Written as a power of two, the largest value may lose a little: so it is told to.
    const double mayor = pagina.maximoMuestra;
    const double limite = mayor >= 1.0 ? std::trunc(std::pow(2.0, std::log(mayor) / std::log(2.0))) : 256.0;
    if (!numerica && mayor >= 1.0) {
        ComunicaLimite(limite);
        muestras.SetEscala({0.0, 255.0 / limite});
        return 1;
    }

    Medida medida;
    if (!numerica || peticion.minimo == nullptr || peticion.maximo == nullptr) {
        std::vector<double> valores;
        const int resultado =
            Recorre(*m_pFuente, pagina, ventana, muestras.Planos(), m_nNivelMensajes, [&](int, FilasTiff& origen) {
                return origen.Siguiente([&](const TramoTiff& t) {
                    valores.resize(t.n);
                    for (std::size_t k = 0; k < muestras.Colores(); ++k) {
                        muestras.Valores(t, k, valores.data());
                        medida.Suma(valores);
                    }
                });
            });
        if (resultado != 1) return resultado;
    }
    if (numerica && peticion.minimo != nullptr) medida.minimo = double{*peticion.minimo};
    if (numerica && peticion.maximo != nullptr) medida.maximo = double{*peticion.maximo};
    const EscalaTiff escala = medida.Escala();
    m_dEscalaGris = escala.factor;
    muestras.SetEscala(escala);

    if (!numerica) {
        if (medida.cuenta > 0) ComunicaLimite(limite);
        return 1;
    }
    for (const CString& linea : Informe(medida))
        Comunica(linea);
    return 1;
}

void CTiff::ComunicaLimite(double limite) const {
    CString texto;
    texto.Format(L"Escalando valores a %d", static_cast<std::int64_t>(limite));
    Comunica(texto);
}

}  // namespace Vertiz
