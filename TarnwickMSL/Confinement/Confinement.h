// Confines the process that reads programs of strangers.
#pragma once

namespace tarnwick::msl {

enum class FileAccess {
    none,
    reading // of all files that the user may read, for a program that includes files
};

// From now on the kernel refuses (EPERM) what a compiler never needs: files are not opened, made or
// listed, no sockets are made, no programs are started, no signals are sent to others, no other
// process is read, and no memory becomes code. Reading and writing open files, memory, threads and
// the clock remain, and what `access` says. It holds for all threads of the process and cannot be
// taken back (seccomp(2), mode filter). Also sets the no_new_privs bit. About 0.3 ms.
//
// Returns false, with the process as it was but for that bit, if the kernel has no such filters or
// refuses one; and in programs built with a sanitizer, whose reports read files.
bool confine(FileAccess access);

} // namespace tarnwick::msl
