#include "TarnwickCore/CommandLine/Values.h"

#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <charconv>

namespace tarnwick {
namespace {

std::string withUnit(std::string_view what, std::string_view unit) {
    return std::string(what) + (unit.empty() ? "" : " of " + std::string(unit));
}

std::string joined(const std::vector<std::string_view>& texts) {
    std::string list;
    for (const std::string_view text : texts)
        list.append(list.empty() ? "" : ", ").append(text);
    return list;
}

// "a whole number"; the range follows it.
struct Kind {
    std::string operator()(AnyText) const { return ""; }
    std::string operator()(FileName) const { return "the name of a file or folder"; }
    std::string operator()(const WholeNumber& number) const {
        return withUnit("a whole number", number.unit);
    }
    std::string operator()(const Number& number) const { return withUnit("a number", number.unit); }
    std::string operator()(const SizeInPixels&) const { return "WIDTHxHEIGHT"; }
    std::string operator()(const OneOf&) const { return ""; }
};

struct Range {
    std::string operator()(AnyText) const { return ""; }
    std::string operator()(FileName) const { return ""; }
    std::string operator()(const WholeNumber& number) const {
        if (number.isHexadecimalToo)
            return "decimal, or hexadecimal after 0x";
        if (number.least == std::numeric_limits<std::int64_t>::min())
            return "";
        if (number.most == std::numeric_limits<std::int64_t>::max())
            return "at least " + std::to_string(number.least);
        return "from " + std::to_string(number.least) + " to " + std::to_string(number.most);
    }
    std::string operator()(const Number& number) const {
        const std::string least = shortest(number.least), most = shortest(number.most);
        if (number.excludesLeast)
            return "above " + least + " and at most " + most;
        return number.most == Number{}.most ? "at least " + least : "from " + least + " to " + most;
    }
    std::string operator()(const SizeInPixels& size) const {
        const std::string most = std::to_string(size.most);
        if (size.leastWidth != size.leastHeight)
            return "from " + std::to_string(size.leastWidth) + "x" +
                   std::to_string(size.leastHeight) + " to " + most + "x" + most + " pixels";
        return std::string("each ") + (size.isEven ? "an even number " : "") + "from " +
               std::to_string(size.leastWidth) + " to " + most + " pixels";
    }
    std::string operator()(const OneOf& one) const {
        return one.listedBy.empty() ? "one of " + joined(one.choices())
                                    : "a name that " + std::string(one.listedBy) + " lists";
    }
};

struct Acceptance {
    std::string_view text;

    bool operator()(AnyText) const { return true; }
    bool operator()(FileName) const { return !text.empty(); }
    bool operator()(const WholeNumber& number) const {
        if (number.least < 0) {
            const auto given = signedIntegerOf(text);
            return given && *given >= number.least;
        }
        const auto given =
            number.isHexadecimalToo ? unsignedNumberOf(text) : unsignedIntegerOf(text);
        return given && *given >= static_cast<std::uint64_t>(number.least) && *given <= number.most;
    }
    bool operator()(const Number& number) const {
        const auto given = doubleOf(text);
        return given && *given <= number.most &&
               (number.excludesLeast ? *given > number.least : *given >= number.least);
    }
    bool operator()(const SizeInPixels& size) const {
        const auto given = sizeOf(text);
        const auto fits = [&](std::int64_t side, std::int64_t least) {
            return side >= least && side <= size.most && !(size.isEven && side % 2 != 0);
        };
        return given && fits(given->width, size.leastWidth) &&
               fits(given->height, size.leastHeight);
    }
    bool operator()(const OneOf& one) const { return std::ranges::count(one.choices(), text) > 0; }
};

} // namespace

std::string range(const Values& values) {
    return std::visit(Range{}, values);
}

std::string described(const Values& values) {
    const std::string kind = std::visit(Kind{}, values), limits = range(values);
    if (kind.empty() || limits.empty())
        return kind + limits;
    return kind + (limits.starts_with("from") || limits.starts_with("above") ? " " : ", ") + limits;
}

bool accept(const Values& values, std::string_view text) {
    return std::visit(Acceptance{text}, values);
}

std::optional<std::uint64_t> unsignedNumberOf(std::string_view text) {
    if (!text.starts_with("0x") && !text.starts_with("0X"))
        return unsignedIntegerOf(text);
    std::uint64_t number = 0;
    const auto [end, error] =
        std::from_chars(text.data() + 2, text.data() + text.size(), number, 16);
    return error == std::errc{} && end == text.data() + text.size() ? std::optional(number)
                                                                    : std::nullopt;
}

std::optional<PixelSize> sizeOf(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == text.npos)
        return std::nullopt;
    const auto width = integerOf(text.substr(0, cross)), height = integerOf(text.substr(cross + 1));
    return width && height ? PixelSize::of(*width, *height) : std::nullopt;
}

} // namespace tarnwick
