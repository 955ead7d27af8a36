#pragma once
// What a test draws on: a picture in memory with a rendering context, and a fixture that brings one and turns OpenGL
// errors that nobody looked at into failures.

#include "platform/CBitmap.h"
#include "platform/CDC.h"
#include "platform/Contextos.h"
#include "support/Imagen.h"

#include <gtest/gtest.h>

/// An off-screen device: a memory device context with a bitmap of 24 bits, a pixel format and a context. Needs no
/// display. The context is not current until `Actual` is called.
class Lienzo {
  public:
    Lienzo(int ancho, int alto);
    ~Lienzo();
    Lienzo(const Lienzo&) = delete;
    Lienzo& operator=(const Lienzo&) = delete;

    /// False when any step of making it failed.
    bool Valido() const { return m_hRC != nullptr; }

    /// Makes the context current on this thread.
    bool Actual() const;
    /// Releases whatever context is current on this thread.
    static void Suelta();

    /// Reads the colours drawn so far; takes the context and leaves current what was current before.
    Imagen Lee() const;

    CDC& DC() { return m_dc; }
    HGLRC Contexto() const { return m_hRC; }
    int Ancho() const { return m_ancho; }
    int Alto() const { return m_alto; }

  private:
    int m_ancho;
    int m_alto;
    CBitmap m_bitmap;
    CDC m_dc;
    HGLRC m_hRC = nullptr;
};

/// Base of tests that draw: `m_lienzo` is there and current when the test begins. An OpenGL error left behind in the
/// context fails the test.
class Contexto : public testing::Test {
  protected:
    explicit Contexto(int ancho = 200, int alto = 150) : m_lienzo(ancho, alto) {}

    void SetUp() override;
    void TearDown() override;

    Lienzo m_lienzo;
};
