// The text itself; what Format makes is in CStringFormato.cpp.

#include "platform/CString.h"

#include "platform/Conversiones.h"

#include <algorithm>

namespace {

constexpr const wchar_t* kBlancos = L" \t\n\v\f\r";

size_t Cuenta(int n) {
    return static_cast<size_t>(std::max(n, 0));
}

// A position of std::wstring as the result of a search.
int Posicion(size_t i) {
    return i == std::wstring::npos ? -1 : static_cast<int>(i);
}

const wchar_t* SinNulo(const wchar_t* texto) {
    return texto ? texto : L"";
}

}  // namespace

CString::CString(const wchar_t* texto, int n) {
    if (texto && n > 0) m_s.assign(texto, static_cast<size_t>(n));
}
CString::CString(const char* utf8) : CString(std::string_view(utf8 ? utf8 : "")) {}
CString::CString(std::string_view utf8) : m_s(DeUtf8(utf8)) {}
CString::CString(std::u16string_view utf16) : m_s(DeUtf16(utf16)) {}
CString::CString(wchar_t c, int veces) : m_s(Cuenta(veces), c) {}

std::string CString::Utf8() const {
    return AUtf8(m_s);
}
std::u16string CString::Utf16() const {
    return AUtf16(m_s);
}

CString CString::Left(int n) const {
    return m_s.substr(0, Cuenta(n));
}
CString CString::Right(int n) const {
    return m_s.substr(m_s.size() - std::min(Cuenta(n), m_s.size()));
}
CString CString::Mid(int desde) const {
    return m_s.substr(std::min(Cuenta(desde), m_s.size()));
}
CString CString::Mid(int desde, int n) const {
    return m_s.substr(std::min(Cuenta(desde), m_s.size()), Cuenta(n));
}
CString CString::SpanIncluding(const wchar_t* conjunto) const {
    return m_s.substr(0, m_s.find_first_not_of(SinNulo(conjunto)));
}
CString CString::SpanExcluding(const wchar_t* conjunto) const {
    return m_s.substr(0, m_s.find_first_of(SinNulo(conjunto)));
}

int CString::Find(const wchar_t* texto, int desde) const {
    return Posicion(m_s.find(SinNulo(texto), Cuenta(desde)));
}
int CString::Find(wchar_t c, int desde) const {
    return Posicion(m_s.find(c, Cuenta(desde)));
}
int CString::ReverseFind(wchar_t c) const {
    return Posicion(m_s.rfind(c));
}
int CString::FindOneOf(const wchar_t* conjunto) const {
    return Posicion(m_s.find_first_of(SinNulo(conjunto)));
}

CString CString::Tokenize(const wchar_t* separadores, int& desde) const {
    const size_t primero = desde < 0 ? std::wstring::npos : m_s.find_first_not_of(SinNulo(separadores), Cuenta(desde));
    if (primero == std::wstring::npos) {
        desde = -1;
        return {};
    }
    const size_t fin = std::min(m_s.find_first_of(SinNulo(separadores), primero), m_s.size());
    desde = static_cast<int>(std::min(fin + 1, m_s.size()));
    return m_s.substr(primero, fin - primero);
}

int CString::Compare(const wchar_t* otro) const {
    return m_s.compare(SinNulo(otro));
}
int CString::CompareNoCase(const wchar_t* otro) const {
    return ComparaSinMayusculas(m_s, SinNulo(otro));
}

void CString::SetAt(int i, wchar_t c) {
    if (i >= 0 && i < GetLength()) m_s[static_cast<size_t>(i)] = c;
}
CString& CString::MakeUpper() {
    std::ranges::transform(m_s, m_s.begin(), AMayuscula);
    return *this;
}
CString& CString::MakeLower() {
    std::ranges::transform(m_s, m_s.begin(), AMinuscula);
    return *this;
}
CString& CString::MakeReverse() {
    std::ranges::reverse(m_s);
    return *this;
}

CString& CString::Trim() {
    return Trim(kBlancos);
}
CString& CString::TrimLeft() {
    return TrimLeft(kBlancos);
}
CString& CString::TrimRight() {
    return TrimRight(kBlancos);
}
CString& CString::Trim(const wchar_t* conjunto) {
    return TrimRight(conjunto).TrimLeft(conjunto);
}
CString& CString::TrimLeft(const wchar_t* conjunto) {
    m_s.erase(0, std::min(m_s.find_first_not_of(SinNulo(conjunto)), m_s.size()));
    return *this;
}
CString& CString::TrimRight(const wchar_t* conjunto) {
    m_s.erase(m_s.find_last_not_of(SinNulo(conjunto)) + 1);  // npos + 1 is 0
    return *this;
}

int CString::Replace(const wchar_t* viejo, const wchar_t* nuevo) {
    const std::wstring_view buscado(SinNulo(viejo));
    if (buscado.empty()) return 0;
    std::wstring resultado;
    int veces = 0;
    size_t desde = 0;
    for (size_t i = m_s.find(buscado); i != std::wstring::npos; i = m_s.find(buscado, desde), ++veces) {
        resultado.append(m_s, desde, i - desde).append(SinNulo(nuevo));
        desde = i + buscado.size();
    }
    resultado.append(m_s, desde);
    m_s = std::move(resultado);
    return veces;
}
int CString::Replace(wchar_t viejo, wchar_t nuevo) {
    const auto veces = std::ranges::count(m_s, viejo);
    std::ranges::replace(m_s, viejo, nuevo);
    return static_cast<int>(veces);
}
int CString::Remove(wchar_t c) {
    return static_cast<int>(std::erase(m_s, c));
}

int CString::Insert(int i, const wchar_t* texto) {
    // By way of a copy: the text may be a piece of this one.
    m_s.insert(std::min(Cuenta(i), m_s.size()), std::wstring(SinNulo(texto)));
    return GetLength();
}
int CString::Insert(int i, wchar_t c) {
    m_s.insert(std::min(Cuenta(i), m_s.size()), 1, c);
    return GetLength();
}
int CString::Delete(int i, int n) {
    m_s.erase(std::min(Cuenta(i), m_s.size()), Cuenta(n));
    return GetLength();
}

wchar_t* CString::GetBuffer(int n) {
    if (n > GetLength()) m_s.resize(static_cast<size_t>(n));
    return m_s.data();
}
void CString::ReleaseBuffer(int n) {
    const size_t fin = n < 0 ? std::min(m_s.find(L'\0'), m_s.size()) : std::min(Cuenta(n), m_s.size());
    m_s.resize(fin);
}
