#pragma once
// What a triangulated terrain is told beside its points and triangles.

#include "model/CDigiTab.h"
#include "platform/CString.h"

#include <utility>
#include <vector>

namespace Vertiz {

/// Codes and tables of a triangulated terrain. A plain value.
struct CDataTIN {
    CDataTIN() = default;
    explicit CDataTIN(CDigiTab tabla) : m_Tabla(std::move(tabla)) {}

    CDigiTab m_Tabla;                        ///< the lines that it was made from, as the application keeps them
    std::vector<CString> m_TiposTriangulos;  ///< codes of types: a triangle of type n has code n - 1
    CString m_CodTejado = L"TEJADO";         ///< style of an object's roofs
    CString m_CodPared = L"PARED";           ///< and of its walls
    CString m_CodRupturas = L"RUPTURA";      ///< of breaklines
    CString m_CodLimites = L"LIMITE";        ///< of outlines
};

/// How contours are made: heights in local real coordinates. Heights are rounded to stored units, one by one.
struct CDataCurvas {
    double m_dEquidistancia = 1.0;         ///< between contours, terrain units
    double m_dCotaBase = 0.0;              ///< a contour runs at this height
    int m_nMaestras = 5;                   ///< counted from that one, every how many is a major one; 0 none
    CString m_Codigo = L"CURVA";           ///< of contours
    CString m_CodigoMaestra = L"MAESTRA";  ///< of major ones
};

}  // namespace Vertiz
