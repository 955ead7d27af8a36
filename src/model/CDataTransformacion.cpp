// Transformations between terrain, images and maps.

#include "model/CDataTransformacion.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace Vertiz {
namespace {

using Coor = CCoor3D<double>;
using Datos = CDataTransformacion;

struct Vector3 {
    double x, y, z;
};

double Det2(double a, double b, double c, double d) {
    return a * d - b * c;
}

// A matrix of 3 x 3 by rows, with what the closed forms need of it.
struct Matriz3 {
    std::array<double, 9> m;

    double Det() const {
        return m[0] * Det2(m[4], m[5], m[7], m[8]) - m[1] * Det2(m[3], m[5], m[6], m[8]) +
               m[2] * Det2(m[3], m[4], m[6], m[7]);
    }

    // The inverse times the determinant.
    Matriz3 Adjunta() const {
        return {{Det2(m[4], m[5], m[7], m[8]), -Det2(m[1], m[2], m[7], m[8]), Det2(m[1], m[2], m[4], m[5]),
                 -Det2(m[3], m[5], m[6], m[8]), Det2(m[0], m[2], m[6], m[8]), -Det2(m[0], m[2], m[3], m[5]),
                 Det2(m[3], m[4], m[6], m[7]), -Det2(m[0], m[1], m[6], m[7]), Det2(m[0], m[1], m[3], m[4])}};
    }

