#pragma once
// Internal. Display lists kept in a field: 0 means none.

#include "platform/OpenGL.h"

/// Deletes a list, if there is one, or a block of lists from that one on, and zeroes the id.
inline void BorraLista(GLuint& lista, GLsizei cuantas = 1) {
    if (lista != 0) glDeleteLists(lista, cuantas);
    lista = 0;
}

/// Takes a new list in place of the old one and opens it for compiling. @return false on a GL error
[[nodiscard]] inline bool AbreLista(GLuint& lista) {
    BorraLista(lista);
    if (HayErrorGL()) return false;
    lista = glGenLists(1);
    glNewList(lista, GL_COMPILE);
    return !HayErrorGL();
}

/// Ends the open list.
/// @param bien  what came of filling it
/// @return bien, and no GL error since; none is left behind
[[nodiscard]] inline bool CierraLista(bool bien) {
    glEndList();
    const bool limpia = !HayErrorGL();
    return bien && limpia;
}
