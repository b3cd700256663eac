#include "TarnwickCore/Characters.h"

#include "TarnwickBase/Precondition.h"

#include <unicode/brkiter.h>
#include <unicode/uchar.h>
#include <unicode/unistr.h>
#include <unicode/utf8.h>

#include <algorithm>
#include <cstdint>
#include <memory>

namespace tarnwick {

namespace {

icu::UnicodeString unicodeOf(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

std::unique_ptr<icu::BreakIterator> characterBreaks() {
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    precondition(U_SUCCESS(status), "ICU carries the root locale's rules with it.");
    return breaks;
}

} // namespace

std::vector<std::string> charactersOf(std::string_view text) {
    const auto breaks = characterBreaks();
    const icu::UnicodeString whole = unicodeOf(text);
    breaks->setText(whole);
    std::vector<std::string> characters;
    int32_t start = breaks->first();
    for (int32_t end = breaks->next(); end != icu::BreakIterator::DONE; end = breaks->next()) {
        whole.tempSubStringBetween(start, end).toUTF8String(characters.emplace_back());
        start = end;
    }
    return characters;
}

std::string_view wholeCharacters(std::string_view text, std::size_t mostBytes) {
    if (text.size() <= mostBytes)
        return text;
    UErrorCode status = U_ZERO_ERROR;
    UText bytes = UTEXT_INITIALIZER;
    utext_openUTF8(&bytes, text.data(), static_cast<int64_t>(text.size()), &status);
    const auto breaks = characterBreaks();
    breaks->setText(&bytes, status);
    precondition(U_SUCCESS(status), "A view of bytes always opens as text.");
    auto end = static_cast<std::size_t>(
        std::max(breaks->preceding(static_cast<int32_t>(mostBytes) + 1), 0));
    utext_close(&bytes);
    if (end == 0)
        for (end = mostBytes; end > 0 && U8_IS_TRAIL(text[end]);)
            --end;
    return text.substr(0, end);
}

std::string upperCased(std::string_view text) {
    std::string upper;
    return unicodeOf(text).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
}

std::string_view trimmed(std::string_view text) {
    const auto* const units = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t start = text.size(), end = text.size(); // of what is no white space, once met
    for (std::size_t at = 0; at < text.size();) {
        const std::size_t before = at;
        UChar32 character = 0;
        U8_NEXT(units, at, text.size(), character);
        if (character >= 0 && u_isUWhiteSpace(character))
            continue;
        start = std::min(start, before);
        end = at;
    }
    return text.substr(start, end - start);
}

} // namespace tarnwick
