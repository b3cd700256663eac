// The priority of threads that compute sound.
#pragma once

namespace tarnwick {

// Raises the priority of the calling thread, and of threads that it starts from now on, above that
// of other programs: directly, or by the system's RealtimeKit. Does nothing if the system permits
// neither. May block for a few milliseconds.
void raisePriority();

} // namespace tarnwick
