// Marks and measures: what their lists hold, which mark is of which kind, and how they are drawn.

#include "EscenaVista.h"
#include "support/RegistroGL.h"

using Punto = EscenaPrueba::Punto;
using Texto = Vertiz::CTexto<double>;

namespace {

/// A mark at (x, 20) of the box of 100 x 100 x 50.
Texto Marca(const wchar_t* texto, double x, double z, double orientacion = 0) {
    return {L"m", Punto(x, 20, z), texto, 3.0, orientacion};
}

std::string Id(GLuint lista) {
    return std::to_string(lista);
}

class ConMarcas : public testing::Test {
  protected:
    void SetUp() override {
        m_Escena.SetGrosorPuntos(2);
        m_Escena.m_fEscalaFuente = 1.5F;
        ASSERT_TRUE(m_Escena.Monta(m_Tela));
    }
    void TearDown() override { EXPECT_EQ(wglGetCurrentContext(), nullptr) << "a context was left current"; }
    void DaFuentes() {
        const Prestado prestado(m_Escena);
        m_Escena.m_nListaFuentes = glGenLists(1024);
    }
    GLuint Lista(unsigned i) const { return m_Escena.m_nListaMarcas + i; }

    Tela m_Tela;
    EscenaVista m_Escena;
};

}  // namespace

TEST_F(ConMarcas, ThePointsOfPhotographAndTerrainMarksLieInAListEach) {
    const RegistroGL registro;
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    m_Escena.NuevaMarca(Marca(L"b", 60, -9999));
    m_Escena.NuevaMarca(Marca(L"", 70, 25));
    const auto punto = [](const std::string& v) {
        return LlamadasGL{"glPointSize(10)", "glBegin(GL_POINTS)", "glColor3f(1, 1, 1)", "glVertex3f(" + v + ")",
                          "glEnd()",         "glPointSize(1)"};
    };
    m_Escena.SetColorFondo(0);
    m_Escena.ModificaMarca(0, Marca(L"a", 75, 25));
    EXPECT_LLAMADAS(registro.Lista(m_Escena.m_nListaPuntosMarcasTerreno), (punto("0.25, 0, 0.3")));
    EXPECT_LLAMADAS(registro.Lista(m_Escena.m_nListaPuntosMarcasFoto), (punto("0.1, -100.24, 0.3")));
}

TEST_F(ConMarcas, AHeightOfExactlyTheLimitIsBothKinds) {
    for (const auto& [z, foto, terreno] :
         {std::tuple(-9989.0, 1, 1), std::tuple(-9989.001, 1, 0), std::tuple(-9988.999, 0, 1)}) {
        m_Escena.ClearMarcas();
        const RegistroGL registro;
        m_Escena.NuevaMarca(Marca(L"a", 50, z));
        EXPECT_EQ(Solo(registro.Lista(m_Escena.m_nListaPuntosMarcasFoto), {"glVertex3f"}).size(), foto) << z;
        EXPECT_EQ(Solo(registro.Lista(m_Escena.m_nListaPuntosMarcasTerreno), {"glVertex3f"}).size(), terreno) << z;
    }
}

TEST_F(ConMarcas, AnOutlineTextIsScaledToItsHeightAndCalledByItsCodes) {
    DaFuentes();
    m_Escena.SetColorFondo(0);
    const RegistroGL registro;
    m_Escena.NuevaMarca(Marca(L"Añ\u0400\U0001F600z", 50, 25));
    EXPECT_EQ(registro.Numeros("glPushAttrib"), (std::vector<std::vector<double>>{{0xFFFFF}}));
    EXPECT_LLAMADAS(Sin(registro.Lista(Lista(0)), {"glPushAttrib"}),
                    {"glColor3f(1, 1, 1)", "glListBase(" + Id(m_Escena.m_nListaFuentes) + ")", "glPushMatrix()",
                     "glScalef(0.02, 0.02, 0.02)", "glLineWidth(1)", "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)",
                     "glCallLists(GL_UNSIGNED_SHORT, [65, 241, 122])",  // codes of 1024 and above have no glyph
                     "glPopAttrib()", "glPopMatrix()"});
}

