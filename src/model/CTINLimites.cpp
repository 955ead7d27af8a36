// The lines that a triangulated terrain is bounded by and those that it follows.

#include "model/CTIN.h"

namespace Vertiz {

void CTIN::DameTriangulos(CDibujo<int>& dibujo) const {
    const CLinea<int> vacia(L"TRIANGULO");
    for (unsigned i = 0; i < CantidadTriangulos(); ++i) {
        if (!EsVisible(i)) continue;
        CLinea<int> linea(vacia);
        linea.Reserva(4);
        for (const int k : {0, 1, 2, 0})
            linea << Vertice(i, k);
        dibujo.Inserta(linea);
    }
}

}  // namespace Vertiz
