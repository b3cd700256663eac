#include "programs/Episode/EpisodeFile.h"

#include "programs/CommandLine/SourceFile.h"

namespace tarnwick {

Episode episodeAt(std::string_view path, EpisodeBytes bytes) {
    return Episode::of(bytes == EpisodeBytes::utf8 ? sourceText(path) : sourceBytes(path),
                       std::string(path));
}

} // namespace tarnwick
