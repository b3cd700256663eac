// Type traits (<metal_type_traits>, <metal_utility>), with the names and meanings of C++17 (ISO/IEC
// 14882:2017, 23.15 and 23.2).
#pragma once

#include "scalars.h"

namespace metal {

template <class T, T given> struct integral_constant {
    typedef T value_type;
    typedef integral_constant type;
    static constexpr T value = given;
    constexpr operator T() const { return given; }
};
template <bool given> using bool_constant = integral_constant<bool, given>;
typedef bool_constant<true> true_type;
typedef bool_constant<false> false_type;

// Clang's built-in traits, as values and as types.
#define MSL_TRAIT(name, ...)                                                                       \
    template <class T> inline constexpr bool name##_v = __VA_ARGS__;                               \
    template <class T> struct name : bool_constant<__VA_ARGS__> {};
MSL_TRAIT(is_void, __is_void(T))
MSL_TRAIT(is_unsigned, __is_unsigned(T))
MSL_TRAIT(is_array, __is_array(T))
MSL_TRAIT(is_pointer, __is_pointer(T))
MSL_TRAIT(is_reference, __is_reference(T))
MSL_TRAIT(is_lvalue_reference, __is_lvalue_reference(T))
MSL_TRAIT(is_rvalue_reference, __is_rvalue_reference(T))
MSL_TRAIT(is_class, __is_class(T))
MSL_TRAIT(is_union, __is_union(T))
MSL_TRAIT(is_function, __is_function(T))
MSL_TRAIT(is_const, __is_const(T))
MSL_TRAIT(is_volatile, __is_volatile(T))
MSL_TRAIT(is_scalar, __is_scalar(T))
MSL_TRAIT(is_fundamental, __is_fundamental(T))
MSL_TRAIT(is_empty, __is_empty(T))
MSL_TRAIT(is_trivial, __is_trivial(T))
MSL_TRAIT(is_trivially_copyable, __is_trivially_copyable(T))
MSL_TRAIT(is_standard_layout, __is_standard_layout(T))
#undef MSL_TRAIT
template <class T> struct is_arithmetic : bool_constant<is_arithmetic_v<T>> {};
template <class T> struct is_signed : bool_constant<is_signed_v<T>> {};
template <class T> struct is_enum : bool_constant<is_enum_v<T>> {};

template <class From, class To>
inline constexpr bool is_convertible_v = __is_convertible(From, To);
template <class From, class To> struct is_convertible : bool_constant<is_convertible_v<From, To>> {};
template <class Base, class Derived>
inline constexpr bool is_base_of_v = __is_base_of(Base, Derived);
template <class Base, class Derived> struct is_base_of : bool_constant<is_base_of_v<Base, Derived>> {};
template <class T, class... A>
inline constexpr bool is_constructible_v = __is_constructible(T, A...);

#define MSL_TRAIT(name, ...)                                                                       \
    template <class T> using name##_t = __VA_ARGS__;                                               \
    template <class T> struct name {                                                               \
        typedef __VA_ARGS__ type;                                                                  \
    };
MSL_TRAIT(remove_const, __remove_const(T))
MSL_TRAIT(remove_volatile, __remove_volatile(T))
MSL_TRAIT(remove_cv, __remove_cv(T))
MSL_TRAIT(remove_reference, __remove_reference_t(T))
MSL_TRAIT(remove_cvref, __remove_cvref(T))
MSL_TRAIT(remove_pointer, __remove_pointer(T))
MSL_TRAIT(remove_extent, __remove_extent(T))
MSL_TRAIT(add_pointer, __add_pointer(T))
MSL_TRAIT(add_const, const T)
MSL_TRAIT(decay, __decay(T))
MSL_TRAIT(make_signed, __make_signed(T))
MSL_TRAIT(make_unsigned, __make_unsigned(T))
MSL_TRAIT(underlying_type, __underlying_type(T))
#undef MSL_TRAIT

template <class...> using void_t = void;
template <class T> T&& declval();
template <class T> constexpr __remove_reference_t(T) && move(T&& given) {
    return static_cast<__remove_reference_t(T)&&>(given);
}
template <class T> constexpr T&& forward(__remove_reference_t(T) & given) {
    return static_cast<T&&>(given);
}
template <class T> constexpr void swap(T& a, T& b) {
    T kept = a;
    a = b;
    b = kept;
}

} // namespace metal
