#pragma once
// The settings part of a scene: the record that says how it looks, and one-line accessors to each of its fields.

#include "frame/CDataGL.h"
#include "platform/CString.h"
#include "platform/Exporta.h"

#include <vector>

/// What a scene shows and how: see CDataGL for meaning and range of each setting. Colours are RGB integers with red in
/// the low byte. A setting that shapes the lists takes effect at the next Iniciar.
class LUMBRA_API CGLAjustes {
  public:
    // Those that hand back the former value.
    unsigned SetQuad(unsigned v) { return Cambia(m_Data.m_nQuad, v); }
    int SetBase(int v) { return Cambia(m_Data.m_bBase, v); }
    int SetLimites(int v) { return Cambia(m_Data.m_bLimites, v); }
    int SetPuntosCamara(int v) { return Cambia(m_Data.m_bPuntosCamara, v); }
    int SetRelleno(int v) { return Cambia(m_Data.m_bRelleno, v); }
    /// Also decides whether the scene's own extents count in GetMaximas.
    int SetLimitesProyecto(int v) {
        m_Data.m_bMaximasObjeto = v;
        return Cambia(m_Data.m_bLimitesProyecto, v);
    }
    int SetEdificios(int v) { return Cambia(m_Data.m_bEdificios, v); }
    int SetArboles(int v) { return Cambia(m_Data.m_bArboles, v); }
    int SetRupturas(int v) { return Cambia(m_Data.m_bRupturas, v); }
    int SetRotacion(int v) { return Cambia(m_Data.m_bRotacion, v); }
    int SetOrtogonal(int v) { return Cambia(m_Data.m_bOrto, v); }
    int SetLuz(int v) { return Cambia(m_Data.m_bLuz, v); }
    unsigned SetEjes(unsigned v) { return Cambia(m_Data.m_nEjes, v); }
    int SetReferencia(int v) { return Cambia(m_Data.m_bReferencia, v); }
    int SetCurvado(int v) { return Cambia(m_Data.m_bCurvado, v); }
    unsigned SetTipoColorMDT(unsigned v) { return Cambia(m_Data.m_nModoRelleno, v); }
    // Those without a result.
    void SetColorFondo(int rgb) { m_Data.m_nColorFondo = rgb; }
    void SetColorDEM(int rgb) { m_Data.m_nColorDEM = rgb; }
    void SetColorLIDAR(int rgb) { m_Data.m_nColorLIDAR = rgb; }
    void SetImagenFondo(int v) { m_Data.m_bImagenFondo = v; }
    void SetNombreImagenFondo(const CString& ruta) { m_Data.m_SzImagenFondo = ruta; }
    void SetGrosorPuntos(int v) { m_Data.m_nGrosorPuntos = v; }
    void SetTransparenciaSuperficie(short v) { m_Data.m_nAlfaSuperficie = v; }
    void SetVerMascaraFoto(int v) { m_Data.m_bMascara = v; }
    void SetVerPlanos(int v) { m_Data.m_bVerPlanos = v; }
    void SetVerPuntosConPlanos(int v) { m_Data.m_bVerPuntosConPlanos = v; }
    void SetVerPuntosSinPlanos(int v) { m_Data.m_bVerPuntosSinPlanos = v; }
    void SetVerObjetosMDT(const std::vector<Vertiz::CInfoClasificacion>& v) { m_Data.m_VerObjetosMDT = v; }
    void SetTipoLIDAR(ColoresNubeLiDAR v) { m_Data.m_nTipoLIDAR = v; }
    void SetData(const CDataGL& data) { m_Data = data; }
    /// Light parameter i, 0 to 10; any other index reads 0 and writes nothing.
    int GetLightParam(short i) const { return i >= 0 && i < 11 ? m_Data.m_nLuzParam[i] : 0; }
    void SetLightParam(int valor, short i) {
        if (i >= 0 && i < 11) m_Data.m_nLuzParam[i] = valor;
    }

    unsigned GetQuad() const { return m_Data.m_nQuad; }
    int GetBase() const { return m_Data.m_bBase; }
    int GetLimites() const { return m_Data.m_bLimites; }
    int GetPuntosCamara() const { return m_Data.m_bPuntosCamara; }
    int GetRelleno() const { return m_Data.m_bRelleno; }
    int GetLimitesProyecto() const { return m_Data.m_bLimitesProyecto; }
    int GetEdificios() const { return m_Data.m_bEdificios; }
    int GetArboles() const { return m_Data.m_bArboles; }
    int GetRupturas() const { return m_Data.m_bRupturas; }
    int GetRotacion() const { return m_Data.m_bRotacion; }
    int GetOrtogonal() const { return m_Data.m_bOrto; }
    int GetLuz() const { return m_Data.m_bLuz; }
    unsigned GetEjes() const { return m_Data.m_nEjes; }
    int GetReferencia() const { return m_Data.m_bReferencia; }
    int GetCurvado() const { return m_Data.m_bCurvado; }
    unsigned GetTipoColorMDT() const { return m_Data.m_nModoRelleno; }
    int GetColorFondo() const { return m_Data.m_nColorFondo; }
    int GetColorDEM() const { return m_Data.m_nColorDEM; }
    int GetColorLIDAR() const { return m_Data.m_nColorLIDAR; }
    int GetImagenFondo() const { return m_Data.m_bImagenFondo; }
    CString GetNombreImagenFondo() const { return m_Data.m_SzImagenFondo; }
    int GetGrosorPuntos() const { return m_Data.m_nGrosorPuntos; }
    short GetTransparenciaSuperficie() const { return m_Data.m_nAlfaSuperficie; }
    int GetVerMascaraFoto() const { return m_Data.m_bMascara; }
    int GetVerPlanos() const { return m_Data.m_bVerPlanos; }
    int GetVerPuntosConPlanos() const { return m_Data.m_bVerPuntosConPlanos; }
    int GetVerPuntosSinPlanos() const { return m_Data.m_bVerPuntosSinPlanos; }
    std::vector<Vertiz::CInfoClasificacion> GetVerObjetosMDT() const { return m_Data.m_VerObjetosMDT; }
    ColoresNubeLiDAR GetTipoLIDAR() const { return m_Data.m_nTipoLIDAR; }
    CDataGL GetData() const { return m_Data; }

  protected:
    CGLAjustes() = default;
    ~CGLAjustes() = default;
    CGLAjustes(const CGLAjustes&) = default;
    CGLAjustes& operator=(const CGLAjustes&) = default;

    CDataGL m_Data;

  private:
    template <class T>
    static T Cambia(T& campo, T nuevo) {
        const T anterior = campo;
        campo = nuevo;
        return anterior;
    }
};
