#include "TarnwickCore/Episode/Episode.h"

#include <utility>

namespace tarnwick {

Episode Episode::of(std::string text, std::string path) {
    Episode episode{.path = std::move(path), .text = std::move(text)};
    episode.kind = shaderKindOf(episode.text);
    episode.meta = EpisodeMeta::parse(episode.text, &episode.metaKeys);
    episode.shader = ShaderAssembler::assemble(episode.text);
    return episode;
}

} // namespace tarnwick
