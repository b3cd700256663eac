#include "tests/TarnwickGPU/HeapCount.h"

#include <cstdlib>
#include <new>

namespace {

thread_local bool counts = false;
thread_local std::size_t calls = 0;

} // namespace

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
    if (counts)
        ++calls;
    return std::malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
    if (void* memory = operator new(size, std::nothrow))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void* memory) noexcept {
    std::free(memory);
}
void operator delete(void* memory, std::size_t) noexcept {
    std::free(memory);
}

void tarnwick::tests::startHeapCount() {
    calls = 0;
    counts = true;
}

std::size_t tarnwick::tests::heapCount() {
    counts = false;
    return calls;
}
