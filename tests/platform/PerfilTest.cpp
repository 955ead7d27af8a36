#include "platform/Perfil.h"

#include "support/Temporales.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>
#include <random>
#include <sstream>
#include <thread>

namespace {

class PerfilTest : public testing::Test {
  protected:
    std::string Contenido() const {
        std::stringstream s;
        s << std::ifstream(m_ruta, std::ios::binary).rdbuf();
        return s.str();
    }
    void Pon(std::string_view contenido) const { m_carpeta.Escribe("año.ini", contenido); }
    CString Lee(LPCWSTR seccion, LPCWSTR clave, LPCWSTR defecto = L"") const {
        wchar_t buffer[256];
        GetPrivateProfileStringW(seccion, clave, defecto, buffer, 256, m_nombre);
        return buffer;
    }
    BOOL Escribe(LPCWSTR seccion, LPCWSTR clave, LPCWSTR texto) const {
        return WritePrivateProfileStringW(seccion, clave, texto, m_nombre);
    }

    CarpetaTemporal m_carpeta;
    std::filesystem::path m_ruta = m_carpeta / "año.ini";
    CString m_nombre{std::string_view(m_ruta.native())};
};

TEST_F(PerfilTest, AMissingFileGivesTheDefault) {
    EXPECT_EQ(Lee(L"S", L"k", L"x "), L"x");
    EXPECT_EQ(Lee(L"S", L"k", nullptr), L"");
    EXPECT_EQ(GetPrivateProfileIntW(L"S", L"k", -3, m_nombre), static_cast<UINT>(-3));
    EXPECT_FALSE(std::filesystem::exists(m_ruta));
}

TEST_F(PerfilTest, FindsSectionsAndKeysWhateverTheirCapitals) {
    Pon("[Señal]\nColorFondo = 12\nÑu=x\n");
    EXPECT_EQ(Lee(L"SEÑAL", L"colorfondo"), L"12");
    EXPECT_EQ(Lee(L"señal", L"ñU"), L"x");
    EXPECT_TRUE(Escribe(L"SEÑAL", L"COLORFONDO", L"13"));
    EXPECT_EQ(Contenido(), "[Señal]\nColorFondo=13\nÑu=x\n");
}

TEST_F(PerfilTest, BlanksAndQuotesRoundAValueDontCount) {
    Pon("[S]\n a =  1 2 \t\nb=\" x \"\nc='y'\nd=\"\ne=\n");
    EXPECT_EQ(Lee(L" S ", L" a "), L"1 2");
    EXPECT_EQ(Lee(L"S", L"b"), L" x ");
    EXPECT_EQ(Lee(L"S", L"c"), L"y");
    EXPECT_EQ(Lee(L"S", L"d"), L"\"");
    EXPECT_EQ(Lee(L"S", L"e", L"defecto"), L"");
    EXPECT_EQ(GetPrivateProfileIntW(L"S", L"e", 7, m_nombre), 7u);
    EXPECT_EQ(GetPrivateProfileIntW(L"S", L"b", 7, m_nombre), 0u);
    EXPECT_EQ(GetPrivateProfileIntW(L"S", L"a", 7, m_nombre), 1u);
}

TEST_F(PerfilTest, WhatIsWrittenIsReadBack) {
    for (const wchar_t* texto : {L"", L"x", L" con blancos ", L"\"entre comillas\"", L"'", L"a=b;c#d", L"[x]",
                                 L"ñ€\U0001F600", L"<<<fin", L"\ttab"}) {
        EXPECT_TRUE(Escribe(L"S", L"k", texto)) << CString(texto).Utf8();
        EXPECT_EQ(Lee(L"S", L"k", L"falta"), texto) << CString(texto).Utf8();
    }
}

TEST_F(PerfilTest, AWriteKeepsOtherKeysAndAllComments) {
    Pon("; primero\n\n; de la sección\n[A]\n# de la clave\nx=1\ny=2\n\n[B]\nx=3\n; al final\n");
    EXPECT_TRUE(Escribe(L"A", L"x", L"10"));
    EXPECT_TRUE(Escribe(L"B", L"nueva", L"n"));
    const std::string texto = Contenido();
    for (const char* trozo :
         {"; primero", "; de la sección", "# de la clave", "x=10", "y=2", "x=3", "nueva=n", "; al final"}) {
        EXPECT_NE(texto.find(trozo), std::string::npos) << trozo << " is missing in\n" << texto;
    }
    EXPECT_LT(texto.find("nueva=n"), texto.find("; al final"));
    EXPECT_EQ(texto.find('\x01'), std::string::npos);
}

TEST_F(PerfilTest, WritingTheSameAgainChangesNothingMore) {
    Pon("; c\n[A]\nx=1\n[B]\n; d\ny=2\n; fin\n");
    Escribe(L"A", L"x", L"2");
    const std::string una = Contenido();
    Escribe(L"A", L"x", L"2");
    EXPECT_EQ(Contenido(), una);
}

TEST_F(PerfilTest, ANewSectionComesBehindTheLastComment) {
    Pon("[A]\nx=1\n; al final\n");
    EXPECT_TRUE(Escribe(L"B", L"y", L"2"));
    EXPECT_TRUE(Escribe(L"C", L"z", L"3"));
    EXPECT_EQ(Lee(L"B", L"y"), L"2");
    EXPECT_EQ(Lee(L"C", L"z"), L"3");
    EXPECT_LT(Contenido().find("; al final"), Contenido().find("[B]"));
}

TEST_F(PerfilTest, OfSeveralKeysOfOneNameTheFirstCounts) {
    Pon("[S]\nk=1\nK=2\n");
    EXPECT_EQ(Lee(L"S", L"k"), L"1");
    Escribe(L"S", L"otra", L"x");
    EXPECT_EQ(Lee(L"S", L"k"), L"1");
}

TEST_F(PerfilTest, ANullTextTakesTheKeyAwayAndANullKeyTheSection) {
    Pon("[A]\nx=1\ny=2\n[B]\nz=3\n");
    EXPECT_TRUE(Escribe(L"A", L"X", nullptr));
    EXPECT_EQ(Lee(L"A", L"x", L"falta"), L"falta");
    EXPECT_EQ(Lee(L"A", L"y"), L"2");
    EXPECT_TRUE(Escribe(L"A", nullptr, nullptr));
    EXPECT_EQ(Contenido(), "[B]\nz=3\n");
    EXPECT_TRUE(Escribe(L"nada", nullptr, nullptr));
    EXPECT_FALSE(WritePrivateProfileStringW(nullptr, L"k", L"v", m_nombre));
}

TEST_F(PerfilTest, TakingAwayWhatIsNotThereMakesNoFile) {
    EXPECT_TRUE(Escribe(L"A", L"x", nullptr));
    EXPECT_FALSE(std::filesystem::exists(m_ruta));
}

TEST_F(PerfilTest, ListsSectionsAndKeysInTheOrderOfTheFile) {
    Pon("[zeta]\nb=1\na=2\n[Alfa]\n; nada más\n");
    wchar_t buffer[64];
    EXPECT_EQ(GetPrivateProfileStringW(nullptr, nullptr, L"", buffer, 64, m_nombre), 10u);
    EXPECT_EQ(std::wstring(buffer, 11), std::wstring(L"zeta\0Alfa\0\0", 11));
    EXPECT_EQ(GetPrivateProfileStringW(L"ZETA", nullptr, L"", buffer, 64, m_nombre), 4u);
    EXPECT_EQ(std::wstring(buffer, 5), std::wstring(L"b\0a\0\0", 5));
    EXPECT_EQ(GetPrivateProfileStringW(L"no", nullptr, L"", buffer, 64, m_nombre), 0u);
    EXPECT_EQ(buffer[0], L'\0');
}

TEST_F(PerfilTest, CutsWhatDoesntFitAndNeverWritesBeyond) {
    Pon("[S]\nk=abcdef\nzz=1\n");
    for (DWORD n = 0; n < 10; ++n) {
        std::wstring buffer(12, L'#');
        const DWORD letras = GetPrivateProfileStringW(L"S", L"k", L"", buffer.data(), n, m_nombre);
        EXPECT_EQ(letras, n == 0 ? 0 : std::min<DWORD>(6, n - 1));
        EXPECT_EQ(buffer[n], L'#');
        buffer.assign(12, L'#');
        const DWORD nombres = GetPrivateProfileStringW(L"S", nullptr, L"", buffer.data(), n, m_nombre);
        EXPECT_EQ(nombres, n < 2 ? 0 : n < 6 ? n - 2 : 5u);
        EXPECT_EQ(buffer[n], L'#');
    }
}

TEST_F(PerfilTest, KeepsEncodingAndLineEnds) {
    Pon("[S]\r\nk=se\xF1"
        "al\r\n");
    EXPECT_EQ(Lee(L"S", L"k"), L"señal");
    Escribe(L"S", L"j", L"ñ");
    EXPECT_EQ(Contenido(),
              "[S]\r\nk=se\xF1"
              "al\r\nj=\xF1\r\n");
    Escribe(L"S", L"j", L"Я");
    EXPECT_EQ(Contenido(), "[S]\r\nk=señal\r\nj=Я\r\n");

    Pon("\xEF\xBB\xBF[S]\nk=1\n");
    Escribe(L"S", L"k", L"2");
    EXPECT_EQ(Contenido(), "\xEF\xBB\xBF[S]\nk=2\n");

    Pon(std::string_view("\xFF\xFE[\0S\0]\0\n\0k\0=\0\xF1\0\n\0", 18));
    EXPECT_EQ(Lee(L"S", L"k"), L"ñ");
    Escribe(L"S", L"k", L"€");
    EXPECT_EQ(Contenido(), std::string("\xFF\xFE[\0S\0]\0\n\0k\0=\0\xAC\x20\n\0", 18));
}

TEST_F(PerfilTest, RefusesWhatCouldNotBeReadBack) {
    Pon("[S]\nk=1\n");
    for (const wchar_t* clave : {L"", L"  ", L"a=b", L"[a", L";a", L"#a", L"a\nb", L"a\rb"}) {
        EXPECT_FALSE(Escribe(L"S", clave, L"x")) << CString(clave).Utf8();
        EXPECT_EQ(GetLastError(), ERROR_INVALID_PARAMETER);
    }
    for (const wchar_t* seccion : {L"", L"a]", L"a\nb", L"\x01"})
        EXPECT_FALSE(Escribe(seccion, L"k", L"x"));
    EXPECT_FALSE(Escribe(L"S", L"k", L"a\nb"));
    EXPECT_EQ(Contenido(), "[S]\nk=1\n");
}

TEST_F(PerfilTest, KeepsPermissionsAndFollowsALink) {
    Pon("[S]\nk=1\n");
    chmod(m_ruta.c_str(), 0640);
    std::filesystem::create_symlink(m_ruta, m_carpeta / "enlace.ini");
    const CString enlace(std::string_view((m_carpeta / "enlace.ini").native()));
    EXPECT_TRUE(WritePrivateProfileStringW(L"S", L"k", L"2", enlace));
    EXPECT_EQ(Contenido(), "[S]\nk=2\n");
    EXPECT_TRUE(std::filesystem::is_symlink(m_carpeta / "enlace.ini"));
    EXPECT_EQ(std::filesystem::status(m_ruta).permissions(), std::filesystem::perms(0640));
}

TEST_F(PerfilTest, WhereNothingCanBeWrittenItSaysSoAndLeavesNothing) {
    EXPECT_FALSE(WritePrivateProfileStringW(L"S", L"k", L"v", L"/proc/lumbra.ini"));
    EXPECT_FALSE(
        WritePrivateProfileStringW(L"S", L"k", L"v", CString(std::string_view((m_carpeta / "no" / "x.ini").native()))));
    EXPECT_FALSE(WritePrivateProfileStringW(L"S", L"k", L"v", CString(std::string_view(m_carpeta.Ruta().native()))));
    EXPECT_FALSE(WritePrivateProfileStringW(L"S", L"k", L"v", L""));
    EXPECT_FALSE(WritePrivateProfileStringW(L"S", L"k", L"v", nullptr));
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
}

TEST_F(PerfilTest, LeavesAFileThatIsTooLargeAlone) {
    Pon("");
    std::filesystem::resize_file(m_ruta, 17 << 20);
    EXPECT_EQ(Lee(L"S", L"k", L"d"), L"d");
    EXPECT_FALSE(Escribe(L"S", L"k", L"v"));
    EXPECT_EQ(std::filesystem::file_size(m_ruta), 17u << 20);
}

TEST_F(PerfilTest, SeveralThreadsLoseNoWriteAndReadNoHalfFile) {
    std::vector<std::thread> hilos;
    for (int h = 0; h < 4; ++h) {
        hilos.emplace_back([this, h] {
            for (int i = 0; i < 20; ++i) {
                CString clave, valor;
                clave.Format(L"k%d_%d", h, i);
                EXPECT_TRUE(Escribe(L"S", clave, L"v"));
                EXPECT_EQ(Lee(L"S", clave), L"v");
            }
        });
    }
    for (auto& h : hilos)
        h.join();
    for (int h = 0; h < 4; ++h) {
        for (int i = 0; i < 20; ++i) {
            CString clave;
            clave.Format(L"k%d_%d", h, i);
            EXPECT_EQ(Lee(L"S", clave), L"v");
        }
    }
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
}

TEST_F(PerfilTest, NoFileMakesItFail) {
    std::mt19937 azar(11);
    const std::string_view trozos[] = {"[",
                                       "]",
                                       "=",
                                       "\n",
                                       "\r\n",
                                       "\r",
                                       ";",
                                       "#",
                                       "\"",
                                       "'",
                                       " ",
                                       "\t",
                                       "S",
                                       "k",
                                       "k=1",
                                       "[S]",
                                       "<<<",
                                       "\xF1",
                                       "\xC3\xB1",
                                       std::string_view("\0", 1),
                                       "\x01",
                                       "[\x01]",
                                       "\xEF\xBB\xBF",
                                       "\xFF\xFE",
                                       "\x1A"};
    for (int vez = 0; vez < 400; ++vez) {
        std::string contenido;
        for (unsigned n = azar() % 30; n > 0; --n)
            contenido += trozos[azar() % std::size(trozos)];
        Pon(contenido);
        const CString antes = Lee(L"S", L"k", L"no");
        ASSERT_TRUE(Escribe(L"S", L"otra", L"valor")) << testing::PrintToString(contenido);
        ASSERT_EQ(Lee(L"S", L"otra"), L"valor") << testing::PrintToString(contenido);
        ASSERT_EQ(Lee(L"S", L"k", L"no"), antes) << testing::PrintToString(contenido);
        // Blank lines round comments may settle first, and then nothing grows.
        for (int i = 0; i < 3; ++i)
            Escribe(L"S", L"otra", L"valor");
        const std::string una = Contenido();
        Escribe(L"S", L"otra", L"valor");
        ASSERT_EQ(Contenido(), una) << testing::PrintToString(contenido);
    }
}

}  // namespace
