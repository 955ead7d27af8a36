#pragma once
// The wide text of the exported interfaces: one wchar_t for each code point.

#include "platform/Exporta.h"

#include <compare>
#include <concepts>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <type_traits>

/// A text, copied by value. Positions count characters from 0; one outside the text is taken to its nearest end, so
/// that no operation reads or writes outside. Nothing depends on the locale.
///
/// A narrow text given to it is UTF-8 (other encodings: Conversiones.h). A null pointer counts as the empty text.
class LUMBRA_API CString {
  public:
    CString() = default;
    CString(const wchar_t* texto) : m_s(texto ? texto : L"") {}
    CString(const wchar_t* texto, int n);
    CString(const char* utf8);
    CString(std::wstring texto) : m_s(std::move(texto)) {}
    explicit CString(std::wstring_view texto) : m_s(texto) {}
    explicit CString(std::string_view utf8);
    explicit CString(std::u16string_view utf16);
    explicit CString(wchar_t c, int veces = 1);

    // Reading.
    int GetLength() const { return static_cast<int>(m_s.size()); }
    bool IsEmpty() const { return m_s.empty(); }
    /// The character at a position; 0 outside the text.
    wchar_t GetAt(int i) const { return i >= 0 && i < GetLength() ? m_s[static_cast<size_t>(i)] : L'\0'; }
    wchar_t operator[](std::integral auto i) const { return GetAt(static_cast<int>(i)); }
    /// The text ended by a null. Good until the object changes.
    const wchar_t* GetString() const { return m_s.c_str(); }
    operator const wchar_t*() const { return m_s.c_str(); }
    const std::wstring& Texto() const { return m_s; }
    std::string Utf8() const;
    std::u16string Utf16() const;

    // Parts. Counts below 0 count as 0.
    CString Left(int n) const;
    CString Right(int n) const;
    CString Mid(int desde) const;
    CString Mid(int desde, int n) const;
    /// The characters at the start that are all in the set; those that are all outside it.
    CString SpanIncluding(const wchar_t* conjunto) const;
    CString SpanExcluding(const wchar_t* conjunto) const;

    // Searching; -1 when there is none.
    int Find(const wchar_t* texto, int desde = 0) const;
    int Find(wchar_t c, int desde = 0) const;
    int ReverseFind(wchar_t c) const;
    /// First position of any of the characters.
    int FindOneOf(const wchar_t* conjunto) const;
    /// The next piece between separators from `desde` on, which moves behind it. Separators in a row count as one. At
    /// the end the result is empty and `desde` is -1.
    CString Tokenize(const wchar_t* separadores, int& desde) const;

    // Comparing, by code point; negative, 0 or positive.
    int Compare(const wchar_t* otro) const;
    int CompareNoCase(const wchar_t* otro) const;

    // Changing.
    void Empty() { m_s.clear(); }
    /// Writes over one character; outside the text nothing happens.
    void SetAt(int i, wchar_t c);
    CString& MakeUpper();
    CString& MakeLower();
    CString& MakeReverse();
    /// Blanks, tabs and line ends away from both ends, or from one.
    CString& Trim();
    CString& TrimLeft();
    CString& TrimRight();
    /// The characters of a set away.
    CString& Trim(const wchar_t* conjunto);
    CString& TrimLeft(const wchar_t* conjunto);
    CString& TrimRight(const wchar_t* conjunto);
    /// Each of these gives how many were replaced or removed.
    int Replace(const wchar_t* viejo, const wchar_t* nuevo);
    int Replace(wchar_t viejo, wchar_t nuevo);
    int Remove(wchar_t c);
    /// Each of these gives the new length.
    int Insert(int i, const wchar_t* texto);
    int Insert(int i, wchar_t c);
    int Delete(int i, int n = 1);
    void Append(const wchar_t* texto) { *this += texto; }
    void Append(const wchar_t* texto, int n) { *this += CString(texto, n); }
    void AppendChar(wchar_t c) { m_s += c; }

