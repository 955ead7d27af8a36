#pragma once
// What all readers of files share: why a reading ends, its progress, how a file is opened, coordinate systems.
// Internal.

#include "io/Gdal.h"
#include "model/IPorcentaje.h"

#include <cstdint>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

namespace Vertiz::io {

/// Why a file can't be read, in words for its user.
class CFallo : public std::runtime_error {
  public:
    using std::runtime_error::runtime_error;
};

/// What went wrong, with GDAL's reason for it.
CFallo Fallo(const char* que, const CMensajesGdal& mensajes);

/// The user cancelled.
class CCancelado {};

/// Progress over a known number of steps, in parts of the whole operation; throws CCancelado.
class CAvance {
  public:
    explicit CAvance(IPorcentaje* porcentaje) : m_pPorcentaje(porcentaje) {}
    void Paso(int actual, int total) const {
        if (m_pPorcentaje && m_pPorcentaje->Paso(1, actual, total, 0) == 0) throw CCancelado();
    }

  private:
    IPorcentaje* m_pPorcentaje;
};

/// Progress that GDAL reports: give it `Paso` and the object, and look at `m_bCancelado` afterwards.
struct AvanceGdal {
    const CAvance& m_Avance;
    bool m_bCancelado = false;

    // GDAL calls it from C: no exception may cross.
    static int CPL_STDCALL Paso(double parte, const char*, void* este);
};

/// Text of the library out of UTF-8.
inline CString Texto(const std::string& utf8) {
    return CString(utf8.c_str());
}

/// Opens a file to read. Nothing beside it is written.
/// @param clase  GDAL_OF_RASTER or GDAL_OF_VECTOR
/// @throws CFallo
Datos Abre(const std::string& ruta, unsigned clase);

/// The system as text; empty for none.
std::string WKT(OGRSpatialReferenceH sistema);
/// The system of a text that WKT gave; null for an empty one.
/// @throws CFallo
Sistema SistemaDe(const std::string& wkt);
/// A copy with x before y; null for null.
Sistema Copia(OGRSpatialReferenceH sistema);

/// Runs a reading, and makes what it throws the number and the message of its result, which is otherwise empty then.
/// @param que  what there is no memory for
template <class Resultado, class Lee>
Resultado Protege(const CString& fichero, const char* que, Lee lee) {
    const std::string ruta = fichero.Utf8();
    const auto fallido = [&](int numero, const std::string& causa) {
        Resultado resultado;
        resultado.m_nResultado = numero;
        if (numero == 0) resultado.m_Error = Texto(ruta + ": " + causa);
        return resultado;
    };
    try {
        Resultado resultado;
        lee(ruta, resultado);
        resultado.m_nResultado = 1;
        return resultado;
    } catch (const CCancelado&) {
        return fallido(2, "");
    } catch (const CFallo& fallo) {
        return fallido(0, fallo.what());
    } catch (const std::bad_alloc&) {
        return fallido(0, std::string("there isn't enough memory for the ") + que);
    }
}

}  // namespace Vertiz::io
