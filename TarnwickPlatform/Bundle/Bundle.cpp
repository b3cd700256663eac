#include "TarnwickPlatform/Bundle/Bundle.h"

#include "TarnwickPlatform/Bundle/TextFile.h"

#include <nlohmann/json.hpp>

#include <fstream>
#include <string>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// The settings of an episode that brings none: its name, no values, no keys.
std::string plainSettings(const fs::path& episode) {
    nlohmann::ordered_json document;
    document["name"] = episode.stem().string();
    document["values"] = nlohmann::json::object();
    document["keys"]["tracks"] = nlohmann::json::object();
    return document.dump(2, ' ', false, nlohmann::ordered_json::error_handler_t::replace) + "\n";
}

std::string readBytes(const fs::path& file) {
    std::optional<std::string> bytes = fileBytes(file);
    if (!bytes)
        throw InputReadError(file.string() + " is not a file that can be read.");
    return *std::move(bytes);
}

// A reader of `file` finds the old bytes or the new ones, never a part.
void replaceFile(const fs::path& file, std::string_view bytes) {
    const fs::path fresh = file.string() + ".new";
    std::ofstream stream(fresh, std::ios::binary | std::ios::trunc);
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    stream.close();
    std::error_code failure;
    if (stream)
        fs::rename(fresh, file, failure);
    if (!stream || failure) {
        fs::remove(fresh, failure);
        throw BundleError(file.string() + " cannot be written.");
    }
}

} // namespace

std::optional<fs::path> Bundle::pathForResource(std::string_view name, std::string_view extension,
                                                std::string_view subdirectory) const {
    const fs::path path =
        folder_ / subdirectory / (std::string(name) + "." + std::string(extension));
    std::error_code failure;
    if (!fs::is_regular_file(path, failure))
        return std::nullopt;
    return path;
}

std::optional<fs::path> settingsBeside(const fs::path& episode) {
    const fs::path document = fs::path(episode).replace_extension("json");
    std::error_code failure;
    if (document == episode || !fs::is_regular_file(document, failure))
        return std::nullopt;
    return document;
}

Bundle makeBundle(const fs::path& folder, const fs::path& episode,
                  const std::optional<fs::path>& settings) {
    const std::string source = readBytes(episode);
    const std::string document = settings ? readBytes(*settings) : plainSettings(episode);
    std::error_code failure;
    fs::create_directories(folder / "Shader", failure);
    if (failure)
        throw BundleError((folder / "Shader").string() + " cannot be made: " + failure.message() +
                          ".");
    replaceFile(folder / "Shader" / "shader.metal", source);
    replaceFile(folder / "Shader" / "saver.json", document);
    return Bundle(folder);
}

} // namespace tarnwick
