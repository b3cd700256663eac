// Hints that depend on the episode: its parameters, its arguments, the order of its functions.
#pragma once

#include "TarnwickCore/Diagnostics.h"
#include "TarnwickCore/Episode/Episode.h"

#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

class EpisodeHints {
  public:
    // The episode must outlive it.
    explicit EpisodeHints(const Episode& episode);
    EpisodeHints(const EpisodeHints&) = delete;
    EpisodeHints& operator=(const EpisodeHints&) = delete;

    // The hint for a diagnostic of the source: made from the source if possible, else from the
    // table of Hints.h; empty for a message without a hint.
    std::string hintFor(const Diagnostic& message) const;

    // Whether line `number` of the source declares `name`, after a type.
    bool declaresIn(std::int64_t number, std::string_view name) const;

  private:
    std::string forUnknownName(const Diagnostic& message, std::string_view name) const;
    std::string forMissingParameter(std::string_view name) const;
    std::string forLaterDefinition(std::string_view name, std::int64_t line) const;
    bool declares(std::string_view name) const;

    const Episode& episode_;
    std::string code_;                                // without comments
    std::vector<std::string_view> lines_, codeLines_; // of text and code_, as compilerLines
};

} // namespace tarnwick
