#include "platform/CFile.h"

#include "platform/CStdioFile.h"
#include "support/Temporales.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cstring>
#include <memory>
#include <thread>

namespace {

CString Ancha(const std::filesystem::path& ruta) {
    return CString(std::string_view(ruta.native()));
}

class CFileTest : public testing::Test {
  protected:
    CarpetaTemporal m_carpeta;
    CString m_nombre = Ancha(m_carpeta / "año nuevo.bin");
};

constexpr UINT kCrear = CFile::modeCreate | CFile::modeReadWrite | CFile::typeBinary;

TEST_F(CFileTest, WritesAndReadsBackUnderANameWithLettersBeyondAsciiAndSpaces) {
    CFile f;
    ASSERT_TRUE(f.Open(m_nombre, kCrear));
    EXPECT_TRUE(f.Write("0123456789", 10));
    EXPECT_EQ(f.GetLength(), 10u);
    EXPECT_EQ(f.GetPosition(), 10u);
    f.SeekToBegin();
    std::array<char, 16> datos{};
    EXPECT_EQ(f.Read(datos.data(), 4), 4u);
    EXPECT_STREQ(datos.data(), "0123");
    EXPECT_EQ(f.Seek(-3, CFile::end), 7u);
    EXPECT_EQ(f.Seek(1, CFile::current), 8u);
    EXPECT_EQ(f.Read(datos.data(), 16), 2u);
    EXPECT_EQ(f.GetError(), ERROR_SUCCESS);
    EXPECT_EQ(f.GetFileName(), L"año nuevo.bin");
    EXPECT_EQ(f.GetFilePath(), m_nombre);
    EXPECT_TRUE(f.Close());
    EXPECT_FALSE(f.IsOpen());
    EXPECT_TRUE(f.Close());
}

TEST_F(CFileTest, ReadsFromAPlaceWithoutUsingThePosition) {
    CFile f;
    ASSERT_TRUE(f.Open(m_nombre, kCrear));
    ASSERT_TRUE(f.Write("0123456789", 10));
    f.Seek(3, CFile::begin);
    std::array<char, 16> datos{};
    size_t leidos = 99;
    EXPECT_TRUE(f.ReadAt(6, datos.data(), 2, leidos));
    EXPECT_EQ(leidos, 2u);
    EXPECT_STREQ(datos.data(), "67");
    EXPECT_TRUE(f.ReadAt(8, datos.data(), 5, leidos));
    EXPECT_EQ(leidos, 2u) << "the file ends";
    EXPECT_TRUE(f.ReadAt(100, datos.data(), 5, leidos));
    EXPECT_EQ(leidos, 0u);
    EXPECT_EQ(f.GetPosition(), 3u);
    f.Close();
    EXPECT_FALSE(f.ReadAt(0, datos.data(), 1, leidos));
    EXPECT_EQ(leidos, 0u);
    EXPECT_NE(GetLastError(), DWORD(ERROR_SUCCESS));
    EXPECT_EQ(f.GetError(), ERROR_SUCCESS);
}

TEST_F(CFileTest, ReachesBeyondFourGigabytes) {
    const ULONGLONG lejos = (ULONGLONG{5} << 30) + 3;
    CFile f;
    ASSERT_TRUE(f.Open(m_nombre, kCrear));
    EXPECT_EQ(f.Seek(static_cast<LONGLONG>(lejos), CFile::begin), lejos);
    EXPECT_TRUE(f.Write("x", 1));
    EXPECT_EQ(f.GetLength(), lejos + 1);
    EXPECT_EQ(f.Seek(-1, CFile::end), lejos);
    char c = 0;
    EXPECT_EQ(f.Read(&c, 1), 1u);
    EXPECT_EQ(c, 'x');
    EXPECT_TRUE(f.SetLength(lejos + 10));
    EXPECT_EQ(f.GetPosition(), lejos + 1);
    CFileStatus estado;
    EXPECT_TRUE(f.GetStatus(estado));
    EXPECT_EQ(estado.m_size, lejos + 10);
    EXPECT_TRUE(f.SetLength(0));

    CStdioFile s;
    ASSERT_TRUE(s.Open(m_nombre, kCrear));
    EXPECT_EQ(s.Seek(static_cast<LONGLONG>(lejos), CFile::begin), lejos);
    EXPECT_TRUE(s.Write("x", 1));
    EXPECT_EQ(s.GetLength(), lejos + 1);
    EXPECT_EQ(s.GetPosition(), lejos + 1);
}

TEST_F(CFileTest, CreatingEmptiesTheFileUnlessToldNotTo) {
    m_carpeta.Escribe("año nuevo.bin", "viejo");
    CFile f;
    ASSERT_TRUE(f.Open(m_nombre, kCrear | CFile::modeNoTruncate));
    EXPECT_EQ(f.GetLength(), 5u);
    ASSERT_TRUE(f.Open(m_nombre, kCrear));
    EXPECT_EQ(f.GetLength(), 0u);
}

TEST_F(CFileTest, RefusesWhatIsMissingOrNoFileAndTellsWhy) {
    CFile f;
    EXPECT_FALSE(f.Open(m_nombre, CFile::modeRead));
    EXPECT_EQ(GetLastError(), ERROR_FILE_NOT_FOUND);
    EXPECT_FALSE(f.Open(Ancha(m_carpeta.Ruta()), CFile::modeRead));
    EXPECT_EQ(GetLastError(), ERROR_ACCESS_DENIED);
    EXPECT_FALSE(f.Open(L"/proc/version/x", kCrear));
    EXPECT_EQ(GetLastError(), ERROR_PATH_NOT_FOUND);
    EXPECT_FALSE(f.Open(nullptr, CFile::modeRead));
    ASSERT_EQ(mkfifo((m_carpeta / "tubo").c_str(), 0600), 0);
    EXPECT_FALSE(f.Open(Ancha(m_carpeta / "tubo"), CFile::modeRead));
    EXPECT_FALSE(f.IsOpen());
}

TEST_F(CFileTest, AFailedOpenLeavesNoDescriptorBehind) {
    const size_t antes = CuentaDescriptores();
    for (int i = 0; i < 5; ++i) {
        CFile f(Ancha(m_carpeta.Ruta()), CFile::modeRead);
        CStdioFile s(Ancha(m_carpeta.Ruta()), CFile::modeRead);
        CFile g(m_nombre, kCrear);
        g.Open(Ancha(m_carpeta.Ruta()), CFile::modeRead);
    }
    EXPECT_EQ(CuentaDescriptores(), antes);
}

TEST_F(CFileTest, OperationsOnAClosedFileFailWithoutHarm) {
    CFile f;
    char c = 0;
    EXPECT_EQ(f.Read(&c, 1), 0u);
    EXPECT_FALSE(f.Write(&c, 1));
    EXPECT_EQ(f.Seek(0, CFile::begin), CFile::posicionMala);
    EXPECT_EQ(f.GetPosition(), CFile::posicionMala);
    EXPECT_EQ(f.GetLength(), 0u);
    EXPECT_FALSE(f.SetLength(1));
    EXPECT_FALSE(f.Flush());
    EXPECT_EQ(f.Duplicate(), nullptr);
    EXPECT_EQ(f.GetError(), ERROR_INVALID_HANDLE);
    CStdioFile s;
    CString linea;
    EXPECT_EQ(s.Read(&c, 1), 0u);
    EXPECT_FALSE(s.Write(&c, 1));
    EXPECT_EQ(s.Seek(0, CFile::begin), CFile::posicionMala);
    EXPECT_EQ(s.GetLength(), 0u);
    EXPECT_FALSE(s.SetLength(1));
    EXPECT_FALSE(s.ReadString(linea));
    EXPECT_FALSE(s.WriteString(L"x"));
}

TEST_F(CFileTest, KeepsTheFirstFailureUntilTheNextOpen) {
    CFile lleno;
    ASSERT_TRUE(lleno.Open(L"/dev/full", CFile::modeWrite));
    EXPECT_FALSE(lleno.Write("x", 1));
    char c = 0;
    EXPECT_EQ(lleno.Read(&c, 1), 0u);
    EXPECT_EQ(GetLastError(), ERROR_INVALID_HANDLE);
    EXPECT_EQ(lleno.GetError(), ERROR_DISK_FULL);

    CFile f;
    ASSERT_TRUE(f.Open(m_nombre, kCrear));
    EXPECT_EQ(f.Seek(-1, CFile::begin), CFile::posicionMala);
    EXPECT_EQ(GetLastError(), ERROR_NEGATIVE_SEEK);
    EXPECT_NE(f.GetError(), ERROR_SUCCESS);
    ASSERT_TRUE(f.Open(m_nombre, CFile::modeRead));
    EXPECT_EQ(f.GetError(), ERROR_SUCCESS);
    EXPECT_FALSE(f.Write("x", 1));
}

TEST_F(CFileTest, ABufferedWriteThatIsLostShowsAtTheLatestAtClose) {
    CStdioFile s;
    ASSERT_TRUE(s.Open(L"/dev/full", CFile::modeWrite));
    EXPECT_TRUE(s.Write("x", 1));
    EXPECT_FALSE(s.Close());
    EXPECT_EQ(s.GetError(), ERROR_DISK_FULL);
}

TEST_F(CFileTest, ShareFlagsKeepOthersOut) {
    CFile f(m_nombre, kCrear | CFile::shareExclusive);
    ASSERT_TRUE(f.IsOpen());
    CFile g;
    EXPECT_FALSE(g.Open(m_nombre, CFile::modeRead | CFile::shareDenyWrite));
    EXPECT_EQ(GetLastError(), ERROR_SHARING_VIOLATION);
    f.Write("abc", 3);
    EXPECT_FALSE(g.Open(m_nombre, kCrear | CFile::shareExclusive));
    EXPECT_EQ(f.GetLength(), 3u) << "emptied although in use";
    EXPECT_TRUE(g.Open(m_nombre, CFile::modeRead | CFile::shareDenyNone));
    f.Close();
    CFile h;
    EXPECT_TRUE(g.Open(m_nombre, CFile::modeRead | CFile::shareDenyWrite));
    EXPECT_TRUE(h.Open(m_nombre, CFile::modeRead | CFile::shareDenyWrite));
}

TEST_F(CFileTest, ADuplicateSharesThePositionAndOutlivesItsOrigin) {
    auto f = std::make_unique<CFile>(m_nombre, kCrear);
    f->Write("abc", 3);
    const std::unique_ptr<CFile> otro(f->Duplicate());
    ASSERT_TRUE(otro);
    EXPECT_EQ(otro->GetPosition(), 3u);
    EXPECT_EQ(otro->GetFilePath(), f->GetFilePath());
    f.reset();
    EXPECT_EQ(otro->GetLength(), 3u);
    CStdioFile s(m_nombre, CFile::modeRead);
    EXPECT_EQ(s.Duplicate(), nullptr);
}

TEST_F(CFileTest, TellsTheStatusRenamesAndRemoves) {
    m_carpeta.Escribe("año nuevo.bin", "abc");
    const CString otro = Ancha(m_carpeta / "otro");
    CFileStatus estado;
    ASSERT_TRUE(CFile::GetStatus(m_nombre, estado));
    EXPECT_EQ(estado.m_size, 3u);
    EXPECT_EQ(estado.m_szFullName, m_nombre);
    EXPECT_EQ(estado.m_attribute, 0);
    EXPECT_GT(estado.m_mtime, 1600000000);
    ASSERT_TRUE(CFile::GetStatus(Ancha(m_carpeta.Ruta()), estado));
    EXPECT_EQ(estado.m_attribute, CFileStatus::directory);
    EXPECT_FALSE(CFile::GetStatus(otro, estado));
    EXPECT_TRUE(CFile::Rename(m_nombre, otro));
    EXPECT_FALSE(CFile::Remove(m_nombre));
    EXPECT_TRUE(CFile::Remove(otro));
    EXPECT_EQ(m_carpeta.CuentaFicheros(), 0u);
}

TEST_F(CFileTest, StdioReadsLinesOfEitherEndingAndEncoding) {
    const CString nombre = Ancha(m_carpeta.Escribe("líneas.txt",
                                                   "\xEF\xBB\xBFuno\r\nse\xC3\xB1"
                                                   "al\n\nse\xF1"
                                                   "al\nsin fin"));
    CStdioFile s(nombre, CFile::modeRead | CFile::typeText);
    CString linea;
    for (const wchar_t* espera : {L"uno", L"señal", L"", L"señal", L"sin fin"}) {
        EXPECT_TRUE(s.ReadString(linea));
        EXPECT_EQ(linea, espera);
    }
    EXPECT_FALSE(s.ReadString(linea));
    EXPECT_EQ(linea, L"");
    s.SeekToBegin();
    EXPECT_TRUE(s.ReadString(linea));
    EXPECT_EQ(linea, L"uno");
    CStdioFile b(nombre, CFile::modeRead | CFile::typeBinary);
    EXPECT_TRUE(b.ReadString(linea));
    EXPECT_EQ(linea, L"uno\r");
}

TEST_F(CFileTest, StdioMayChangeBetweenReadingAndWriting) {
    CStdioFile s;
    ASSERT_TRUE(s.Open(m_nombre, kCrear));
    EXPECT_TRUE(s.WriteString(L"año 1\naño 2\n"));
    s.SeekToBegin();
    CString linea;
    EXPECT_TRUE(s.ReadString(linea));
    EXPECT_EQ(linea, L"año 1");
    EXPECT_TRUE(s.WriteString(L"AÑO"));
    EXPECT_TRUE(s.ReadString(linea));
    EXPECT_EQ(linea, L" 2");
    EXPECT_EQ(s.GetLength(), 14u);
    EXPECT_TRUE(s.SetLength(4));
    EXPECT_EQ(s.GetLength(), 4u);
}

TEST_F(CFileTest, StdioLendsItsStreamAndIsAFileToThoseWhoTakeOne) {
    CStdioFile s;
    ASSERT_TRUE(s.Open(m_nombre, kCrear));
    std::fputs("abcdef", s.m_pStream);
    CFile* base = &s;
    EXPECT_EQ(base->GetLength(), 6u);
    EXPECT_EQ(base->Seek(-2, CFile::end), 4u);
    char c = 0;
    EXPECT_EQ(base->Read(&c, 1), 1u);
    EXPECT_EQ(c, 'e');
    EXPECT_TRUE(base->Close());
    EXPECT_EQ(s.m_pStream, nullptr);
}

TEST(Errores, BelongToTheThread) {
    SetLastError(ERROR_DISK_FULL);
    DWORD otro = 1;
    std::thread([&otro] { otro = GetLastError(); }).join();
    EXPECT_EQ(otro, ERROR_SUCCESS);
    EXPECT_EQ(GetLastError(), ERROR_DISK_FULL);
    EXPECT_EQ(TextoError(ERROR_DISK_FULL), L"the disk is full");
    EXPECT_EQ(TextoError(4711), L"error 4711");
    EXPECT_EQ(ErrorDeErrno(0), ERROR_SUCCESS);
    EXPECT_EQ(ErrorDeErrno(EDOM), ERROR_GEN_FAILURE);
}

}  // namespace
