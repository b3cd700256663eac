#include "programs/CommandLine/Arguments.h"

#include "programs/CommandLine/CommandError.h"

#include <algorithm>

namespace tarnwick {

namespace {

bool isOption(std::string_view word) {
    return word.size() >= 2 && word.front() == '-';
}

// The option that `word` names, up to `equals`.
const Option& optionNamed(std::span<const Option> options, std::string_view word,
                          std::size_t equals) {
    for (const Option& option : options) {
        if (option.name != word.substr(0, equals))
            continue;
        if (option.value.empty() && equals != std::string_view::npos)
            misuse(std::string(option.name) + " takes no value.");
        return option;
    }
    misuse(quoted(word) + " is not an option here; write -- before words that begin with a dash.");
}

} // namespace

Arguments::Arguments(std::span<const Option> options, std::span<const char* const> words) {
    for (auto next = words.begin(); next != words.end();) {
        const std::string_view word = *next++;
        if (word == "--") {
            operands_.insert(operands_.end(), next, words.end());
            return;
        }
        if (!isOption(word)) {
            operands_.push_back(word);
            continue;
        }
        const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string_view::npos;
        const Option& option = optionNamed(options, word, equals);
        auto& values = values_[option.name];
        if (equals != std::string_view::npos || option.value.empty()) {
            values.push_back(option.value.empty() ? "" : word.substr(equals + 1));
            continue;
        }
        const bool takesMany = option.value.ends_with("...");
        const auto end = takesMany             ? std::find_if(next, words.end(), isOption)
                         : next == words.end() ? next
                                               : next + 1;
        if (next == end)
            misuse(std::string(option.name) + " wants " + std::string(option.value) + " after it.");
        values.insert(values.end(), next, end);
        next = end;
    }
}

std::string_view Arguments::operand(std::string_view what) const {
    if (operands_.size() == 1)
        return operands_.front();
    if (operands_.empty())
        misuse("The " + std::string(what) + " is missing.");
    misuse("One " + std::string(what) + " is wanted, and " + quoted(operands_[1]) + " follows it.");
}

std::optional<std::string_view> Arguments::value(std::string_view option) const {
    const auto given = values(option);
    return given.empty() ? std::nullopt : std::optional(given.back());
}

std::span<const std::string_view> Arguments::values(std::string_view option) const {
    const auto given = values_.find(option);
    return given == values_.end() ? std::span<const std::string_view>{}
                                  : std::span<const std::string_view>(given->second);
}

std::vector<std::string_view> Arguments::wordsBeside(std::string_view option) const {
    std::vector<std::string_view> words = operands_;
    for (const auto& [name, values] : values_)
        if (name != option)
            words.insert(words.end(), values.begin(), values.end());
    return words;
}

} // namespace tarnwick
