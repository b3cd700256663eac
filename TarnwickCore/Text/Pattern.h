// A regular expression of ICU's, over UTF-8 text as it stands.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

// Compiled when made; a pattern that does not compile stops the program, as patterns are
// constants. May be used by any number of threads at once.
class Pattern {
  public:
    explicit Pattern(std::string_view expression);
    ~Pattern();
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;

    // The first match in `text`: the whole match, then its captures, as views into `text`. A
    // byte that is not UTF-8 is read as U+FFFD.
    std::optional<std::vector<std::string_view>> firstMatch(std::string_view text) const;
    // All matches, first to last, none overlapping another; each as firstMatch gives it.
    std::vector<std::vector<std::string_view>> allMatches(std::string_view text) const;
    bool matchesIn(std::string_view text) const { return firstMatch(text).has_value(); }

  private:
    struct Compiled;
    std::unique_ptr<Compiled> compiled_;
};

} // namespace tarnwick
