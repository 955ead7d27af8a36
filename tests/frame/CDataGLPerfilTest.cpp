// The view settings in the application's store and in INI files.

#include "frame/CDataGL.h"
#include "platform/CWinApp.h"
#include "platform/Perfil.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>

#include <fstream>
#include <map>
#include <sstream>

namespace {

using Pares = std::vector<std::pair<std::wstring, std::wstring>>;

// A host that keeps its settings in memory, and notes what is asked and written, with the default or the value.
class Anfitrion : public CWinApp {
  public:
    Anfitrion() : CWinApp(L"prueba") {}

    UINT GetProfileInt(LPCWSTR seccion, LPCWSTR clave, int defecto) override {
        Nota(seccion, clave, std::to_wstring(defecto));
        const auto i = m_Guardado.find(clave);
        return static_cast<UINT>(i == m_Guardado.end() ? defecto : std::stoi(i->second));
    }
    CString GetProfileString(LPCWSTR seccion, LPCWSTR clave, LPCWSTR defecto) override {
        Nota(seccion, std::wstring(clave) + L"$", defecto ? defecto : L"");
        const auto i = m_Guardado.find(clave);
        return i == m_Guardado.end() ? CString(defecto) : CString(i->second);
    }
    BOOL WriteProfileInt(LPCWSTR seccion, LPCWSTR clave, int valor) override {
        Nota(seccion, clave, std::to_wstring(valor));
        m_Guardado[clave] = std::to_wstring(valor);
        return TRUE;
    }
    BOOL WriteProfileString(LPCWSTR seccion, LPCWSTR clave, LPCWSTR texto) override {
        Nota(seccion, std::wstring(clave) + L"$", texto);
        m_Guardado[clave] = texto;
        return TRUE;
    }

    Pares m_Notas;  // keys of texts with a $ behind them
    std::map<std::wstring, std::wstring> m_Guardado;

