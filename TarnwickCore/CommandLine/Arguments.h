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

// Options and operands in any order: "--name value", "--name=value"; the word after an option is
// its value whatever it begins with; after "--" operands only. Of an option that is not repeatable
// the last value counts.
class Arguments {
  public:
    // Keeps `form`'s rows, which outlive it. Throws UsageError where the words break what a row
    // says: an unknown option, one without its value or with a value that it does not take, one
    // that is required, excluded or alone; operands that are missing or too many.
    Arguments(const CommandForm& form, std::span<const char* const> words);
    Arguments(const Arguments&) = delete;
    Arguments& operator=(const Arguments&) = delete;

    std::span<const std::string> operands() const { return operands_; }
    const std::string& operand() const; // of a form with one

    bool has(std::string_view option) const { return values_.contains(option); }
    std::optional<std::string_view> value(std::string_view option) const;
    std::span<const std::string> values(std::string_view option) const;

    // The value, or the row's default, which is a value then.
    std::string_view textOf(std::string_view option) const;
    double numberOf(std::string_view option) const;
    std::int64_t integerOf(std::string_view option) const;
    std::uint64_t unsignedOf(std::string_view option) const; // decimal, or hexadecimal after 0x

    // All operands and all values of other options: among them are the files that are read.
    std::vector<std::string_view> wordsBeside(std::string_view option) const;

  private:
    std::span<const Option> options_;
    std::vector<std::string> operands_;
    std::map<std::string_view, std::vector<std::string>> values_; // by the rows' names
};

// Throws UsageError, which names the option, if `values` do not accept `text`.
void requireValue(std::string_view option, const Values& values, std::string_view text);

} // namespace tarnwick
