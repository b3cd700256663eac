// Which words of an episode's source have a colour.
#pragma once

#include "TarnwickCore/MSLSyntax.h"

#include <array>
#include <optional>
#include <string_view>

namespace tarnwick {

// A closed hash table of the keywords and types. It is asked at every name of a source, most of
// which are none of them and meet an empty place.
class SyntaxWords {
  public:
    static const SyntaxWords& all(); // built on first use, for the whole process

    // The kind of `word`, which is not empty.
    std::optional<SyntaxKind> kindOf(std::string_view word) const;

  private:
    struct Place {
        std::string_view word; // empty where there is none
        SyntaxKind kind = SyntaxKind::keyword;
    };
    SyntaxWords();
    void add(const MSLSyntax::Words& words, SyntaxKind kind);

    std::array<Place, 1024> places_{}; // a tenth of them taken
};

} // namespace tarnwick