  private:
    void Nota(LPCWSTR seccion, std::wstring_view clave, std::wstring_view valor) {
        EXPECT_EQ(std::wstring(seccion), L"Vista");
        m_Notas.emplace_back(clave, valor);
    }
};

// Settings whose every field differs from every other one and from its default.
CDataGL Rara() {
    CDataGL d;
    int n = 100;
    for (int* campo : {&d.m_nColorFondo, &d.m_nColorDEM, &d.m_nColorBase, &d.m_nColorLIDAR, &d.m_nColorDesmonte,
                       &d.m_nColorTerraplen, &d.m_nColorNada, &d.m_nTipoColorLineas, &d.m_nSombraCeldas})
        *campo = n++;
    d.m_nModoRelleno = 110;
    d.m_nTipoLIDAR = ColorPorClase;
    d.m_nQuad = 3;
    d.m_nGrosorPuntos = 111;
    d.m_bRotacion = -1;
    n = 120;
    for (int* campo :
         {&d.m_bLimites, &d.m_bLimitesProyecto, &d.m_bEdificios, &d.m_bArboles, &d.m_bRupturas, &d.m_bReferencia,
          &d.m_bCurvado, &d.m_bPuntosCamara, &d.m_bBase, &d.m_bOrto, &d.m_bLuz, &d.m_bRelleno, &d.m_bImagenFondo,
          &d.m_bMascara, &d.m_bVerPlanos, &d.m_bVerPuntosConPlanos, &d.m_bVerPuntosSinPlanos})
        *campo = n++;
    d.m_nEjes = 140;
    d.m_SzImagenFondo = L"/cielos/año 1.jpg";
    n = 150;
    for (int& luz : d.m_nLuzParam)
        luz = n++;
    d.m_nCalidadTextos = 170;
    d.m_bTextos3D = 171;
    d.m_nAlturaTextos = 172;
    d.m_nMaxPuntosTrazados = 173;
    d.m_nAlfaSuperficie = -174;
    d.m_nAlfaImagen = 175;
    d.m_GamaColor = Vertiz::CDataGamaColor(L"0 1 2 3;10.5 4 5 6");
    d.m_fVelocidad = 0.3F;
    return d;
}

// What a store must give back: all but what isn't stored, with steps scaled from those of new settings.
void EsperaRara(const CDataGL& leida) {
    const CDataGL rara = Rara();
    EXPECT_TRUE(leida == rara);
    EXPECT_TRUE(std::ranges::equal(leida.m_nLuzParam, rara.m_nLuzParam));
    EXPECT_EQ(leida.m_nGrosorPuntos, rara.m_nGrosorPuntos);
    EXPECT_FLOAT_EQ(leida.m_fVelocidad, rara.m_fVelocidad);
    EXPECT_EQ(leida.m_nPasoTrans, 24);
    EXPECT_EQ(leida.m_nPasoAngulo, 12);
}

// The profile store's order, with what Rara() holds.
const Pares kPerfil = {{L"ColorFondo", L"100"},
                       {L"ColorDEM", L"101"},
                       {L"ColorBase", L"102"},
                       {L"ColorLIDAR", L"103"},
                       {L"ColorDesmonte", L"104"},
                       {L"ColorTerraplen", L"105"},
                       {L"ColorNada", L"106"},
                       {L"ModoRelleno", L"110"},
                       {L"TipoColorLineas", L"107"},
                       {L"TipoLIDAR", L"6"},
                       {L"SombraCeldas", L"108"},
                       {L"Quad", L"3"},
                       {L"GrosorPuntos", L"111"},
                       {L"Rotacion", L"-1"},
                       {L"Limites", L"120"},
                       {L"LimitesProyecto", L"121"},
                       {L"Edificios", L"122"},
                       {L"Arboles", L"123"},
                       {L"Rupturas", L"124"},
                       {L"Referencia", L"125"},
                       {L"Curvado", L"126"},
                       {L"PuntosCamara", L"127"},
                       {L"Base", L"128"},
                       {L"Orto", L"129"},
                       {L"Ejes", L"140"},
                       {L"Luz", L"130"},
                       {L"Relleno", L"131"},
                       {L"ImagenFondo", L"132"},
                       {L"Mascara", L"133"},
                       {L"VerPlanos", L"134"},
                       {L"VerPuntosConPlanos", L"135"},
                       {L"VerPuntosSinPlanos", L"136"},
                       {L"LuzParam0", L"150"},
                       {L"LuzParam1", L"151"},
                       {L"LuzParam2", L"152"},
                       {L"LuzParam3", L"153"},
                       {L"LuzParam4", L"154"},
                       {L"LuzParam5", L"155"},
                       {L"LuzParam6", L"156"},
                       {L"LuzParam7", L"157"},
                       {L"LuzParam8", L"158"},
                       {L"LuzParam9", L"159"},
                       {L"LuzParam10", L"160"},
                       {L"CalidadTextos", L"170"},
                       {L"Textos3D", L"171"},
                       {L"AlturaTextos", L"172"},
                       {L"NumMaxPuntosTrazados", L"173"},
                       {L"AlfaSuperficie", L"-174"},
                       {L"AlfaImagen", L"175"},
                       {L"SzImagenFondo$", L"/cielos/año 1.jpg"},
                       {L"GamaColores$", L"0 1 2 3;10.5 4 5 6"},
                       {L"Velocidad$", L"0.300000"}};

// An INI file as it is written new.
constexpr std::string_view kIni = R"([Vista]
ColorFondo=100
ColorDEM=101
ColorBase=102
ColorLIDAR=103
ColorDesmonte=104
ColorTerraplen=105
ColorNada=106
ModoRelleno=110
TipoColorLineas=107
TipoLIDAR=6
SombraCeldas=108
Quad=3
GrosorPuntos=111
Limites=120
LimitesProyecto=121
Edificios=122
Arboles=123
Rupturas=124
Referencia=125
Curvado=126
PuntosCamara=127
Mascara=133
VerPlanos=134
VerPuntosConPlanos=135
VerPuntosSinPlanos=136
Base=128
Orto=129
Luz=130
Relleno=131
Ejes=140
Rotacion=-1
ImagenFondo=132
SzImagenFondo=/cielos/año 1.jpg
LuzParam0=150
LuzParam1=151
LuzParam2=152
LuzParam3=153
LuzParam4=154
LuzParam5=155
LuzParam6=156
LuzParam7=157
LuzParam8=158
LuzParam9=159
LuzParam10=160
CalidadTextos=170
Textos3D=171
AlturaTextos=172
AlfaSuperficie=-174
AlfaImagen=175
NumMaxPuntosTrazados=173
Velocidad=0.300000
GamaColores=0 1 2 3;10.5 4 5 6
)";

