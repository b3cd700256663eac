#include "programs/Arguments.h"

#include "programs/CommandError.h"

#include <algorithm>

namespace tarnwick {

Arguments::Arguments(std::span<const Option> options, std::span<const char* const> words) {
    for (std::size_t index = 0; index < words.size(); ++index) {
        const std::string_view word = words[index];
        if (word == "--") {
            operands_.insert(operands_.end(),
                             words.begin() + static_cast<std::ptrdiff_t>(index) + 1, words.end());
            return;
        }
        if (word.size() < 2 || word.front() != '-') {
            operands_.push_back(word);
            continue;
        }
        const std::size_t equals = word.starts_with("--") ? word.find('=') : std::string_view::npos;
        const auto option = std::find_if(options.begin(), options.end(), [&](const Option& known) {
            return known.name == word.substr(0, equals);
        });
        if (option == options.end())
            misuse(quoted(word) + " is not an option here.");
        if (option->value.empty() && equals != std::string_view::npos)
            misuse(std::string(option->name) + " takes no value.");
        std::string_view value;
        if (equals != std::string_view::npos)
            value = word.substr(equals + 1);
        else if (!option->value.empty() && index + 1 == words.size())
            misuse(std::string(option->name) + " wants " + std::string(option->value) +
                   " after it.");
        else if (!option->value.empty())
            value = words[++index];
        values_[option->name].push_back(value);
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

} // namespace tarnwick
