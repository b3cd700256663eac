#include "programs/Movies/ExportFrames.h"

#include "TarnwickCore/Text/Numbers.h"
#include "programs/CommandLine/CommandError.h"

#include <string>

namespace tarnwick {

FrameRange exportFramesOf(std::string_view given, const ExportPreset& preset, double duration) {
    const std::int64_t count = ExportPlan::frameCount(duration, preset.fps);
    const std::int64_t stretch = stretchLength(VideoExporter::videoSettings(preset));
    const std::size_t dots = given.find("..");
    const auto first = integerOf(given.substr(0, dots));
    const auto last = dots == std::string_view::npos ? "" : given.substr(dots + 2);
    const auto end = last.empty() && dots != std::string_view::npos ? count : integerOf(last);
    if (!first || !end || *first >= *end)
        misuse("--frames must be A..B, the frames from A to B - 1, not " + quoted(given) + ".");
    if (*end > count)
        misuse("The movie has " + std::to_string(count) + " frames, and " + quoted(given) +
               " is beyond the last one.");
    if (*first % stretch != 0 || (*end % stretch != 0 && *end != count))
        misuse("Parts of this movie begin and end at multiples of " + std::to_string(stretch) +
               " frames, not " + quoted(given) + ".");
    return {*first, *end};
}

} // namespace tarnwick
