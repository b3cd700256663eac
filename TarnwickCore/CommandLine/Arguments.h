// The words of a command line, taken apart.
#pragma once

#include "TarnwickCore/CommandLine/Option.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// A command line that the user has to change: what() is one sentence.
struct UsageError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// Whether the parser reads `word` as an option: "-o", "--size", not "-".
bool isOptionLike(std::string_view word);
// The row that the word names, also as "--name=value", or "-nvalue" if the row is joined; null
// without one.
const Option* optionOf(const CommandForm& form, std::string_view word);
// The part of such a word before the value, with its "="; the whole word without a value.
std::string_view beforeValue(const Option& row, std::string_view word);

// Options and operands in any order: "--name value", "--name=value", "-nvalue"; the word after an
// option is its value, also if it begins with "-"; after "--" operands only. If an option is not
// repeatable, its last value is used.
class Arguments {
  public:
    // The rows of `form` must outlive it. Throws UsageError: an unknown option, a missing or
    // invalid value, a missing required option, an option beside one that it excludes or without
    // the one that it needs; too few or too many operands.
    Arguments(const CommandForm& form, std::span<const char* const> words);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    std::span<const std::string> operands() const { return operands_; }
    const std::string& operand() const; // of a form with one

    bool has(std::string_view option) const { return values_.contains(option); }
    std::optional<std::string_view> value(std::string_view option) const;
    std::span<const std::string> values(std::string_view option) const;

    // The value; default: the default of the row, which must be a value.
    std::string_view textOf(std::string_view option) const;
    double numberOf(std::string_view option) const;
    std::int64_t integerOf(std::string_view option) const;
    std::uint64_t unsignedOf(std::string_view option) const; // decimal, or hexadecimal after 0x

    // All operands and all values of other options, which include the files that are read.
    std::vector<std::string_view> wordsBeside(std::string_view option) const;

  private:
    std::span<const Option> options_;
    std::vector<std::string> operands_;
    std::map<std::string_view, std::vector<std::string>> values_; // by the rows' names
};

// Throws UsageError, which names the option, if `values` do not accept `text`.
void requireValue(std::string_view option, const Values& values, std::string_view text);

} // namespace tarnwick
