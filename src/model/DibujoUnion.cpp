// Joining the lines of a drawing end to end.

#include "model/CDibujo.h"
#include "model/DibujoInterno.h"
#include "model/UnionLineas.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <utility>

namespace Vertiz {
namespace {

// Farther out, coordinates are no terrain and squares of the search could no longer be counted.
constexpr double kMasLejos = 1e12;

template <class T>
bool EsUnible(const CEntidadDigi<T>& e) {
    if (!EsLinea(e) || e.NPuntos() < 2 || e.EsCerrada()) return false;
    const auto alcanza = [](const CCoor3D<T>& p) {
        return std::abs(double(p.x)) < kMasLejos && std::abs(double(p.y)) < kMasLejos;
    };
    return alcanza(e.Puntos().front()) && alcanza(e.Puntos().back());
}

template <class T>
bool Coinciden(const CCoor3D<T>& a, const CCoor3D<T>& b) {
    return a.Distancia2(b, 0) <= kResolucion<T> * kResolucion<T>;
}

template <class T>
geometria::CTramo ATramo(const CEntidadDigi<T>& e, unsigned grupo) {
    const auto puntos = e.Puntos();
    return {{puntos.front(), puntos.back()}, {puntos[1], puntos[puntos.size() - 2]}, grupo};
}

// All points of a chain in one line, which has the header of its earliest part.
template <class T>
std::unique_ptr<CLinea<T>> Funde(const geometria::CCadena& cadena, const std::vector<const CLinea<T>*>& partes,
                                 unsigned primera, bool cierra, bool quitaDobles) {
    auto linea = std::make_unique<CLinea<T>>(*partes[primera]);
    std::size_t cantidad = 0;
    for (const auto& e : cadena.eslabones)
        cantidad += partes[e.tramo]->NPuntos();
    linea->Clear();
    linea->Reserva(cantidad);
    for (const auto& e : cadena.eslabones) {
        auto puntos = partes[e.tramo]->Puntos();
        const std::size_t n = puntos.size();
        for (std::size_t i = linea->NPuntos() > 0 ? 1 : 0; i < n; i++)
            *linea << puntos[e.volteado ? n - 1 - i : i];
    }
    if (cadena.cerrada && cierra) linea->ModificaPunto(linea->NPuntos() - 1, linea->Punto(0), true);
    if (quitaDobles) linea->BorraPuntosDobles(1);
    return linea;
}

}  // namespace

template <class T>
unsigned CDibujo<T>::JuntaAntesDeInsertar(const CLinea<T>& linea) {
    if (!EsUnible(linea)) return Inserta(linea);
    if (!m_pExtremos) {
        m_pExtremos = std::make_unique<CExtremos>();
        for (unsigned i = 0; i < Cantidad(); i++) {
            if (EsUnible(*m_Entidades[i])) m_pExtremos->lineas[CExtremos::Clave(m_Entidades[i]->Puntos().back())] = i;
        }
    }
    auto& lineas = m_pExtremos->lineas;

    for (const bool voltea : {false, true}) {
        const CCoor3D<T>& junta = voltea ? linea.end() : linea.Punto(0);
        const auto lugar = lineas.find(CExtremos::Clave(junta));
        if (lugar == lineas.end() || lugar->second >= Cantidad()) continue;
        const unsigned i = lugar->second;
        if (!EsUnible(*m_Entidades[i]) || m_Entidades[i]->GetCodigo() != linea.GetCodigo()) continue;
        auto& vieja = static_cast<CLinea<T>&>(*m_Entidades[i]);
        // A line of two points can still be turned round; for long ones that would cost more than it saves.
        if (vieja.NPuntos() == 2 && Coinciden(vieja.Punto(0), junta)) vieja.Voltea();
        if (!Coinciden(std::as_const(vieja).end(), junta)) continue;

        lineas.erase(lugar);
        const auto puntos = linea.Puntos();
        for (std::size_t p = 1; p < puntos.size(); p++)
            vieja << puntos[voltea ? puntos.size() - 1 - p : p];
        m_nPuntos += puntos.size() - 1;
        const CCoor3D<T> fin = std::as_const(vieja).end();
        if (Coinciden(fin, vieja.Punto(0))) {
            vieja.ModificaPunto(vieja.NPuntos() - 1, vieja.Punto(0), false);
        } else {
            lineas[CExtremos::Clave(fin)] = i;
        }
        m_Maximas.Nuevo(vieja.GetMaximas());
        return i;
    }

    const unsigned i = Inserta(linea);
    lineas[CExtremos::Clave(linea.end())] = i;
    if (linea.NPuntos() == 2) lineas.try_emplace(CExtremos::Clave(linea.Punto(0)), i);
    return i;
}

template <class T>
int CDibujo<T>::Junta(double distancia, double cota, int mismoCodigo, int invierte, int cierra, int respetaNudos,
                      int comparaCotas, int quitaDobles) {
    std::vector<const CLinea<T>*> lineas;
    std::vector<unsigned> lugares;  // of the lines in the drawing
    std::vector<geometria::CTramo> tramos;
    std::map<CString, unsigned> grupos;
    for (unsigned i = 0; i < Cantidad(); i++) {
        const CEntidadDigi<T>& e = *m_Entidades[i];
        if (!EsUnible(e)) continue;
        const CString codigo = mismoCodigo ? e.GetCodigo() : CString();
        tramos.push_back(ATramo(e, grupos.try_emplace(codigo, unsigned(grupos.size())).first->second));
        lineas.push_back(static_cast<const CLinea<T>*>(&e));
        lugares.push_back(i);
    }
    const geometria::CReglasUnion reglas{std::max(distancia, kResolucion<T>), cota, invierte != 0, respetaNudos != 0,
                                         comparaCotas != 0};
    std::vector<bool> sobran(m_Entidades.size());
    for (const auto& cadena : geometria::Encadena(tramos, reglas)) {
        if (cadena.eslabones.size() < 2 && !cadena.cerrada) continue;
        unsigned primera = cadena.eslabones.front().tramo;
        for (const auto& e : cadena.eslabones) {
            primera = std::min(primera, e.tramo);
            sobran[lugares[e.tramo]] = true;
        }
        sobran[lugares[primera]] = false;
        auto fundida = Funde(cadena, lineas, primera, cierra != 0, quitaDobles != 0);
        m_Entidades[lugares[primera]] = std::move(fundida);
    }
    Quita(sobran);
    Recuenta();
    return 1;
}

template unsigned CDibujo<int>::JuntaAntesDeInsertar(const CLinea<int>&);
template unsigned CDibujo<double>::JuntaAntesDeInsertar(const CLinea<double>&);
template int CDibujo<int>::Junta(double, double, int, int, int, int, int, int);
template int CDibujo<double>::Junta(double, double, int, int, int, int, int, int);

}  // namespace Vertiz