    Vector3 Por(double x, double y, double z) const {
        return {m[0] * x + m[1] * y + m[2] * z, m[3] * x + m[4] * y + m[5] * z, m[6] * x + m[7] * y + m[8] * z};
    }
};

bool EsRegular(double det) {
    return std::isfinite(det) && det != 0.0;
}

// ---- Types 2, 4 and 6 are one: a matrix on homogeneous coordinates.

Matriz3 Homografia(const Datos& d) {
    const auto& p = d.m_Parametros;
    switch (d.m_nTipo) {
        case Datos::SEMEJANZA_2D:
            return {{p[2], -p[3], p[0], p[3], p[2], p[1], 0.0, 0.0, 1.0}};
        case Datos::AFIN_2D:
            return {{p[2], p[3], p[0], p[4], p[5], p[1], 0.0, 0.0, 1.0}};
        default:
            return {{p[1], p[2], p[0], p[4], p[5], p[3], p[6], p[7], 1.0}};
    }
}

bool AplicaHomografia(const Matriz3& h, Coor& p) {
    const Vector3 q = h.Por(p.x, p.y, 1.0);
    const double x = q.x / q.z, y = q.y / q.z;
    if (!std::isfinite(x) || !std::isfinite(y)) return false;
    p.x = x;
    p.y = y;
    return true;
}

// ---- Types 1 and 8: t + M x.

struct Afin3 {
    Vector3 t;
    Matriz3 m;
};

Afin3 Espacial(const Datos& d) {
    const auto& p = d.m_Parametros;
    Afin3 a{{p[0], p[1], p[2]}, {{p[3], p[4], p[5], p[6], p[7], p[8], p[9], p[10], p[11]}}};
    if (d.m_nTipo == Datos::SEMEJANZA_3D) {
        CMatrizCuadrada giro(3);
        const CUnidadAngular unidad = d.m_UnidadAngular;
        giro.MatrizGiros3D(unidad.ARadianes(p[3]), unidad.ARadianes(p[4]), unidad.ARadianes(p[5]));
        for (unsigned i = 0; i < 9; ++i)
            a.m.m[i] = p[6] * giro.Get(i / 3, i % 3);
    }
    return a;
}

bool Asigna(Coor& p, double x, double y, double z) {
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return false;
    p.x = x;
    p.y = y;
    p.z = z;
    return true;
}

bool AplicaEspacial(const Afin3& a, Coor& p) {
    const Vector3 q = a.m.Por(p.x, p.y, p.z);
    return Asigna(p, a.t.x + q.x, a.t.y + q.y, a.t.z + q.z);
}

bool AplicaEspacialInversa(const Afin3& a, const Matriz3& adjunta, double det, Coor& p) {
    const Vector3 q = adjunta.Por(p.x - a.t.x, p.y - a.t.y, p.z - a.t.z);
    return Asigna(p, q.x / det, q.y / det, q.z / det);
}

// ---- Type 5.

double Polinomio(const double* a, double x, double y) {
    return a[0] + a[1] * x + a[2] * y + a[3] * x * x + a[4] * x * y + a[5] * y * y;
}

bool AplicaPolinomio(const Datos& d, Coor& p) {
    const double* const a = d.m_Parametros.data();
    return Asigna(p, Polinomio(a, p.x, p.y), Polinomio(a + 6, p.x, p.y), p.z);
}

// Newton's method from the inverse of the linear part, which for a map is close.
bool InviertePolinomio(const Datos& d, Coor& p) {
    constexpr int kIteraciones = 50;
    constexpr double kTolerancia = 1e-12;
    const double* const a = d.m_Parametros.data();
    const double* const b = a + 6;
    const double det0 = Det2(a[1], a[2], b[1], b[2]);
    double x = (b[2] * (p.x - a[0]) - a[2] * (p.y - b[0])) / det0;
    double y = (a[1] * (p.y - b[0]) - b[1] * (p.x - a[0])) / det0;
    for (int i = 0; i < kIteraciones; ++i) {
        const double fx = Polinomio(a, x, y) - p.x, fy = Polinomio(b, x, y) - p.y;
        const double xx = a[1] + 2.0 * a[3] * x + a[4] * y, xy = a[2] + a[4] * x + 2.0 * a[5] * y;
        const double yx = b[1] + 2.0 * b[3] * x + b[4] * y, yy = b[2] + b[4] * x + 2.0 * b[5] * y;
        const double det = Det2(xx, xy, yx, yy);
        const double dx = (yy * fx - xy * fy) / det, dy = (xx * fy - yx * fx) / det;
        if (!std::isfinite(dx) || !std::isfinite(dy)) return false;
        x -= dx;
        y -= dy;
        if (std::abs(dx) + std::abs(dy) <= kTolerancia * (1.0 + std::abs(x) + std::abs(y))) return Asigna(p, x, y, p.z);
    }
    return false;
}

// ---- Types 11 and 12: the camera.

// Terrain to the camera's axes: Rt (P - C).
Vector3 ACamara(const Datos& d, const Coor& p) {
    const CMatrizCuadrada& r = d.m_Rotacion;
    const double x = p.x - d.m_CentroProyeccion.x, y = p.y - d.m_CentroProyeccion.y, z = p.z - d.m_CentroProyeccion.z;
    return {r.Get(0, 0) * x + r.Get(1, 0) * y + r.Get(2, 0) * z, r.Get(0, 1) * x + r.Get(1, 1) * y + r.Get(2, 1) * z,
            r.Get(0, 2) * x + r.Get(1, 2) * y + r.Get(2, 2) * z};
}

// A direction of the camera's axes in the terrain's: R q.
Vector3 ATerreno(const Datos& d, const Vector3& q) {
    const CMatrizCuadrada& r = d.m_Rotacion;
    return {r.Get(0, 0) * q.x + r.Get(0, 1) * q.y + r.Get(0, 2) * q.z,
            r.Get(1, 0) * q.x + r.Get(1, 1) * q.y + r.Get(1, 2) * q.z,
            r.Get(2, 0) * q.x + r.Get(2, 1) * q.y + r.Get(2, 2) * q.z};
}

bool FilmAImagen(const Datos& d, double u, double v, Coor& p) {
    const CMatrizCuadrada& m = d.m_Interior;
    return Asigna(p, d.m_CentroImagen.x + m.Get(0, 0) * u + m.Get(0, 1) * v,
                  d.m_CentroImagen.y - (m.Get(1, 0) * u + m.Get(1, 1) * v), p.z);
}

// Film coordinates relative to the principal point.
void ImagenAFilm(const Datos& d, const Coor& p, double& u, double& v) {
    const CMatrizCuadrada& m = d.m_Interior;
    const double x = p.x - d.m_CentroImagen.x, y = d.m_CentroImagen.y - p.y;
    const double det = Det2(m.Get(0, 0), m.Get(0, 1), m.Get(1, 0), m.Get(1, 1));
    u = (m.Get(1, 1) * x - m.Get(0, 1) * y) / det - d.m_PuntoPrincipal.x;
    v = (m.Get(0, 0) * y - m.Get(1, 0) * x) / det - d.m_PuntoPrincipal.y;
}

bool Proyecta(const Datos& d, Coor& p) {
    const Vector3 q = ACamara(d, p);
    if (d.m_nTipo == Datos::CONICA) {
        if (!(q.z < 0.0)) return false;
        return FilmAImagen(d, d.m_PuntoPrincipal.x - d.m_dFocal * q.x / q.z,
                           d.m_PuntoPrincipal.y - d.m_dFocal * q.y / q.z, p);
    }
    const double distancia = std::hypot(q.x, q.y, q.z);
    if (!(distancia > 0.0)) return false;
    return FilmAImagen(d, d.m_PuntoPrincipal.x + std::atan2(-q.x, -q.y),
                       d.m_PuntoPrincipal.y + std::asin(std::clamp(q.z / distancia, -1.0, 1.0)), p);
}

// The point of the plane of height `cota` on the ray through an image point.
bool Restituye(const Datos& d, double cota, Coor& p) {
    double u, v;
    ImagenAFilm(d, p, u, v);
    Vector3 rayo{u, v, -d.m_dFocal};
    if (d.m_nTipo == Datos::ESFERICA) {
        // Past the zenith an angle would come down again on the other side: such a pixel isn't in the picture.
        if (!(std::abs(v) <= std::numbers::pi / 2)) return false;
        rayo = {-std::sin(u) * std::cos(v), -std::cos(u) * std::cos(v), std::sin(v)};
    }
    const Vector3 dir = ATerreno(d, rayo);
    const double t = (cota - d.m_CentroProyeccion.z) / dir.z;
    if (!(t > 0.0)) return false;
    return Asigna(p, d.m_CentroProyeccion.x + t * dir.x, d.m_CentroProyeccion.y + t * dir.y, cota);
}

// ---- Over many points.

template <class F>
bool Recorre(std::span<Coor> puntos, bool con3D, F&& f) {
    constexpr double nan = std::numeric_limits<double>::quiet_NaN();
    bool todos = true;
    for (Coor& p : puntos) {
        if (p.EsFinito() && f(p)) continue;
        p.x = p.y = nan;
        if (con3D) p.z = nan;
        todos = false;
    }
    return todos;
}

}  // namespace

