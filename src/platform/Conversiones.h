#pragma once
// Texts between the wide characters of this library (one wchar_t for each code point) and what stands outside: UTF-8 in
// files and names of files, UTF-16 for OpenGL lists of glyphs, and the code pages of older files. Nothing here looks at
// the locale. Input that isn't valid never fails: what can't be read becomes U+FFFD, what can't be written '?'.

#include "platform/Exporta.h"

#include <string>
#include <string_view>

/// Code page numbers, as files and other programs name them. Any other number that the system's iconv knows as "CP" and
/// the number, or as one of ISO 8859 (28591 to 28606), serves too.
enum : unsigned {
    CP_ANSI = 1252,
    CP_DOS = 850,
    CP_LATIN1 = 28591,
    CP_UTF8 = 65001,
};

/// What a file of UTF-8 may begin with; it is no part of the text.
constexpr std::string_view kFirmaUtf8 = "\xEF\xBB\xBF";

/// Text as UTF-8. A surrogate or a value beyond U+10FFFF is written as U+FFFD.
LUMBRA_API std::string AUtf8(std::wstring_view texto);

/// Text from UTF-8. Each byte sequence that isn't well formed becomes one U+FFFD (Unicode, section 3.9, "maximal
/// subparts").
LUMBRA_API std::wstring DeUtf8(std::string_view bytes);

/// Whether all bytes are well-formed UTF-8.
LUMBRA_API bool EsUtf8(std::string_view bytes);

/// Text as UTF-16 in the machine's byte order.
LUMBRA_API std::u16string AUtf16(std::wstring_view texto);

/// Text from UTF-16 in the machine's byte order. A lone surrogate becomes U+FFFD.
LUMBRA_API std::wstring DeUtf16(std::u16string_view unidades);

/// Text in a code page; '?' stands for a character that the page lacks. Of a page that the system doesn't know only
/// ASCII is taken.
LUMBRA_API std::string APagina(std::wstring_view texto, unsigned pagina);

/// Text from a code page; U+FFFD stands for a byte that has no meaning in it.
LUMBRA_API std::wstring DePagina(std::string_view bytes, unsigned pagina);

/// Text from a file that doesn't tell its encoding: UTF-8 when it is well formed, else code page 1252.
LUMBRA_API std::wstring DeBytes(std::string_view bytes);

/// Capital of a letter, the same in every locale: Latin, Greek and Cyrillic; what else there is stays as it is.
LUMBRA_API wchar_t AMayuscula(wchar_t c);

/// Small letter of a capital, as AMayuscula.
LUMBRA_API wchar_t AMinuscula(wchar_t c);

/// Compares without regard to capitals: negative, 0 or positive.
LUMBRA_API int ComparaSinMayusculas(std::wstring_view a, std::wstring_view b);
