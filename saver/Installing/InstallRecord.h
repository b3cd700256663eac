// What an installation wrote, so that only this is replaced and removed.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <set>
#include <string>
#include <string_view>

namespace tarnwick {

// Written before the files, so that an installation that was interrupted can be repeated or undone.
struct InstallRecord {
    std::string name; // of the saver; empty in records of older releases
    // SHA-256 of the written bytes by the absolute path of the file. While an installation is
    // unfinished, a file may have the bytes of this one or of those before it.
    std::map<std::filesystem::path, std::set<std::string>> files;
    bool madeProgramList = false; // ~/.xscreensaver did not exist before the first saver

    bool operator==(const InstallRecord&) const = default;
};

std::string digestOf(std::string_view bytes); // SHA-256

// The record of a bundle; absent if it was not installed, or if the record is not readable.
std::optional<InstallRecord> recordIn(const std::filesystem::path& bundle);
// Throws WholeFileError.
void writeRecord(const InstallRecord& record, const std::filesystem::path& bundle);
// Of the record itself.
std::filesystem::path recordFile(const std::filesystem::path& bundle);

// Whether the file is missing or has the bytes that were written: it may be replaced or removed.
bool isUnchanged(const std::filesystem::path& file, const std::optional<InstallRecord>& record);

} // namespace tarnwick