TEST_F(ConMarcas, ABitmapTextStartsAtARasterPosition) {
    DaFuentes();
    m_Escena.m_Data.m_bTextos3D = 0;
    const RegistroGL registro;
    m_Escena.NuevaMarca(Marca(L"A", 50, 25));
    const LlamadasGL lista = registro.Lista(Lista(0));
    ASSERT_EQ(lista.size(), 8U);
    EXPECT_EQ(lista[4], "glRasterPos3f(0, 0, 0)");
    EXPECT_EQ(lista[5], "glCallLists(GL_UNSIGNED_SHORT, [65])");
}

TEST_F(ConMarcas, WithoutFontsATextCallsNoList) {
    const RegistroGL registro;
    m_Escena.NuevaMarca(Marca(L"AA", 50, 25));
    EXPECT_EQ(m_Escena.m_nListaFuentes, 0U);
    EXPECT_EQ(registro.Cuenta("glCallLists"), 0U);
    EXPECT_EQ(registro.Lista(Lista(0)).back(), "glPopMatrix()");
}

TEST_F(ConMarcas, WhiteMarksOnAnAlmostWhiteBackgroundTurnGrey) {
    m_Escena.SetColorFondo(RGB(250, 250, 250));
    const RegistroGL registro;
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    for (const auto& color : registro.Numeros("glColor3f"))
        EXPECT_NEAR(color[0], 128 / 255.0, 1e-6);
    EXPECT_EQ(registro.Cuenta("glColor3f"), 2U);
}

TEST_F(ConMarcas, AMarkWithoutATextOrAPlaceKeepsItsIndex) {
    m_Escena.m_DataTransformacion = Esfera(Punto(0, 0, 0));
    RegistroGL registro;
    m_Escena.NuevaMarca(Marca(L"", 10, 5));
    m_Escena.NuevaMarca(Marca(L"lejos", 500, 5));  // beyond the sphere: no place, but a text
    m_Escena.NuevaMarca(Marca(L"cerca", 30, 5, 4500.9));
    ASSERT_EQ(m_Escena.m_MarcasGL.NPuntos(), 3U);
    EsperaCerca(m_Escena.m_MarcasGL.Punto(2), Punto(0.3, 0.05, -0.2), 1e-12);
    EXPECT_EQ(m_Escena.m_MarcasGL.Punto(2).GetTipo(), 4500) << "the orientation, truncated";
    EXPECT_TRUE(registro.Lista(Lista(0)).empty());
    EXPECT_FALSE(registro.Lista(Lista(1)).empty());
    EXPECT_EQ(Solo(registro.Lista(m_Escena.m_nListaPuntosMarcasTerreno), {"glVertex3f"}).size(), 1U);
    const Prestado prestado(m_Escena);
    registro.Olvida();
    ASSERT_EQ(m_Escena.OnRenderMarcasTerreno(), 1);
    EXPECT_LLAMADAS(
        Solo(registro.Ejecutadas(), {"glCallList"}),
        {"glCallList(" + Id(m_Escena.m_nListaPuntosMarcasTerreno) + ")", "glCallList(" + Id(Lista(2)) + ")"});
}

