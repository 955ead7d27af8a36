#pragma once
// The header that every entity of a drawing has.

#include "model/CMaximas.h"
#include "model/CTipoDat.h"

namespace Vertiz {

/// Kind, code and box of an entity, in the coordinates of its drawing.
template <class T>
class LUMBRA_API CCabDigi : public CTipoDat, public CMaximas<T> {
  public:
    CCabDigi() = default;
    explicit CCabDigi(const CTipoDat& tipo, const CMaximas<T>& maximas = {}) : CTipoDat(tipo), CMaximas<T>(maximas) {}

    [[nodiscard]] const CMaximas<T>& GetMaximas() const { return *this; }

    /// Same kind, code, deletion mark and box.
    [[nodiscard]] bool operator==(const CCabDigi& otra) const {
        return CTipoDat::operator==(otra) && CMaximas<T>::operator==(otra);
    }
};

}  // namespace Vertiz
