// array (Metal Shading Language 3.1, 2.12).
#pragma once

#include "scalars.h"

namespace metal {

template <class T, size_t N> struct array {
    T elements[N];

    constexpr T& operator[](size_t i) { return elements[i]; }
    constexpr const T& operator[](size_t i) const { return elements[i]; }
    constexpr size_t size() const { return N; }
    constexpr bool empty() const { return N == 0; }
    constexpr T* data() { return elements; }
    constexpr const T* data() const { return elements; }
    constexpr T* begin() { return elements; }
    constexpr T* end() { return elements + N; }
    constexpr const T* begin() const { return elements; }
    constexpr const T* end() const { return elements + N; }
    constexpr T& front() { return elements[0]; }
    constexpr T& back() { return elements[N - 1]; }
    constexpr const T& front() const { return elements[0]; }
    constexpr const T& back() const { return elements[N - 1]; }
    constexpr void fill(const T& value) {
        for (size_t i = 0; i < N; ++i)
            elements[i] = value;
    }
};
template <class T, class... Rest> array(T, Rest...) -> array<T, 1 + sizeof...(Rest)>;

} // namespace metal