TEST_F(ConMarcas, MarksFaceTheViewerUnlessTheyHaveAnOrientation) {
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    m_Escena.NuevaMarca(Marca(L"b", 60, 25, 35000));  // 350 degrees
    m_Escena.NuevaMarca(Marca(L"c", 70, -9999));
    m_Escena.m_Camara.SetAngulos(20, 30, 40);
    const double x = m_Escena.GetAnguloX(), y = m_Escena.GetAnguloY(), z = m_Escena.GetAnguloZ();
    const Prestado prestado(m_Escena);
    {
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.OnRenderMarcasTerreno(), 1);
        EXPECT_LLAMADAS(Sin(registro.Ejecutadas(), {"glTranslated", "glRotated"}),
                        {"glCallList(" + Id(m_Escena.m_nListaPuntosMarcasTerreno) + ")", "glPushMatrix()",
                         "glCallList(" + Id(Lista(0)) + ")", "glPopMatrix()", "glPushMatrix()",
                         "glCallList(" + Id(Lista(1)) + ")", "glPopMatrix()"});
        EXPECT_EQ(registro.Numeros("glRotated"),
                  (std::vector<std::vector<double>>{
                      {x - 90, 1, 0, 0}, {z, 0, 0, 1}, {-y, 0, 1, 0}, {350, 0, 1, 0}, {x - 90, 1, 0, 0}}));
        EXPECT_EQ(registro.Numeros("glTranslated").size(), 2U);
        const auto lugares = registro.Numeros("glTranslated");
        for (std::size_t i = 0; i < 2; ++i) {
            EXPECT_NEAR(lugares[i][0], 0.1 * double(i), 1e-9);
            EXPECT_NEAR(lugares[i][1], 0.0, 1e-9);
            EXPECT_NEAR(lugares[i][2], 0.3, 1e-9);
        }
        LlamadasGL pasos = registro.Ejecutadas();
        for (std::string& l : pasos)
            l.erase(l.find('('));
        EXPECT_LLAMADAS(pasos, {"glCallList", "glPushMatrix", "glTranslated", "glRotated", "glRotated", "glRotated",
                                "glCallList", "glPopMatrix", "glPushMatrix", "glTranslated", "glRotated", "glRotated",
                                "glCallList", "glPopMatrix"});
    }
    for (int (CGL::*dibuja)() : {&CGL::OnRenderMarcasFoto, &CGL::OnRenderMedidas}) {
        const RegistroGL registro;
        ASSERT_EQ((m_Escena.*dibuja)(), 1);
        EXPECT_LLAMADAS(
            Solo(registro.Ejecutadas(), {"glCallList"}),
            {"glCallList(" + Id(m_Escena.m_nListaPuntosMarcasFoto) + ")", "glCallList(" + Id(Lista(2)) + ")"});
    }
}

TEST_F(ConMarcas, AnErrorWhileDrawingEndsTheMarksWithTheirMatrixPutBack) {
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    m_Escena.NuevaMarca(Marca(L"b", 60, 25));
    const Prestado prestado(m_Escena);
    const FallaGL falla("glCallList", 2);
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.OnRenderMarcasTerreno(), 0);
    EXPECT_EQ(registro.Cuenta("glPushMatrix"), 1U);
    EXPECT_EQ(registro.Cuenta("glPopMatrix"), 1U);
}

TEST_F(ConMarcas, MarksAreDrawnUnlitUntexturedAndFilledAndOnlyWhenOn) {
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    m_Escena.NuevaMarca(Marca(L"b", 50, -9999));
    {
        const RegistroGL registro;
        ASSERT_EQ(m_Escena.Render(), 1);
        const LlamadasGL estado = Solo(registro.Ejecutadas(), {"glDisable", "glPolygonMode"});
        const auto desde = std::ranges::find(estado, "glDisable(GL_LIGHTING)");
        EXPECT_LLAMADAS(LlamadasGL(desde, estado.end()),
                        {"glDisable(GL_LIGHTING)", "glDisable(GL_LIGHT0)", "glDisable(GL_TEXTURE_2D)",
                         "glPolygonMode(GL_FRONT_AND_BACK, GL_FILL)"});
        EXPECT_EQ(registro.Cuenta("glTranslated"), 0U);
    }
    m_Escena.m_Data.m_bMarcasTerreno = 1;
    const RegistroGL registro;
    ASSERT_EQ(m_Escena.Render(), 1);
    EXPECT_EQ(registro.Cuenta("glTranslated"), 1U);
}

