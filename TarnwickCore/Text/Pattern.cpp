#include "TarnwickCore/Text/Pattern.h"

#include "TarnwickBase/Precondition.h"

#include <unicode/regex.h>

#include <utility>

namespace tarnwick {
namespace {

// A view of bytes as text of ICU, closed by the destructor.
class OpenedText {
  public:
    explicit OpenedText(std::string_view text) {
        UErrorCode status = U_ZERO_ERROR;
        utext_openUTF8(&text_, text.data() ? text.data() : "", static_cast<int64_t>(text.size()),
                       &status);
        precondition(U_SUCCESS(status), "ICU opens a view of bytes as text", "status",
                     u_errorName(status));
    }
    ~OpenedText() { utext_close(&text_); }
    OpenedText(const OpenedText&) = delete;
    OpenedText& operator=(const OpenedText&) = delete;
    UText* get() { return &text_; }

  private:
    UText text_ = UTEXT_INITIALIZER;
};

} // namespace

struct Pattern::Compiled {
    std::unique_ptr<icu::RegexPattern> pattern;
};

Pattern::Pattern(std::string_view expression) : compiled_(std::make_unique<Compiled>()) {
    UErrorCode status = U_ZERO_ERROR;
    UParseError place;
    OpenedText text(expression);
    compiled_->pattern.reset(icu::RegexPattern::compile(text.get(), 0, place, status));
    precondition(U_SUCCESS(status), "the regular expression compiles", "expression", expression,
                 "status", u_errorName(status));
}

Pattern::~Pattern() = default;

// Calls `take` with the groups of each match in order, until it returns false.
template <typename Take>
static void eachMatch(const icu::RegexPattern& pattern, std::string_view text, Take take) {
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::RegexMatcher> matcher(pattern.matcher(status));
    precondition(U_SUCCESS(status), "ICU makes a matcher", "status", u_errorName(status));
    OpenedText opened(text);
    matcher->reset(opened.get());
    // Backtracking beyond this limit counts as no match. The limit is in steps of the engine, so
    // that the result is the same on every machine.
    matcher->setTimeLimit(1000, status);
    while (matcher->find(status) && U_SUCCESS(status)) {
        std::vector<std::string_view> groups;
        for (int32_t group = 0; group <= matcher->groupCount(); ++group) {
            const int64_t start = matcher->start64(group, status);
            const int64_t end = matcher->end64(group, status);
            groups.push_back(start < 0 ? std::string_view{}
                                       : text.substr(static_cast<std::size_t>(start),
                                                     static_cast<std::size_t>(end - start)));
        }
        if (!take(std::move(groups)))
            return;
    }
}

std::optional<std::vector<std::string_view>> Pattern::firstMatch(std::string_view text) const {
    std::optional<std::vector<std::string_view>> first;
    eachMatch(*compiled_->pattern, text, [&](auto groups) {
        first = std::move(groups);
        return false;
    });
    return first;
}

std::vector<std::vector<std::string_view>> Pattern::allMatches(std::string_view text) const {
    std::vector<std::vector<std::string_view>> all;
    eachMatch(*compiled_->pattern, text, [&](auto groups) {
        all.push_back(std::move(groups));
        return true;
    });
    return all;
}

} // namespace tarnwick
