#pragma once
// The window of `lumbra view`: a view of a scene, moved by mouse and keys.
//
// Handlers change the camera and ask for painting; the frame is drawn once for all that came together. What is told
// goes to the title, and to standard output what a user may want to keep.

#include "Contenido.h"
#include "Gestos.h"
#include "frame/CVistaGL.h"

#include <string>

/// What a window is opened with.
struct OpcionesVisor {
    std::string fichero;           ///< the first one, UTF-8: its name is the title, and that of what is written
    int ancho = 1000, alto = 750;  ///< pixels
};

class Visor : public CVistaGL {
  public:
    /// @param contenido  borrowed; must outlive the window
    Visor(Contenido& contenido, OpcionesVisor opciones);

    /// Makes the window and shows it. @throw std::runtime_error with a sentence for the user
    void Abre();
    /// Serves the user until the window is gone.
    static void Atiende(Visor& visor);

    /// How the window is, or was before it was closed.
    const CGL& Escena() const { return *m_pGL; }
    int Ancho() const { return m_nAncho; }
    int Alto() const { return m_nAlto; }
    /// The factor of heights is the user's, not the one that is chosen for him.
    bool ExageracionElegida() const { return m_bExageracion; }

  protected:
    int OnCreate(LPCREATESTRUCT cs) override;
    void OnInitialUpdate() override;
    void OnSize(UINT tipo, int cx, int cy) override;
    void OnDraw(CDC* pDC) override;

    void OnLButtonDown(UINT flags, CPoint pt) override;
    void OnLButtonUp(UINT flags, CPoint pt) override;
    void OnLButtonDblClk(UINT flags, CPoint pt) override;
    void OnMButtonDown(UINT flags, CPoint pt) override;
    void OnMButtonUp(UINT flags, CPoint pt) override;
    void OnMouseMove(UINT flags, CPoint pt) override;
    BOOL OnMouseWheel(UINT flags, short delta, CPoint pt) override;
    void OnKeyDown(UINT tecla, UINT repeticiones, UINT flags) override;

  private:
    enum class Arrastre { kNada, kGira, kDesplaza };
    // What a drag holds: a point of the model, its depth, and where the pointer was when it was last followed.
    struct Agarre {
        Arrastre que = Arrastre::kNada;
        CPoint inicio, ultimo;
        bool bMovido = false;  // too far for a click
        bool bDoble = false;   // the second press of two
        Vertiz::CCoor3D<double> punto;
        double profundidad = 0;
    };

    // Visor.cpp
    void Redibuja();
    void AlDia();
    void Titula(const std::string& texto);
    void Di(const std::string& texto);
    Mirada DameMirada() const;
    void PonMirada(const Mirada& mirada);
    void Encuadra();
    void Rehaz();

    // VisorRaton.cpp
    void Agarra(Arrastre que, CPoint pt);
    bool Situa(CPoint pt, Agarre& agarre);
    void Sigue(CPoint pt, bool bLibre);
    void GiraArrastrando(const CPoint& hasta, bool bLibre);
    void DesplazaArrastrando(const CPoint& hasta);
    void Pulsa(CPoint pt);
    void PulsaDosVeces(CPoint pt);
    void AplicaRueda();
    void Aproxima(CPoint pt, double factor);
    void MiraAlrededor(double azimut, double elevacion);
    void AbreAngulo(double factor);

    // VisorTeclas.cpp
    void Tecla(UINT tecla);
    void Flecha(UINT tecla, bool bDesplaza);
    void CambiaProyeccion();
    void CambiaExageracion(int sentido);
    void Cambia(int (CGL::*da)() const, int (CGL::*pon)(int), bool bListas);
    static void ListaTeclas();

    // VisorSalidas.cpp
    void Imprime();
    void Retrata();
    std::string Libre(const char* extension) const;

    // VisorCroquis.cpp
    void EmpiezaCroquis();
    void PuntoCroquis(CPoint pt);
    void GomaCroquis(CPoint pt);
    void RetiraCroquis();
    void AcabaCroquis();
    void DejaCroquis();
    std::string LargoCroquis() const;

    Contenido& m_Contenido;
    OpcionesVisor m_Opciones;
    std::string m_Titulo;
    std::string m_Fallo;  // why the window couldn't be made
    int m_nAncho, m_nAlto;
    bool m_bSucia = true;  // the picture isn't the camera's any more
    bool m_bExageracion = false;
    Agarre m_Agarre;
    bool m_bClic = false;  // the last press was a click
    int m_nRueda = 0;      // turns of the wheel that wait, in its units
    CPoint m_PuntoRueda;
    bool m_bCroquis = false, m_bCroquisVacio = true;  // a line is being sketched; it has no fixed point yet
};
