// Places in the text for tokens that the user did not write.
//
// Clang's parser may read a piece of the program twice, and finds again by its place what it kept
// of the first time; so no two tokens have one place. A token that stands in for another is given a
// place of its own that leads back to the user's.
#pragma once

#include <clang/Basic/SourceLocation.h>
#include <llvm/ADT/DenseSet.h>

namespace clang {
class LangOptions;
class SourceManager;
class Token;
} // namespace clang

namespace tarnwick::msl {

class TokenPlaces {
  public:
    TokenPlaces(clang::SourceManager& sources, const clang::LangOptions& language)
        : sources(sources), language(language) {}

    // Moves the token to a fresh place if one before it has its place.
    void makeUnique(clang::Token& token);

  private:
    clang::SourceManager& sources;
    const clang::LangOptions& language;
    llvm::DenseSet<clang::SourceLocation> taken;
};

// The user's place that a token's leads back to; of a user's own token, its own.
clang::SourceLocation usersPlace(const clang::SourceManager& sources, clang::SourceLocation at);

} // namespace tarnwick::msl
