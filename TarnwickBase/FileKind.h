// The kinds of files that the programs write, and how to tell one.
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
    episode,
    release,
};

std::string_view nameOf(FileKind kind);   // "PNG picture"
std::string_view endingOf(FileKind kind); // of its files' names: ".png"

// Whether a file of that kind may replace an existing one. If not, it is only written to a new
// name.
bool isReplaceable(FileKind kind);

// Whether a name ends as one of that kind does, in upper or lower case. A release has any name.
bool endsAs(FileKind kind, const std::filesystem::path& file);

// Whether `file`, as far as its first bytes tell, is of that kind, which is replaceable; a movie is
// one in either container. Blocks.
bool holds(FileKind kind, const std::filesystem::path& file);

} // namespace tarnwick
