#pragma once
// Where the viewer stands, what he looks at and which way is up, in GL space, with three angles kept in step.

#include "model/CCoor.h"
#include "platform/Exporta.h"

/// The camera of a scene. Its state has two views: the vectors (eye, target, up) and three angles worked out of them.
/// Navigation changes vectors and recovers the angles (`CalculaAngulos`), or is given angles and walks the vectors
/// towards them (`SetAngulos`).
///
/// GL space is right-handed with y as the elevation axis: terrain X is GL x, terrain Z is GL y, terrain Y is GL -z.
/// Angles are in degrees unless a name says otherwise, each in [0, 360).
class LUMBRA_API CCamera {
  public:
    using Punto = Vertiz::CCoor3D<double>;

    double GetAnguloX() const { return m_Angulos.x; }
    double GetAnguloY() const { return m_Angulos.y; }
    double GetAnguloZ() const { return m_Angulos.z; }
    Punto Position() const { return m_Position; }
    Punto View() const { return m_View; }
    Punto GetTrans() const { return m_View; }
    Punto ViewVector() const { return m_ViewVector; }
    Punto UpVector() const { return m_UpVector; }
    Punto RightVector() const { return m_RightVector; }
    Punto Strafe() const { return m_Strafe; }
    double GetPitch() const { return m_Pitch; }
    double GetYaw() const { return m_Yaw; }

    /// Places the camera: eye, target and up, GL units. The angles follow.
    void PositionCamera(const Punto& pos, const Punto& view, const Punto& up);
    /// Multiplies the current OpenGL matrix by this view (gluLookAt). Needs a current context.
    void Look() const;
    /// Brings the angles in step with the vectors.
    void Valida() { CalculaAngulos(); }

    /// Recovers the three angles from the vectors by Gauss-Newton least squares, starting from the present angles:
    /// omega is angle X, fi angle Z and kappa angle Y of the rotation R = Rx(omega) Ry(fi) Rz(kappa) that carries
    /// (0, -1, 0) to the view direction and (0, 0, -1) to up.
    /// @return false, with the angles as they were, when the normal equations are singular
    bool CalculaAngulos();
    /// Works out view direction, target, up and right from `m_Pitch` and `m_Yaw`, in single precision.
    void CalculaVectores();

    void SetPitch(double grados);
    void SetYaw(double grados);
    /// Moves the eye by d; the target follows along `ViewVector`.
    void DesplazaCamara(const Punto& d);
    /// Looks at t; the eye keeps its offset from the target.
    void SetTrans(const Punto& t);
    void SumaTrans(const Punto& d);
    /// Moves sideways until x has changed by dx; nothing when the view has no left-right component.
    void SumaXTrans(double dx);
    /// Moves along the view until y has changed by dy; nothing for a level view.
    void SumaYTrans(double dy);
    void SumaZTrans(double z);

    /// Turns the view by rad (radians) round an axis through the fixed end: the eye stays when bMueveVista, else the
    /// target does.
    void RotateView(double rad, const Punto& eje, int bMueveVista);
    /// Tilts, turns and rolls by degrees. The eye never moves, whichever flag is given. When ref is given it is added
    /// to the axis as it stands.
    void SumaAnguloX(double grados, int flag, const Punto* ref);
    void SumaAnguloY(double grados, int flag, const Punto* ref);
    void SumaAnguloZ(double grados, int flag, const Punto* ref);
    /// Walks the camera to the given angles, since the angles follow from the vectors and can't simply be stored. Any
    /// finite angle is taken modulo 360. With z between 90 and 270 not every target is reached, and trying takes
    /// seconds: the walk passes 90, where x and y turn round one axis.
    void SetAngulos(double x, double y, double z);

    /// Left, up and forward axes of three angles (degrees) in the given order of rotation (1 to 5, any other is the
    /// sixth order). Writes up into `UpVector` and forward into `View` of this camera, and the three axes into the
    /// columns of the 16 doubles of m.
    void AnglesToAxes(const Punto& ang, double* m, int orden);

    /// Moves eye and target along the view by d.
    void MoveCamera(double d);
    /// Moves eye and target sideways by d in plan: y stays.
    void StrafeCamera(double d);
    /// Moves eye and target by d along up, turned by a round the right axis and by b round up (radians). This is how
    /// the frame changes height.
    void StrafeCamera2(double d, double a, double b);

    /// One frame of a walk: turns by the pointer, moves by the keys and counts the frame. The host calls it before each
    /// `Render`, on the thread that renders, while its window has the focus. Without a display nothing turns or moves.
    /// @param t time since the frame before, seconds
    void Update(float t);
    /// Turns the view by how far the pointer has gone from the screen's pixel (400, 300), a radian for 1000 pixels, and
    /// puts the pointer back there: sideways round y, up and down round the right axis by a radian at most each way.
    /// That tilt is one for all cameras, since there is one pointer. Nothing turns when the pointer can't be put back.
    void SetViewByMouse();
    /// Moves by the keys held down, 100 GL units a second: the arrows up and down or W and S along the view, left and
    /// right or A and D sideways.
    /// @param t seconds
    void CheckForMovement(float t);
    /// @return frames that `Update` has counted, of all cameras, since its time last went beyond a second
    static int Fotogramas();

  private:
    Punto Direccion() const;  // unit of target - eye
    Punto Derecha() const;    // unit of (target - eye) x up
    void GiraSinMoverOjo(double rad, const Punto& eje, int flag);
    double AnulaAngulos();
    void AcercaXZ(double x, double z, double& zLeido);

    Punto m_Angulos{0, 0, 0, 0};
    Punto m_Position{0, 0, 0, 0};
    Punto m_View{0, 1, 0, 0};
    Punto m_ViewVector{0, 1, 0, 0};
    Punto m_UpVector{0, 0, 1, 0};
    // Not a unit vector: hosts know this start value, which stays until `CalculaVectores`.
    Punto m_RightVector{1, 0, 1, 0};
    Punto m_Strafe{0, 0, 0, 0};
    double m_Pitch = 0;
    double m_Yaw = 0;
};
