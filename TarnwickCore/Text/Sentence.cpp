#include "TarnwickCore/Text/Sentence.h"

#include "TarnwickCore/Text/Characters.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

constexpr std::array<std::string_view, 5> endings{".", "!", "?", ":", "…"};

bool isASCII(char unit) {
    return static_cast<unsigned char>(unit) < 0x80;
}

// Finding characters takes ICU some microseconds. Between two ASCII letters a character always
// ends.
bool hasPlainEnds(std::string_view words) {
    return std::ranges::all_of(words.substr(0, 2), isASCII) &&
           std::ranges::all_of(words.substr(words.size() - std::min<std::size_t>(2, words.size())),
                               isASCII);
}

} // namespace

std::string sentence(std::string_view words) {
    if (words.empty())
        return "";
    std::string first(words.substr(0, 1)), last(words.substr(words.size() - 1));
    std::size_t firstLength = 1;
    if (hasPlainEnds(words)) {
        if (first[0] >= 'a' && first[0] <= 'z')
            first[0] = static_cast<char>(first[0] - 'a' + 'A');
    } else {
        const std::vector<std::string> characters = charactersOf(words);
        firstLength = characters.front().size();
        first = upperCased(characters.front());
        last = characters.back();
    }
    std::string text = first.append(words.substr(firstLength));
    if (std::ranges::find(endings, last) == endings.end())
        text += ".";
    return text;
}

} // namespace tarnwick
