// The walk: the camera follows pointer and keys, as someone who looks round and goes through the scene.

#include "frame/CCamera.h"
#include "platform/CWnd.h"
#include "platform/CursorTeclas.h"

namespace {

// Where the pointer rests, a pixel of the screen: the middle of the window of 800 x 600 that a walk was made for.
constexpr LONG kReposoX = 400, kReposoY = 300;
constexpr double kPixelesRadian = 1000.0;
constexpr float kInclinacionMaxima = 1.0F;  // radians
constexpr double kVelocidad = 100.0;        // GL units a second

// One for all cameras, as there is one pointer and one clock.
float g_fInclinacion = 0.0F;  // radians that the pointer has tilted by so far
int g_nFotogramas = 0;
float g_fTranscurrido = 0.0F;  // seconds

bool EstaPulsada(UINT tecla) {
    return (GetKeyState(static_cast<int>(tecla)) & 0x80) != 0;
}

// Adds a step to the tilt. Returns how much of it is left to turn by: at the end of the range, what still fits.
double Inclina(float paso) {
    const float antes = g_fInclinacion;
    g_fInclinacion += paso;
    if (g_fInclinacion > kInclinacionMaxima)
        g_fInclinacion = kInclinacionMaxima;
    else if (g_fInclinacion < -kInclinacionMaxima)
        g_fInclinacion = -kInclinacionMaxima;
    else
        return paso;
    return static_cast<double>(g_fInclinacion) - antes;
}

}  // namespace

void CCamera::Update(float t) {
    m_Strafe = Derecha();
    SetViewByMouse();
    CheckForMovement(t);
    g_fTranscurrido += t;
    if (g_fTranscurrido > 1.0F) {
        g_fTranscurrido = 0.0F;
        g_nFotogramas = 0;
    } else {
        ++g_nFotogramas;
    }
}

void CCamera::SetViewByMouse() {
    POINT raton{};
    if (!GetCursorPos(&raton)) return;
    if (raton.x == kReposoX && raton.y == kReposoY) return;
    // A pointer that stays away would turn the view on and on.
    if (!SetCursorPos(kReposoX, kReposoY)) return;
    const auto giro = static_cast<float>((kReposoX - raton.x) / kPixelesRadian);
    const auto paso = static_cast<float>((kReposoY - raton.y) / kPixelesRadian);
    const double inclinacion = Inclina(paso);
    if (inclinacion != 0.0) RotateView(inclinacion, Derecha(), 1);
    RotateView(giro, Punto(0, 1, 0, 0), 1);
}

void CCamera::CheckForMovement(float t) {
    const double paso = t * kVelocidad;
    if (EstaPulsada(VK_UP) || EstaPulsada('W')) MoveCamera(paso);
    if (EstaPulsada(VK_DOWN) || EstaPulsada('S')) MoveCamera(-paso);
    if (EstaPulsada(VK_LEFT) || EstaPulsada('A')) StrafeCamera(-paso);
    if (EstaPulsada(VK_RIGHT) || EstaPulsada('D')) StrafeCamera(paso);
}

int CCamera::Fotogramas() {
    return g_nFotogramas;
}
