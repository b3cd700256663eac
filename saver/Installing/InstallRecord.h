// What an installation wrote, so that only this is replaced and removed.
#pragma once

#include <filesystem>
#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick {

struct InstallRecord {
    // SHA-256 of the written bytes by the absolute path of the file.
    std::map<std::filesystem::path, std::string> files;
    bool madeProgramList = false; // ~/.xscreensaver did not exist

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
