// Metal's functions of integers for the native compiler, each as the mathematical definition of its
// result in a wider type (Metal Shading Language 3.1, 6.3).
#pragma once

#include <bit>
#include <concepts>
#include <limits>
#include <type_traits>

namespace tarnwick::trials::native {

using Wide = __int128; // holds every product of two numbers

template <class T>
concept Whole = std::integral<T> && !std::same_as<T, bool>;
template <Whole T> using Bits = std::make_unsigned_t<T>;
template <Whole T> inline constexpr int width = static_cast<int>(8 * sizeof(T));

template <Whole T> T saturated(Wide value) {
    const Wide low = std::numeric_limits<T>::min(), high = std::numeric_limits<T>::max();
    return static_cast<T>(value < low ? low : value > high ? high : value);
}

template <Whole T> T popcount(T value) {
    return static_cast<T>(std::popcount(static_cast<Bits<T>>(value)));
}
template <Whole T> T clz(T value) {
    return static_cast<T>(std::countl_zero(static_cast<Bits<T>>(value)));
}
template <Whole T> T ctz(T value) {
    return static_cast<T>(std::countr_zero(static_cast<Bits<T>>(value)));
}
template <Whole T> T reverse_bits(T value) {
    Bits<T> reversed = 0;
    for (int bit = 0; bit < width<T>; bit++)
        if (value >> bit & 1)
            reversed = static_cast<Bits<T>>(reversed | Bits<T>{1} << (width<T> - 1 - bit));
    return static_cast<T>(reversed);
}
template <Whole T> T rotate(T value, T by) {
    return static_cast<T>(
        std::rotl(static_cast<Bits<T>>(value), static_cast<int>(by & (width<T> - 1))));
}
// The field of `count` bits from `offset`, both together at most the width; of a signed type with
// its sign.
template <Whole T> T extract_bits(T value, unsigned offset, unsigned count) {
    if (count == 0)
        return 0;
    const auto upper = static_cast<unsigned>(width<T>) - count;
    const T top = static_cast<T>(static_cast<Bits<T>>(value) << (upper - offset));
    return static_cast<T>(top >> upper);
}
template <Whole T> T insert_bits(T value, T inserted, unsigned offset, unsigned count) {
    const auto mask =
        static_cast<Bits<T>>(((static_cast<unsigned __int128>(1) << count) - 1) << offset);
    return static_cast<T>((value & ~mask) | (static_cast<Bits<T>>(inserted) << offset & mask));
}
template <Whole T> T mulhi(T a, T b) {
    return static_cast<T>(Wide{a} * Wide{b} >> width<T>);
}
template <Whole T> T madhi(T a, T b, T c) {
    return static_cast<T>(Bits<T>(mulhi(a, b)) + Bits<T>(c));
}
template <Whole T> T madsat(T a, T b, T c) {
    return saturated<T>(Wide{a} * Wide{b} + Wide{c});
}
template <Whole T> Bits<T> absdiff(T a, T b) {
    return static_cast<Bits<T>>(a < b ? Wide{b} - Wide{a} : Wide{a} - Wide{b});
}
template <Whole T> T addsat(T a, T b) {
    return saturated<T>(Wide{a} + Wide{b});
}
template <Whole T> T subsat(T a, T b) {
    return saturated<T>(Wide{a} - Wide{b});
}
template <Whole T> T hadd(T a, T b) {
    return static_cast<T>((Wide{a} + Wide{b}) >> 1);
}
template <Whole T> T rhadd(T a, T b) {
    return static_cast<T>((Wide{a} + Wide{b} + 1) >> 1);
}
template <Whole T> T mad24(T a, T b, T c) {
    return static_cast<T>(Bits<T>(a) * Bits<T>(b) + Bits<T>(c));
}
template <Whole T> T min3(T a, T b, T c) {
    return a < b ? (a < c ? a : c) : (b < c ? b : c);
}
template <Whole T> T max3(T a, T b, T c) {
    return a > b ? (a > c ? a : c) : (b > c ? b : c);
}
template <Whole T> T median3(T a, T b, T c) {
    return a < b ? (b < c ? b : a < c ? c : a) : (a < c ? a : b < c ? c : b);
}

} // namespace tarnwick::trials::native