// ---- The application's store ----

TEST(CDataGLPerfil, TheStoreIsReadKeyByKeyInItsOrderWithThePresentValuesAsDefaults) {
    Anfitrion anfitrion;
    Rara().GetProfile(L"Vista");
    EXPECT_EQ(anfitrion.m_Notas, kPerfil);
}

TEST(CDataGLPerfil, EachKeyOfTheStoreReachesItsField) {
    Anfitrion anfitrion;
    for (auto [clave, valor] : kPerfil) {
        if (clave.back() == L'$') clave.pop_back();
        anfitrion.m_Guardado[clave] = valor;
    }
    CDataGL leida;
    leida.GetProfile(L"Vista");
    EsperaRara(leida);
}

TEST(CDataGLPerfil, TheStoreIsWrittenInTheOrderOfReadingAllPlanesUnderOneKey) {
    Anfitrion anfitrion;
    Rara().WriteProfile(L"Vista");
    Pares esperado = kPerfil;
    for (auto& [clave, valor] : esperado) {
        if (clave == L"VerPuntosConPlanos" || clave == L"VerPuntosSinPlanos") clave = L"VerPlanos";
    }
    EXPECT_EQ(anfitrion.m_Notas, esperado);
}

TEST(CDataGLPerfil, OfThePlanesTheStoreKeepsThePointsWithoutOnes) {
    Anfitrion anfitrion;
    Rara().WriteProfile(L"Vista");
    CDataGL leida;
    leida.GetProfile(L"Vista");
    EXPECT_EQ(leida.m_bVerPlanos, 136);
    EXPECT_EQ(leida.m_bVerPuntosConPlanos, 0) << "never written: its default";
    EXPECT_EQ(leida.m_bVerPuntosSinPlanos, 1);
}

TEST(CDataGLPerfil, TransparenciesOfTheStoreAreNarrowedToShorts) {
    Anfitrion anfitrion;
    anfitrion.m_Guardado = {{L"AlfaSuperficie", L"65541"}, {L"AlfaImagen", L"-65535"}};
    CDataGL d;
    d.GetProfile(L"Vista");
    EXPECT_EQ(d.m_nAlfaSuperficie, 5);
    EXPECT_EQ(d.m_nAlfaImagen, 1);
}

TEST(CDataGLPerfil, ReadingTheStoreAgainScalesTheStepsAgain) {
    Anfitrion anfitrion;
    anfitrion.m_Guardado[L"Velocidad"] = L"0.25";
    CDataGL d;
    d.GetProfile(L"Vista");
    EXPECT_EQ(d.m_nPasoTrans, 20);
    EXPECT_EQ(d.m_nPasoAngulo, 10);
    d.GetProfile(L"Vista");
    EXPECT_EQ(d.m_nPasoTrans, 40);
    EXPECT_EQ(d.m_nPasoAngulo, 20);
}

