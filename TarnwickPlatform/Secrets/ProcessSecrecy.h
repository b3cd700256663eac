// Hides a process's memory.
#pragma once

namespace tarnwick {

// From now on this process writes no core dump, and other processes of the same user can neither
// trace it nor read its memory. Call it before the process has a secret. Its child processes write
// no core dump either.
void hideProcessMemory();

} // namespace tarnwick
