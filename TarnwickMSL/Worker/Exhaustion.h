// What a program that takes too much does to the worker.
#pragma once

namespace tarnwick::msl {

// From now on this process ends with a status of WorkerEnd if its memory or the stack of this
// thread is exhausted. Call it once, on the thread that translates, before confine().
void endWhenExhausted();

} // namespace tarnwick::msl
