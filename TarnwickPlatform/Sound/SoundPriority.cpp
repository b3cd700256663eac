#include "TarnwickPlatform/Sound/SoundPriority.h"

#include <SDL_thread.h>

namespace tarnwick {

void raisePriority() {
    SDL_SetThreadPriority(SDL_THREAD_PRIORITY_HIGH);
}

} // namespace tarnwick