CDataTransformacion::CDataTransformacion(CUnidadAngular unidad) : m_UnidadAngular(unidad) {
    for (unsigned i = 0; i < 3; ++i)
        m_Rotacion.Set(i, i, 1.0);
    for (unsigned i = 0; i < 2; ++i)
        m_Interior.Set(i, i, 1.0);
}

void CDataTransformacion::SetAngulos(double omega, double fi, double kappa) {
    m_Rotacion.MatrizGiros3D(m_UnidadAngular.ARadianes(omega), m_UnidadAngular.ARadianes(fi),
                             m_UnidadAngular.ARadianes(kappa));
}

bool CDataTransformacion::GetAngulos(double& omega, double& fi, double& kappa, double& escala) const {
    return m_Rotacion.GetAngulos(omega, fi, kappa, escala);
}

bool CDataTransformacion::ExisteTransformacion() const {
    const auto& p = m_Parametros;
    switch (m_nTipo) {
        case SEMEJANZA_2D:
        case AFIN_2D:
        case PROYECTIVA_2D:
            return std::isfinite(p[0] + p[1]) && EsRegular(Homografia(*this).Det());
        case POLINOMIO_2:
            return std::all_of(p.begin(), p.end(), [](double v) { return std::isfinite(v); }) &&
                   EsRegular(Det2(p[1], p[2], p[7], p[8]));
        case SEMEJANZA_3D:
            return std::all_of(p.begin(), p.begin() + 7, [](double v) { return std::isfinite(v); }) && p[6] != 0.0;
        case AFIN_3D:
            return std::isfinite(p[0] + p[1] + p[2]) && EsRegular(Espacial(*this).m.Det());
        case HELMERT_7:
            return m_Datum.EsValida() && m_Datum.m_SzRejilla.IsEmpty();
        case REJILLA_NTV2:
            return m_Datum.EsValida() && !m_Datum.m_SzRejilla.IsEmpty();
        case CONICA:
            if (!(m_dFocal > 0.0) || !std::isfinite(m_dFocal)) return false;
            [[fallthrough]];
        case ESFERICA: {
            if (m_Rotacion.GetFilas() != 3 || m_Interior.GetFilas() != 2 || !m_CentroProyeccion.EsFinito())
                return false;
            Matriz3 r;
            for (unsigned i = 0; i < 9; ++i)
                r.m[i] = m_Rotacion.Get(i / 3, i % 3);
            return EsRegular(r.Det()) && EsRegular(Det2(m_Interior.Get(0, 0), m_Interior.Get(0, 1),
                                                        m_Interior.Get(1, 0), m_Interior.Get(1, 1)));
        }
        default:
            return false;
    }
}