TEST(CDataGLPerfil, TheStoreKeepsLongPathsWhole) {
    Anfitrion anfitrion;
    CDataGL d, leida;
    d.m_SzImagenFondo = CString(std::wstring(4000, L'ñ'));
    d.WriteProfile(L"Vista");
    leida.GetProfile(L"Vista");
    EXPECT_EQ(leida.m_SzImagenFondo, d.m_SzImagenFondo);
}

TEST(CDataGLPerfil, WithoutAStoreTheSettingsStayButForTheStepsAndTheModes) {
    const CarpetaTemporal carpeta;
    CWinApp aplicacion(L"prueba");
    aplicacion.m_pszProfileName = CString(std::string_view((carpeta / "no" / "hay.ini").native()));
    CDataGL d = Rara();
    d.m_bVerPlanos = 1;
    d.GetProfile(L"Vista");
    CDataGL esperada = Rara();
    esperada.m_bVerPlanos = 1;
    EXPECT_TRUE(d == esperada);
    EXPECT_EQ(d.m_nPasoTrans, 24) << "by the speed that it had";
    EXPECT_EQ(d.m_nPasoAngulo, 12);
    d.m_nQuad = 7;
    d.m_bRotacion = 5;
    d.GetProfile(L"Vista");
    EXPECT_EQ(d.m_nQuad, 1u);
    EXPECT_EQ(d.m_bRotacion, 1);
    EXPECT_EQ(carpeta.CuentaFicheros(), 0u);
}

TEST(CDataGLPerfil, WhatIsWrittenIsThereOnTheNextDay) {
    const CarpetaTemporal carpeta;
    CDataGL ayer = Rara(), hoy;
    ayer.m_bVerPlanos = ayer.m_bVerPuntosSinPlanos = 1;
    ayer.m_bVerPuntosConPlanos = 0;
    const CString fichero(std::string_view((carpeta / "perfil ñ.ini").native()));
    {
        CWinApp aplicacion(L"prueba");
        aplicacion.m_pszProfileName = fichero;
        ayer.WriteProfile(L"Vista");
    }
    CWinApp aplicacion(L"prueba");
    aplicacion.m_pszProfileName = fichero;
    hoy.GetProfile(L"Vista");
    EXPECT_TRUE(hoy == ayer);
    EXPECT_FLOAT_EQ(hoy.m_fVelocidad, 0.3F);
    hoy = CDataGL();
    hoy.GetProfile(L"Otra");
    EXPECT_TRUE(hoy == CDataGL());
}

// ---- INI files ----

class CDataGLIni : public testing::Test {
  protected:
    void Pon(std::string_view contenido) const { m_carpeta.Escribe("a ñ.ini", contenido); }
    std::string Contenido() const {
        std::stringstream s;
        s << std::ifstream(m_ruta, std::ios::binary).rdbuf();
        return s.str();
    }
    // New settings after a file of this text.
    CDataGL Lee(std::string_view contenido, CDataGL d = CDataGL()) const {
        Pon(contenido);
        d.GetPrivateProfile(m_fichero, L"Vista");
        return d;
    }

    const CarpetaTemporal m_carpeta;
    const std::filesystem::path m_ruta = m_carpeta / "a ñ.ini";
    const CString m_fichero{std::string_view(m_ruta.native())};
};

TEST_F(CDataGLIni, ANewFileHasEveryKeyInItsOrder) {
    Rara().WritePrivateProfile(m_fichero, L"Vista");
    EXPECT_EQ(Contenido(), kIni);
}

TEST_F(CDataGLIni, EachKeyReachesItsField) {
    EsperaRara(Lee(kIni));
}

// What a scene would ask of its store: every stored field, by key.
Pares Campos(CDataGL d) {
    Anfitrion anfitrion;
    d.GetProfile(L"Vista");
    return anfitrion.m_Notas;
}

