// An image with its place on the terrain.
#pragma once

#include "model/CCoor.h"
#include "model/CDataImagen.h"
#include "model/CDataSemilla.h"
#include "model/CMaximas.h"
#include "model/CObjetoFichero.h"
#include "platform/Exporta.h"
#include "raster/IRaster.h"

namespace Vertiz {

/// A georeferenced image: a raster, its placement, and, for a panorama, how it hangs in its sphere.
class LUMBRA_API CGeoImagen : public CObjetoFichero {
  public:
    /// @param pRaster taken over: Borrar is called on it by the destructor, unless SetRaster(nullptr) came before
    CGeoImagen(IRaster* pRaster, const CDataImagen& Imagen, const CDataSemilla& Semilla);
    ~CGeoImagen() override;

    CGeoImagen(const CGeoImagen&) = delete;
    CGeoImagen& operator=(const CGeoImagen&) = delete;

    IRaster* GetRaster() const { return m_pRaster; }

    /// Changes the raster without freeing the former one; null lets the former one outlive this object.
    void SetRaster(IRaster* pRaster) { m_pRaster = pRaster; }

    const CDataImagen& GetDataImagen() const { return m_Imagen; }
    CDataImagen& GetDataImagen() { return m_Imagen; }
    const CDataSemilla& GetSemilla() const { return m_Semilla; }
    CDataSemilla& GetSemilla() { return m_Semilla; }

    /// What has to be taken off the image's coordinates to get the scene's: the seed's offset for an image in absolute
    /// coordinates, 0 otherwise.
    const CCoor3D<double>& GetOrigen() const { return m_Origen; }
    void SetOrigen(const CCoor3D<double>& Origen) { m_Origen = Origen; }

    /// Works out the extent and the origin from the placement and the raster's size: the outer edges of the image, in
    /// its own coordinates, at the reference height; for a panorama a cube of side 1 about the camera; for an image
    /// without georeference its pixels, from (0, -height) to (width, 0). Without a raster the extent is empty, but for
    /// a panorama.
    void CalculaMaximas();

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
};

}  // namespace Vertiz
