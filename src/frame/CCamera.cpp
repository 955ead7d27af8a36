#include "frame/CCamera.h"

#include "frame/Angulos.h"
#include "model/CMatrizCuadrada.h"
#include "platform/OpenGL.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace {

using Punto = CCamera::Punto;
using Vertiz::CMatrizCuadrada;

constexpr double kPi = std::numbers::pi;

Punto Unitario(Punto v) {
    v.Normaliza();
    return v;
}

// Brings an angle into [0, 360).
double Vuelta(double grados) {
    const double resto = std::fmod(grados, 360.0);
    return resto < 0.0 ? resto + 360.0 : resto;
}

// The shorter way round for a difference of angles.
double MediaVuelta(double grados) {
    if (grados < -180.0) return grados + 360.0;
    if (grados > 180.0) return grados - 360.0;
    return grados;
}

bool EsCero(double v) {
    return std::abs(v) <= 1e-7;
}

// A rotation held in single precision, as yaw and pitch have always been worked out.
struct Cuaternion {
    float w, x, y, z;

    static Cuaternion DeEje(double grados, float ejeX, float ejeY) {
        const float mitad = static_cast<float>(ARadianes(grados)) * 0.5F;
        const float seno = std::sin(mitad);
        return {std::cos(mitad), ejeX * seno, ejeY * seno, 0.0F};
    }

    Cuaternion operator*(const Cuaternion& q) const {
        return {w * q.w - x * q.x - y * q.y - z * q.z, w * q.x + x * q.w + y * q.z - z * q.y,
                w * q.y - x * q.z + y * q.w + z * q.x, w * q.z + x * q.y - y * q.x + z * q.w};
    }

    Cuaternion Normalizado() const {
        const float longitud = std::sqrt(w * w + x * x + y * y + z * z);
        if (longitud == 0.0F) return {1.0F, 0.0F, 0.0F, 0.0F};
        return {w / longitud, x / longitud, y / longitud, z / longitud};
    }

    Punto Gira(float vx, float vy, float vz) const {
        const Cuaternion r = *this * Cuaternion{0.0F, vx, vy, vz} * Cuaternion{w, -x, -y, -z};
        return {r.x, r.y, r.z, 0};
    }
};

using Fila3 = std::array<double, 3>;
using Matriz3 = std::array<Fila3, 3>;

// The rotation of three angles with its partial derivatives.
struct Giro {
    Matriz3 m, porOmega, porFi, porKappa;

    Giro(double omega, double fi, double kappa) {
        CMatrizCuadrada giros(3);
        giros.MatrizGiros3D(omega, fi, kappa);
        for (unsigned i = 0; i < 3; ++i)
            for (unsigned j = 0; j < 3; ++j)
                m[i][j] = giros.Get(i, j);
        const double so = std::sin(omega), co = std::cos(omega), sf = std::sin(fi), cf = std::cos(fi),
                     sk = std::sin(kappa), ck = std::cos(kappa);
        porOmega = {Fila3{0, 0, 0}, Fila3{-m[2][0], -m[2][1], -m[2][2]}, m[1]};
        porFi = {Fila3{-sf * ck, sf * sk, cf}, Fila3{so * cf * ck, -so * cf * sk, so * sf},
                 Fila3{-co * cf * ck, co * cf * sk, -co * sf}};
        for (unsigned i = 0; i < 3; ++i)
            porKappa[i] = {m[i][1], -m[i][0], 0};
    }
};

double Fila(const Fila3& f, const Fila3& v) {
    return f[0] * v[0] + f[1] * v[1] + f[2] * v[2];
}

// One observation: the rotation has to carry `referencia` to `objetivo`.
struct Observacion {
    Fila3 referencia, objetivo;
};

