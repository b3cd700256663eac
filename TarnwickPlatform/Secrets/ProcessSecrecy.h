// Keeping what a process holds to that process.
#pragma once

namespace tarnwick {

// From now on this process leaves no core dump, and other processes of the same user can neither
// trace it nor read its memory. To be called before a secret comes into it. Programs that it runs
// leave no core dump either.
void hideProcessMemory();

} // namespace tarnwick
