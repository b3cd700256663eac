#include "TarnwickCore/Service/ShareUpload.h"

#include "TarnwickCore/Forking.h"
#include "TarnwickCore/Text/Characters.h"
#include "TarnwickCore/Text/Numbers.h"

#include <nlohmann/json.hpp>

#include <cmath>

namespace tarnwick {
namespace {

using nlohmann::json;
using namespace std::string_view_literals;

struct Name {
    std::string_view raw, shown;
};

constexpr std::array<Name, allLicences.size()> licenceNames{{
    {"cc-by-nc-sa-4.0", "CC BY-NC-SA 4.0"},
    {"cc-by-4.0", "CC BY 4.0"},
    {"mit", "MIT"},
    {"arr", "All rights reserved"},
}};
constexpr std::array<Name, allVisibilities.size()> visibilityNames{{
    {"public", "Public"},
    {"unlisted", "Unlisted"},
    {"private", "Private"},
}};

template <typename Value, std::size_t count>
std::optional<Value> named(const std::array<Value, count>& values, std::string_view raw) {
    for (const Value value : values)
        if (rawValue(value) == raw)
            return value;
    return std::nullopt;
}

bool isFinite(const ParamDecl& param) {
    return std::isfinite(param.defaultValue) && std::isfinite(param.min) &&
           std::isfinite(param.max);
}

std::string notFinite(const ParamDecl& param) {
    return "The parameter " + param.name + " has a number that is not finite.";
}

// Writes whole numbers without ".0", which the library appends to doubles.
json numberOf(float value) {
    const double number = asWritten(value);
    if (number == std::trunc(number) && std::abs(number) < 0x1p53)
        return static_cast<std::int64_t>(number);
    return number;
}

json objectOf(const ParamDecl& param) {
    if (!isFinite(param))
        throw ShareUploadError(notFinite(param));
    return {{"name", param.name},
            {"default", numberOf(param.defaultValue)},
            {"min", numberOf(param.min)},
            {"max", numberOf(param.max)},
            {"detail", param.detail}};
}

} // namespace

std::string_view rawValue(Licence licence) {
    return licenceNames[static_cast<std::size_t>(licence)].raw;
}

std::string_view nameOf(Licence licence) {
    return licenceNames[static_cast<std::size_t>(licence)].shown;
}

std::optional<Licence> licenceNamed(std::string_view rawValue) {
    return named(allLicences, rawValue);
}

std::string_view rawValue(Visibility visibility) {
    return visibilityNames[static_cast<std::size_t>(visibility)].raw;
}

std::string_view nameOf(Visibility visibility) {
    return visibilityNames[static_cast<std::size_t>(visibility)].shown;
}

std::optional<Visibility> visibilityNamed(std::string_view rawValue) {
    return named(allVisibilities, rawValue);
}

std::optional<std::string> ShareUpload::forkedFrom() const {
    return ForkedFrom::parse(source);
}

std::vector<std::string> ShareUpload::problems() const {
    std::vector<std::string> problems;
    const auto check = [&](bool passes, const char* otherwise) {
        if (!passes)
            problems.emplace_back(otherwise);
    };
    const std::size_t titleLength = charactersOf(trimmed(title)).size();
    const std::size_t whole = loop.size() + thumb.size() + source.size();
    check(titleLength >= 1 && titleLength <= 80, "The title must be 1 to 80 characters.");
    check(charactersOf(description).size() <= 500,
          "The description must be at most 500 characters.");
    check(source.size() <= 200'000, "The source is over 200 KB.");
    check(loop.size() <= 20'000'000, "The loop video is over 20 MB.");
    check(thumb.size() <= 1'000'000, "The thumbnail is over 1 MB.");
    // The first box of a file names its type (ISO/IEC 14496-12, 4.3).
    check(loop.size() >= 8 && loop.compare(4, 4, "ftyp") == 0, "The loop is not an MP4 file.");
    // Start of image, and the next marker's first byte (ITU-T T.81, B.1.1.3).
    check(thumb.starts_with("\xFF\xD8\xFF"sv), "The thumbnail is not a JPEG.");
    check(whole <= 25'000'000, "The upload is over 25 MB.");
    for (const ParamDecl& param : params)
        if (!isFinite(param))
            problems.push_back(notFinite(param));
    return problems;
}

std::string ShareUpload::metaJSON() const {
    json list = json::array();
    for (const ParamDecl& param : params)
        list.push_back(objectOf(param));
    const std::optional<std::string> item = forkedFrom();
    const json meta{
        {"title", trimmed(title)},      {"description", description},
        {"licence", rawValue(licence)}, {"visibility", rawValue(visibility)},
        {"kind", rawValue(kind())},     {"forkedFrom", item ? json(*item) : json()},
        {"params", std::move(list)},
    };
    return meta.dump(-1, ' ', false, json::error_handler_t::replace);
}

} // namespace tarnwick
