#pragma once
// Numbers to text and back, the same in every locale: the decimal sign is a point, and digits aren't grouped.

#include "platform/Exporta.h"

#include <cstdint>
#include <string>
#include <string_view>

/// Reads the number at the start of a text, after blanks and a sign, and takes no notice of what follows it. 0 when
/// there is none; infinite when it is too large.
LUMBRA_API double LeeReal(std::string_view texto);
LUMBRA_API double LeeReal(std::wstring_view texto);

/// Reads the decimal integer at the start of a text, after blanks and a sign, and takes no notice of what follows it. 0
/// when there is none; the nearest limit of the type when it is too large.
LUMBRA_API int LeeEntero(std::string_view texto);
LUMBRA_API int LeeEntero(std::wstring_view texto);
LUMBRA_API std::int64_t LeeEntero64(std::string_view texto);
LUMBRA_API std::int64_t LeeEntero64(std::wstring_view texto);

/// The shortest text that gives the same number back.
LUMBRA_API std::string TextoExacto(double valor);

/// A number with a fixed count of decimals, as "%.*f" writes it.
LUMBRA_API std::string TextoReal(double valor, int decimales = 6);

/// A number with a count of significant digits, as "%.*g" writes it.
LUMBRA_API std::string TextoGeneral(double valor, int cifras = 6);
