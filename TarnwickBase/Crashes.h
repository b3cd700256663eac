// Sentences of a process that a fault ends: of a driver or a codec, or for lack of memory.
#pragma once

#include <exception>
#include <string>

namespace tarnwick {

// After it the process says on standard error why it ends, in one line after "PROGRAM: ", if it
// ends by an exception that nothing handles, by an invalid access (SIGSEGV, SIGBUS, SIGILL,
// SIGFPE), also for lack of stack on the main thread, or because a library ends it (abort()). The
// signal still ends it. Main calls it once, first; `program` must remain.
void tellOfCrashes(const char* program);

// The sentence of an exception for the user: what(), except where the memory does not suffice.
std::string sentenceOf(const std::exception& error);

} // namespace tarnwick
