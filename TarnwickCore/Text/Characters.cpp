#include "TarnwickCore/Text/Characters.h"

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
    precondition(U_SUCCESS(status), "ICU has the root locale's rules", "status",
                 u_errorName(status));
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
    precondition(U_SUCCESS(status), "ICU opens a view of bytes as text", "status",
                 u_errorName(status));
    auto end = static_cast<std::size_t>(
        std::max(breaks->preceding(static_cast<int32_t>(mostBytes) + 1), 0));
    utext_close(&bytes);
    if (end == 0)
        for (end = mostBytes; end > 0 && U8_IS_TRAIL(text[end]);)
            --end;
    return text.substr(0, end);
}

int cellsOf(std::string_view character) {
    const icu::UnicodeString text = unicodeOf(character);
    if (text.isEmpty())
        return 0;
    const UChar32 first = text.char32At(0);
    const auto has = [&](UProperty property) { return u_hasBinaryProperty(first, property) != 0; };
    const int width = u_getIntPropertyValue(first, UCHAR_EAST_ASIAN_WIDTH);
    if (width == U_EA_WIDE || width == U_EA_FULLWIDTH || has(UCHAR_EMOJI_PRESENTATION) ||
        text.indexOf(UChar32(0xfe0f)) >= 0) // the emoji form is requested
        return 2;
    const int kind = u_charType(first);
    const bool isBare = kind == U_NON_SPACING_MARK || kind == U_ENCLOSING_MARK ||
                        kind == U_CONTROL_CHAR || kind == U_FORMAT_CHAR;
    return isBare ? 0 : 1;
}

std::string upperCased(std::string_view text) {
    std::string upper;
    return unicodeOf(text).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
}

std::string_view trimmed(std::string_view text) {
    const auto* const units = reinterpret_cast<const std::uint8_t*>(text.data());
    std::size_t start = text.size(), end = text.size(); // of the trimmed text
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
