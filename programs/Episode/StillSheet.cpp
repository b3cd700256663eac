#include "programs/Episode/StillSheet.h"

#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "programs/CommandLine/CommandError.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr std::uint64_t longestSide = 16384; // of a sheet, in pixels

// Lines of a label of that many bytes below a still of that many pixels. Words do not fill their
// lines, so there is one line more.
std::uint32_t linesOf(std::size_t bytes, std::int64_t width) {
    constexpr std::size_t letter = 9; // pixels, on average
    constexpr std::size_t most = 6;
    const std::size_t lines = (bytes * letter - 1) / static_cast<std::size_t>(width) + 1;
    return static_cast<std::uint32_t>(lines > 1 ? std::min(lines + 1, most) : lines);
}

} // namespace

SheetLayout sheetLayoutOf(const Arguments& arguments, std::span<const std::string> labels) {
    const auto columns = static_cast<std::uint32_t>(arguments.integerOf("--columns"));
    const PixelSize size = pixelSizeOf(arguments);
    std::size_t longest = 0;
    for (const std::string& label : labels)
        longest = std::max(longest, label.size());
    // No column is empty.
    const SheetLayout layout{
        .columns = static_cast<std::uint32_t>(std::clamp<std::size_t>(labels.size(), 1, columns)),
        .pictureWidth = size.width,
        .pictureHeight = size.height,
        .count = labels.size(),
        .lines = linesOf(longest, size.width)};
    if (layout.width() > longestSide || layout.height() > longestSide)
        misuse("The sheet would have " + std::to_string(layout.width()) + "x" +
               std::to_string(layout.height()) + " pixels; at most " + std::to_string(longestSide) +
               " are allowed in width and height.");
    return layout;
}

PixelSize drawnSize(const SheetLayout& layout) {
    return {.width = 2 * layout.pictureWidth, .height = 2 * layout.pictureHeight};
}

void writeSheet(std::span<const LabelledPicture> stills, const SheetLayout& layout,
                const Output& out) {
    out.write(pngOf(contactSheet(stills, layout)));
}

} // namespace tarnwick