TEST_F(ConMarcas, ChangingMarksDeletesTheirListsAndBuildsThemAnew) {
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    m_Escena.NuevaMarca(Marca(L"b", 60, 25));
    const auto cambia = [&](auto cambio, std::size_t quedan) {
        const std::string viejas =
            "glDeleteLists(" + Id(m_Escena.m_nListaMarcas) + ", " + std::to_string(m_Escena.m_Marcas.size()) + ")";
        const RegistroGL registro;
        cambio();
        const LlamadasGL borradas = Solo(registro.Ejecutadas(), {"glDeleteLists"});
        EXPECT_NE(std::ranges::find(borradas, viejas), borradas.end()) << viejas;
        EXPECT_EQ(borradas.size(), 3U) << "none is deleted twice";
        EXPECT_EQ(m_Escena.m_Marcas.size(), quedan);
        EXPECT_EQ(m_Escena.m_MarcasGL.NPuntos(), quedan);
        EXPECT_EQ(m_Escena.m_nListaMarcas == 0, quedan == 0);
        EXPECT_EQ(wglGetCurrentContext(), nullptr);
    };
    cambia([&] { m_Escena.ModificaMarca(1, Marca(L"otra", 70, 25)); }, 2);
    EXPECT_EQ(m_Escena.m_Marcas[1].Texto(), CString(L"otra"));
    cambia([&] { m_Escena.BorraMarca(0); }, 1);
    EXPECT_EQ(m_Escena.m_Marcas[0].Texto(), CString(L"otra"));
    cambia([&] { m_Escena.NuevaMarca(Marca(L"mas", 70, 25)); }, 2);
    cambia([&] { m_Escena.ClearMarcas(); }, 0);
    EXPECT_EQ(m_Escena.m_nListaPuntosMarcasFoto, 0U);
    EXPECT_EQ(m_Escena.m_nListaPuntosMarcasTerreno, 0U);
}

TEST_F(ConMarcas, AnAssignedSceneKeepsItsMarksAndTouchesNoListBesideTheOthersOne) {
    Tela tela;
    EscenaVista otra;
    ASSERT_TRUE(otra.Monta(tela));
    for (const wchar_t* texto : {L"a", L"b", L"c"})
        otra.NuevaMarca(Marca(texto, 50, 25));
    m_Escena.NuevaMarca(Marca(L"unica", 50, 25));
    otra = m_Escena;
    EXPECT_EQ(otra.m_Marcas.size(), 3U);
    EXPECT_EQ(otra.m_nListaMarcas, m_Escena.m_nListaMarcas);
    otra.m_Data.m_bMarcasTerreno = 1;
    const RegistroGL registro;
    ASSERT_EQ(otra.Render(), 1);
    otra.ClearMarcas();
    const double suya = m_Escena.m_nListaMarcas;
    for (const auto& llamada : registro.Numeros("glCallList"))
        EXPECT_TRUE(llamada[0] <= suya || llamada[0] > suya + 2) << "lists of others, called for marks";
    for (const auto& borrada : registro.Numeros("glDeleteLists"))
        EXPECT_TRUE(borrada[0] != suya || borrada[1] <= 1) << "lists of others, deleted as if of marks";
}

TEST_F(ConMarcas, ASharerThatIsAssignedToForgetsThePlacesOfItsMarks) {
    Tela tela;
    EscenaVista original;
    ASSERT_TRUE(original.Monta(tela));
    EscenaVista copia(original);
    copia.NuevaMarca(Marca(L"a", 50, 25));
    ASSERT_EQ(copia.m_MarcasGL.NPuntos(), 1U);
    copia = m_Escena;
    EXPECT_EQ(copia.m_Marcas.size(), 1U);
    EXPECT_EQ(copia.m_MarcasGL.NPuntos(), 0U);
}

