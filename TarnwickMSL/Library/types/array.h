// array (Metal Shading Language 3.1, 2.12), and the list in braces of C++.
#pragma once

#include "scalars.h"

namespace std {

// Clang makes it, of a pointer and a length in this order.
template <class E> class initializer_list {
  public:
    constexpr initializer_list() : list(nullptr), count(0) {}
    constexpr size_t size() const { return count; }
    constexpr const E* begin() const { return list; }
    constexpr const E* end() const { return list + count; }

  private:
    const E* list;
    size_t count;
};

} // namespace std

namespace metal {

using std::initializer_list;

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
// An array of a length that is known only where it is made.
template <class T> struct array_ref {
    constexpr array_ref() : list(nullptr), count(0) {}
    constexpr array_ref(const T* list, size_t count) : list(list), count(count) {}
    template <size_t N> constexpr array_ref(const T (&list)[N]) : list(list), count(N) {}
    template <size_t N>
    constexpr array_ref(const array<T, N>& list) : list(list.elements), count(N) {}

    constexpr const T& operator[](size_t i) const { return list[i]; }
    constexpr size_t size() const { return count; }
    constexpr bool empty() const { return count == 0; }
    constexpr const T* data() const { return list; }
    constexpr const T* begin() const { return list; }
    constexpr const T* end() const { return list + count; }
    constexpr const T& front() const { return list[0]; }
    constexpr const T& back() const { return list[count - 1]; }

  private:
    const T* list;
    size_t count;
};
/** A reference to an array with its size. */
template <class T> constexpr array_ref<T> make_array_ref(const T* list, size_t count) {
    return array_ref<T>(list, count);
}
template <class T, size_t N> constexpr array_ref<T> make_array_ref(const T (&list)[N]) {
    return array_ref<T>(list);
}
template <class T, size_t N> constexpr array_ref<T> make_array_ref(const array<T, N>& list) {
    return array_ref<T>(list);
}

template <class T, class... Rest> array(T, Rest...) -> array<T, 1 + sizeof...(Rest)>;

} // namespace metal
