// Hints that follow from what an episode itself says: its parameters, its arguments, its order.
#pragma once

#include "TarnwickCore/Diagnostics.h"
#include "TarnwickCore/Params.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class EpisodeHints {
  public:
    // Of one source, which outlives it.
    explicit EpisodeHints(std::string_view source);
    EpisodeHints(const EpisodeHints&) = delete;
    EpisodeHints& operator=(const EpisodeHints&) = delete;

    // A hint for a compiler's message about the source, from the source or else from the table of
    // Hints.h; empty where neither has one.
    std::string hintFor(const Diagnostic& message) const;

    // Whether line `number`, one of the source, declares something called `name`: behind a type.
    bool declaresIn(std::int64_t number, std::string_view name) const;

  private:
    std::string forUnknownName(const Diagnostic& message, std::string_view name) const;
    std::string forMissingParameter(std::string_view name) const;
    std::string forLaterDefinition(std::string_view name, std::int64_t line) const;
    bool declares(std::string_view name) const;

    std::string_view source_;
    std::string code_;                                // without comments
    std::vector<std::string_view> lines_, codeLines_; // of the two, as the compiler counts them
    std::vector<ParamDecl> params_;
};

} // namespace tarnwick
