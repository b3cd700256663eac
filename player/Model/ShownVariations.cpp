#include "player/Model/ShownVariations.h"

namespace tarnwick::player {

Settings morphed(const ShownVariations& shown, Settings settings, double seconds) {
    const auto& [a, b] = shown.snapshots;
    for (const auto& [name, from] : a.value()) {
        const auto to = b.value().find(name);
        if (to == b.value().end())
            continue;
        settings.keys.clear(name);
        settings.keys.set(name, 0, from, KeyframeTracks::Ease::linear);
        settings.keys.set(name, seconds, to->second, KeyframeTracks::Ease::hold);
    }
    return settings;
}

} // namespace tarnwick::player
