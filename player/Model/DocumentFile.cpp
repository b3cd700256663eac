#include "player/Model/DocumentFile.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/Bundle.h"
#include "TarnwickPlatform/Bundle/SourceFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <string_view>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr std::string_view byteOrderMark = "\xEF\xBB\xBF";

void writeWhole(const std::filesystem::path& file, std::string_view bytes) {
    try {
        writeWholeFile(file, bytes);
    } catch (const std::exception& error) {
        throw DocumentFileError(error.what());
    }
}

} // namespace

EpisodeText readEpisodeText(const std::filesystem::path& file) {
    EpisodeText read{.text = {}, .stamp = FileWatcher::stamp(file)};
    try {
        read.text = bytesOfSource(file);
    } catch (const SourceFileError& error) {
        throw DocumentFileError(error.what());
    }
    if (!isUTF8(read.text) || read.text.find('\0') != std::string::npos)
        throw DocumentFileError(file.string() + " is not text in UTF-8.");
    read.hasByteOrderMark = read.text.starts_with(byteOrderMark);
    read.text = withoutByteOrderMark(std::move(read.text));
    return read;
}

std::optional<FileWatcher::Stamp> writeEpisodeText(const std::filesystem::path& file,
                                                   const EpisodeText& text) {
    writeWhole(file, (text.hasByteOrderMark ? std::string(byteOrderMark) : "") + text.text);
    return FileWatcher::stamp(file);
}

std::filesystem::path settingsFileOf(const std::filesystem::path& episode) {
    std::filesystem::path file = episode;
    return file.replace_extension(".json");
}

SettingsBeside readSettingsBeside(const std::filesystem::path& episode) {
    SettingsBeside found;
    const auto file = settingsBeside(episode);
    if (!file)
        return found;
    found.exists = true;
    const auto text = fileText(*file);
    try {
        if (!text)
            throw DocumentError("It is not text in UTF-8.");
        found.settings = Settings::decode(*text);
    } catch (const DocumentError& error) {
        found.remark = file->string() + " holds no settings: " + error.what();
    }
    return found;
}

void writeSettingsBeside(const std::filesystem::path& episode, const Settings& settings) {
    const std::filesystem::path file = settingsFileOf(episode);
    const SettingsBeside present = readSettingsBeside(episode);
    if (!present.remark.empty())
        throw DocumentFileError(present.remark + " It is not replaced.");
    try {
        writeWhole(file, settings.encode());
    } catch (const DocumentError& error) {
        throw DocumentFileError("The settings cannot be saved: " + std::string(error.what()));
    }
}

DocumentContent readDocumentFiles(const std::filesystem::path& episode) {
    EpisodeText text = readEpisodeText(episode);
    return {.text = std::move(text), .beside = readSettingsBeside(episode)};
}

DocumentSaved saved(DocumentSave save) {
    DocumentSaved done{.save = std::move(save)};
    EpisodeText& text = done.save.text;
    try {
        const auto present = FileWatcher::stamp(done.save.file);
        if (done.save.otherText == OtherText::isKept && present && present != text.stamp) {
            done.other = readEpisodeText(done.save.file);
            return done;
        }
        text.stamp = writeEpisodeText(done.save.file, text);
        done.isTextWritten = true;
        if (done.save.settings)
            writeSettingsBeside(done.save.file, *done.save.settings);
    } catch (const DocumentFileError& error) {
        done.error = error.what();
    }
    return done;
}

} // namespace tarnwick::player
