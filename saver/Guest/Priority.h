// The place of a process behind all others.
#pragma once

#include <cstddef>

namespace tarnwick {

// Gives this process and its threads the lowest priority of CPU (nice 19) and input and output (the
// idle class, ioprio_set(2)). Child processes that are started later have it too.
void takeLowestPriority();

// Restricts all threads of this process to the last `count` of the CPUs that it may use, at least
// one, and threads and processes that are started later.
void useAtMostCPUs(std::size_t count);

// The number of CPUs that this process may use, at least 1.
std::size_t usableCPUs();

} // namespace tarnwick
