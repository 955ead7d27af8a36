#pragma once
// A recorder of OpenGL calls. The test program itself defines the entry points of OpenGL and GLU (TablaGL.inc), so the
// library under test calls them; each notes its name and arguments and passes on to the real one. A test can so hold
// the exact order of calls in a pass or in a list against what it should be, and can make a chosen call fail.

#include "platform/OpenGL.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

/// Calls as text, one each: `glNormal3f(0, 0, 1)`, `glEnable(GL_LIGHTING)`, `glMultMatrixd([1, 0, ...])`.
using LlamadasGL = std::vector<std::string>;

/// Records while it lives. One at a time in the program; calls of all threads go into it. Calls that a GLU function
/// makes inside are not noted apart from it, and glGetError is noted only when asked for. What goes into a list
/// between glNewList and glEndList and what is executed are kept apart; a call that OpenGL never compiles
/// (glGenLists, glReadPixels, ...) counts as executed even while a list is open.
class RegistroGL {
  public:
    enum class Errores { Callar, Anotar };

    explicit RegistroGL(Errores errores = Errores::Callar);
    ~RegistroGL();
    RegistroGL(const RegistroGL&) = delete;
    RegistroGL& operator=(const RegistroGL&) = delete;

    /// Forgets what was noted so far; goes on recording.
    void Olvida();

    /// All calls in the order in which they were made.
    LlamadasGL Todas() const;
    /// The calls that ran at once, in order; glNewList and glEndList are among them, what they enclose is not.
    LlamadasGL Ejecutadas() const;
    /// What the last compilation of list `lista` put into it; empty for a list that was not compiled.
    LlamadasGL Lista(GLuint lista) const;
    /// The lists compiled, in the order of their first glNewList.
    std::vector<GLuint> Listas() const;

    /// How many times `nombre` was called, compiled or executed.
    std::size_t Cuenta(std::string_view nombre) const;
    /// The arguments of every call of `nombre`, arrays laid out flat: for checking vertices as numbers. Costs no text.
    std::vector<std::vector<double>> Numeros(std::string_view nombre) const;
};

/// Makes the n-th call (from 1, counted from here) of an entry point fail: the call isn't passed on, and the next
/// glGetError reports `error`. With "glGetError" as the name, the n-th look itself reports it. Ends with the object.
/// A name that the table doesn't have ends the test program with a message: such a fault would never happen.
class FallaGL {
  public:
    FallaGL(std::string_view nombre, int n, GLenum error = GL_INVALID_OPERATION);
    ~FallaGL();
    FallaGL(const FallaGL&) = delete;
    FallaGL& operator=(const FallaGL&) = delete;

    /// Whether the call came, so that a test can tell that it held the path that it means.
    bool Ocurrida() const;
};

/// Only the calls of the named functions, in their order.
LlamadasGL Solo(const LlamadasGL& llamadas, const std::vector<std::string>& nombres);
/// All but the calls of the named functions.
LlamadasGL Sin(const LlamadasGL& llamadas, const std::vector<std::string>& nombres);
/// One call a line, for a readable difference.
std::string EnLineas(const LlamadasGL& llamadas);
/// `GL_LIGHTING` for 0x0B50; hexadecimal for a value without a name.
std::string NombreGL(GLenum valor);

/// Compares calls with `{"glBegin(GL_QUADS)", ...}`; a failure shows a line-by-line difference.
#define EXPECT_LLAMADAS(llamadas, ...) EXPECT_EQ(EnLineas(llamadas), EnLineas(LlamadasGL __VA_ARGS__))
