#pragma once
// What a scene keeps to itself: its name and transformation, and what the user has picked, sketched, marked and
// measured in it. It is a class of its own so that copies leave all of it alone without naming any of it.

#include "frame/CGLEstado.h"
#include "model/CCoor.h"
#include "model/CDataTransformacion.h"
#include "model/CLinea.h"
#include "model/CPosicionEntidad.h"
#include "model/CTexto.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <cstddef>
#include <memory>
#include <vector>

/// What no copy of a scene takes over. A new copy starts without any of it; a scene that is assigned to keeps its own.
class LUMBRA_API CGLPropio : public CGLEstado {
  public:
    // ---- What this scene is ----------------------------------------------------------------------------------------
    /// The name that references and links are found by; it is copied.
    CString GetNombre() const { return m_Nombre; }
    void SetNombre(const CString& nombre) { m_Nombre = nombre; }
    Vertiz::CDataTransformacion GetDataTransformacion() const { return m_DataTransformacion; }
    /// The transformation is that of a conic photograph, of a spherical image.
    bool EsImagenConica() const { return m_DataTransformacion.GetTipo() == Vertiz::CDataTransformacion::CONICA; }
    bool EsImagenEsferica() const { return m_DataTransformacion.GetTipo() == Vertiz::CDataTransformacion::ESFERICA; }
    /// The last ZoomExtension was given something to show.
    bool HayMaximas() const { return !m_bMaximasVacias; }

    // ---- Sketch line and selection ---------------------------------------------------------------------------------
    bool EsCerradaLineaNueva() const { return m_LineaNueva.EsCerrada(); }
    unsigned NPuntosLineaNueva() const { return m_LineaNueva.NPuntos(); }
    void SumaSeleccion(const Vertiz::CPosicionEntidad& posicion) { m_Seleccion.push_back(posicion); }
    void SumaSeleccion(const std::vector<Vertiz::CPosicionEntidad>& posiciones) {
        m_Seleccion.insert(m_Seleccion.end(), posiciones.begin(), posiciones.end());
    }
    void SetSeleccion2Con1() { m_Seleccion2 = m_Seleccion; }
    void SetSeleccion1Con2() { m_Seleccion = m_Seleccion2; }
    std::vector<Vertiz::CPosicionEntidad> GetSeleccion() const { return m_Seleccion; }
    std::vector<Vertiz::CPosicionEntidad> GetSeleccion2() const { return m_Seleccion2; }
    std::vector<Vertiz::CCoor3D<double>> GetPuntosSeleccion() const { return m_PuntosSeleccion; }

  protected:
    static constexpr int kLadoProfundidad = 1024;  ///< side of the depth block, in pixels

    CGLPropio() = default;
    ~CGLPropio() = default;
    CGLPropio(const CGLPropio& otra) : CGLEstado(otra) {}
    CGLPropio& operator=(const CGLPropio& otra) {
        CGLEstado::operator=(otra);
        if (this != &otra) m_MarcasGL.Clear();  // the places of this scene's marks, whose lists are gone
        return *this;
    }

    /// This scene lies on a photograph: points go through the image's transformation and back.
    bool SobreFoto() const {
        return (m_bEsReferencia != 0 || m_nTipoImagenFondo == 1) && m_nTipoImagenFondo != 2 &&
               m_DataTransformacion.ExisteTransformacion();
    }

    CString m_Nombre;
    bool m_bMaximasVacias = true;
    Vertiz::CDataTransformacion m_DataTransformacion;
    std::unique_ptr<HGLRC[]> m_phRCShared;  ///< one for each worker
    /// Depth block of a click, so that picking allocates nothing.
    std::unique_ptr<float[]> m_pBufferProfundidad =
        std::make_unique<float[]>(std::size_t{kLadoProfundidad} * kLadoProfundidad);

    // ---- Selection, sketch, marks ----------------------------------------------------------------------------------
    std::vector<Vertiz::CPosicionEntidad> m_Seleccion;
    std::vector<Vertiz::CPosicionEntidad> m_Seleccion2;
    std::vector<Vertiz::CCoor3D<double>> m_PuntosSeleccion;         ///< clicked points; Tipo: see DamePuntoSeleccion
    Vertiz::CLinea<double> m_LineaNueva{CString(L"nuevo")};         ///< sketch in GL space
    Vertiz::CLinea<double> m_LineaNuevaTerreno{CString(L"nuevo")};  ///< in terrain space, where an image takes part
    std::vector<Vertiz::CTexto<double>> m_Marcas;
    Vertiz::CLinea<double> m_MarcasGL{CString(L"nuevo")};  ///< Tipo: a mark's orientation, hundredths of a degree
    std::vector<Vertiz::CLinea<double>> m_Medidas;
};
