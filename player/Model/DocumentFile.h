// Reads and writes the files of a document: the episode and the settings beside it.
#pragma once

#include "TarnwickCore/Animation/Settings.h"
#include "TarnwickCore/Editor/FileWatcher.h"

#include <cstdint>
#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string>

namespace tarnwick::player {

// A file of a document cannot be read or written. what() is one sentence that names it.
struct DocumentFileError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

struct EpisodeText {
    std::string text; // UTF-8 without a byte order mark
    bool hasByteOrderMark = false;
    std::optional<FileWatcher::Stamp> stamp{}; // of the file when it was read or written
};

// A text that is not the expected one was saved by another program.
enum class OtherText : std::uint8_t { isKept, isReplaced };

// Throws DocumentFileError if the file cannot be read or is not UTF-8. Blocks.
EpisodeText readEpisodeText(const std::filesystem::path& file);
// Replaces the file by all bytes at once; a link is followed. Returns the new stamp. Throws
// DocumentFileError; the old file is unchanged then. Blocks.
std::optional<FileWatcher::Stamp> writeEpisodeText(const std::filesystem::path& file,
                                                   const EpisodeText& text);

// NAME.json beside NAME.metal.
std::filesystem::path settingsFileOf(const std::filesystem::path& episode);

struct SettingsBeside {
    Settings settings; // the defaults without a document
    bool exists = false;
    std::string remark; // one sentence if a file of that name is not settings; empty otherwise
};
// Never fails. Blocks.
SettingsBeside readSettingsBeside(const std::filesystem::path& episode);
// Throws DocumentFileError, also if a file of that name exists that is not settings: it is never
// replaced. Blocks.
void writeSettingsBeside(const std::filesystem::path& episode, const Settings& settings);

// The files of a document.
struct DocumentContent {
    EpisodeText text;
    SettingsBeside beside;
};
// Throws DocumentFileError. Blocks.
DocumentContent readDocumentFiles(const std::filesystem::path& episode);

// What is saved of a document.
struct DocumentSave {
    std::filesystem::path file;
    EpisodeText text;                   // with the stamp of the text that it replaces
    std::optional<Settings> settings{}; // absent: not changed
    OtherText otherText = OtherText::isReplaced;
};
// What became of it.
struct DocumentSaved {
    DocumentSave save; // the text has its new stamp
    bool isTextWritten = false;
    std::string error;                     // one sentence; empty without one
    std::optional<EpisodeText> other = {}; // of another program; nothing was written then

    bool isDone() const { return error.empty() && !other; }
};
// Writes the text, then the settings. Never throws. Blocks.
DocumentSaved saved(DocumentSave save);

} // namespace tarnwick::player
