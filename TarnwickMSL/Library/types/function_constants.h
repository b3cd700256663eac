// Function constants (Metal Shading Language 3.1, 5.8).
#pragma once

#include "construct.h"

namespace metal {

// The front end passes the address of the constant.
/** Whether the program was given a value of the constant. */
bool is_function_constant_defined(const volatile void* constant) asm("msl.function_constant_defined.1");

// The value that a compilation gives to a constant of type C; zero if it gives none.
template <class C, class... Numbers> MSL_INLINE constexpr auto _given(Numbers... numbers) {
    typedef __remove_cv(C) T;
    constexpr int count = lanes_of<T> > 1 ? lanes_of<T> : 1;
    static_assert(sizeof...(Numbers) == 0 || sizeof...(Numbers) == count,
                  "the value of a function constant requires a number for each component");
    static_assert(is_floating_point_v<element_of<T>> || !(is_floating_point_v<Numbers> || ...),
                  "the value of this function constant cannot have a fraction");
    if constexpr (sizeof...(Numbers) == 0)
        return T();
    else if constexpr (count == 1)
        return T(numbers...);
    else
        return msl_make<T>(element_of<T>(numbers)...);
}

} // namespace metal