TEST_F(CDataGLIni, EachKeyReachesItsFieldAlone) {
    std::istringstream lineas{std::string(kIni)};
    std::string linea;
    for (std::getline(lineas, linea); std::getline(lineas, linea);) {
        Pares esperado = Campos(CDataGL());
        const std::wstring ancha = CString(linea).Texto();
        const std::size_t igual = ancha.find(L'=');
        const std::wstring clave = ancha.substr(0, igual);
        for (auto& [campo, valor] : esperado) {
            if (campo == clave || campo == clave + L"$") valor = ancha.substr(igual + 1);
        }
        EXPECT_EQ(Campos(Lee("[Vista]\n" + linea + "\n")), esperado) << linea;
    }
}

TEST_F(CDataGLIni, AKeyThatIsAbsentOrEmptyChangesNothing) {
    const CDataGL ausente = Lee("[Otra]\nQuad=0\n", Rara());
    EXPECT_TRUE(ausente == Rara());
    EXPECT_EQ(ausente.m_nPasoTrans, 10) << "steps stay where the speed is absent";
    EXPECT_EQ(ausente.m_fVelocidad, 0.3F);
    const CDataGL vacia = Lee("[Vista]\nColorDEM=\nSzImagenFondo=\nVelocidad=\nAlfaImagen=\n", Rara());
    EXPECT_TRUE(vacia == Rara());
    EXPECT_EQ(vacia.m_nPasoTrans, 10);
}

TEST_F(CDataGLIni, WithoutAFileTheSettingsStayButForTheModes) {
    CDataGL d = Rara();
    d.GetPrivateProfile(m_fichero, L"Vista");
    EXPECT_TRUE(d == Rara());
    EXPECT_EQ(d.m_nPasoTrans, 10);
    d.m_nQuad = 7;
    d.m_bRotacion = 5;
    d.GetPrivateProfile(m_fichero, L"Vista");
    EXPECT_EQ(d.m_nQuad, 1u);
    EXPECT_EQ(d.m_bRotacion, 1);
    EXPECT_FALSE(std::filesystem::exists(m_ruta));
    d.WritePrivateProfile(L"/proc/no/hay.ini", L"Vista");  // says nothing
}

TEST_F(CDataGLIni, TextThatIsNoNumberReadsAsZero) {
    const CDataGL d = Lee("[Vista]\nColorDEM=azul\nGrosorPuntos=12px\n");
    EXPECT_EQ(d.m_nColorDEM, 0);
    EXPECT_EQ(d.m_nGrosorPuntos, 12);
}

TEST_F(CDataGLIni, ALongPathIsCutAndNothingIsWrittenBeyond) {
    for (const std::size_t n : {254u, 255u, 256u, 5000u}) {
        CDataGL d;
        d.m_SzImagenFondo = CString(L"/" + std::wstring(n - 1, L'ñ'));
        d.WritePrivateProfile(m_fichero, L"Vista");
        CDataGL leida;
        leida.GetPrivateProfile(m_fichero, L"Vista");
        EXPECT_EQ(leida.m_SzImagenFondo, d.m_SzImagenFondo.Left(255));
        EXPECT_NE(Contenido().find("\nSzImagenFondo=" + d.m_SzImagenFondo.Left(255).Utf8() + "\n"), std::string::npos);
    }
    // One of another program.
    EXPECT_EQ(Lee("[Vista]\nSzImagenFondo=" + std::string(700, 'x') + "\n").m_SzImagenFondo,
              CString(std::wstring(255, L'x')));
}

// ---- Both ----

class CDataGLLimites : public CDataGLIni, public testing::WithParamInterface<bool> {
  protected:
    // New settings after reading keys from the one store or the other.
    CDataGL LeeClaves(const std::string& claves, CDataGL d = CDataGL()) {
        Pon("[Vista]\n" + claves);
        m_Aplicacion.m_pszProfileName = m_fichero;
        GetParam() ? d.GetProfile(L"Vista") : d.GetPrivateProfile(m_fichero, L"Vista");
        return d;
    }
    CWinApp m_Aplicacion{L"prueba"};
};

