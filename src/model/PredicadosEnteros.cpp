// Predicates on integers, where they are not in the header: those that are rarely asked, and exact as well.

#include "model/Predicados.h"

#include <algorithm>
#include <cmath>

namespace Vertiz::predicados {
namespace {

struct CVector {
    std::int64_t x, y;
};

CVector Desde(const CLugar& a, const CLugar& b) {
    return {std::int64_t{b.x} - a.x, std::int64_t{b.y} - a.y};
}
Entero128 Cruz(const CVector& p, const CVector& q) {
    return Entero128{p.x} * q.y - Entero128{p.y} * q.x;
}
Entero128 Cuadrado(const CVector& p) {
    return Entero128{p.x} * p.x + Entero128{p.y} * p.y;
}

// The determinant's sign by doubles, or 0 where rounding could have turned it. Differences of integers are doubles
// without loss. A square's length is then wrong by 2 roundings at most, a cross product by 2 of the sum of its terms'
// sizes, their product by 1 more and the sum by 2: less than the 10 that are allowed here.
int SignoRapido(const CVector& u, const CVector& v, const CVector& w) {
    double det = 0.0, tamano = 0.0;
    const auto suma = [&](const CVector& p, const CVector& q, const CVector& r) {
        const double px = double(p.x), py = double(p.y), izquierda = double(q.x) * double(r.y),
                     derecha = double(q.y) * double(r.x);
        det += (px * px + py * py) * (izquierda - derecha);
        tamano += (px * px + py * py) * (std::abs(izquierda) + std::abs(derecha));
    };
    suma(u, v, w);
    suma(v, w, u);
    suma(w, u, v);
    constexpr double cota = 10.0 * 0x1p-53;
    constexpr double holgura = 1.0 + 0x1p-40;  // for the roundings of the sum of sizes itself
    return std::abs(det) > tamano * (cota * holgura) ? (det > 0.0 ? 1 : -1) : 0;
}

// n / d rounded to the nearest, halves up; d above 0.
std::int64_t Redondea(Entero128 n, Entero128 d) {
    const Entero128 doble = 2 * n + d;
    Entero128 cociente = doble / (2 * d);
    if (doble % (2 * d) < 0) --cociente;
    return static_cast<std::int64_t>(cociente);
}

}  // namespace

// Differences of coordinates take 33 bits, so that squared lengths and cross products fit in 67; their products would
// need 134. The squares are cut in two, 32 bits below, and what is multiplied by either half is summed on its own.
int EnCirculoLejos(const CLugar& a, const CLugar& b, const CLugar& c, const CLugar& d) {
    const CVector u = Desde(d, a), v = Desde(d, b), w = Desde(d, c);
    if (const int signo = SignoRapido(u, v, w)) return signo;
    Entero128 alta = 0, baja = 0;
    const auto suma = [&](const CVector& p, Entero128 factor) {
        const Entero128 cuadrado = Cuadrado(p);
        alta += (cuadrado >> 32) * factor;
        baja += (cuadrado & 0xFFFFFFFF) * factor;
    };
    suma(u, Cruz(v, w));
    suma(v, Cruz(w, u));
    suma(w, Cruz(u, v));
    alta += baja >> 32;  // rounds down, so that what is left of the lower sum is not negative
    if (alta != 0) return alta > 0 ? 1 : -1;
    return (baja & 0xFFFFFFFF) != 0 ? 1 : 0;
}

// The share of a b before the crossing is a quotient of cross products, 67 bits each; times a difference it takes 100.
CLugar CruceRedondeado(const CLugar& a, const CLugar& b, const CLugar& c, const CLugar& d) {
    const CVector r = Desde(a, b), s = Desde(c, d);
    Entero128 n = Cruz(Desde(a, c), s), det = Cruz(r, s);
    if (det < 0) n = -n, det = -det;
    return {static_cast<int>(a.x + Redondea(n * r.x, det)), static_cast<int>(a.y + Redondea(n * r.y, det))};
}

// Clips the segment to the square, all doubled: what is left of the shares 0 to 1 of the way is an interval whose ends
// are quotients of numbers of 35 bits. An end is open where it lies on the square's right or upper side.
bool PasaPor(const CLugar& a, const CLugar& b, const CLugar& p) {
    struct CExtremo {
        std::int64_t n, d;
        bool abierto;
    };
    CExtremo desde{0, 1, false}, hasta{1, 1, false};
    const auto compara = [](const CExtremo& e, const CExtremo& f) {
        const Entero128 diferencia = Entero128{e.n} * f.d - Entero128{f.n} * e.d;
        return diferencia > 0 ? 1 : diferencia < 0 ? -1 : 0;
    };
    const auto recorta = [&](std::int64_t inicio, std::int64_t avance) {
        if (avance == 0) return inicio >= -1 && inicio < 1;
        // Entering and leaving; the side at 1 is open.
        const CExtremo entra = avance > 0 ? CExtremo{-1 - inicio, avance, false} : CExtremo{inicio - 1, -avance, true};
        const CExtremo sale = avance > 0 ? CExtremo{1 - inicio, avance, true} : CExtremo{inicio + 1, -avance, false};
        if (const int orden = compara(entra, desde); orden > 0 || (orden == 0 && entra.abierto)) desde = entra;
        if (const int orden = compara(sale, hasta); orden < 0 || (orden == 0 && sale.abierto)) hasta = sale;
        return true;
    };
    const CVector inicio = Desde(p, a), avance = Desde(a, b);
    if (!recorta(2 * inicio.x, 2 * avance.x) || !recorta(2 * inicio.y, 2 * avance.y)) return false;
    const int orden = compara(desde, hasta);
    return orden < 0 || (orden == 0 && !desde.abierto && !hasta.abierto);
}

}  // namespace Vertiz::predicados