// Normal equations of the nine rows that three observations give: N = A'A and A'l.
void EcuacionesNormales(const Giro& giro, const std::array<Observacion, 3>& observaciones, CMatrizCuadrada& n,
                        Fila3& atl) {
    n.Rellena(0.0);
    atl = {0, 0, 0};
    for (const Observacion& o : observaciones)
        for (unsigned i = 0; i < 3; ++i) {
            const Fila3 a = {Fila(giro.porOmega[i], o.referencia), Fila(giro.porFi[i], o.referencia),
                             Fila(giro.porKappa[i], o.referencia)};
            const double l = o.objetivo[i] - Fila(giro.m[i], o.referencia);
            for (unsigned j = 0; j < 3; ++j) {
                atl[j] += a[j] * l;
                for (unsigned k = 0; k < 3; ++k)
                    n.Set(j, k, n.Get(j, k) + a[j] * a[k]);
            }
        }
}

// A correction may overshoot by several turns, when up and the view are far from square.
double EnVuelta(double radianes) {
    const double resto = std::fmod(radianes, 2.0 * kPi);
    return resto < 0.0 ? resto + 2.0 * kPi : resto;
}

double GradosEnVuelta(double radianes) {
    const double grados = AGrados(radianes);
    return grados >= 360.0 ? grados - 360.0 : grados;
}

}  // namespace

Punto CCamera::Direccion() const {
    return Unitario(m_View - m_Position);
}

Punto CCamera::Derecha() const {
    return Unitario((m_View - m_Position) * m_UpVector);
}

void CCamera::PositionCamera(const Punto& pos, const Punto& view, const Punto& up) {
    m_Position = pos;
    m_View = view;
    m_UpVector = up;
    CalculaAngulos();
}

void CCamera::Look() const {
    gluLookAt(m_Position.x, m_Position.y, m_Position.z, m_View.x, m_View.y, m_View.z, m_UpVector.x, m_UpVector.y,
              m_UpVector.z);
    // A view is never refused: whatever error stands is taken away, so that the caller's next check is about its own.
    static_cast<void>(glGetError());
}

bool CCamera::CalculaAngulos() {
    const Punto d = Direccion();
    const Punto u = Unitario(m_UpVector);
    const Punto r = Unitario(d * u);
    const std::array<Observacion, 3> observaciones = {Observacion{{0, -1, 0}, {d.x, d.y, d.z}},
                                                      Observacion{{0, 0, -1}, {u.x, u.y, u.z}},
                                                      Observacion{{1, 0, 0}, {r.x, r.y, r.z}}};
    Fila3 angulos = {ARadianes(m_Angulos.x), ARadianes(m_Angulos.z), ARadianes(m_Angulos.y)};
    CMatrizCuadrada n(3), inversa(3);
    Fila3 atl;
    double mayor = 0.0;
    int contador = 1;
    do {
        EcuacionesNormales(Giro(angulos[0], angulos[1], angulos[2]), observaciones, n, atl);
        if (!n.InversaCholesky(inversa) && !n.InversaPivote(inversa)) return false;
        mayor = 0.0;
        for (unsigned i = 0; i < 3; ++i) {
            const double correccion =
                inversa.Get(i, 0) * atl[0] + inversa.Get(i, 1) * atl[1] + inversa.Get(i, 2) * atl[2];
            if (!std::isfinite(correccion)) return false;
            mayor = std::max(mayor, std::abs(correccion));
            angulos[i] = EnVuelta(angulos[i] + correccion);
        }
        ++contador;
    } while (mayor > 1e-6 && contador < 100);
    m_Angulos = Punto(GradosEnVuelta(angulos[0]), GradosEnVuelta(angulos[2]), GradosEnVuelta(angulos[1]), 0);
    return true;
}

void CCamera::CalculaVectores() {
    const Cuaternion guinada = Cuaternion::DeEje(m_Yaw, 0.0F, 1.0F).Normalizado();
    const Cuaternion cabeceo = Cuaternion::DeEje(m_Pitch, 1.0F, 0.0F).Normalizado();
    const Cuaternion q = (cabeceo * guinada).Normalizado();
    m_ViewVector = q.Gira(0.0F, 0.0F, -1.0F);
    m_View = m_Position + m_ViewVector;
    m_UpVector = q.Gira(0.0F, 1.0F, 0.0F);
    m_RightVector = q.Gira(1.0F, 0.0F, 0.0F);
}

void CCamera::SetPitch(double grados) {
    m_Pitch = grados;
    CalculaVectores();
    CalculaAngulos();
}

