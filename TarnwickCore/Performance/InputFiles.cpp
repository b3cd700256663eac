#include "TarnwickCore/Performance/InputFiles.h"

#include "TarnwickCore/Text/SHA256.h"

#include <algorithm>
#include <fstream>
#include <system_error>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t digestedBytes = std::size_t{16} << 20, pieceBytes = std::size_t{1} << 20;

// Of the first 16 MiB. Absent if they cannot be read.
std::optional<std::string> digestOf(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    SHA256 digest;
    std::string piece(pieceBytes, '\0');
    for (std::size_t left = digestedBytes; stream && left > 0;) {
        stream.read(piece.data(), static_cast<std::streamsize>(std::min(left, piece.size())));
        const auto count = static_cast<std::size_t>(stream.gcount());
        digest.update(std::string_view(piece).substr(0, count));
        left -= count;
    }
    return stream.is_open() && !stream.bad() ? std::optional(digest.finish()) : std::nullopt;
}

std::string placeOf(const Performance::Input& input) {
    return input.name == "audio" ? "the sound input" : "channel " + input.name;
}

} // namespace

std::optional<Performance::Input> inputOfFile(const std::string& name, const fs::path& file) {
    std::error_code error;
    const fs::path whole = fs::absolute(file, error).lexically_normal();
    const bool isFile = fs::is_regular_file(whole, error);
    const std::uintmax_t bytes = isFile ? fs::file_size(whole, error) : 0;
    auto digest = isFile && !error ? digestOf(whole) : std::nullopt;
    if (!digest)
        return std::nullopt;
    return Performance::Input{
        .name = name, .file = whole.string(), .bytes = bytes, .sha256 = *std::move(digest)};
}

std::vector<Performance::Input> inputsBeside(std::vector<Performance::Input> inputs,
                                             const fs::path& folder, const fs::path& from) {
    std::error_code error;
    const fs::path whole = fs::absolute(folder, error).lexically_normal();
    for (Performance::Input& input : inputs) {
        const fs::path file = (fs::absolute(from, error) / input.file).lexically_normal();
        const fs::path relative = file.lexically_relative(whole);
        const bool isBelow = !relative.empty() && *relative.begin() != "..";
        input.file = (isBelow ? relative : file).string();
    }
    return inputs;
}

FoundInputs inputFilesOf(const Performance& performance, const fs::path& folder) {
    FoundInputs found;
    for (const Performance::Input& input : performance.inputs) {
        const fs::path file = (folder / input.file).lexically_normal();
        const auto now = inputOfFile(input.name, file);
        if (!now) {
            found.sentences.push_back(file.string() + " of " + placeOf(input) +
                                      " is missing, so the input is " +
                                      (input.name == "audio" ? "silent." : "black."));
            continue;
        }
        if (now->bytes != input.bytes || now->sha256 != input.sha256)
            found.sentences.push_back(file.string() + " of " + placeOf(input) +
                                      " has changed since the performance.");
        found.files.push_back({.name = input.name, .file = file, .isPlayed = input.isPlayed});
    }
    return found;
}

} // namespace tarnwick
