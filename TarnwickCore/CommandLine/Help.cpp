#include "TarnwickCore/CommandLine/Help.h"

#include <algorithm>
#include <ranges>

namespace tarnwick {
namespace {

constexpr std::size_t width = 100; // characters of a line

std::string titleOf(const Option& option) {
    return "  " + std::string(option.name) + (takesValue(option) ? " " : "") +
           std::string(option.value);
}

} // namespace

std::string optionDetails(const Option& option) {
    std::string text(option.help);
    const auto add = [&](std::string_view before, std::string_view detail) {
        if (!detail.empty())
            text.append("; ").append(before).append(detail);
    };
    add("", range(option.values));
    add("", option.isRepeatable ? "repeatable" : "");
    add("requires ", option.needs);
    std::string excluded(option.excludes);
    for (std::size_t at = 0; (at = excluded.find(' ', at)) != excluded.npos; at += 2)
        excluded.replace(at, 1, ", ");
    add("not with ", excluded);
    add("", option.isRequired ? "required" : "");
    add("default: ", option.byDefault);
    return text;
}

std::string wrapped(std::string_view text, std::size_t indent) {
    std::string lines;
    std::size_t length = indent; // of the last line
    for (const auto part : std::views::split(text, ' ')) {
        const std::string_view word(part.begin(), part.end());
        if (length > indent && length + 1 + word.size() > width) {
            lines += "\n" + std::string(indent, ' ');
            length = indent;
        } else if (!lines.empty()) {
            lines += ' ';
            ++length;
        }
        lines += word;
        length += word.size();
    }
    return lines;
}

std::string helpText(std::string_view name, const CommandForm& form, std::string_view summary) {
    std::string text = "usage: " + std::string(name);
    text.append(form.options.empty() ? "" : " [OPTION]...");
    text.append(form.operands.empty() ? "" : " ").append(form.operands);
    text += "\n\n" + wrapped(summary, 0) + "\n" + (form.options.empty() ? "" : "\n");
    std::size_t column = 0;
    for (const Option& option : form.options)
        column = std::max(column, titleOf(option).size() + 2);
    for (const Option& option : form.options) {
        std::string title = titleOf(option);
        title.resize(column, ' ');
        text += title + wrapped(optionDetails(option), column) + "\n";
    }
    return text;
}

} // namespace tarnwick
