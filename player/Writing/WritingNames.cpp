#include "player/Writing/WritingNames.h"

#include "TarnwickCore/Episode/ShaderPieces.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "player/Writing/DeclarationReader.h"

#include <algorithm>
#include <array>
#include <tuple>

namespace tarnwick::player {
namespace {

constexpr std::array<std::string_view, 11> scalars{
    "float", "half", "int", "uint", "bool", "short", "ushort", "char", "uchar", "long", "ulong"};

// As the host declares them before the episode's text.
std::string hostText(std::string_view episode) {
    std::string text(pieces::records);
    text += ShaderAssembler::paramsBody(ParamParser::parse(episode)) + "\n};\n";
    if (ShaderAssembler::gridSize(episode) > 0)
        return text;
    text +=
        ShaderAssembler::particleCount(episode) > 0 ? pieces::trailsStruct : pieces::inputsStruct;
    return text;
}

} // namespace

WritingNames::WritingNames(std::string_view text) {
    DeclarationReader::read(text, own);
    DeclarationReader::read(hostText(text), host);
}

const SourceRecord* WritingNames::record(std::string_view name) const {
    const SourceRecord* found = own.record(name);
    return found != nullptr ? found : host.record(name);
}

std::span<const msl::LibraryName> libraryRows(std::string_view owner) {
    const auto rows =
        std::ranges::equal_range(msl::libraryNames(), owner, {}, &msl::LibraryName::owner);
    return {rows.begin(), rows.end()};
}

const msl::LibraryName* libraryRow(std::string_view owner, std::string_view name) {
    const auto rows = libraryRows(owner);
    const auto found = std::ranges::lower_bound(rows, name, {}, &msl::LibraryName::name);
    return found != rows.end() && found->name == name ? &*found : nullptr;
}

std::string_view typeName(std::string_view type) {
    return type.substr(0, type.find('<'));
}

VectorShape vectorShape(std::string_view type) {
    for (const std::string_view scalar : scalars) {
        if (!type.starts_with(scalar))
            continue;
        const std::string_view rest = type.substr(scalar.size());
        if (rest.empty())
            return {scalar, 1};
        if (rest.size() == 1 && rest[0] >= '2' && rest[0] <= '4')
            return {scalar, static_cast<std::size_t>(rest[0] - '0')};
    }
    return {};
}

} // namespace tarnwick::player