TEST_P(CDataGLLimites, ModesBeyondTheirRangeBecomeOne) {
    EXPECT_EQ(LeeClaves("Quad=7").m_nQuad, 1u);
    EXPECT_EQ(LeeClaves("Quad=4").m_nQuad, 1u);
    EXPECT_EQ(LeeClaves("Quad=-1").m_nQuad, 1u);
    EXPECT_EQ(LeeClaves("Quad=3").m_nQuad, 3u);
    EXPECT_EQ(LeeClaves("Rotacion=5").m_bRotacion, 1);
    EXPECT_EQ(LeeClaves("Rotacion=2").m_bRotacion, 1);
    EXPECT_EQ(LeeClaves("Rotacion=0").m_bRotacion, 0);
}

TEST_P(CDataGLLimites, TheSpeedScalesTheSteps) {
    const auto espera = [&](const char* texto, float velocidad, int trans, int angulo) {
        const CDataGL d = LeeClaves(std::string("Velocidad=") + texto + "\n");
        EXPECT_FLOAT_EQ(d.m_fVelocidad, velocidad) << texto;
        EXPECT_EQ(d.m_nPasoTrans, trans) << texto;
        EXPECT_EQ(d.m_nPasoAngulo, angulo) << texto;
    };
    espera("0", 0.125F, 10, 5);
    espera("0.125000", 0.125F, 10, 5);
    espera("0.25", 0.25F, 20, 10);
    espera("0.0625", 0.0625F, 5, 2);
    espera("0.001", 0.001F, 1, 1);
    espera("-0.25", -0.25F, 1, 1);
    espera("1e9", 1e9F, std::numeric_limits<int>::max(), std::numeric_limits<int>::max());
    for (const char* nada : {"rápido", "nan", "inf", "-inf", "1e99", "1e999", "1e-60"})
        espera(nada, 0.125F, 10, 5);
}

TEST_P(CDataGLLimites, TheDecimalSignIsThePoint) {
    EXPECT_FLOAT_EQ(LeeClaves("Velocidad=1,5\n").m_fVelocidad, 1.0F);
    EXPECT_FLOAT_EQ(LeeClaves("Velocidad=1.5\n").m_fVelocidad, 1.5F);
}

TEST_P(CDataGLLimites, ATintByHeightWithoutARampBecomesIntensity) {
    EXPECT_EQ(LeeClaves("TipoLIDAR=1\n").m_nTipoLIDAR, ColorIntensidad);
    EXPECT_EQ(LeeClaves("TipoLIDAR=1\nGamaColores=5 1 2 3\n").m_nTipoLIDAR, ColorHipsometrico);
    EXPECT_EQ(LeeClaves("TipoLIDAR=2\n").m_nTipoLIDAR, ColorRGB);
    CDataGL conGama;
    conGama.m_GamaColor = Vertiz::CDataGamaColor(L"5 1 2 3");
    EXPECT_EQ(LeeClaves("TipoLIDAR=1\n", conGama).m_nTipoLIDAR, ColorHipsometrico);
    EXPECT_EQ(LeeClaves("TipoLIDAR=1\nGamaColores=\n", conGama).m_nTipoLIDAR, ColorIntensidad);
    EXPECT_EQ(LeeClaves("TipoLIDAR=99\n").m_nTipoLIDAR, 99) << "left alone, as other numbers are";
}

INSTANTIATE_TEST_SUITE_P(, CDataGLLimites, testing::Bool(),
                         [](const auto& prueba) { return std::string(prueba.param ? "Store" : "Ini"); });

TEST(CDataGL, DoublingTheSpeedOverAndOverStaysWithinTheIntegers) {
    CDataGL d;
    for (int i = 0; i < 60; ++i)
        d.AumentaVelocidad();
    EXPECT_EQ(d.m_nPasoTrans, std::numeric_limits<int>::max());
    EXPECT_EQ(d.m_nPasoAngulo, std::numeric_limits<int>::max());
}

}  // namespace
