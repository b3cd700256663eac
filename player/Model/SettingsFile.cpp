#include "player/Model/SettingsFile.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <utility>

namespace tarnwick::player {
namespace {

// Throws DocumentError.
Settings decoded(Settings settings, const std::string& text, SettingsPart part) {
    if (part == SettingsPart::keys) {
        settings.keys = decodeKeys(text);
        return settings;
    }
    try {
        Settings read = Settings::decode(text);
        if (part == SettingsPart::all)
            return read;
        settings.values = std::move(read.values);
    } catch (const DocumentError& error) {
        if (part == SettingsPart::values || error.cause != DocumentError::Cause::otherKind)
            throw;
        settings.keys = decodeKeys(text); // a document of keys alone
    }
    return settings;
}

std::string textOf(const std::filesystem::path& file) {
    const auto text = fileText(file);
    if (!text)
        throw DocumentFileError(file.string() + " cannot be read as text in UTF-8.");
    return *text;
}

std::string encoded(const Settings& settings, SettingsPart part) {
    switch (part) {
    case SettingsPart::all:
        break;
    case SettingsPart::values:
        return Settings{.name = settings.name, .values = settings.values, .keys = {}}.encode();
    case SettingsPart::keys:
        return settings.keys.encode();
    }
    return settings.encode();
}

} // namespace

Settings loadedSettings(Settings settings, const std::filesystem::path& file, SettingsPart part) {
    try {
        return decoded(std::move(settings), textOf(file), part);
    } catch (const DocumentError& error) {
        throw DocumentFileError(file.string() + " cannot be used: " + error.what());
    }
}

void saveSettings(const Settings& settings, const std::filesystem::path& file, SettingsPart part) {
    std::error_code missing;
    if (std::filesystem::exists(file, missing)) {
        try {
            decoded({}, textOf(file), SettingsPart::all);
        } catch (const std::exception&) {
            throw DocumentFileError(file.string() +
                                    " holds no settings and no keys. It is not replaced.");
        }
    }
    try {
        writeWholeFile(file, encoded(settings, part));
    } catch (const DocumentError& error) {
        throw DocumentFileError("The settings cannot be saved: " + std::string(error.what()));
    } catch (const std::exception& error) {
        throw DocumentFileError(error.what());
    }
}

} // namespace tarnwick::player
