#pragma once
// What the tests of fonts share: the face that they know the measures of.

#include "platform/CaraFuente.h"
#include "platform/Fuentes.h"
#include "platform/Objetos.h"

#include <gtest/gtest.h>

#include <string>

/// A font of the given height, weight and face, for DeleteObject.
inline HFONT CreaFuente(int alto, int peso = FW_NORMAL, bool bCursiva = false, const wchar_t* cara = L"Arial") {
    return CreateFontW(alto, 0, 0, 0, peso, bCursiva, FALSE, FALSE, DEFAULT_CHARSET, OUT_DEFAULT_PRECIS,
                       CLIP_DEFAULT_PRECIS, DEFAULT_QUALITY, DEFAULT_PITCH | FF_DONTCARE, cara);
}

inline plataforma::Fuente Pedida(int alto, int peso = FW_NORMAL, bool bCursiva = false, const char* cara = "Arial") {
    plataforma::Fuente f;
    f.m_Cara = cara;
    f.m_nAlto = alto;
    f.m_nPeso = peso;
    f.m_bCursiva = bCursiva;
    return f;
}

/// Arial or Liberation Sans serves for Arial: both have the same widths.
inline bool HaySans() {
    const auto lugar = plataforma::BuscaCara(Pedida(-16));
    if (!lugar) return false;
    return lugar->m_Fichero.find("LiberationSans-Regular") != std::string::npos ||
           lugar->m_Fichero.find("rial.ttf") != std::string::npos;
}

/// Tests that know the measures of the face.
template <class Base>
class ConSans : public Base {
  protected:
    void SetUp() override {
        if (!HaySans()) GTEST_SKIP() << "neither Arial nor Liberation Sans is installed (package fonts-liberation)";
        Base::SetUp();
    }
};
