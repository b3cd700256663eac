// What becomes of memory that the process has freed.
#pragma once

namespace tarnwick {

// Keeps up to 512 MiB of freed memory in the process instead of giving it back to the system each
// time. Drivers that draw on the CPU take some 40 MB for each frame and free it behind it: giving
// that back and faulting it in again costs them up to a tenth of a frame. For programs that draw:
// to be called once, before the first thread is started.
void keepFreedMemory();

// Gives all of it back once, so that threads to come do not each take as much anew: freed memory
// lies apart for each few threads. Takes milliseconds. For what lets go of much that threads of its
// own had allocated; any thread.
void giveFreedMemoryBack();

} // namespace tarnwick
