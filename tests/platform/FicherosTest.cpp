#include "platform/Ficheros.h"

#include "platform/Tiempo.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>
#include <fstream>
#include <set>
#include <sstream>

namespace {

CString Ancha(const std::filesystem::path& ruta) {
    return CString(std::string_view(ruta.native()));
}

std::string Contenido(const std::filesystem::path& ruta) {
    std::stringstream s;
    s << std::ifstream(ruta).rdbuf();
    return s.str();
}

class FicherosTest : public testing::Test {
  protected:
    CarpetaTemporal m_carpeta;  // sets TMP and TEMP, and puts them back
    std::filesystem::path m_a = m_carpeta.Escribe("peña a", "abc");
    std::filesystem::path m_b = m_carpeta / "b";
};

TEST(Rutas, JoinsFolderAndNameWithOneSeparator) {
    EXPECT_EQ(JuntaRuta(L"/a", L"b"), L"/a/b");
    EXPECT_EQ(JuntaRuta(L"/a/", L"b"), L"/a/b");
    EXPECT_EQ(JuntaRuta(L"a\\", L"b"), L"a/b");
    EXPECT_EQ(JuntaRuta(L"/", L"b"), L"/b");
    EXPECT_EQ(JuntaRuta(L"", L"b"), L"b");
    EXPECT_EQ(JuntaRuta(nullptr, L"b"), L"b");
    EXPECT_EQ(JuntaRuta(L"a", L"/b"), L"/b");
}

TEST(Rutas, TakesFolderAndNameApart) {
    EXPECT_EQ(CarpetaRuta(L"/a/b.tif"), L"/a");
    EXPECT_EQ(CarpetaRuta(L"a\\b.tif"), L"a");
    EXPECT_EQ(CarpetaRuta(L"/b"), L"/");
    EXPECT_EQ(CarpetaRuta(L"b"), L"");
    EXPECT_EQ(NombreRuta(L"a\\b.tif"), L"b.tif");
    EXPECT_EQ(NombreRuta(L"b"), L"b");
    EXPECT_EQ(NombreRuta(L"a/"), L"");
}

TEST_F(FicherosTest, BothSeparatorsServeButARealBackslashInANameStays) {
    const CString mixta = Ancha(m_carpeta.Ruta()) + L"\\peña a";
    EXPECT_TRUE(PathFileExists(mixta));
    const auto rara = m_carpeta.Escribe("c\\d", "x");
    EXPECT_TRUE(PathFileExists(Ancha(rara)));
    EXPECT_TRUE(DeleteFileW(Ancha(rara)));
    EXPECT_FALSE(std::filesystem::exists(rara));
}

TEST_F(FicherosTest, ExistsHoldsForFilesAndFolders) {
    EXPECT_TRUE(PathFileExists(Ancha(m_a)));
    EXPECT_TRUE(PathFileExists(Ancha(m_carpeta.Ruta())));
    EXPECT_FALSE(PathFileExists(Ancha(m_b)));
    EXPECT_FALSE(PathFileExists(L""));
    EXPECT_FALSE(PathFileExists(nullptr));
}

TEST_F(FicherosTest, CopiesContentsAndPermissions) {
    chmod(m_a.c_str(), 0640);
    EXPECT_TRUE(CopyFileW(Ancha(m_a), Ancha(m_b), TRUE));
    EXPECT_EQ(Contenido(m_b), "abc");
    EXPECT_EQ(std::filesystem::status(m_b).permissions(), std::filesystem::perms(0640));
    m_carpeta.Escribe("peña a", "z");
    EXPECT_FALSE(CopyFileW(Ancha(m_a), Ancha(m_b), TRUE));
    EXPECT_EQ(GetLastError(), ERROR_FILE_EXISTS);
    EXPECT_EQ(Contenido(m_b), "abc");
    EXPECT_TRUE(CopyFileW(Ancha(m_a), Ancha(m_b), FALSE));
    EXPECT_EQ(Contenido(m_b), "z");
}

TEST_F(FicherosTest, ACopyThatFailsLeavesNothingAndNeverHarmsTheSource) {
    EXPECT_FALSE(CopyFileW(Ancha(m_a), Ancha(m_a), FALSE));
    EXPECT_EQ(Contenido(m_a), "abc");
    EXPECT_FALSE(CopyFileW(Ancha(m_b), Ancha(m_carpeta / "c"), FALSE));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(CopyFileW(Ancha(m_carpeta.Ruta()), Ancha(m_b), FALSE));
    EXPECT_FALSE(CopyFileW(Ancha(m_a), L"/dev/full", FALSE));
    EXPECT_FALSE(CopyFileW(Ancha(m_a), Ancha(m_carpeta / "no" / "b"), FALSE));
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 1u);
}

TEST_F(FicherosTest, MovesButNeverOverAnExistingFile) {
    EXPECT_TRUE(MoveFileW(Ancha(m_a), Ancha(m_b)));
    EXPECT_FALSE(std::filesystem::exists(m_a));
    m_carpeta.Escribe("peña a", "nuevo");
    EXPECT_FALSE(MoveFileW(Ancha(m_a), Ancha(m_b)));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    EXPECT_EQ(Contenido(m_b), "abc");
    EXPECT_EQ(Contenido(m_a), "nuevo");
}

