#include "support/RegistroGL.h"

#include "support/Contexto.h"

#include <gtest/gtest.h>

namespace {

class RegistroDeLlamadas : public Contexto {};

TEST_F(RegistroDeLlamadas, KeepsOrderNamesAndArguments) {
    const RegistroGL registro;
    glEnable(GL_LIGHTING);
    glBegin(GL_LINES);
    glNormal3f(0, 0.1f, 1);
    glVertex3d(0.1, -2, 1e10);
    glVertex3f(1, 2, 3);
    glEnd();
    glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
    EXPECT_LLAMADAS(registro.Todas(), {"glEnable(GL_LIGHTING)", "glBegin(GL_LINES)", "glNormal3f(0, 0.1, 1)",
                                       "glVertex3d(0.1, -2, 1e+10)", "glVertex3f(1, 2, 3)", "glEnd()",
                                       "glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT)"});
}

TEST_F(RegistroDeLlamadas, NotesArraysByValue) {
    const RegistroGL registro;
    float luz[] = {5, -5, -5, 0};
    glLightfv(GL_LIGHT0, GL_POSITION, luz);
    luz[0] = 9;
    const GLushort codigos[] = {65, 66};
    glCallLists(2, GL_UNSIGNED_SHORT, codigos);
    EXPECT_LLAMADAS(registro.Todas(),
                    {"glLightfv(GL_LIGHT0, GL_POSITION, [5, -5, -5, 0])", "glCallLists(GL_UNSIGNED_SHORT, [65, 66])"});
}

TEST_F(RegistroDeLlamadas, IsOffWithoutARecorder) {
    glEnable(GL_FOG);
    const RegistroGL registro;
    EXPECT_TRUE(registro.Todas().empty());
}

TEST_F(RegistroDeLlamadas, PassesOnToOpenGL) {
    const RegistroGL registro;
    glClearColor(1, 0, 0, 1);
    glClear(GL_COLOR_BUFFER_BIT);
    EXPECT_EQ(m_lienzo.Lee().Pixel(10, 10), (std::array<std::uint8_t, 3>{255, 0, 0}));
}

TEST_F(RegistroDeLlamadas, KeepsListsApartFromWhatIsExecuted) {
    const RegistroGL registro;
    const GLuint lista = glGenLists(2);
    glNewList(lista, GL_COMPILE);
    glColor3f(1, 0, 0);
    EXPECT_EQ(glIsEnabled(GL_FOG), GL_FALSE);
    glEndList();
    glNewList(lista + 1, GL_COMPILE_AND_EXECUTE);
    glLineWidth(3);
    glEndList();
    glCallList(lista);
    const std::string uno = std::to_string(lista);
    const std::string dos = std::to_string(lista + 1);
    EXPECT_LLAMADAS(registro.Lista(lista), {"glColor3f(1, 0, 0)"});
    EXPECT_LLAMADAS(registro.Lista(lista + 1), {"glLineWidth(3)"});
    EXPECT_EQ(registro.Listas(), (std::vector<GLuint>{lista, lista + 1}));
    EXPECT_LLAMADAS(
        registro.Ejecutadas(),
        {"glGenLists(2)", "glNewList(" + uno + ", GL_COMPILE)", "glIsEnabled(GL_FOG)", "glEndList()",
         "glNewList(" + dos + ", GL_COMPILE_AND_EXECUTE)", "glLineWidth(3)", "glEndList()", "glCallList(" + uno + ")"});
    glDeleteLists(lista, 2);
}

TEST_F(RegistroDeLlamadas, AListCompiledAgainHoldsTheSecondContents) {
    const RegistroGL registro;
    const GLuint lista = glGenLists(1);
    for (const float ancho : {1.0f, 2.0f}) {
        glNewList(lista, GL_COMPILE);
        glLineWidth(ancho);
        glEndList();
    }
    EXPECT_LLAMADAS(registro.Lista(lista), {"glLineWidth(2)"});
}

TEST_F(RegistroDeLlamadas, CallsInsideGluAreNotNotedApart) {
    const RegistroGL registro;
    glMatrixMode(GL_PROJECTION);
    gluPerspective(45, 1, 1, 10);
    EXPECT_LLAMADAS(registro.Todas(), {"glMatrixMode(GL_PROJECTION)", "gluPerspective(45, 1, 1, 10)"});
    GLUquadric* const cuadrica = gluNewQuadric();
    gluSphere(cuadrica, 1, 4, 4);
    gluDeleteQuadric(cuadrica);
    EXPECT_EQ(registro.Cuenta("glBegin"), 0u);
    EXPECT_EQ(registro.Cuenta("gluSphere"), 1u);
}

TEST_F(RegistroDeLlamadas, NotesErrorLooksOnlyWhenAsked) {
    {
        const RegistroGL registro;
        EXPECT_FALSE(HayErrorGL());
        EXPECT_TRUE(registro.Todas().empty());
    }
    const RegistroGL registro(RegistroGL::Errores::Anotar);
    EXPECT_FALSE(HayErrorGL());
    EXPECT_LLAMADAS(registro.Todas(), {"glGetError()"});
}

TEST_F(RegistroDeLlamadas, GivesArgumentsAsNumbers) {
    const RegistroGL registro;
    glTranslated(1, 2, 0.3);
    glTranslated(4, 5, 6);
    EXPECT_EQ(registro.Numeros("glTranslated"), (std::vector<std::vector<double>>{{1, 2, 0.3}, {4, 5, 6}}));
}

TEST_F(RegistroDeLlamadas, FiltersByName) {
    const LlamadasGL todas{"glBegin(GL_LINES)", "glVertex3f(1, 2, 3)", "glEnd()"};
    EXPECT_LLAMADAS(Solo(todas, {"glVertex3f"}), {"glVertex3f(1, 2, 3)"});
    EXPECT_LLAMADAS(Sin(todas, {"glVertex3f"}), {"glBegin(GL_LINES)", "glEnd()"});
}

TEST_F(RegistroDeLlamadas, TheChosenCallFailsAndNoOther) {
    const FallaGL falla("glNewList", 2, GL_OUT_OF_MEMORY);
    const GLuint lista = glGenLists(2);
    glNewList(lista, GL_COMPILE);
    glEndList();
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    EXPECT_FALSE(falla.Ocurrida());
    glNewList(lista + 1, GL_COMPILE);
    EXPECT_TRUE(falla.Ocurrida());
    EXPECT_EQ(glGetError(), GLenum(GL_OUT_OF_MEMORY));
    EXPECT_EQ(glGetError(), GLenum(GL_NO_ERROR));
    GLint abierta = -1;
    glGetIntegerv(GL_LIST_INDEX, &abierta);
    EXPECT_EQ(abierta, 0) << "the call that failed wasn't passed on";
    glDeleteLists(lista, 2);
}

TEST_F(RegistroDeLlamadas, ALookCanBeMadeToReportAnError) {
    const FallaGL falla("glGetError", 2);
    EXPECT_FALSE(HayErrorGL());
    EXPECT_TRUE(HayErrorGL());
    EXPECT_FALSE(HayErrorGL());
}

}  // namespace
