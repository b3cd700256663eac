#include "TarnwickPlatform/Bundle/Bundle.h"

#include "TarnwickBase/OutputFile.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickPlatform/Bundle/TextFile.h"

#include <nlohmann/json.hpp>

#include <array>
#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// The settings of an episode without any: its name, no values, no keys.
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

struct MadeFile {
    std::string_view name;
    std::string_view bytes;
};

// The list of the files that makeBundle() wrote, one on each line, by which it recognises them.
constexpr std::string_view recordName = ".tarnwick-made";

// The name and the 64-bit FNV-1a hash of the bytes, which shows changes, not forgeries.
std::string recordLine(std::string_view name, std::string_view bytes) {
    std::uint64_t hash = 0xcbf29ce484222325;
    for (const char byte : bytes)
        hash = (hash ^ static_cast<unsigned char>(byte)) * 0x100000001b3;
    return std::string(name) + " " + std::to_string(hash) + "\n";
}

// Throws if a person wrote or changed the file.
void checkMade(const fs::path& folder, const MadeFile& file, std::string_view record) {
    const fs::path path = folder / file.name;
    std::error_code ignored;
    if (!fs::exists(fs::symlink_status(path, ignored)))
        return;
    const std::optional<std::string> there = fileBytes(path);
    if (!there || (*there != file.bytes &&
                   record.find(recordLine(file.name, *there)) == std::string_view::npos))
        throw OutputNameError(path.string() +
                              " already exists and was changed since the bundle was made; the "
                              "bundle needs another folder.");
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
    const fs::path inner = folder / "Shader";
    const std::array files{MadeFile{"shader.metal", source}, MadeFile{"saver.json", document}};
    const std::string record = fileText(inner / recordName).value_or("");
    std::string made;
    for (const MadeFile& file : files) {
        checkMade(inner, file, record);
        made += recordLine(file.name, file.bytes);
    }
    std::error_code failure;
    fs::create_directories(inner, failure);
    if (failure)
        throw BundleError(inner.string() + " cannot be made: " + failure.message() + ".");
    try {
        for (const MadeFile& file : files)
            writeWholeFile(inner / file.name, file.bytes);
        writeWholeFile(inner / recordName, made);
    } catch (const WholeFileError& error) {
        throw BundleError(error.what());
    }
    return Bundle(folder);
}

} // namespace tarnwick
