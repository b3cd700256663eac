// The coloured words of an episode's source.
#pragma once

#include "TarnwickCore/Editor/SyntaxKind.h"

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_set>

namespace tarnwick {

// A closed hash table of keywords and types. Most names in a source are neither and hit an empty
// place.
class SyntaxWords {
  public:
    using Words = std::unordered_set<std::string>;

    static const Words& keywords();  // of the language
    static const Words& types();     // of the language and of episodes, such as Uniforms
    static const SyntaxWords& all(); // built on first use, for the whole process

    // The kind of `word`, which must not be empty; nothing for a name of the author.
    std::optional<SyntaxKind> kindOf(std::string_view word) const;

  private:
    struct Place {
        std::string_view word; // empty: no word
        SyntaxKind kind = SyntaxKind::keyword;
    };
    SyntaxWords();
    void add(const Words& words, SyntaxKind kind);

    std::array<Place, 1024> places_{}; // a tenth of them used
};

} // namespace tarnwick
