#pragma once
// An image with its place on the terrain.

#include "raster/IRaster.h"
#include "model/CCoor.h"
#include "model/CDataImagen.h"
#include "model/CDataSemilla.h"
#include "model/CMaximas.h"
#include "model/CObjetoFichero.h"
#include "platform/Exporta.h"

namespace Vertiz {

/// A georeferenced image: a raster, its placement, and, for a panorama, how it hangs in its sphere.
class LUMBRA_API CGeoImagen : public CObjetoFichero {
  public:
    /// @param raster taken over: Borrar is called on it by the destructor, unless SetRaster(nullptr) came before
    CGeoImagen(IRaster* raster, const CDataImagen& imagen, const CDataSemilla& semilla);
    ~CGeoImagen() override;

    CGeoImagen(const CGeoImagen&) = delete;
    CGeoImagen& operator=(const CGeoImagen&) = delete;

    IRaster* GetRaster() const { return m_pRaster; }

    /// Changes the raster without freeing the former one; null lets the former one outlive this object.
    void SetRaster(IRaster* raster) { m_pRaster = raster; }

    const CDataImagen& GetDataImagen() const { return m_Imagen; }
    CDataImagen& GetDataImagen() { return m_Imagen; }
    const CDataSemilla& GetSemilla() const { return m_Semilla; }
    CDataSemilla& GetSemilla() { return m_Semilla; }

    /// Its transformation is that of a spherical image.
    bool EsPanorama() const { return m_Imagen.DataTrans().GetTipo() == CDataTransformacion::ESFERICA; }

    /// What has to be taken off the image's coordinates to get the scene's: the seed's offset for an image in absolute
    /// coordinates, 0 otherwise. CalculaMaximas sets it.
    const CCoor3D<double>& GetOrigen() const { return m_Origen; }
    void SetOrigen(const CCoor3D<double>& origen) { m_Origen = origen; }

    /// Works out the extents and the origin from the placement and the raster's size; the constructor does it once.
    /// The extents are the outer edges of the image at its reference height. A panorama has a cube of side 1 about its
    /// camera, with or without a raster; an image without georeference its pixels, from (0, -height) to (width, 0).
    /// Without a raster, or with pixels that aren't above 0, they are empty.
    void CalculaMaximas();

    /// The extents in the image's own coordinates: local ones after taking GetOrigen() off.
    CMaximas<double> GetMaximasDouble() const override { return m_Maximas; }
    void SetMaximasDouble(const CMaximas<double>& maximas) override { m_Maximas = maximas; }

    /// Frees the raster. The placement stays.
    void Clear() override;

    /// Takes the corner, and the camera of a photograph or a panorama, to another reference system. The pixels keep
    /// their size and bearing.
    /// @return 1; 0, with nothing changed, without absolute coordinates to change or when they have no result
    int Transformacion(const CDataHelmertNTV2& data) override;

    /// CalculaMaximas.
    void ActualizaCantidades() override { CalculaMaximas(); }

    bool m_bDirecta = false;      ///< panorama: its angles stand for the view as they are
    bool m_bSituada = false;      ///< panorama: it has UTM coordinates of its own
    double m_Correcciones[3]{};   ///< panorama: angles added to those of the placement, degrees
    double m_Resultados[3]{};     ///< panorama: angles of the last picture, degrees; written by the scene
    double m_dPolarInicio = 0.0;  ///< panorama: range of polar angles that it covers, degrees
    double m_dPolarFin = 180.0;

  private:
    IRaster* m_pRaster;
    CDataImagen m_Imagen;
    CDataSemilla m_Semilla;
    CCoor3D<double> m_Origen;
    CMaximas<double> m_Maximas;
};

}  // namespace Vertiz
