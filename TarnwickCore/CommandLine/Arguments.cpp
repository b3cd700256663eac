#include "TarnwickCore/CommandLine/Arguments.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickBase/Quoted.h"
#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <ranges>

namespace tarnwick {
namespace {

const Option* rowNamed(std::span<const Option> options, std::string_view name) {
    const auto found = std::ranges::find(options, name, &Option::name);
    return found == options.end() ? nullptr : &*found;
}

// Throws UsageError for an unknown option.
const Option& rowOf(const CommandForm& form, std::string_view word) {
    const Option* row = optionOf(form, word);
    if (!row)
        throw UsageError(quoted(word) +
                         " is not an option; write -- before operands that begin with a dash.");
    return *row;
}

// The values after an option, from `at` on; moves `at` behind them. An option may be the value of
// another option, but does not begin a list.
std::vector<std::string> valuesFrom(std::span<const char* const> words, std::size_t& at,
                                    const Option& row) {
    const auto begin = words.begin() + static_cast<std::ptrdiff_t>(at);
    const auto end = takesList(row)         ? std::find_if(begin, words.end(), isOptionLike)
                     : begin == words.end() ? begin
                                            : begin + 1;
    if (begin == end)
        throw UsageError(std::string(row.name) + " requires a value, " + std::string(row.value) +
                         ".");
    at += static_cast<std::size_t>(end - begin);
    return {begin, end};
}

std::string titleOf(const Option& row) {
    return std::string(row.name) + (takesValue(row) ? " " + std::string(row.value) : "");
}

// Throws UsageError if the option may not be there with the others that are, or not without others.
void checkRelations(const Option& row, const Arguments& arguments) {
    if (!arguments.has(row.name)) {
        if (row.isRequired)
            throw UsageError(titleOf(row) + " is required: " + std::string(row.help) + ".");
        return;
    }
    for (const auto part : std::views::split(row.excludes, ' '))
        if (const std::string_view other(part.begin(), part.end()); arguments.has(other))
            throw UsageError(std::string(row.name) + " and " + std::string(other) +
                             " exclude each other.");
    if (!row.needs.empty() && !arguments.has(row.needs))
        throw UsageError(std::string(row.name) + " requires " + std::string(row.needs) + ".");
}

void checkOperands(std::string_view form, std::span<const std::string> operands) {
    const bool isOptional = form.empty() || form.starts_with('['), isList = form.ends_with("...");
    if (!isOptional && operands.empty())
        throw UsageError(std::string(form) + " is required.");
    const std::size_t most = form.empty() ? 0 : 1;
    if (!isList && operands.size() > most)
        throw UsageError(quoted(operands[most]) + " is unexpected: " +
                         (form.empty() ? "there are no operands." : "one operand is allowed."));
}

} // namespace

bool isOptionLike(std::string_view word) {
    return word.size() > 1 && word.front() == '-';
}

const Option* optionOf(const CommandForm& form, std::string_view word) {
    const std::string name(word.substr(0, word.find('=')));
    const Option* row = rowNamed(form.options, name);
    if (!row && form.allowsOneDash)
        row = rowNamed(form.options, name.starts_with("--") ? name.substr(1) : "-" + name);
    if (row)
        return row;
    const auto joined = std::ranges::find_if(form.options, [&](const Option& option) {
        return option.isJoined && word.starts_with(option.name);
    });
    return joined == form.options.end() ? nullptr : &*joined;
}

std::string_view beforeValue(const Option& row, std::string_view word) {
    const bool isJoined = row.isJoined && word.starts_with(row.name);
    const std::size_t at = isJoined ? row.name.size() : std::min(word.find('='), word.size());
    return word.substr(0, at + (at < word.size() && word[at] == '='));
}

Arguments::Arguments(const CommandForm& form, std::span<const char* const> words)
    : options_(form.options) {
    for (std::size_t at = 0; at < words.size();) {
        const std::string_view word = words[at++];
        if (word == "--") {
            operands_.insert(operands_.end(), words.begin() + static_cast<std::ptrdiff_t>(at),
                             words.end());
            break;
        }
        if (!isOptionLike(word)) {
            operands_.emplace_back(word);
            continue;
        }
        const Option& row = rowOf(form, word);
        const std::string_view before = beforeValue(row, word);
        const bool hasValue = before.size() < word.size() || before.ends_with('=');
        if (hasValue && !takesValue(row))
            throw UsageError(std::string(row.name) + " takes no value.");
        std::vector<std::string>& values = values_[row.name];
        if (hasValue)
            values.emplace_back(word.substr(before.size()));
        else if (takesValue(row))
            std::ranges::move(valuesFrom(words, at, row), std::back_inserter(values));
    }
    for (const Option& row : options_)
        for (const std::string& text : values(row.name))
            requireValue(row.name, row.values, text);
    for (const Option& row : options_)
        checkRelations(row, *this);
    checkOperands(form.operands, operands_);
}

const std::string& Arguments::operand() const {
    precondition(operands_.size() == 1, "a command with one operand asks for it", "operands",
                 operands_.size());
    return operands_.front();
}

std::optional<std::string_view> Arguments::value(std::string_view option) const {
    const auto given = values(option);
    return given.empty() ? std::nullopt : std::optional<std::string_view>(given.back());
}

std::span<const std::string> Arguments::values(std::string_view option) const {
    const auto given = values_.find(option);
    return given == values_.end() ? std::span<const std::string>{}
                                  : std::span<const std::string>(given->second);
}

std::string_view Arguments::textOf(std::string_view option) const {
    if (const auto given = value(option))
        return *given;
    const Option* row = rowNamed(options_, option);
    precondition(row && accept(row->values, row->byDefault), "an option's default is a value of it",
                 "option", option);
    return row->byDefault;
}

double Arguments::numberOf(std::string_view option) const {
    const auto number = doubleOf(textOf(option));
    precondition(number.has_value(), "a number is read from an option with numbers", "option",
                 option);
    return *number;
}

std::int64_t Arguments::integerOf(std::string_view option) const {
    const auto number = signedIntegerOf(textOf(option));
    precondition(number.has_value(), "an integer is read from an option with integers", "option",
                 option);
    return *number;
}

std::uint64_t Arguments::unsignedOf(std::string_view option) const {
    const auto number = unsignedNumberOf(textOf(option));
    precondition(number.has_value(), "an unsigned integer is read from an option with such",
                 "option", option);
    return *number;
}

std::vector<std::string_view> Arguments::wordsBeside(std::string_view option) const {
    std::vector<std::string_view> words(operands_.begin(), operands_.end());
    for (const auto& [name, values] : values_)
        if (name != option)
            words.insert(words.end(), values.begin(), values.end());
    return words;
}

void requireValue(std::string_view option, const Values& values, std::string_view text) {
    if (!accept(values, text))
        throw UsageError(std::string(option) + " must be " + described(values) + ", not " +
                         quoted(text) + ".");
}

} // namespace tarnwick
