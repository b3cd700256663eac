#include "TarnwickMSL/Declarations/Generator/Sentences.h"

#include "TarnwickMSL/Translation/FrontEnd/LibraryText.h"

#include <string_view>
#include <utility>

namespace tarnwick::msl {
namespace {

constexpr std::string_view opening = "/**", closing = "*/";

bool isWordCharacter(char one) {
    return (one >= 'a' && one <= 'z') || (one >= 'A' && one <= 'Z') || (one >= '0' && one <= '9') ||
           one == '_';
}

// In one line; in a macro, lines end with backslashes.
std::string sentenceOf(std::string_view comment) {
    std::string sentence;
    bool isBlank = false;
    for (const char one : comment)
        if (one == ' ' || one == '\n' || one == '\\') {
            isBlank = true;
        } else {
            if (isBlank && !sentence.empty())
                sentence += ' ';
            isBlank = false;
            sentence += one;
        }
    return sentence;
}

// The first of `names` in `text`; empty if none is before the next comment of this kind.
std::string firstName(std::string_view text, const std::set<std::string>& names) {
    text = text.substr(0, text.find(opening));
    for (std::size_t at = 0; at < text.size();) {
        std::size_t end = at;
        while (end < text.size() && isWordCharacter(text[end]))
            ++end;
        const std::string word(text.substr(at, end - at));
        if (names.contains(word))
            return word;
        at = end + 1;
    }
    return {};
}

} // namespace

std::map<std::string, std::string> librarySentences(const std::set<std::string>& names) {
    std::map<std::string, std::string> sentences;
    for (const LibraryFile& file : libraryFiles())
        for (std::size_t at = file.text.find(opening); at != std::string_view::npos;
             at = file.text.find(opening, at + 1)) {
            const std::size_t end = file.text.find(closing, at);
            if (end == std::string_view::npos)
                break;
            std::string sentence =
                sentenceOf(file.text.substr(at + opening.size(), end - at - opening.size()));
            std::string name = sentence.substr(0, sentence.find(": "));
            if (names.contains(name)) // of a name that a macro joins from parts
                sentence.erase(0, name.size() + 2);
            else
                name = firstName(file.text.substr(end + closing.size()), names);
            if (!name.empty())
                sentences.emplace(std::move(name), std::move(sentence));
        }
    return sentences;
}

} // namespace tarnwick::msl