bool CDataTransformacion::Transforma(const Coor& terreno, Coor& imagen) const {
    if (!ExisteTransformacion() || !terreno.EsFinito()) return false;
    Coor p = terreno;
    const bool camara = m_nTipo == CONICA || m_nTipo == ESFERICA;
    if (!(camara ? Proyecta(*this, p) : Transforma(std::span(&p, 1)))) return false;
    imagen = p;
    return true;
}

bool CDataTransformacion::TransformaInversa(const Coor& imagen, const double* cota, Coor& terreno) const {
    if (!ExisteTransformacion()) return false;
    Coor p = imagen;
    if (m_nTipo == CONICA || m_nTipo == ESFERICA) {
        if (!Restituye(*this, cota ? *cota : m_dCotaReferencia, p)) return false;
    } else if (!p.EsFinito() || !TransformaInversa(std::span(&p, 1))) {
        return false;
    }
    terreno = p;
    return true;
}

CCoor3D<double> CDataTransformacion::TransformaInversa(const Coor& imagen, const double* cota, int /*fila*/) const {
    Coor terreno = imagen;
    if (!TransformaInversa(imagen, cota, terreno)) terreno.x = terreno.y = std::numeric_limits<double>::quiet_NaN();
    return terreno;
}

bool CDataTransformacion::Transforma(std::span<Coor> puntos) const {
    if (!ExisteTransformacion()) return false;
    switch (m_nTipo) {
        case SEMEJANZA_2D:
        case AFIN_2D:
        case PROYECTIVA_2D: {
            const Matriz3 inversa = Homografia(*this).Adjunta();
            return Recorre(puntos, false, [&](Coor& p) { return AplicaHomografia(inversa, p); });
        }
        case POLINOMIO_2:
            return Recorre(puntos, false, [&](Coor& p) { return InviertePolinomio(*this, p); });
        case SEMEJANZA_3D:
        case AFIN_3D: {
            const Afin3 a = Espacial(*this);
            const Matriz3 adjunta = a.m.Adjunta();
            const double det = a.m.Det();
            return Recorre(puntos, true, [&](Coor& p) { return AplicaEspacialInversa(a, adjunta, det, p); });
        }
        case HELMERT_7:
        case REJILLA_NTV2:
            return m_Datum.TransformaInversa(puntos);
        default:
            return Recorre(puntos, false, [&](Coor& p) { return Proyecta(*this, p); });
    }
}

bool CDataTransformacion::TransformaInversa(std::span<Coor> puntos) const {
    if (!ExisteTransformacion()) return false;
    switch (m_nTipo) {
        case SEMEJANZA_2D:
        case AFIN_2D:
        case PROYECTIVA_2D: {
            const Matriz3 directa = Homografia(*this);
            return Recorre(puntos, false, [&](Coor& p) { return AplicaHomografia(directa, p); });
        }
        case POLINOMIO_2:
            return Recorre(puntos, false, [&](Coor& p) { return AplicaPolinomio(*this, p); });
        case SEMEJANZA_3D:
        case AFIN_3D: {
            const Afin3 a = Espacial(*this);
            return Recorre(puntos, true, [&](Coor& p) { return AplicaEspacial(a, p); });
        }
        case HELMERT_7:
        case REJILLA_NTV2:
            return m_Datum.Transforma(puntos);
        default:
            return Recorre(puntos, false, [&](Coor& p) { return Restituye(*this, p.z, p); });
    }
}

}  // namespace Vertiz
