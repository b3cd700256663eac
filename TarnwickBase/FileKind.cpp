#include "TarnwickBase/FileKind.h"

#include <array>
#include <cstddef>
#include <fstream>
#include <string>

namespace tarnwick {
namespace {

using Text = std::string_view;

bool isPNG(Text start) { // Portable Network Graphics, third edition, 5.2
    return start.starts_with("\x89PNG\r\n\x1a\n");
}

bool isWAV(Text start) { // Multimedia Programming Interface and Data Specifications 1.0, chapter 3
    return start.starts_with("RIFF") && start.size() >= 12 && start.substr(8, 4) == "WAVE";
}

// The type of the first box. Old QuickTime movies have no file type box.
bool isMovie(Text start) { // ISO/IEC 14496-12, 4.2
    if (start.size() < 8)
        return false;
    for (const Text type : {"ftyp", "moov", "mdat", "wide", "free", "skip"})
        if (start.substr(4, 4) == type)
            return true;
    return false;
}

// The beginning of the text that VideoChapters writes.
bool isChapterList(Text start) {
    return start.starts_with("{\"duration\":");
}

bool isSPIRV(Text start) { // SPIR-V 1.6, 2.3, in either order of bytes
    return start.starts_with(Text("\x03\x02\x23\x07", 4)) ||
           start.starts_with(Text("\x07\x23\x02\x03", 4));
}

// The first line names the entry point.
bool isWGSL(Text start) {
    return start.starts_with("// vertex ") || start.starts_with("// fragment ") ||
           start.starts_with("// kernel ");
}

// The first line is "TARGET: FILE", where a blank in the name of the target has a backslash.
bool isMakeRule(Text start) {
    const Text line = start.substr(0, start.find('\n'));
    const std::size_t colon = line.find(": ");
    if (colon == line.npos || colon == 0 || line.find('\0') != line.npos)
        return false;
    for (std::size_t blank = line.find(' '); blank < colon; blank = line.find(' ', blank + 1))
        if (blank == 0 || line[blank - 1] != '\\')
            return false;
    return true;
}

constexpr std::size_t longestStart = 4096; // bytes; longer than most names of files

struct Row {
    FileKind kind;
    Text name, ending;
    bool (*begins)(Text start); // the first bytes, or all; null: not replaceable
};

constexpr std::array rows{
    Row{FileKind::pngPicture, "PNG picture", ".png", isPNG},
    Row{FileKind::wavSound, "WAV sound", ".wav", isWAV},
    Row{FileKind::mpeg4Movie, "MPEG-4 movie", ".mp4", isMovie},
    Row{FileKind::quickTimeMovie, "QuickTime movie", ".mov", isMovie},
    Row{FileKind::chapterList, "chapter list", ".json", isChapterList},
    Row{FileKind::spirvModule, "SPIR-V module", ".spv", isSPIRV},
    Row{FileKind::wgslText, "WGSL text", ".wgsl", isWGSL},
    Row{FileKind::makeRule, "rule for make", ".d", isMakeRule},
    Row{FileKind::episode, "episode", ".metal", nullptr},
    Row{FileKind::release, "release", "", nullptr},
};

const Row& rowOf(FileKind kind) {
    return rows[static_cast<std::size_t>(kind)];
}
static_assert(rows.size() == static_cast<std::size_t>(FileKind::release) + 1);

} // namespace

std::string_view nameOf(FileKind kind) {
    return rowOf(kind).name;
}

std::string_view endingOf(FileKind kind) {
    return rowOf(kind).ending;
}

bool isReplaceable(FileKind kind) {
    return rowOf(kind).begins != nullptr;
}

bool endsAs(FileKind kind, const std::filesystem::path& file) {
    std::string ending = file.extension().string();
    for (char& letter : ending)
        if (letter >= 'A' && letter <= 'Z')
            letter = static_cast<char>(letter - 'A' + 'a');
    return endingOf(kind).empty() || ending == endingOf(kind);
}

bool holds(FileKind kind, const std::filesystem::path& file) {
    std::array<char, longestStart> start{};
    std::ifstream stream(file, std::ios::binary);
    stream.read(start.data(), start.size());
    return rowOf(kind).begins({start.data(), static_cast<std::size_t>(stream.gcount())});
}

} // namespace tarnwick
