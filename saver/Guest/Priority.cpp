#include "saver/Guest/Priority.h"

#include <linux/ioprio.h>
#include <sys/resource.h>
#include <sys/syscall.h>

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <sched.h>
#include <string>
#include <system_error>
#include <unistd.h>

namespace tarnwick {
namespace {

// Calls `change` with the number of each thread. Priorities and CPUs belong to threads.
template <class Change> void forEachThread(const Change& change) {
    std::error_code none;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task", none))
        change(static_cast<pid_t>(std::atoi(entry.path().filename().c_str())));
}

cpu_set_t ownCPUs() {
    cpu_set_t set;
    CPU_ZERO(&set);
    if (sched_getaffinity(0, sizeof set, &set) != 0 || CPU_COUNT(&set) == 0)
        CPU_SET(0, &set);
    return set;
}

} // namespace

void takeLowestPriority() {
    constexpr int lowest = 19;
    forEachThread([](pid_t thread) {
        setpriority(PRIO_PROCESS, static_cast<id_t>(thread), lowest);
        syscall(SYS_ioprio_set, IOPRIO_WHO_PROCESS, thread,
                IOPRIO_PRIO_VALUE(IOPRIO_CLASS_IDLE, 0));
    });
}

std::size_t usableCPUs() {
    const cpu_set_t set = ownCPUs();
    return static_cast<std::size_t>(CPU_COUNT(&set));
}

void useAtMostCPUs(std::size_t count) {
    cpu_set_t set = ownCPUs();
    const auto most = static_cast<int>(std::max<std::size_t>(count, 1));
    for (int cpu = 0; cpu < CPU_SETSIZE && CPU_COUNT(&set) > most; ++cpu)
        if (CPU_ISSET(cpu, &set))
            CPU_CLR(cpu, &set);
    forEachThread([&](pid_t thread) { sched_setaffinity(thread, sizeof set, &set); });
}

} // namespace tarnwick
