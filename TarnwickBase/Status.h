// The statuses that the programs end with.
#pragma once

namespace tarnwick {

// The same cause has the same status in all commands and in the saver.
enum class Status : int {
    done = 0,
    // The command line is right, and the work failed: the episode does not compile, is not of the
    // kind that the command takes or has no finite sound; the output cannot be written; the device,
    // the memory or the service fails; the work was cancelled.
    failed = 1,
    // The command line is to be changed: an unknown option, a missing or invalid value, a name that
    // the episode does not declare; an input that cannot be read as what it is to be; the name of
    // an output that is an input's, ends otherwise or has something else standing there.
    misused = 2,
};

} // namespace tarnwick
