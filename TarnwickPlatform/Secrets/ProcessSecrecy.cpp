#include "TarnwickPlatform/Secrets/ProcessSecrecy.h"

#include <sys/prctl.h>
#include <sys/resource.h>

namespace tarnwick {

void hideProcessMemory() {
    // The first also prevents dumps into a pipe, which the limit does not; the second is inherited.
    prctl(PR_SET_DUMPABLE, 0, 0, 0, 0);
    const rlimit none{};
    setrlimit(RLIMIT_CORE, &none);
}

} // namespace tarnwick
