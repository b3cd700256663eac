// How often operator new is called.
#pragma once

#include <cstddef>
#include <functional>

namespace tarnwick::tests {

// The calls that this thread made during `work`.
std::size_t heapCount(const std::function<void()>& work);

} // namespace tarnwick::tests
