// Which words of an episode's source have a colour.
#pragma once

#include "TarnwickCore/Editor/SyntaxKind.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace tarnwick {

// A closed hash table of the keywords and types. It is asked at every name of a source, most of
// which are none of them and meet an empty place.
class SyntaxWords {
  public:
    using Words = std::unordered_set<std::string>;

    static const Words& keywords();  // of the language
    static const Words& types();     // of the language and of episodes, such as Uniforms
    static const SyntaxWords& all(); // built on first use, for the whole process

    // The kind of `word`, which is not empty.
    std::optional<SyntaxKind> kindOf(std::string_view word) const;

  private:
    struct Place {
        std::string_view word; // empty where there is none
        SyntaxKind kind = SyntaxKind::keyword;
    };
    SyntaxWords();
    void add(const Words& words, SyntaxKind kind);

    std::array<Place, 1024> places_{}; // a tenth of them taken
};

} // namespace tarnwick
