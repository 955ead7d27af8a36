// Kind and code of an entity, and the patterns of codes.

#include "model/CTipoDat.h"

namespace Vertiz {

CTipoDat::CTipoDat(int tipo, const CString& codigo)
    : CTipoDat(tipo >= 0 && tipo <= static_cast<int>(CTipoEntidad::Parabola) ? static_cast<CTipoEntidad>(tipo)
                                                                             : CTipoEntidad::Linea,
               codigo) {}

// On a mismatch the search goes back to the last '*' and lets it take one character more.
bool CTipoDat::ComparaCodigo(const CString& patron) const {
    const wchar_t* codigo = m_sCodigo.GetString();
    const wchar_t* p = patron.GetString();
    const wchar_t* asterisco = nullptr;
    const wchar_t* desde = nullptr;
    while (*codigo) {
        if (*p == L'*') {
            asterisco = p++;
            desde = codigo;
        } else if (*p == *codigo) {
            ++p, ++codigo;
        } else if (asterisco) {
            p = asterisco + 1;
            codigo = ++desde;
        } else {
            return false;
        }
    }
    while (*p == L'*')
        ++p;
    return *p == L'\0';
}

}  // namespace Vertiz
