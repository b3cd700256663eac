#include "TarnwickCore/Animation/DocumentJSON.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

using nlohmann::json;

// "Line 3, column 12", both from 1; a column is a character, not a byte.
std::string placeOf(std::string_view before) {
    const auto line = 1 + std::ranges::count(before, '\n');
    const std::size_t lineStart = before.rfind('\n') + 1; // 0 in the first line
    const auto column = 1 + std::ranges::count_if(before.substr(lineStart), [](char unit) {
                            return (static_cast<unsigned char>(unit) & 0xC0) != 0x80;
                        });
    return "Line " + std::to_string(line) + ", column " + std::to_string(column);
}

// The reason in the parser's message: "unexpected '}'; expected string literal". The message is
// "... parse error at line 1, column 2: syntax error while parsing object - ...; last read: '...'".
std::string reasonOf(std::string_view message) {
    const std::size_t dash = message.find(" - ");
    if (dash == std::string_view::npos)
        return "";
    const std::string_view reason = message.substr(dash + 3);
    return ": " + std::string(reason.substr(0, reason.find("; last read: ")));
}

} // namespace

json parsedDocument(std::string_view text) {
    try {
        return json::parse(text.begin(), text.end());
    } catch (const json::parse_error& error) {
        const std::size_t read = std::min(error.byte, text.size() + 1);
        throw DocumentError(placeOf(text.substr(0, std::max<std::size_t>(read, 1) - 1)) +
                            " is not JSON" + reasonOf(error.what()) + ".");
    } catch (const json::exception&) {
        throw DocumentError("It has a number beyond those of double precision.");
    }
}

const json& requiredMember(const json& object, const char* name, const std::string& where) {
    if (!object.is_object())
        throw DocumentError(where + " is not an object.");
    const auto found = object.find(name);
    if (found == object.end())
        throw DocumentError(where + " has no \"" + name + "\".");
    return *found;
}

double requiredNumber(const json& object, const char* name, const std::string& where) {
    const json& value = requiredMember(object, name, where);
    if (!value.is_number())
        throw DocumentError(where + " has a \"" + name + "\" that is not a number.");
    return value.get<double>();
}

float singleOf(const json& value, const std::string& what) {
    if (!value.is_number())
        throw DocumentError(what + " is not a number.");
    // The shortest digits of the greatest float are above it and round to it.
    const auto single = static_cast<float>(value.get<double>());
    if (!std::isfinite(single))
        throw DocumentError(what + " is beyond the greatest float, 3.4028235e38.");
    return single;
}

} // namespace tarnwick
