// Reading a drawing from a text file; the format is told in docs/breaklines.md.

#include "model/CDibujo.h"
#include "model/IPorcentaje.h"
#include "platform/CFile.h"
#include "platform/Conversiones.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>

namespace Vertiz {
namespace {

constexpr std::size_t kBloque = 65536;  // bytes read at once, and the longest row

// The rows of a file, one after the other.
class CFilas {
  public:
    explicit CFilas(CFile& fichero) : m_Fichero(fichero) {}

    // @return the next row without its end; nothing at the end of the file or where Fallo() tells something
    std::optional<std::string_view> Siguiente() {
        m_nFila++;
        for (;;) {
            const std::size_t fin = m_sBloque.find('\n', m_nDesde);
            if (fin != std::string::npos) return Corta(fin, fin + 1);
            if (m_bFinal) break;
            Rellena();
            if (m_sFallo.IsEmpty() && m_sBloque.size() <= 2 * kBloque) continue;
            if (m_sFallo.IsEmpty()) m_sFallo = L"the row is too long: this is not a text file of lines";
            return std::nullopt;
        }
        if (m_nDesde >= m_sBloque.size()) return std::nullopt;
        return Corta(m_sBloque.size(), m_sBloque.size());
    }

    int Fila() const { return m_nFila; }
    const CString& Fallo() const { return m_sFallo; }

  private:
    std::string_view Corta(std::size_t fin, std::size_t siguiente) {
        std::string_view fila(m_sBloque.data() + m_nDesde, fin - m_nDesde);
        if (fila.ends_with('\r')) fila.remove_suffix(1);
        if (m_nFila == 1 && fila.starts_with(kFirmaUtf8)) fila.remove_prefix(kFirmaUtf8.size());
        m_nDesde = siguiente;
        return fila;
    }

    void Rellena() {
        m_sBloque.erase(0, m_nDesde);
        m_nDesde = 0;
        const std::size_t antes = m_sBloque.size();
        m_sBloque.resize(antes + kBloque);
        const std::size_t leidos = m_Fichero.Read(m_sBloque.data() + antes, kBloque);
        m_sBloque.resize(antes + leidos);
        m_bFinal = leidos < kBloque;
        if (m_Fichero.GetError() != ERROR_SUCCESS) m_sFallo = L"the file can't be read";
    }

    CFile& m_Fichero;
    std::string m_sBloque;
    std::size_t m_nDesde = 0;
    bool m_bFinal = false;
    int m_nFila = 0;
    CString m_sFallo;
};

struct CFila {
    std::string_view codigo;
    std::array<double, 3> coordenadas;
};

constexpr std::string_view kSeparadores = " \t,;";

std::string_view Campo(std::string_view& fila) {
    fila.remove_prefix(std::min(fila.find_first_not_of(kSeparadores), fila.size()));
    const std::string_view campo = fila.substr(0, fila.find_first_of(kSeparadores));
    fila.remove_prefix(campo.size());
    return campo;
}

bool Numero(std::string_view campo, double& valor) {
    if (campo.starts_with('+')) campo.remove_prefix(1);
    const auto [fin, error] = std::from_chars(campo.data(), campo.data() + campo.size(), valor);
    return error == std::errc() && fin == campo.data() + campo.size() && std::isfinite(valor);
}

// @return what is wrong with the row, or null
const wchar_t* Entiende(std::string_view fila, CFila& resultado) {
    static constexpr std::array<const wchar_t*, 3> kMal = {L"x is not a number", L"y is not a number",
                                                           L"the height is not a number"};
    resultado.codigo = Campo(fila);
    for (std::size_t i = 0; i < 3; i++) {
        const std::string_view campo = Campo(fila);
        if (campo.empty()) return L"a row needs a code, x, y and z";
        if (!Numero(campo, resultado.coordenadas[i])) return kMal[i];
    }
    return Campo(fila).empty() ? nullptr : L"more than a code, x, y and z";
}

// From absolute terrain units to stored ones. @return nothing when an integer can't hold it
template <class T>
std::optional<CCoor3D<T>> AGuardada(const std::array<double, 3>& c, const CDataSemilla& semilla, double precision) {
    const CCoor3D<double> n((c[0] - semilla.GetX()) * precision, (c[1] - semilla.GetY()) * precision,
                            (c[2] - semilla.GetZ()) * precision);
    if constexpr (std::is_integral_v<T>) {
        if (!CabeEnEnteros(n)) return std::nullopt;
    }
    return CCoor3D<T>(n);
}

}  // namespace

template <class T>
int CDibujo<T>::Read(const CString& nombre, IPorcentaje* porcentaje) {
    if (!porcentaje) porcentaje = PorcentajeActual();
    const auto falla = [&](const CString& motivo) {
        if (porcentaje && GetMensajes() > 0) porcentaje->Mensaje(GetMensajes(), nombre + L": " + motivo, 1);
        return 0;
    };
    CFile fichero;
    if (!fichero.Open(nombre, CFile::modeRead | CFile::shareDenyNone)) return falla(L"the file can't be opened");
    const double bytes = std::max(1.0, double(fichero.GetLength()));

    CFilas filas(fichero);
    const auto fallaFila = [&](const wchar_t* motivo) {
        CString texto;
        texto.Format(L"row %d: %s", filas.Fila(), motivo);
        return falla(texto);
    };
    CDibujo leido(m_Semilla);
    std::unique_ptr<CLinea<T>> linea;
    const auto acaba = [&] {
        if (linea) leido.Inserta(std::move(linea));
        linea.reset();
    };
    int paso = 0;
    while (const auto fila = filas.Siguiente()) {
        if (porcentaje && GetMensajes() > 0) {
            const int ahora = int(100.0 * double(fichero.GetPosition()) / bytes);
            if (ahora > paso && porcentaje->Paso(GetMensajes(), paso = ahora, 100, 0) == 0) return 2;
        }
        std::string_view resto = *fila;
        if (Campo(resto).empty()) {
            acaba();
            continue;
        }
        if (fila->starts_with('#')) continue;
        CFila datos;
        if (const wchar_t* mal = Entiende(*fila, datos)) return fallaFila(mal);
        const auto punto = AGuardada<T>(datos.coordenadas, m_Semilla, Precision());
        if (!punto) return fallaFila(L"the point is too far away for the drawing's decimals");
        const CString codigo(DeBytes(datos.codigo));
        if (linea && linea->GetCodigo() != codigo) acaba();
        if (!linea) linea = std::make_unique<CLinea<T>>(codigo);
        *linea << *punto;
    }
    if (!filas.Fallo().IsEmpty()) return fallaFila(filas.Fallo());
    acaba();
    for (auto& e : leido.m_Entidades)
        Inserta(std::move(e));
    SetNombre(nombre);
    return 1;
}

template int CDibujo<int>::Read(const CString&, IPorcentaje*);
template int CDibujo<double>::Read(const CString&, IPorcentaje*);

}  // namespace Vertiz
