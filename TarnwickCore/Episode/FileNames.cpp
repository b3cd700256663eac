#include "TarnwickCore/Episode/FileNames.h"

#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Pattern.h"

#include <algorithm>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::size_t longest = 80; // characters before the extension

std::string_view lastComponent(std::string_view path) {
    while (path.size() > 1 && path.back() == '/')
        path.remove_suffix(1);
    return path.substr(path.rfind('/') + 1);
}

// The text before the last full stop of `name`, and the text after it. A name whose only full stop
// is its first character has no extension.
std::pair<std::string_view, std::string_view> baseAndExtension(std::string_view name) {
    const std::size_t stop = name.rfind('.');
    if (stop == 0 || stop == std::string_view::npos)
        return {name, {}};
    return {name.substr(0, stop), name.substr(stop + 1)};
}

bool stays(std::string_view character) {
    static const Pattern pattern(R"(\A(?:[\p{L}\p{M}\p{N}]+|[-_ .])\z)");
    return pattern.matchesIn(character);
}

} // namespace

std::string FileNames::safe(std::string_view name) {
    std::vector<std::string> characters = charactersOf(baseAndExtension(lastComponent(name)).first);
    for (std::string& character : characters)
        if (!stays(character))
            character = "-";
    const auto first = std::ranges::find_if(characters, [](auto& one) { return one != "."; });
    characters.erase(characters.begin(), first);
    characters.resize(std::min(characters.size(), longest));
    std::string text;
    for (const std::string& character : characters)
        text += character;
    std::string_view base = trimmed(text);
    // A full stop after removed blanks would hide the file.
    while (base.starts_with('.'))
        base = trimmed(base.substr(1));
    return std::string(base.empty() ? "shader" : base) + ".metal";
}

std::filesystem::path
FileNames::unique(std::string_view name, const std::filesystem::path& directory,
                  const std::function<bool(const std::filesystem::path&)>& exists) {
    const auto [base, given] = baseAndExtension(name);
    const std::string ending = "." + std::string(given.empty() ? "metal" : given);
    std::filesystem::path place = directory / (std::string(base) + ending);
    for (std::size_t count = 2; exists(place); ++count)
        place = directory / (std::string(base) + " " + std::to_string(count) + ending);
    return place;
}

} // namespace tarnwick
