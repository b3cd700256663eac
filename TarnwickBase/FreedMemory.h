// Memory that the process has freed: whether it is kept or returned to the system.
#pragma once

namespace tarnwick {

// Keeps up to 512 MiB of freed memory in the process instead of returning it to the system each
// time. Drivers that draw on the CPU allocate about 40 MB for each frame and free it afterwards;
// returning it and faulting it in again costs up to a tenth of a frame. Threads share as many
// arenas of malloc as there are processors, at least two. For programs that draw: call it once,
// before the first thread starts.
void keepFreedMemory();

// Returns all freed memory to the system once. glibc keeps freed memory in separate arenas, so new
// threads would otherwise allocate the same amount again. Call it after threads that allocated much
// have ended. Takes milliseconds. May be called from any thread.
void giveFreedMemoryBack();

} // namespace tarnwick
