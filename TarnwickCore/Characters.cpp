#include "TarnwickCore/Characters.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickCore/Pattern.h"

#include <unicode/brkiter.h>
#include <unicode/unistr.h>

#include <cstdint>
#include <memory>

namespace tarnwick {

namespace {

icu::UnicodeString unicodeOf(std::string_view text) {
    return icu::UnicodeString::fromUTF8(
        icu::StringPiece(text.data(), static_cast<int32_t>(text.size())));
}

} // namespace

std::vector<std::string> charactersOf(std::string_view text) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::BreakIterator> breaks(
        icu::BreakIterator::createCharacterInstance(icu::Locale::getRoot(), status));
    precondition(U_SUCCESS(status), "ICU carries the root locale's rules with it.");
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

std::string upperCased(std::string_view text) {
    std::string upper;
    return unicodeOf(text).toUpper(icu::Locale::getRoot()).toUTF8String(upper);
}

std::string_view trimmed(std::string_view text) {
    static const Pattern pattern(R"((?s)\A\p{White_Space}*(.*?)\p{White_Space}*\z)");
    const auto groups = pattern.firstMatch(text);
    return groups ? (*groups)[1] : text;
}

} // namespace tarnwick
