// A hand on the keyboard. The one request that it needs is written here, which spares the tests a library. Its headers
// define types of the platform's names, so they stay in this file.

#include "ManoX11.h"

#include <X11/Xlibint.h>
#include <X11/extensions/xtestproto.h>
#include <gtest/gtest.h>

ManoX11::ManoX11() : m_Display(XOpenDisplay(nullptr)) {
    int evento = 0, error = 0;
    m_bPuede = m_Display && XQueryExtension(m_Display, "XTEST", &m_nCodigo, &evento, &error);
}

void ManoX11::Retira() {
    if (m_Display) XCloseDisplay(m_Display);
    m_Display = nullptr;
    m_bPuede = false;
}

void ManoX11::Manda(int que, KeySym tecla) {
    ASSERT_TRUE(m_bPuede);
    const KeyCode codigo = XKeysymToKeycode(m_Display, tecla);
    ASSERT_NE(codigo, 0) << "the keyboard has no such key";
    xXTestFakeInputReq nueva{};
    nueva.xtReqType = X_XTestFakeInput;
    nueva.type = static_cast<BYTE>(que);
    nueva.detail = codigo;
    LockDisplay(m_Display);
    void* sitio = _XGetRequest(m_Display, static_cast<CARD8>(m_nCodigo), sz_xXTestFakeInputReq);
    const auto* cabecera = static_cast<const xReq*>(sitio);
    nueva.reqType = cabecera->reqType;
    nueva.length = cabecera->length;
    *static_cast<xXTestFakeInputReq*>(sitio) = nueva;
    UnlockDisplay(m_Display);
    XSync(m_Display, False);
}
