#include "support/Modelos.h"

namespace modelos {

Vertiz::CDEM Rejilla(int filas, int columnas, const std::function<float(int, int)>& altura, const Sitio& sitio) {
    Vertiz::CDEM dem(unsigned(filas), unsigned(columnas), sitio.celdaX, sitio.celdaY, sitio.oeste, sitio.sur,
                     sitio.semilla);
    for (int r = 0; r < filas; ++r)
        for (int c = 0; c < columnas; ++c)
            dem.Matriz().Set(unsigned(filas - 1 - r), unsigned(c), altura(r, c));
    dem.ActualizaCantidades();
    return dem;
}

Vertiz::CDEM Rejilla(const Filas& filas, const Sitio& sitio) {
    return Rejilla(
        int(filas.size()), int(filas.at(0).size()), [&](int r, int c) { return filas.at(r).at(c); }, sitio);
}

Vertiz::CDEM ListaCeldas(const Filas& filas, const Sitio& sitio) {
    Vertiz::CDEM dem(1, 1, sitio.celdaX, sitio.celdaY, sitio.oeste, sitio.sur, sitio.semilla);
    dem.SetListaCeldas(true);
    const auto alto = unsigned(filas.size()), ancho = unsigned(filas.at(0).size());
    for (unsigned c = 0; c < ancho; ++c)
        dem.ListaX().push_back(sitio.oeste + c * sitio.celdaX);
    for (unsigned r = 0; r < alto; ++r)
        dem.ListaY().push_back(sitio.sur + (alto - 1 - r) * sitio.celdaY);
    for (unsigned r = 0; r < alto; ++r)
        for (unsigned c = 0; c < ancho; ++c) {
            Vertiz::CDEM::CPunto punto;
            punto.m_fCota = filas[r][c];
            punto.m_nX = c;
            punto.m_nY = r;
            dem.Puntos().push_back(punto);
        }
    for (unsigned r = 0; r + 1 < alto; ++r)
        for (unsigned c = 0; c + 1 < ancho; ++c) {
            const unsigned noroeste = r * ancho + c, suroeste = noroeste + ancho;
            dem.Celdas().push_back({{suroeste, noroeste, noroeste + 1, suroeste + 1}});
        }
    dem.ActualizaCantidades();
    return dem;
}

}  // namespace modelos
