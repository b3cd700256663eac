// Makes the name of the type from a title.
#include "TarnwickCore/SwiftUIExport.h"
#include "TarnwickCore/Text/Pattern.h"
#include "TarnwickCore/Text/UTF8.h"

#include <unicode/translit.h>

#include <algorithm>
#include <memory>

namespace tarnwick {
namespace {

bool isASCII(char character) {
    return static_cast<unsigned char>(character) < 0x80;
}

bool isDigit(char character) {
    return character >= '0' && character <= '9';
}

bool isLetter(char character) {
    return (character >= 'a' && character <= 'z') || (character >= 'A' && character <= 'Z');
}

// `word` transliterated to ASCII letters and digits. Characters without such a form are omitted.
std::string inASCII(std::string_view word) {
    std::string text(word);
    if (!std::ranges::all_of(text, isASCII)) {
        UErrorCode status = U_ZERO_ERROR;
        // Made for each call: two threads must not share one.
        const std::unique_ptr<icu::Transliterator> latin(
            icu::Transliterator::createInstance("Any-Latin; Latin-ASCII", UTRANS_FORWARD, status));
        if (latin && U_SUCCESS(status)) {
            auto units = icu::UnicodeString::fromUTF8(text);
            latin->transliterate(units);
            text.clear();
            units.toUTF8String(text);
        }
    }
    std::erase_if(text, [](char character) { return !isLetter(character) && !isDigit(character); });
    return text;
}

std::string withoutNumber(std::string_view title) {
    static const Pattern number(R"(\A\d+[\s\-_·.]+)");
    const auto groups = number.firstMatch(title);
    return std::string(groups ? title.substr((*groups)[0].size()) : title);
}

} // namespace

std::string SwiftUIExport::typeName(std::string_view title) {
    // Marks belong to their letters.
    static const Pattern word(R"([\p{L}\p{N}][\p{L}\p{M}\p{N}]*)");
    const std::string text = withoutNumber(wellFormedUTF8(title));
    std::string name;
    for (const auto& groups : word.allMatches(text)) {
        std::string part = inASCII(groups[0]);
        if (!part.empty() && part.front() >= 'a' && part.front() <= 'z')
            part.front() = static_cast<char>(part.front() - 'a' + 'A');
        name += part;
    }
    if (name.empty())
        return "TarnwickShader";
    return isDigit(name.front()) ? "Shader" + name : name;
}

} // namespace tarnwick
