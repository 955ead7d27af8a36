#pragma once
// The base of all models that live in a file: name, extents, level of messages.

#include "model/CMaximas.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

namespace Vertiz {

class CDataHelmertNTV2;

/// How much a model tells while it works: 0 nothing; above 0 it shows progress and messages through IPorcentaje, and
/// the value is the level that IPorcentaje is given.
using CNivelMensajes = int;

/// Base of the objects that are held in files. Copying one copies its name, too.
class LUMBRA_API CObjetoFichero {
  public:
    virtual ~CObjetoFichero();

    /// The file's path; empty for an object that has not been in a file.
    const CString& GetNombre() const { return m_sNombre; }
    void SetNombre(const CString& nombre) { m_sNombre = nombre; }

    /// Empties the object. Name and level of messages stay.
    virtual void Clear() = 0;
    /// The extents in local real coordinates, without the seed's offset.
    virtual CMaximas<double> GetMaximasDouble() const = 0;
    /// Gives the extents beforehand, say from a file's header, in local real coordinates.
    virtual void SetMaximasDouble(const CMaximas<double>& maximas) = 0;
    /// Takes the object to another reference system.
    /// @return 1 done; 0 when the transformation fails for a point, and the object stays as it was
    virtual int Transformacion(const CDataHelmertNTV2& data) = 0;
    /// Counts anew what the object keeps count of, extents included, after its parts were changed from outside.
    virtual void ActualizaCantidades() = 0;

    /// Sets the level of messages. @return the former one
    CNivelMensajes Mensajes(CNivelMensajes nivel);
    CNivelMensajes GetMensajes() const { return m_nMensajes; }

  protected:
    CObjetoFichero() = default;
    CObjetoFichero(const CObjetoFichero&) = default;
    CObjetoFichero(CObjetoFichero&&) = default;
    CObjetoFichero& operator=(const CObjetoFichero&) = default;
    CObjetoFichero& operator=(CObjetoFichero&&) = default;
    void swap(CObjetoFichero& otro) noexcept;

  private:
    CString m_sNombre;
    CNivelMensajes m_nMensajes = 1;
};

}  // namespace Vertiz
