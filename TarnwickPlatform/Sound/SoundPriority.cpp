#include "TarnwickPlatform/Sound/SoundPriority.h"

#include <SDL_thread.h>

namespace tarnwick {

void raisePriority() {
    SDL_SetThreadPriority(SDL_THREAD_PRIORITY_HIGH);
    SDL_TLSCleanup(); // its error, which SDL would keep after the end of the thread
}

} // namespace tarnwick