void CCamera::SetYaw(double grados) {
    m_Yaw = grados;
    CalculaVectores();
    CalculaAngulos();
}

void CCamera::DesplazaCamara(const Punto& d) {
    m_Position += d;
    m_View = m_Position + m_ViewVector;
}

void CCamera::SetTrans(const Punto& t) {
    m_Position -= m_View - t;
    m_View = t;
    CalculaAngulos();
}

void CCamera::SumaTrans(const Punto& d) {
    m_View += d;
    m_Position += d;
    CalculaAngulos();
}

void CCamera::SumaXTrans(double dx) {
    const Punto lado = Derecha();
    if (lado.x != 0.0) StrafeCamera(dx / lado.x);
}

void CCamera::SumaYTrans(double dy) {
    const Punto frente = Direccion();
    if (frente.y != 0.0) MoveCamera(dy / frente.y);
}

void CCamera::SumaZTrans(double z) {
    StrafeCamera2(m_Position.z - z, ARadianes(GetAnguloX()), ARadianes(GetAnguloY()));
}

void CCamera::RotateView(double rad, const Punto& eje, int bMueveVista) {
    const Punto d = (m_View - m_Position).Rotar(rad, eje);
    if (bMueveVista != 0)
        m_View = m_Position + d;
    else
        m_Position = m_View - d;
    CalculaAngulos();
}

void CCamera::GiraSinMoverOjo(double rad, const Punto& eje, int flag) {
    const Punto ojo = m_Position;
    RotateView(rad, eje, flag);
    m_View -= m_Position - ojo;
    m_Position = ojo;
    CalculaAngulos();
}

void CCamera::SumaAnguloX(double grados, int flag, const Punto* ref) {
    const double rad = ARadianes(grados);
    Punto eje = Derecha();
    if (ref != nullptr) eje += *ref;
    m_UpVector = Unitario(m_UpVector.Rotar(rad, eje));
    CalculaAngulos();
    GiraSinMoverOjo(rad, eje, flag);
}

void CCamera::SumaAnguloY(double grados, int flag, const Punto* ref) {
    Punto eje = Unitario(m_UpVector);
    if (ref != nullptr) eje += *ref;
    GiraSinMoverOjo(-ARadianes(grados), eje, flag);
}

void CCamera::SumaAnguloZ(double grados, int /*flag*/, const Punto* ref) {
    Punto eje = Direccion();
    if (ref != nullptr) eje += *ref;
    m_UpVector = Unitario(m_UpVector.Rotar(-ARadianes(grados), eje));
    CalculaAngulos();
}

