#pragma once
// What a scene draws on in tests: a picture in memory. The scene makes the contexts.

#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "support/Imagen.h"

/// A memory device context with a bitmap. Needs no display.
class Tela {
  public:
    explicit Tela(int ancho = 64, int alto = 48, unsigned bits = 24);

    CDC* DC() { return &m_dc; }
    /// What was presented last.
    Imagen Lee() const;
    /// Colour of a pixel of it as 0xRRGGBB; y upwards.
    unsigned Pixel(int x, int y) const;

  private:
    CBitmap m_bitmap;
    CDC m_dc;
};
