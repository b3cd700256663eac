// The kinds of files that the programs write, and how to recognise each.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string_view>

namespace tarnwick {

enum class FileKind : std::uint8_t {
    pngPicture,
    wavSound,
    mpeg4Movie,
    quickTimeMovie,
    chapterList,
    spirvModule,
    wgslText,
    makeRule,
    episode,
    release,
};

std::string_view nameOf(FileKind kind);   // "PNG picture"
std::string_view endingOf(FileKind kind); // of file names, lower case: ".png"; empty for a release

// Whether a file of that kind may replace an existing one. Otherwise it is written only under a new
// name.
bool isReplaceable(FileKind kind);

// Whether the name of `file` ends in endingOf(kind), in upper or lower case. Always true for a
// release.
bool endsAs(FileKind kind, const std::filesystem::path& file);

// Whether the first bytes of `file` are those of `kind`, which must be replaceable. A movie may be
// in either container. False if the file cannot be read. Blocks.
bool holds(FileKind kind, const std::filesystem::path& file);

} // namespace tarnwick
