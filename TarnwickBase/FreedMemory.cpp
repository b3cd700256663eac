#include "TarnwickBase/FreedMemory.h"

#include <malloc.h>

namespace tarnwick {

void keepFreedMemory() {
#ifdef __GLIBC__
    mallopt(M_TRIM_THRESHOLD, 512 << 20);
    mallopt(M_MMAP_THRESHOLD, 32 << 20); // the maximum that glibc accepts
#endif
}

void giveFreedMemoryBack() {
#ifdef __GLIBC__
    malloc_trim(0);
#endif
}

} // namespace tarnwick