void CCamera::SetAngulos(double x, double y, double z) {
    if (!std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return;
    x = Vuelta(x);
    y = Vuelta(y);
    z = Vuelta(z);
    double zLeido = AnulaAngulos();
    for (int vuelta = 0; vuelta < 100; ++vuelta) {
        AcercaXZ(x, z, zLeido);
        SumaAnguloY(MediaVuelta(y - GetAnguloY()), 1, nullptr);
        if (EsCero(MediaVuelta(x - GetAnguloX())) && EsCero(MediaVuelta(y - GetAnguloY())) &&
            EsCero(MediaVuelta(z - GetAnguloZ())))
            return;
    }
}

// Walks to the angles 0, 0, 0. Returns the angle Z that was read last.
double CCamera::AnulaAngulos() {
    double zLeido = 0.0;
    for (int vuelta = 0; vuelta < 100; ++vuelta) {
        const double a = MediaVuelta(-GetAnguloY());
        SumaAnguloY(a, 1, nullptr);
        const double b = MediaVuelta(-GetAnguloX());
        SumaAnguloX(b, 1, nullptr);
        zLeido = GetAnguloZ();
        const double c = MediaVuelta(-zLeido);
        SumaAnguloZ(c, 1, nullptr);
        if (EsCero(a) && EsCero(b) && EsCero(c)) break;
    }
    return zLeido;
}

// Walks the angles X and Z towards x and z. Upside down (Z beyond a quarter turn) a tilt goes the other way.
void CCamera::AcercaXZ(double x, double z, double& zLeido) {
    for (int vuelta = 0; vuelta < 100; ++vuelta) {
        double dx = MediaVuelta(x - GetAnguloX());
        if (zLeido > 90.0 && zLeido < 270.0) dx = -dx;
        SumaAnguloX(dx, 1, nullptr);
        zLeido = GetAnguloZ();
        SumaAnguloZ(std::clamp(MediaVuelta(z - zLeido), -10.0, 10.0), 1, nullptr);
        const double restoX = MediaVuelta(x - GetAnguloX());
        zLeido = GetAnguloZ();
        if (EsCero(restoX) && EsCero(MediaVuelta(z - zLeido))) return;
    }
}

void CCamera::AnglesToAxes(const Punto& ang, double* m, int orden) {
    const double sx = std::sin(ARadianes(ang.x)), cx = std::cos(ARadianes(ang.x));
    const double sy = std::sin(ARadianes(ang.y)), cy = std::cos(ARadianes(ang.y));
    const double sz = std::sin(ARadianes(ang.z)), cz = std::cos(ARadianes(ang.z));
    Punto izquierda, arriba, frente;
    switch (orden) {
        case 1:
            izquierda = {cz * cy, sz * cx * cy + sy * sx, sz * sx * cy - sy * cx, 0};
            arriba = {-sz, cz * cx, cz * sx, 0};
            frente = {cz * sy, sz * cx * sy - cy * sx, sz * sx * sy + cy * cx, 0};
            break;
        case 2:
            izquierda = {sy * sx * sz + cz * cy, sz * cx, -sy * cz - cy * sx * sz, 0};
            arriba = {sy * sx * cz - sz * cy, cz * cx, cy * sx * cz + sz * sy, 0};
            frente = {sy * cx, -sx, cy * cx, 0};
            break;
        case 3:
            izquierda = {cz * cy, sz, -sy * cz, 0};
            arriba = {sy * sx - sz * cy * cx, cz * cx, sz * sy * cx + cy * sx, 0};
            frente = {sz * cy * sx + sy * cx, -cz * sx, cy * cx - sz * sy * sx, 0};
            break;
        case 4:
            izquierda = {cz * cy - sz * sx * sy, cz * sx * sy + sz * cy, -cx * sy, 0};
            arriba = {-sz * cx, cz * cx, sx, 0};
            frente = {sz * sx * cy + cz * sy, sz * sy - cz * sx * cy, cy * cx, 0};
            break;
        case 5:
            izquierda = {cz * cy, sz * cy, -sy, 0};
            arriba = {cz * sy * sx - sz * cx, sz * sy * sx + cz * cx, cy * sx, 0};
            frente = {cz * sy * cx + sz * sx, sz * sy * cx - cz * sx, cy * cx, 0};
            break;
        default:
            izquierda = {cz * cy, sy * sx * cz + sz * cx, sz * sx - sy * cx * cz, 0};
            arriba = {-cy * sz, cz * cx - sy * sx * sz, sy * cx * sz + cz * sx, 0};
            frente = {sy, -sx * cy, cy * cx, 0};
            break;
    }
    m_UpVector = arriba;
    m_View = frente;
    std::fill_n(m, 16, 0.0);
    const std::array<const Punto*, 3> columnas = {&izquierda, &arriba, &frente};
    for (int columna = 0; columna < 3; ++columna) {
        m[columna] = columnas[columna]->x;
        m[columna + 4] = columnas[columna]->y;
        m[columna + 8] = columnas[columna]->z;
    }
    m[15] = 1.0;
}

void CCamera::MoveCamera(double d) {
    const Punto avance = Direccion() * d;
    m_Position += avance;
    m_View += avance;
}

void CCamera::StrafeCamera(double d) {
    m_Strafe = Derecha();
    const Punto paso(m_Strafe.x * d, 0.0, m_Strafe.z * d, 0);
    m_Position += paso;
    m_View += paso;
    CalculaAngulos();
}

void CCamera::StrafeCamera2(double d, double a, double b) {
    const Punto inclinado = m_UpVector.Rotar(a, Derecha());
    m_Strafe = inclinado.Rotar(b, Unitario(m_UpVector));
    const Punto paso = m_Strafe * d;
    m_Position += paso;
    m_View += paso;
    CalculaAngulos();
}
