#include "platform/Conversiones.h"

#include "platform/CString.h"

#include <gtest/gtest.h>

#include <random>

namespace {

TEST(Conversiones, Utf8AndUtf16RoundTripOverAllPlanes) {
    std::wstring todos;
    for (wchar_t c = 0; c <= 0x10FFFF; c += c < 0x3000 ? 1 : 97) {
        if (c < 0xD800 || c > 0xDFFF) todos += c;
    }
    EXPECT_EQ(DeUtf8(AUtf8(todos)), todos);
    EXPECT_EQ(DeUtf16(AUtf16(todos)), todos);
    EXPECT_TRUE(EsUtf8(AUtf8(todos)));
}

TEST(Conversiones, WritesTheBytesAndUnitsOfTheStandard) {
    EXPECT_EQ(AUtf8(L"ñ€\U0001F600"), "\xC3\xB1\xE2\x82\xAC\xF0\x9F\x98\x80");
    EXPECT_EQ(AUtf16(L"ñ\U0001F600"), u"ñ\xD83D\xDE00");
    EXPECT_EQ(CString("a\xC3\xB1o"), L"año");
    EXPECT_EQ(CString(L"año").Utf8(), "a\xC3\xB1o");
    EXPECT_EQ(CString(L"\U0001F600").Utf16().size(), 2u);
}

TEST(Conversiones, ReplacesEachIllFormedSequenceOnce) {
    EXPECT_EQ(DeUtf8("a\x80z"), L"a\xFFFDz");
    EXPECT_EQ(DeUtf8("\xC0\xAF"), L"\xFFFD\xFFFD");                      // too long a form
    EXPECT_EQ(DeUtf8("\xE2\x82z"), L"\xFFFDz");                          // cut short
    EXPECT_EQ(DeUtf8("\xE2\x82"), L"\xFFFD");                            // at the end
    EXPECT_EQ(DeUtf8("\xED\xA0\x80"), L"\xFFFD\xFFFD\xFFFD");            // a surrogate
    EXPECT_EQ(DeUtf8("\xF4\x90\x80\x80"), L"\xFFFD\xFFFD\xFFFD\xFFFD");  // beyond the last plane
    EXPECT_EQ(DeUtf8("\xF0\x9F\x98"), L"\xFFFD");
    EXPECT_FALSE(EsUtf8("\xE2\x82"));
    EXPECT_EQ(AUtf8(std::wstring(1, static_cast<wchar_t>(0xD800))), "\xEF\xBF\xBD");
    EXPECT_EQ(AUtf8(std::wstring(1, static_cast<wchar_t>(0x110000))), "\xEF\xBF\xBD");
    EXPECT_EQ(AUtf8(std::wstring(1, static_cast<wchar_t>(-1))), "\xEF\xBF\xBD");
    EXPECT_EQ(DeUtf16(u"\xD800x"), L"\xFFFDx");
    EXPECT_EQ(DeUtf16(u"\xDC00\xD800"), L"\xFFFD\xFFFD");
}

TEST(Conversiones, KnowsTheCodePagesOfOlderFiles) {
    EXPECT_EQ(APagina(L"señal €", CP_ANSI),
              "se\xF1"
              "al \x80");
    EXPECT_EQ(DePagina("se\xF1"
                       "al \x80",
                       CP_ANSI),
              L"señal €");
    EXPECT_EQ(APagina(L"ñÑ", CP_DOS), "\xA4\xA5");
    EXPECT_EQ(DePagina("\xA4\xA5", CP_DOS), L"ñÑ");
    EXPECT_EQ(APagina(L"ñ", CP_LATIN1), "\xF1");
    EXPECT_EQ(DePagina("\xF1", 28605), L"ñ");
    EXPECT_EQ(APagina(L"ñ", CP_UTF8), "\xC3\xB1");
    EXPECT_EQ(DePagina("\xC3\xB1", CP_UTF8), L"ñ");
}

TEST(Conversiones, PutsAMarkWhereAPageHasNoCharacterAndGoesOn) {
    EXPECT_EQ(APagina(L"a€ñ\U0001F600z", CP_LATIN1), "a?\xF1?z");
    EXPECT_EQ(APagina(std::wstring(1, static_cast<wchar_t>(-1)) + L"z", CP_ANSI), "?z");
    EXPECT_EQ(DePagina("a\x81z", CP_ANSI), L"a\xFFFDz");
    EXPECT_EQ(APagina(L"", CP_ANSI), "");
    EXPECT_EQ(APagina(L"añ", 12), "a?");
    EXPECT_EQ(DePagina("a\xF1", 12), L"a\xFFFD");
}

TEST(Conversiones, ConvertsTextsLongerThanOneBlock) {
    const std::wstring largo(5000, L'ñ');
    EXPECT_EQ(APagina(largo, CP_ANSI), std::string(5000, '\xF1'));
    EXPECT_EQ(DePagina(std::string(5000, '\xF1'), CP_ANSI), largo);
    EXPECT_EQ(DePagina(std::string(3000, '\x81'), CP_ANSI), std::wstring(3000, static_cast<wchar_t>(0xFFFD)));
}

TEST(Conversiones, TakesBytesOfUnknownOriginAsUtf8OrAsTheAnsiPage) {
    EXPECT_EQ(DeBytes("pe\xC3\xB1"
                      "a"),
              L"peña");
    EXPECT_EQ(DeBytes("pe\xF1"
                      "a"),
              L"peña");
}

TEST(Conversiones, NoBytesMakeThemFail) {
    std::mt19937 azar(7);
    for (int vez = 0; vez < 3000; ++vez) {
        std::string bytes(azar() % 40, '\0');
        std::wstring ancho(azar() % 20, L'\0');
        std::u16string medio(azar() % 20, u'\0');
        for (char& c : bytes)
            c = static_cast<char>(azar());
        for (wchar_t& c : ancho)
            c = static_cast<wchar_t>(azar());
        for (char16_t& c : medio)
            c = static_cast<char16_t>(azar());
        const std::wstring leido = DeUtf8(bytes);
        EXPECT_EQ(DeUtf8(AUtf8(leido)), leido);
        if (EsUtf8(bytes)) {
            EXPECT_EQ(AUtf8(leido), bytes);
        }
        EXPECT_TRUE(EsUtf8(AUtf8(ancho)));
        EXPECT_EQ(DeUtf16(AUtf16(ancho)), DeUtf8(AUtf8(ancho)));
        EXPECT_LE(DeUtf16(medio).size(), medio.size());
        EXPECT_EQ(DePagina(bytes, CP_ANSI).size(), bytes.size());
        EXPECT_EQ(APagina(ancho, CP_ANSI).size(), ancho.size());
        EXPECT_EQ(DePagina(bytes, CP_DOS).size(), bytes.size());
    }
}

}  // namespace
