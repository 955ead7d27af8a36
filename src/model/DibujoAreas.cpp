// The closed lines of a drawing as areas: what lies in them, which are holes, cutting, convex pieces.

#include "model/CDibujo.h"
#include "model/Convexos.h"
#include "model/DibujoInterno.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <memory>
#include <utility>
#include <vector>

namespace Vertiz {
namespace {

// Whether a closed line lies in another, which it doesn't cross. One point that isn't on the border tells.
template <class T>
bool EstaEn(const CLinea<T>& linea, const CLinea<T>& otra) {
    if (!otra.Dentro(linea.GetMaximas(), 0)) return false;
    for (const CCoor3D<T>& p : linea.Puntos()) {
        const CTipoDentro donde = otra.EstaDentro(p, false);
        if (donde == TD_FUERA || donde == TD_DENTRO) return donde == TD_DENTRO;
    }
    const CTipoDentro donde = otra.EstaDentro(linea);
    return donde == TD_DENTRO || donde == TD_BORDE_DENTRO;
}

}  // namespace

template <class T>
CTipoDentro CDibujo<T>::EstaDentro(const CCoor3D<T>& punto, bool conCota) const {
    bool dentro = false;
    for (unsigned i = 0; i < Cantidad(); i++) {
        if (!EsRecinto(i) || !m_Entidades[i]->Dentro(punto, 0)) continue;
        const CTipoDentro donde = static_cast<const CLinea<T>&>(*m_Entidades[i]).EstaDentro(punto, conCota);
        if (donde != TD_FUERA && donde != TD_DENTRO) return donde;
        dentro ^= donde == TD_DENTRO;
    }
    return dentro ? TD_DENTRO : TD_FUERA;
}

template <class T>
unsigned CDibujo<T>::BorraIslas(CDibujo* islas) {
    struct CRecinto {
        unsigned lugar;
        const CLinea<T>* linea;
        double area;
    };
    std::vector<CRecinto> recintos;
    for (unsigned i = 0; i < Cantidad(); i++) {
        if (!EsRecinto(i)) continue;
        const auto* linea = static_cast<const CLinea<T>*>(m_Entidades[i].get());
        recintos.push_back({i, linea, std::abs(linea->Superficie())});
    }
    // Only a larger line can surround another.
    std::sort(recintos.begin(), recintos.end(), [](const auto& a, const auto& b) { return a.area > b.area; });

    std::vector<bool> sobran(m_Entidades.size());
    for (std::size_t i = 0; i < recintos.size(); i++) {
        bool isla = false;
        for (std::size_t j = 0; j < i && recintos[j].area > recintos[i].area; j++) {
            isla ^= EstaEn(*recintos[i].linea, *recintos[j].linea);
        }
        sobran[recintos[i].lugar] = isla;
    }
    unsigned cantidad = 0;
    for (unsigned i = 0; i < Cantidad(); i++) {
        if (!sobran[i]) continue;
        cantidad++;
        if (islas) islas->Inserta(std::move(m_Entidades[i]));
    }
    Quita(sobran);
    Recuenta();
    return cantidad;
}

template <class T>
int CDibujo<T>::GeneraConvexos() {
    std::vector<std::vector<geometria::CEsquina>> contornos;
    std::vector<bool> sobran(m_Entidades.size());
    for (unsigned i = 0; i < Cantidad(); i++) {
        if (!EsRecinto(i)) continue;
        sobran[i] = true;
        auto& contorno = contornos.emplace_back();
        const auto puntos = m_Entidades[i]->Puntos();
        for (const auto& p : puntos.first(puntos.size() - 1)) {
            contorno.push_back({double(p.x), double(p.y), double(p.z), i});
        }
    }
    if (contornos.empty()) return 1;
    const auto piezas = geometria::Convexos(contornos);
    if (!piezas) return 0;

    std::vector<std::unique_ptr<CEntidadDigi<T>>> nuevas;
    for (const auto& anillo : piezas->anillos) {
        const auto& primera = piezas->esquinas[anillo.front()];
        auto pieza = std::make_unique<CLinea<T>>(m_Entidades[primera.linea]->GetCodigo());
        pieza->Reserva(anillo.size() + 1);
        for (unsigned i : anillo) {
            const auto& e = piezas->esquinas[i];
            *pieza << CCoor3D<T>(e.x, e.y, e.z);
        }
        pieza->Cierra();
        nuevas.push_back(std::move(pieza));
    }
    Quita(sobran);
    std::move(nuevas.begin(), nuevas.end(), std::back_inserter(m_Entidades));
    Recuenta();
    return 1;
}

template CTipoDentro CDibujo<int>::EstaDentro(const CCoor3D<int>&, bool) const;
template CTipoDentro CDibujo<double>::EstaDentro(const CCoor3D<double>&, bool) const;
template unsigned CDibujo<int>::BorraIslas(CDibujo*);
template unsigned CDibujo<double>::BorraIslas(CDibujo*);
template int CDibujo<int>::GeneraConvexos();
template int CDibujo<double>::GeneraConvexos();

}  // namespace Vertiz
