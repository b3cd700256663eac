#include "player/Model/DocumentVariations.h"

#include <utility>

namespace tarnwick::player {

std::vector<Variation> variationsNear(const Episode& episode, const Settings& settings,
                                      std::uint64_t seed, std::int64_t count, float spread) {
    const std::vector<ParamDecl> params =
        variedParams(episode.params(), settings.fitted(episode.params()));
    return Variations::make(params, seed, 1, count, episode.meta.length,
                            episode.meta.variationLength, spread);
}

ParamValues randomValues(const Episode& episode, const Settings& settings, std::uint64_t seed) {
    const auto made = variationsNear(episode, settings, seed, 1, 1);
    return made.empty() ? ParamValues() : made.front().values;
}

Settings withValues(Settings settings, const ParamValues& values) {
    for (const auto& [name, value] : values)
        settings.values[name] = value;
    return settings;
}

Settings withDefaults(Settings settings, const Episode& episode) {
    for (const ParamDecl& param : episode.params()) {
        settings.values.erase(param.name);
        settings.keys.clear(param.name);
    }
    return settings;
}

} // namespace tarnwick::player