TEST_F(FicherosTest, MovesToAnotherDisk) {
    struct stat aqui {
    }, alla{};
    const std::filesystem::path otro = "/dev/shm/lumbra prueba ñ " + std::to_string(getpid());
    if (stat("/dev/shm", &alla) != 0 || stat(m_a.c_str(), &aqui) != 0 || aqui.st_dev == alla.st_dev) {
        GTEST_SKIP() << "no second file system at /dev/shm";
    }
    EXPECT_TRUE(MoveFileW(Ancha(m_a), Ancha(otro)));
    EXPECT_EQ(Contenido(otro), "abc");
    EXPECT_FALSE(std::filesystem::exists(m_a));
    m_carpeta.Escribe("peña a", "z");
    EXPECT_FALSE(MoveFileW(Ancha(m_a), Ancha(otro)));
    EXPECT_EQ(GetLastError(), ERROR_ALREADY_EXISTS);
    std::filesystem::remove(otro);
}

TEST_F(FicherosTest, DeletesFilesOnly) {
    EXPECT_FALSE(DeleteFileW(Ancha(m_carpeta.Ruta())));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_TRUE(DeleteFileW(Ancha(m_a)));
    EXPECT_FALSE(DeleteFileW(Ancha(m_a)));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
}

CString Expande(const wchar_t* texto) {
    wchar_t buffer[200];
    ExpandEnvironmentStringsW(texto, buffer, 200);
    return buffer;
}

TEST_F(FicherosTest, ExpandsDefinedVariablesAndLeavesTheOthers) {
    setenv("LUMBRA_X", "peña", 1);
    unsetenv("LUMBRA_NO");
    EXPECT_EQ(Expande(L"a=%LUMBRA_X%;"), L"a=peña;");
    EXPECT_EQ(Expande(L"%LUMBRA_NO%"), L"%LUMBRA_NO%");
    EXPECT_EQ(Expande(L"%LUMBRA_NO%LUMBRA_X%"), L"%LUMBRA_NOpeña");
    EXPECT_EQ(Expande(L"100%"), L"100%");
    EXPECT_EQ(Expande(L"%%"), L"%%");
    wchar_t corto[3] = {L'q'};
    EXPECT_EQ(ExpandEnvironmentStringsW(L"%LUMBRA_X%", corto, 3), 5u);
    EXPECT_EQ(corto[0], L'\0');
    EXPECT_EQ(ExpandEnvironmentStringsW(L"%LUMBRA_X%", nullptr, 0), 5u);
    wchar_t justo[5];
    EXPECT_EQ(ExpandEnvironmentStringsW(L"%LUMBRA_X%", justo, 5), 5u);
    EXPECT_EQ(CString(justo), L"peña");
    unsetenv("LUMBRA_X");
}

CString CarpetaTemp() {
    wchar_t buffer[MAX_PATH];
    EXPECT_GT(GetTempPathW(MAX_PATH, buffer), 0u);
    return buffer;
}

TEST_F(FicherosTest, TheTemporaryFolderIsThatOfTmpElseOfTempElseOfTheSystem) {
    setenv("TMP", "/uno", 1);
    setenv("TEMP", "/dos/", 1);
    EXPECT_EQ(CarpetaTemp(), L"/uno/");
    setenv("TMP", "", 1);
    EXPECT_EQ(CarpetaTemp(), L"/dos/");
    unsetenv("TMP");
    EXPECT_EQ(CarpetaTemp(), L"/dos/");
    unsetenv("TEMP");
    EXPECT_EQ(CarpetaTemp(), L"/tmp/");
    wchar_t corto[5] = {L'q'};
    EXPECT_EQ(GetTempPathW(5, corto), 6u);
    EXPECT_EQ(corto[0], L'q');
    EXPECT_EQ(GetTempPathW(0, nullptr), 6u);
}

TEST_F(FicherosTest, MakesTemporaryFilesOfTheirOwn) {
    std::set<std::wstring> nombres;
    wchar_t buffer[MAX_PATH];
    for (int i = 0; i < 50; ++i) {
        EXPECT_NE(GetTempFileNameW(Ancha(m_carpeta.Ruta()), L"Matrix", 0, buffer), 0u);
        nombres.insert(buffer);
    }
    EXPECT_EQ(nombres.size(), 50u);
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 51u);
    const CString nombre = NombreRuta(buffer);
    EXPECT_EQ(nombre.Left(3), L"Mat");
    EXPECT_EQ(nombre.Right(4), L".tmp");
    struct stat estado {};
    ASSERT_EQ(stat(RutaSistema(buffer).c_str(), &estado), 0);
    EXPECT_EQ(estado.st_mode & 0777, 0600u);
    EXPECT_EQ(estado.st_size, 0);
}

TEST_F(FicherosTest, ATemporaryNameWithANumberMakesNoFile) {
    wchar_t buffer[MAX_PATH];
    EXPECT_EQ(GetTempFileNameW(L"/no", L"M", 0x2A, buffer), 0x2Au);
    EXPECT_EQ(CString(buffer), L"/no/M2a.tmp");
    EXPECT_EQ(GetTempFileNameW(L"/no/existe", L"M", 0, buffer), 0u);
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(GetTempFileNameW(CString(L'x', 5000), L"M", 1, buffer), 0u);
    EXPECT_EQ(GetLastError(), ERROR_FILENAME_EXCED_RANGE);
}

TEST(Tiempo, TheClockHasSecondsAndMilliseconds) {
    const auto antes = time(nullptr);
    __timeb64 t{};
    _ftime64(&t);
    EXPECT_GE(t.time, antes);
    EXPECT_LE(t.time, time(nullptr));
    EXPECT_LT(t.millitm, 1000);
}

TEST(Tiempo, SleepWaitsAtLeastWhatItIsTold) {
    const ULONGLONG antes = GetTickCount64();
    Sleep(30);
    EXPECT_GE(GetTickCount64() - antes, 29u);
    Sleep(0);
}

}  // namespace