TEST_F(ConMarcas, AnIndexPastTheEndDoesNothing) {
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    const RegistroGL registro;
    m_Escena.BorraMarca(1);
    m_Escena.ModificaMarca(1, Marca(L"b", 50, 25));
    EXPECT_TRUE(registro.Todas().empty());
    EXPECT_EQ(m_Escena.m_Marcas.size(), 1U);
}

TEST_F(ConMarcas, WithoutMarksThereIsNothingToCompile) {
    const RegistroGL registro;
    EXPECT_EQ(m_Escena.OnIniciarMarcas(), 1);
    EXPECT_EQ(m_Escena.OnIniciarMedidas(), 1);
    EXPECT_TRUE(registro.Todas().empty());
}

TEST_F(ConMarcas, CompilingMarksLeavesTheContextToTheHook) {
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    EXPECT_EQ(m_Escena.OnIniciarMarcas(), 1);
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    m_Escena.NuevaMarca(Marca(L"b", 50, 25));
    EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC) << "it was the caller's";
    wglMakeCurrent(nullptr, nullptr);
}

TEST_F(ConMarcas, AContextOfTheHostsIsLetGoAsByAnyOperation) {
    Tela tela;
    EscenaVista otra;
    ASSERT_TRUE(otra.Monta(tela));
    ASSERT_TRUE(otra.MakeCurrent(nullptr));
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    EXPECT_EQ(wglGetCurrentContext(), nullptr);
}

TEST_F(ConMarcas, MeasuresCompileTheMarksOnceMoreAndHaveNoListOfTheirOwn) {
    m_Escena.m_Medidas.emplace_back(CString(L"medida"));
    RegistroGL registro;
    EXPECT_EQ(m_Escena.OnIniciarMedidas(), 1) << "measures without marks";
    EXPECT_EQ(registro.Listas().size(), 2U);
    m_Escena.NuevaMarca(Marca(L"a", 50, 25));
    registro.Olvida();
    EXPECT_EQ(m_Escena.OnIniciarMedidas(), 1);
    EXPECT_EQ(registro.Listas().size(), 3U);
    EXPECT_EQ(m_Escena.m_MarcasGL.NPuntos(), 1U);
    EXPECT_EQ(m_Escena.m_nListaMedidas, 0U);
    wglMakeCurrent(nullptr, nullptr);
    {
        const Prestado prestado(m_Escena);
        m_Escena.m_nListaMedidas = glGenLists(1);
    }
    m_Escena.ClearMedidas();
    EXPECT_TRUE(m_Escena.m_Medidas.empty());
    EXPECT_EQ(m_Escena.m_nListaMedidas, 0U);
    EXPECT_EQ(m_Escena.m_Marcas.size(), 1U);
}

TEST_F(ConMarcas, AnErrorEndsTheMarksWithTheContextCurrent) {
    DaFuentes();
    m_Escena.m_Marcas.push_back(Marca(L"a", 50, 25));
    for (const char* nombre : {"glNewList", "glCallLists", "glEndList"}) {
        const FallaGL falla(nombre, 1);
        EXPECT_EQ(m_Escena.OnIniciarMarcas(), 0) << nombre;
        EXPECT_TRUE(falla.Ocurrida());
        EXPECT_EQ(wglGetCurrentContext(), m_Escena.m_hRC);
    }
    EXPECT_EQ(m_Escena.OnIniciarMarcas(), 1) << "the next one recovers";
    wglMakeCurrent(nullptr, nullptr);
}

TEST(CGLMarcasSinContexto, AreKeptUntilThereIsOne) {
    Tela tela;
    EscenaVista escena;
    escena.NuevaMarca(Marca(L"a", 50, 25));
    EXPECT_EQ(escena.m_Marcas.size(), 1U);
    ASSERT_TRUE(escena.Monta(tela));
    EXPECT_NE(escena.m_nListaMarcas, 0U);
}
