#include "TarnwickBase/FreedMemory.h"

#include <algorithm>
#include <malloc.h>
#include <thread>

namespace tarnwick {

void keepFreedMemory() {
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 512 << 20);
    mallopt(M_MMAP_THRESHOLD, 32 << 20); // the maximum that glibc accepts
    // Each arena keeps the most that it ever held, and malloc_trim() returns that of the first one
    // only. The default is eight times as many as processors.
    mallopt(M_ARENA_MAX, std::max(2, static_cast<int>(std::thread::hardware_concurrency())));
#endif
}

void giveFreedMemoryBack() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace tarnwick
