// Tables with a row for each case of an enumeration of formats.
#pragma once

#include <cstddef>

namespace tarnwick::gpu {

// Whether each row is at the place of its `format`.
template <class Rows> constexpr bool rowsAreInOrder(const Rows& rows) {
    for (std::size_t row = 0; row < rows.size(); ++row)
        if (static_cast<std::size_t>(rows[row].format) != row)
            return false;
    return true;
}

} // namespace tarnwick::gpu
