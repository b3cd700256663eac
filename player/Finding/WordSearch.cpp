#include "player/Finding/WordSearch.h"

#include <algorithm>
#include <cctype>
#include <string>
#include <vector>

namespace tarnwick::player {
namespace {

constexpr int atBegin = 400, atWords = 300, within = 200, asLetters = 100;

std::string lowered(std::string_view text) {
    std::string lower(text);
    std::ranges::transform(lower, lower.begin(), [](char letter) {
        return static_cast<char>(std::tolower(static_cast<unsigned char>(letter)));
    });
    return lower;
}

std::vector<std::string> wordsOf(std::string_view text) {
    std::vector<std::string> words(1);
    for (const char letter : lowered(text))
        if (letter != ' ')
            words.back() += letter;
        else if (!words.back().empty())
            words.emplace_back();
    if (words.back().empty())
        words.pop_back();
    return words;
}

bool beginsAWord(const std::string& text, const std::string& word) {
    for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1))
        if (at == 0 || std::isalnum(static_cast<unsigned char>(text[at - 1])) == 0)
            return true;
    return false;
}

// The number of letters of `text` between the letters of `query`, found in order; absent if one is
// missing.
std::optional<int> lettersSkipped(std::string_view query, std::string_view text) {
    int skipped = 0;
    std::size_t next = 0;
    for (const char letter : query) {
        const std::size_t found = text.find(letter, next);
        if (found == std::string_view::npos)
            return std::nullopt;
        skipped += static_cast<int>(found - next);
        next = found + 1;
    }
    return skipped;
}

} // namespace

bool hasWords(std::string_view words, std::string_view text) {
    const std::string lower = lowered(text);
    return std::ranges::all_of(wordsOf(words), [&](const std::string& word) {
        return lower.find(word) != std::string::npos;
    });
}

std::optional<int> fitOf(std::string_view query, std::string_view text) {
    const std::vector<std::string> words = wordsOf(query);
    const std::string lower = lowered(text);
    if (words.empty())
        return 0;
    if (lower.starts_with(lowered(query)))
        return atBegin;
    if (std::ranges::all_of(words, [&](const auto& word) { return beginsAWord(lower, word); }))
        return atWords;
    if (hasWords(query, text))
        return within;
    std::string letters;
    for (const std::string& word : words)
        letters += word;
    const auto skipped = lettersSkipped(letters, lower);
    return skipped ? std::optional(asLetters - std::min(*skipped, asLetters - 1)) : std::nullopt;
}

} // namespace tarnwick::player
