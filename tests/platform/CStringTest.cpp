#include "platform/CString.h"

#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

namespace {

template <class... A>
CString F(const wchar_t* formato, const A&... a) {
    CString s;
    s.Format(formato, a...);
    return s;
}

TEST(CString, GivesPartsAndTakesPositionsOutsideToTheNearestEnd) {
    const CString s(L"Niño");
    EXPECT_EQ(s.GetLength(), 4);
    EXPECT_EQ(s.Left(2), L"Ni");
    EXPECT_EQ(s.Left(-1), L"");
    EXPECT_EQ(s.Left(9), L"Niño");
    EXPECT_EQ(s.Right(2), L"ño");
    EXPECT_EQ(s.Right(9), L"Niño");
    EXPECT_EQ(s.Right(-3), L"");
    EXPECT_EQ(s.Mid(1), L"iño");
    EXPECT_EQ(s.Mid(1, 2), L"iñ");
    EXPECT_EQ(s.Mid(9, 2), L"");
    EXPECT_EQ(s.Mid(-2, 2), L"Ni");
    EXPECT_EQ(s[2], L'ñ');
    EXPECT_EQ(s[size_t{4}], L'\0');
    EXPECT_EQ(s.GetAt(-1), L'\0');
    EXPECT_EQ(CString(L"12ab").SpanIncluding(L"0123456789"), L"12");
    EXPECT_EQ(CString(L"12ab").SpanExcluding(L"ab"), L"12");
    EXPECT_EQ(CString(L"abc").SpanIncluding(L"abc"), L"abc");
}

TEST(CString, TakesNullPointersAsEmpty) {
    const wchar_t* nada = nullptr;
    const char* nadaEstrecho = nullptr;
    CString s(nada);
    EXPECT_TRUE(s.IsEmpty());
    EXPECT_TRUE(CString(nadaEstrecho).IsEmpty());
    EXPECT_TRUE(CString(nada, 5).IsEmpty());
    s += nada;
    EXPECT_EQ(s.Insert(0, nada), 0);
    EXPECT_EQ(s.Compare(nada), 0);
    EXPECT_TRUE(s == nada);
    EXPECT_EQ(F(nada), L"");
}

TEST(CString, Searches) {
    const CString s(L"a.b.c");
    EXPECT_EQ(s.Find(L'.'), 1);
    EXPECT_EQ(s.Find(L'.', 2), 3);
    EXPECT_EQ(s.Find(L'.', 99), -1);
    EXPECT_EQ(s.Find(L'.', -4), 1);
    EXPECT_EQ(s.Find(L"b."), 2);
    EXPECT_EQ(s.ReverseFind(L'.'), 3);
    EXPECT_EQ(s.ReverseFind(L'x'), -1);
    EXPECT_EQ(s.FindOneOf(L"cb"), 2);
    EXPECT_EQ(s.FindOneOf(L""), -1);
}

TEST(CString, TokenizeTakesSeparatorsInARowAsOneAndEndsWithMinusOne) {
    const CString s(L";;uno; dos;");
    int desde = 0;
    EXPECT_EQ(s.Tokenize(L"; ", desde), L"uno");
    EXPECT_EQ(s.Tokenize(L"; ", desde), L"dos");
    EXPECT_EQ(s.Tokenize(L"; ", desde), L"");
    EXPECT_EQ(desde, -1);
    EXPECT_EQ(s.Tokenize(L"; ", desde), L"");
    EXPECT_EQ(desde, -1);
    desde = 0;
    EXPECT_EQ(CString(L"solo").Tokenize(L";", desde), L"solo");
    EXPECT_EQ(desde, 4);
}

TEST(CString, ChangesCaseOfLettersBeyondAsciiInAnyLocale) {
    EXPECT_EQ(CString(L"ñandú ÿ ω я ž").MakeUpper(), L"ÑANDÚ Ÿ Ω Я Ž");
    EXPECT_EQ(CString(L"ÑANDÚ Ÿ Ω Я Ž ß × Œ").MakeLower(), L"ñandú ÿ ω я ž ß × œ");
    EXPECT_EQ(CString(L"÷ß1").MakeUpper(), L"÷ß1");
    EXPECT_EQ(CString(L"PEÑA").CompareNoCase(L"peña"), 0);
    EXPECT_LT(CString(L"a").CompareNoCase(L"B"), 0);
    EXPECT_GT(CString(L"a").Compare(L"B"), 0);
    EXPECT_LT(CString(L"ab").CompareNoCase(L"ABC"), 0);
}

TEST(CString, Trims) {
    EXPECT_EQ(CString(L" \t x y\r\n").Trim(), L"x y");
    EXPECT_EQ(CString(L"  x ").TrimLeft(), L"x ");
    EXPECT_EQ(CString(L"  x ").TrimRight(), L"  x");
    EXPECT_EQ(CString(L"   ").Trim(), L"");
    EXPECT_EQ(CString(L"--x-").Trim(L"-"), L"x");
}

TEST(CString, ReplacesRemovesInsertsAndDeletes) {
    CString s(L"aaa");
    EXPECT_EQ(s.Replace(L"a", L"aa"), 3);
    EXPECT_EQ(s, L"aaaaaa");
    EXPECT_EQ(s.Replace(L"", L"x"), 0);
    EXPECT_EQ(s.Replace(L"aa", L""), 3);
    EXPECT_EQ(s, L"");
    s = L"a-b-c";
    EXPECT_EQ(s.Replace(L'-', L'+'), 2);
    EXPECT_EQ(s.Remove(L'+'), 2);
    EXPECT_EQ(s, L"abc");
    EXPECT_EQ(s.Insert(99, L"!"), 4);
    EXPECT_EQ(s.Insert(-1, L'x'), 5);
    EXPECT_EQ(s, L"xabc!");
    EXPECT_EQ(s.Delete(1, 2), 3);
    EXPECT_EQ(s.Delete(99), 3);
    EXPECT_EQ(s.Delete(1, 99), 1);
    EXPECT_EQ(s, L"x");
    s.SetAt(0, L'y');
    s.SetAt(1, L'z');
    EXPECT_EQ(s, L"y");
    s = L"abc";
    EXPECT_EQ(s.Insert(1, s.GetString() + 1), 5);
    EXPECT_EQ(s, L"abcbc");
    EXPECT_EQ(CString(L"abc").MakeReverse(), L"cba");
}

TEST(CString, ComparesWithTextsOnEitherSideAndServesAsKey) {
    const CString s(L"b");
    EXPECT_TRUE(s == L"b" && L"b" == s && s != L"c" && s < L"c" && L"a" < s && s >= CString(L"b"));
    EXPECT_EQ(L"a" + s + L"c" + L'd', L"abcd");
    EXPECT_EQ(L'a' + s, L"ab");
    std::unordered_set<CString> conjunto{s, CString(L"b"), CString(L"x")};
    EXPECT_EQ(conjunto.size(), 2u);
}

TEST(CString, LendsABuffer) {
    CString s;
    wchar_t* p = s.GetBuffer(10);
    p[0] = L'x';
    p[1] = L'\0';
    s.ReleaseBuffer();
    EXPECT_EQ(s, L"x");
    s.GetBuffer(5);
    s.ReleaseBuffer(99);
    EXPECT_EQ(s.GetLength(), 5);
}

TEST(CStringFormat, WritesIntegersByTheirOwnWidth) {
    EXPECT_EQ(F(L"%d|%5d|%-5d|%05d|%+d|% d", -7, 7, 7, -7, 7, 7), L"-7|    7|7    |-0007|+7| 7");
    EXPECT_EQ(F(L"%I64d %lld %ld", std::int64_t{9000000000}, std::int64_t{-9000000000}, 5L),
              L"9000000000 -9000000000 5");
    EXPECT_EQ(F(L"Texturas%I64d%d%d.tmp", std::int64_t{1700000000}, 12, 0), L"Texturas1700000000120.tmp");
    EXPECT_EQ(F(L"%u %x %X %#x %o", 4294967295u, -1, 48879, 255, 8), L"4294967295 ffffffff BEEF 0xff 10");
    EXPECT_EQ(F(L"%u", std::uint64_t(-1)), L"18446744073709551615");
    EXPECT_EQ(F(L"%d", std::numeric_limits<std::int64_t>::min()), L"-9223372036854775808");
    EXPECT_EQ(F(L"%.3d|%6.3d|%.0d|%06.3d", 5, 5, 0, 5), L"005|   005||   005");
    EXPECT_EQ(F(L"%*d|%-*d|%*d|", 4, 1, 4, 1, -4, 1), L"   1|1   |1   |");
    EXPECT_EQ(F(L"%c%c%%", 65, L'ñ'), L"Añ%");
    EXPECT_EQ(F(L"%hhd %zu", static_cast<signed char>(-3), sizeof(char)), L"-3 1");
}

TEST(CStringFormat, WritesRealsWithAPointInAnyLocale) {
    EXPECT_EQ(F(L"%f", 0.125), L"0.125000");
    EXPECT_EQ(F(L"%f", 0.125f), L"0.125000");
    EXPECT_EQ(F(L"%.2f|%8.3f|%-8.1f|%08.2f|%+.1f", 2.345, -1.5, 2.0, -3.14159, 1.0),
              L"2.35|  -1.500|2.0     |-0003.14|+1.0");
    EXPECT_EQ(F(L"%.0f %.0f", 0.5, 1.5), L"0 2");
    EXPECT_EQ(F(L"%g %g %g", 1e-5, 1234567.0, 0.5), L"1e-05 1.23457e+06 0.5");
    EXPECT_EQ(F(L"%e %E", 12345.678, 0.001), L"1.234568e+04 1.000000E-03");
    EXPECT_EQ(F(L"%05f", std::numeric_limits<double>::infinity()), L"  inf");
    EXPECT_EQ(F(L"%f", std::numeric_limits<double>::max()).GetLength(), 309 + 7);
    EXPECT_EQ(F(L"%.5000f", std::numeric_limits<double>::max()).GetLength(), 309 + 1 + 4096);
}

TEST(CStringFormat, WritesTextsOfEveryKind) {
    EXPECT_EQ(F(L"%s-%s-%s-%S", CString(L"ñ"), L"b", "año", std::wstring(L"d")), L"ñ-b-año-d");
    EXPECT_EQ(F(L"%5s|%-5s|%.2s|", L"ab", L"ab", L"abc"), L"   ab|ab   |ab|");
    EXPECT_EQ(F(L"%ls%ws", L"a", L"b"), L"ab");
}

TEST(CStringFormat, SurvivesWhatPrintfWouldNot) {
    EXPECT_EQ(F(L"%d %s|%f"), L"0 |0.000000");
    EXPECT_EQ(F(L"%s %s", 12, 0.5), L"12 0.500000");
    EXPECT_EQ(F(L"%d", 3.9), L"3");
    EXPECT_EQ(F(L"%f", 3), L"3.000000");
    EXPECT_EQ(F(L"%d", 1e300), L"9223372036854775807");
    EXPECT_EQ(F(L"%d", std::numeric_limits<double>::quiet_NaN()), L"0");
    EXPECT_EQ(F(L"100%"), L"100");
    EXPECT_EQ(F(L"%l"), L"");
    EXPECT_EQ(F(L"%k"), L"k");
    EXPECT_EQ(F(L"%99999999999d", 1).GetLength(), 4096);
    EXPECT_EQ(F(L"%s", static_cast<const wchar_t*>(nullptr)), L"(null)");
}

TEST(CStringFormat, AppendsAndMayTakeItselfAsArgument) {
    CString s(L"a");
    s.AppendFormat(L"%d", 1);
    s.Format(L"<%s>", s);
    EXPECT_EQ(s, L"<a1>");
}

}  // namespace
