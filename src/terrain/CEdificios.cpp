// How a building gets its roof.

#include "terrain/CEdificios.h"

#include "model/CTriangulacion.h"

void CEdificios::AgregaEdificio(CDataEdificio& edificio) {
    const Vertiz::CDataSemilla& semilla = edificio.m_Superior.Semilla();
    Vertiz::CDibujo<int> contorno(semilla);
    contorno.Reserva(edificio.m_Superior.Cantidad());
    for (unsigned i = 0; i < edificio.m_Superior.Cantidad(); ++i) {
        Vertiz::CLinea<int> linea(*edificio.m_Superior[i]);
        linea.Cierra();
        contorno.Inserta(linea);
    }
    edificio.m_Tejado = Vertiz::CDibujo<int>(semilla);
    Vertiz::CTIN tin(semilla);
    Vertiz::CDataTriangulacion data;
    data.m_bResuelveCruces = false;  // outlines that cross bound nothing that could be told for sure
    if (Vertiz::CTriangulacion(data).Run(contorno, tin, 0, nullptr, 0.1, nullptr) == 1) {
        tin.BorraTriangulosSegunLimite();
        tin.DameTriangulos(edificio.m_Tejado);
    }
    push_back(edificio);
}
