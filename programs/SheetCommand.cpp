// tarnwick sheet: the stills of many episodes on one picture.
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/Numbers.h"
#include "TarnwickPlatform/Pictures/Halved.h"
#include "TarnwickPlatform/Text/ContactSheet.h"
#include "programs/Command.h"
#include "programs/EpisodePicture.h"
#include "programs/EpisodeProgram.h"
#include "programs/HeldSignals.h"
#include "programs/SourceFile.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

constexpr std::uint64_t longestSide = 16384; // of a sheet, in pixels

struct Episode {
    std::string_view path;
    std::string text;
    EpisodeMeta meta;
};

// In the order of their numbers.
std::vector<Episode> episodesOf(const Arguments& arguments) {
    if (arguments.operands().empty())
        misuse("The episodes are missing.");
    std::vector<Episode> episodes;
    for (const std::string_view path : arguments.operands()) {
        const std::string text = sourceText(path);
        episodes.push_back({path, text, EpisodeMeta::parse(text)});
    }
    std::ranges::stable_sort(episodes, {}, [](const Episode& one) { return one.meta.number; });
    return episodes;
}

SheetLayout layoutOf(const Arguments& arguments, std::size_t count) {
    const auto given = arguments.value("--columns");
    const std::optional<std::int64_t> columns = given ? integerOf(*given) : 3;
    if (!columns || *columns < 1 || *columns > 100)
        misuse("--columns wants a whole number from 1 to 100, not " + quoted(*given) + ".");
    const PixelSize size = pixelSizeOf(arguments, {.width = 400, .height = 225});
    SheetLayout layout{.columns = static_cast<std::uint32_t>(*columns),
                       .pictureWidth = static_cast<std::uint32_t>(size.width),
                       .pictureHeight = static_cast<std::uint32_t>(size.height),
                       .count = count};
    if (layout.width() > longestSide || layout.height() > longestSide)
        misuse("The sheet would have " + std::to_string(layout.width()) + "x" +
               std::to_string(layout.height()) + " pixels; either side may have " +
               std::to_string(longestSide) + ".");
    return layout;
}

// Drawn twice as large and made smaller, so that fine lines are smooth.
LabelledPicture labelledStill(const Episode& episode, const SheetLayout& layout,
                              gpu::Device& device) {
    const double time = stillTime(episode.text);
    const EpisodeFrame frame{
        .path = episode.path,
        .episode = episode.text,
        .size = {.width = 2 * layout.pictureWidth, .height = 2 * layout.pictureHeight},
        .time = time,
        .frame = savedFrame(time)};
    return {.picture = halved(pictureOf(frame, device)),
            .label = std::to_string(episode.meta.number) + "  " + episode.meta.title};
}

Status sheet(const Arguments& arguments) {
    const std::string_view out = arguments.value("-o").value_or("");
    if (out.empty())
        misuse("-o OUT.png is missing: where to write the sheet.");
    const std::vector<Episode> episodes = episodesOf(arguments);
    const SheetLayout layout = layoutOf(arguments, episodes.size());
    const auto device = drawingDevice();
    std::vector<LabelledPicture> pictures;
    for (const Episode& episode : episodes)
        pictures.push_back(labelledStill(episode, layout, *device));
    const HeldSignals whileWriting;
    StillRenderer::writePNG(contactSheet(pictures, layout), out);
    return Status::done;
}

constexpr std::array<Option, 3> sheetOptions{{
    {"-o", "OUT.png", "where to write the sheet; always wanted"},
    {"--columns", "N", "stills side by side; 3 without it"},
    {"--size", "WxH", "of each still, in pixels; 400x225 without it"},
}};

} // namespace

const Command sheetCommand{.name = "sheet",
                           .operands = "EPISODE...",
                           .summary = "Draws the stills of episodes on one picture, with their "
                                      "numbers and titles.",
                           .options = sheetOptions,
                           .run = sheet};

} // namespace tarnwick
