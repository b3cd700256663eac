// A subcommand's command line, taken apart.
#pragma once

#include <map>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

struct Option {
    std::string_view name;  // "--size"
    std::string_view value; // what to call its value in the help; empty for an option without one;
                            // "FILE..." for all words that follow it up to the next option
    std::string_view help;
};

class Arguments {
  public:
    // Options and operands in any order; "--name value" and "--name=value"; after "--" operands
    // only. Throws CommandError on an option that `options` lacks, or one without its value.
    Arguments(std::span<const Option> options, std::span<const char* const> words);

    std::span<const std::string_view> operands() const { return operands_; }
    // The single operand. Throws CommandError, which calls it `what`, when there are none or more.
    std::string_view operand(std::string_view what) const;

    bool has(std::string_view option) const { return values_.contains(option); }
    std::optional<std::string_view> value(std::string_view option) const; // the last one given
    std::span<const std::string_view> values(std::string_view option) const;

    // All operands and all values of other options: among them are the files that are read.
    std::vector<std::string_view> wordsBeside(std::string_view option) const;

  private:
    std::vector<std::string_view> operands_;
    std::map<std::string_view, std::vector<std::string_view>> values_;
};

} // namespace tarnwick