    /// Becomes the text that the format gives; AppendFormat puts it at the end.
    ///
    /// The format is that of printf, wide: %d %i %u %x %X %o %c %s %f %e %g %p %%, with flags, width and precision,
    /// also as '*'. The sizes (h, l, ll, z, I32, I64, ...) are read and passed over, since an argument brings its own.
    /// %s takes a CString, a wide text or a narrow one in UTF-8. An argument of another kind than its conversion asks
    /// for is brought to it; a missing one counts as 0 or the empty text.
    template <class... A>
    void Format(const wchar_t* formato, const A&... argumentos) {
        *this = Formatea(formato, argumentos...);
    }
    template <class... A>
    void AppendFormat(const wchar_t* formato, const A&... argumentos) {
        *this += Formatea(formato, argumentos...);
    }

    /// A buffer for at least `n` characters, for functions that write into one. ReleaseBuffer ends its use: the text
    /// then has `n` characters or, with -1, those before the first null.
    wchar_t* GetBuffer(int n = 0);
    void ReleaseBuffer(int n = -1);

    CString& operator+=(const CString& s) { return m_s += s.m_s, *this; }
    CString& operator+=(const wchar_t* s) { return m_s += s ? s : L"", *this; }
    CString& operator+=(wchar_t c) { return m_s += c, *this; }
    friend CString operator+(CString a, const CString& b) { return a += b; }
    friend CString operator+(CString a, const wchar_t* b) { return a += b; }
    friend CString operator+(const wchar_t* a, const CString& b) { return CString(a) += b; }
    friend CString operator+(CString a, wchar_t b) { return a += b; }
    friend CString operator+(wchar_t a, const CString& b) { return CString(a) += b; }

    // Both forms are needed: with only one of them, a text in quotes could as well be compared as a pointer.
    friend bool operator==(const CString& a, const CString& b) { return a.m_s == b.m_s; }
    friend bool operator==(const CString& a, const wchar_t* b) { return a.m_s == (b ? b : L""); }
    friend std::strong_ordering operator<=>(const CString& a, const CString& b) { return a.m_s <=> b.m_s; }
    friend std::strong_ordering operator<=>(const CString& a, const wchar_t* b) { return a.m_s <=> CString(b).m_s; }

    /// One argument of Format, with the kind and width that it came with.
    class Argumento {
      public:
        enum class Clase { Entero, Real, Texto, Puntero };

        template <std::integral T>
        Argumento(T v) : clase(Clase::Entero), bytes(sizeof(T)), entero(static_cast<std::uint64_t>(v)) {}
        template <class T>
        requires std::is_enum_v<T> Argumento(T v) : Argumento(static_cast<std::underlying_type_t<T>>(v)) {}
        Argumento(double v) : clase(Clase::Real), real(v) {}
        Argumento(const wchar_t* v) : clase(Clase::Texto), texto(v ? v : L"(null)") {}
        Argumento(const CString& v) : Argumento(v.GetString()) {}
        Argumento(const std::wstring& v) : Argumento(v.c_str()) {}
        Argumento(const char* v) : clase(Clase::Texto), estrecho(v ? v : "(null)") {}
        Argumento(const std::string& v) : Argumento(v.c_str()) {}
        Argumento(const void* v)
            : clase(Clase::Puntero), bytes(sizeof v), entero(reinterpret_cast<std::uintptr_t>(v)) {}

        Clase clase;
        int bytes = 8;
        std::uint64_t entero = 0;
        double real = 0.0;
        const wchar_t* texto = nullptr;
        const char* estrecho = nullptr;
    };

  private:
    template <class... A>
    static CString Formatea(const wchar_t* formato, const A&... argumentos) {
        if constexpr (sizeof...(A) == 0) {
            return FormateaLista(formato, {});
        } else {
            const Argumento lista[] = {Argumento(argumentos)...};
            return FormateaLista(formato, lista);
        }
    }
    static CString FormateaLista(const wchar_t* formato, std::span<const Argumento> argumentos);

    std::wstring m_s;
};

template <>
struct std::hash<CString> {
    size_t operator()(const CString& s) const noexcept { return std::hash<std::wstring>()(s.Texto()); }
};
