// SPDX-License-Identifier: MIT
#pragma once

#include <cstddef>

namespace IPSERDESIP {

// A view of a constant array, so that a row can refer to a list of any length
// and a tier's data can be read in constant expressions.
template<typename T>
struct Rows
{
    const T *data = nullptr;
    std::size_t size = 0;

    constexpr Rows() = default;
    template<std::size_t N>
    constexpr Rows(const T (&rows)[N])
        : data(rows)
        , size(N)
    {}

    constexpr Rows(const T *rows, std::size_t count)
        : data(rows)
        , size(count)
    {}

    // The first `count` rows.
    constexpr Rows first(std::size_t count) const { return Rows(data, count < size ? count : size); }

    constexpr const T *begin() const { return data; }
    constexpr const T *end() const { return data + size; }
    constexpr const T &operator[](std::size_t i) const { return data[i]; }
};

} // namespace IPSERDESIP
