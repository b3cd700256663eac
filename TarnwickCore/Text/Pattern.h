// A regular expression of ICU over UTF-8 text, without conversion.
#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string_view>
#include <vector>

namespace tarnwick {

// Compiled by the constructor. An invalid expression is a violation, because expressions are
// constants. May be used by several threads at once.
class Pattern {
  public:
    explicit Pattern(std::string_view expression);
    ~Pattern();
    Pattern(const Pattern&) = delete;
    Pattern& operator=(const Pattern&) = delete;

    // The first match in `text`: the whole match, then its captures, as views into `text`. A byte
    // that is not UTF-8 is read as U+FFFD.
    std::optional<std::vector<std::string_view>> firstMatch(std::string_view text) const;
    // All matches in order, without overlaps, each as in firstMatch().
    std::vector<std::vector<std::string_view>> allMatches(std::string_view text) const;
    bool matchesIn(std::string_view text) const { return firstMatch(text).has_value(); }

  private:
    struct Compiled;
    std::unique_ptr<Compiled> compiled_;
};

} // namespace tarnwick
