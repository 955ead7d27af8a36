#pragma once
// A grid of hills in a scene on a bitmap, in a host's order up to a fitted view.

#include "terrain/CEscenaDEM.h"
#include "model/CDigiTab.h"
#include "platform/CBitmap.h"
#include "platform/CDC.h"

template <class Escena>
struct Colinas {
    /// @param lado        samples a side, 5 m apart
    /// @param ancho, alto of the picture, pixels
    /// @param altura      of row and column
    /// @param ajusta      settles this object's scene, before that has a context
    template <class Altura, class Ajusta>
    Colinas(unsigned lado, int ancho, int alto, Altura altura, Ajusta ajusta)
        : dem(lado, lado, 5.0, 5.0, 500000.0, 4500000.0), escena(&dem) {
        for (unsigned r = 0; r < lado; ++r)
            for (unsigned c = 0; c < lado; ++c)
                dem.Matriz().Set(r, c, float(altura(r, c)));
        dem.ActualizaCantidades();
        bitmap.CreateBitmap(ancho, alto, 24);
        dc.CreateCompatibleDC(nullptr);
        dc.SelectObject(&bitmap);
        ajusta(*this);
        bien = escena.Crear(&dc, PFD_TYPE_RGBA, PFD_DRAW_TO_BITMAP | PFD_SUPPORT_OPENGL) != 0;
        escena.OnZoomExtension();
        bien = bien && escena.Iniciar() && escena.Resize(ancho, alto);
        escena.OnZoomExtension();
    }

    CBitmap bitmap;
    CDC dc;
    Vertiz::CDEM dem;
    Vertiz::CDigiTab tabla;
    Escena escena;
    bool bien = false;  ///< there is a picture to draw
};
