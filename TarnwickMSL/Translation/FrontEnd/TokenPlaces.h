// Source locations for tokens that the token pass inserts.
//
// Clang's parser may read tokens twice, and finds the results of the first reading by location, so
// locations must be unique. A token that shares the location of another gets a new one that leads
// back to it.
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

    // Gives the token a new location if an earlier token has its location.
    void makeUnique(clang::Token& token);

  private:
    clang::SourceManager& sources;
    const clang::LangOptions& language;
    llvm::DenseSet<clang::SourceLocation> taken;
};

// The location in the program that a token's location leads back to.
clang::SourceLocation usersPlace(const clang::SourceManager& sources, clang::SourceLocation at);

} // namespace tarnwick::msl
