#include "TarnwickCore/Performance/InputFiles.h"

#include "TarnwickCore/Text/SHA256.h"

#include <algorithm>
#include <fstream>
#include <functional>
#include <map>
#include <set>
#include <system_error>
#include <utility>
#include <variant>

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

std::string placeOf(const std::string& name) {
    return name == soundInput ? "the sound input" : "channel " + name;
}

using Files = std::optional<PerformedFile>;
// The file to have instead of one; absent: none.
using FileOf = std::function<Files(const std::string& name, const PerformedFile& file)>;

void replaceFiles(std::vector<Performance::Change>& changes, const FileOf& fileOf) {
    for (Performance::Change& change : changes)
        if (auto* input = std::get_if<Performance::Input>(&change.what); input && input->file)
            input->file = fileOf(input->name, *input->file);
}

void replaceFiles(Performance& performance, const FileOf& fileOf) {
    const PerformedInputs inputs = std::move(performance.start.inputs);
    performance.start.inputs.clear();
    for (const auto& [name, file] : inputs)
        if (auto other = fileOf(name, file))
            performance.start.inputs[name] = *std::move(other);
    replaceFiles(performance.changes, fileOf);
}

// Its path relative to the folder if it is below it.
std::string besidePath(const fs::path& file, const fs::path& folder) {
    std::error_code error;
    const fs::path whole = fs::absolute(folder, error).lexically_normal();
    const fs::path relative = file.lexically_relative(whole);
    const bool isBelow = !relative.empty() && *relative.begin() != "..";
    return (isBelow ? relative : file).string();
}

FileOf keeping(const fs::path& folder) {
    return [folder](const std::string&, const PerformedFile& file) {
        Files kept = performedFile(file.file);
        if (kept) {
            kept->file = besidePath(kept->file, folder);
            kept->isPlayed = file.isPlayed;
        }
        return kept;
    };
}

bool isOf(const std::string& name, const std::string& channel) {
    return name == channel || name.starts_with(channel + ".");
}

} // namespace

std::optional<PerformedFile> performedFile(const fs::path& file) {
    std::error_code error;
    const fs::path whole = fs::absolute(file, error).lexically_normal();
    const bool isFile = fs::is_regular_file(whole, error);
    const std::uintmax_t bytes = isFile ? fs::file_size(whole, error) : 0;
    auto digest = isFile && !error ? digestOf(whole) : std::nullopt;
    if (!digest)
        return std::nullopt;
    return PerformedFile{.file = whole.string(), .bytes = bytes, .sha256 = *std::move(digest)};
}

Performance keptIn(const fs::path& folder, Performance performance) {
    replaceFiles(performance, keeping(folder));
    return performance;
}

std::vector<Performance::Change> keptIn(const fs::path& folder,
                                        std::vector<Performance::Change> changes) {
    replaceFiles(changes, keeping(folder));
    return changes;
}

Performance movedTo(const fs::path& folder, Performance performance, const fs::path& from) {
    replaceFiles(performance, [&](const std::string&, PerformedFile file) -> Files {
        std::error_code error;
        file.file = besidePath((fs::absolute(from, error) / file.file).lexically_normal(), folder);
        return file;
    });
    return performance;
}

FoundInputs foundInputs(Performance performance, const fs::path& folder) {
    FoundInputs found;
    std::map<fs::path, Files> known; // a file may be chosen often
    std::set<std::string> told;
    replaceFiles(performance, [&](const std::string& name, const PerformedFile& file) {
        const fs::path path = (folder / file.file).lexically_normal();
        const auto place = known.find(path);
        Files now = place == known.end() ? (known[path] = performedFile(path)) : place->second;
        std::string sentence;
        if (!now)
            sentence = path.string() + " of " + placeOf(name) + " is missing, so the input is " +
                       (name == soundInput ? "silent." : "black.");
        else if (now->bytes != file.bytes || now->sha256 != file.sha256)
            sentence =
                path.string() + " of " + placeOf(name) + " has changed since the performance.";
        if (!sentence.empty() && told.insert(sentence).second)
            found.sentences.push_back(sentence);
        if (now)
            now->isPlayed = file.isPlayed;
        return now;
    });
    found.performance = std::move(performance);
    return found;
}

Performance withInput(Performance performance, const std::string& name, const PerformedFile& file) {
    const bool isSound = name == soundInput;
    std::erase_if(performance.start.inputs,
                  [&](const auto& input) { return isOf(input.first, name); });
    std::erase_if(performance.changes, [&](const Performance::Change& change) {
        const auto* input = std::get_if<Performance::Input>(&change.what);
        return (input != nullptr && isOf(input->name, name)) ||
               (isSound && std::holds_alternative<HeardLevels>(change.what));
    });
    if (isSound)
        performance.start.heard = {};
    performance.start.inputs[name] = file;
    return performance;
}

Performance withoutSound(Performance performance, const std::string& file) {
    replaceFiles(performance, [&](const std::string& name, const PerformedFile& one) {
        return name == soundInput && one.file == file ? Files() : Files(one);
    });
    return performance;
}

bool playsSound(const Performance& performance) {
    return std::ranges::any_of(inputSets(performance), [](const PerformedInputs& inputs) {
        const auto sound = inputs.find(soundInput);
        return sound != inputs.end() && sound->second.isPlayed;
    });
}

std::vector<PerformedInputs> inputSets(const Performance& performance) {
    PerformedState state{.inputs = performance.start.inputs};
    std::vector<PerformedInputs> sets{state.inputs};
    double time = 0; // of the inputs that were changed last
    const auto add = [&] {
        if (std::ranges::find(sets, state.inputs) == sets.end())
            sets.push_back(state.inputs);
    };
    for (const Performance::Change& change : performance.changes) {
        if (!std::holds_alternative<Performance::Input>(change.what))
            continue;
        if (change.time != std::exchange(time, change.time))
            add(); // the changes of one moment are one
        apply(change.what, state);
    }
    add();
    return sets;
}

} // namespace tarnwick
