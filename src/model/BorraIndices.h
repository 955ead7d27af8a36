#pragma once
// Internal. Deleting many elements of a vector in one pass.

#include <span>
#include <vector>

namespace Vertiz {

/// Deletes the elements at the given indices, in ascending order; repeated ones and those out of range are passed over.
template <class T>
void BorraIndices(std::vector<T>& elementos, std::span<const int> indices) {
    std::size_t quedan = 0, siguiente = 0;
    for (std::size_t i = 0; i < elementos.size(); ++i) {
        while (siguiente < indices.size() && indices[siguiente] < static_cast<std::ptrdiff_t>(i))
            ++siguiente;
        if (siguiente < indices.size() && indices[siguiente] == static_cast<std::ptrdiff_t>(i)) continue;
        if (quedan != i) elementos[quedan] = elementos[i];
        ++quedan;
    }
    elementos.erase(elementos.begin() + static_cast<std::ptrdiff_t>(quedan), elementos.end());
}

}  // namespace Vertiz
