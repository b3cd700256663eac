#include "TarnwickCore/CommandLine/Completion.h"

#include "TarnwickCore/CommandLine/Arguments.h"
#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <ranges>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::string_view parameterValue = "NAME=VALUE";

// The other words of the line, and the place of the word that is completed.
struct Line {
    std::vector<const Option*> given;
    std::vector<std::pair<const Option*, std::string_view>> values;
    std::vector<std::string_view> operands;
    const Option* awaiting = nullptr; // the word is a value of this option
    bool isAfterDashes = false;       // the word is after "--"
};

class LineReader {
  public:
    explicit LineReader(const CommandForm& form) : form_(form) {}

    void readCompleted(std::string_view word) {
        line.isAfterDashes = isAfterDashes_;
        if (!isValue(word))
            return;
        line.awaiting = open_;
        closeUnlessList();
    }

    void read(std::string_view word) {
        if (isValue(word)) {
            line.values.emplace_back(open_, word);
            closeUnlessList();
            return;
        }
        open_ = nullptr;
        if (!isAfterDashes_ && word == "--")
            isAfterDashes_ = true;
        else if (isAfterDashes_ || !isOptionLike(word))
            line.operands.push_back(word);
        else if (const Option* row = optionOf(form_, word))
            readOption(*row, word);
    }

    Line line;

  private:
    bool isValue(std::string_view word) const {
        return open_ && !(takesList(*open_) && isOptionLike(word));
    }

    void closeUnlessList() {
        if (!takesList(*open_))
            open_ = nullptr;
    }

    void readOption(const Option& row, std::string_view word) {
        line.given.push_back(&row);
        const std::string_view before = beforeValue(row, word);
        if (before.size() < word.size() || before.ends_with('='))
            line.values.emplace_back(&row, word.substr(before.size()));
        else if (takesValue(row))
            open_ = &row;
    }

    const CommandForm& form_;
    const Option* open_ = nullptr; // the next words are values of this option
    bool isAfterDashes_ = false;
};

Line lineOf(const CommandForm& form, std::span<const char* const> words, std::size_t at) {
    LineReader reader(form);
    for (std::size_t i = 0; i < words.size(); ++i)
        i == at ? reader.readCompleted(words[i]) : reader.read(words[i]);
    return std::move(reader.line);
}

bool hasWord(std::string_view list, std::string_view word) {
    return std::ranges::any_of(std::views::split(list, ' '), [&](const auto part) {
        return std::string_view(part.begin(), part.end()) == word;
    });
}

// Whether the row can be on the line too.
bool fits(const Option& row, const Line& line) {
    return std::ranges::none_of(line.given, [&](const Option* given) {
        return (given == &row && !row.isRepeatable) || hasWord(given->excludes, row.name) ||
               hasWord(row.excludes, given->name);
    });
}

bool takesOperand(const CommandForm& form, const Line& line) {
    return !form.operands.empty() && (line.operands.empty() || form.operands.ends_with("..."));
}

// The files that one name of a value or operand, "OUT.png" or "N=FILE", stands for are added.
void addFiles(std::string_view name, std::string_view text, std::optional<CompletedFiles>& files) {
    CompletedFiles found = files.value_or(CompletedFiles{.areFolders = true});
    if (const std::size_t equals = name.find('='); equals != name.npos) {
        const std::size_t typed = text.find('=');
        if (typed == text.npos)
            return;
        found.before = text.substr(0, typed + 1);
        name.remove_prefix(equals + 1);
    }
    const std::size_t dot = name.find('.');
    const std::string_view kind = name.substr(0, dot);
    if (kind != "EPISODE" && kind != "FILE" && kind != "OUT" && kind != "PART" && kind != "FOLDER")
        return;
    found.areFolders = found.areFolders && kind == "FOLDER";
    if (dot != name.npos)
        found.endings.emplace_back(name.substr(dot + 1));
    else if (kind == "EPISODE")
        found.endings.emplace_back("metal");
    else if (kind == "PART")
        found.endings.insert(found.endings.end(), {"mp4", "mov"});
    files = std::move(found);
}

// Of all names in "[EPISODE.metal | FOLDER]...".
std::optional<CompletedFiles> filesOf(std::string_view names, std::string_view text) {
    std::optional<CompletedFiles> files;
    while (!names.empty()) {
        const std::size_t end = std::min(names.find_first_of(" |[]"), names.size());
        std::string_view name = names.substr(0, end);
        if (name.ends_with("..."))
            name.remove_suffix(3);
        addFiles(name, text, files);
        names.remove_prefix(std::min(end + 1, names.size()));
    }
    return files;
}

std::string purposeOf(const ParamDecl& param) {
    return (param.detail.empty() ? "" : param.detail + "; ") + "from " + shortest(param.min) +
           " to " + shortest(param.max) + "; default: " + shortest(param.defaultValue);
}

class Completing {
  public:
    Completing(const CommandForm& form, Line line, const ParamsOf& paramsOf)
        : form_(form), line_(std::move(line)), paramsOf_(paramsOf) {}

    Completion of(std::string_view text) {
        const Option* row = optionOf(form_, text);
        const std::size_t value = row ? beforeValue(*row, text).size() : text.size();
        const bool hasValue = value < text.size() || text.substr(0, value).ends_with('=');
        const bool isOption = !line_.isAfterDashes && text.starts_with('-');
        if (line_.awaiting)
            addValues(*line_.awaiting, "", text);
        else if (isOption && row && hasValue)
            addValuesOfWord(*row, text, value);
        else if (isOption)
            addOptions(text);
        else if (takesOperand(form_, line_))
            made_.files = filesOf(form_.operands, text);
        else if (!line_.isAfterDashes)
            addOptions(text);
        return std::move(made_);
    }

  private:
    void add(std::string_view before, std::string_view begin, const std::string& word,
             std::string purpose = {}) {
        if (word.starts_with(begin))
            made_.words.push_back({std::string(before) + word, std::move(purpose)});
    }

    void addOptions(std::string_view text) {
        for (const Option& row : form_.options)
            if (fits(row, line_))
                add("", text, std::string(row.name), std::string(row.help));
        if (!optionOf(form_, "--help"))
            add("", text, "--help", "print the help of the command");
    }

    // Of "--name=value" and "-nvalue".
    void addValuesOfWord(const Option& row, std::string_view text, std::size_t at) {
        if (takesValue(row))
            addValues(row, text.substr(0, at), text.substr(at));
    }

    void addValues(const Option& row, std::string_view before, std::string_view text) {
        if (isParameter(row))
            addParameters(before, text);
        else if (const auto* one = std::get_if<OneOf>(&row.values))
            for (const std::string_view choice : one->choices())
                add(before, text, std::string(choice));
        else if ((made_.files = filesOf(row.value, text)))
            made_.files->before.insert(0, before);
        else if (!std::holds_alternative<AnyText>(row.values) && accept(row.values, row.byDefault))
            add(before, text, std::string(row.byDefault), "the default");
    }

    void addParameters(std::string_view before, std::string_view text) {
        if (line_.operands.empty())
            return;
        const auto params = paramsOf_(std::string(line_.operands.front()));
        const std::size_t equals = text.find('=');
        for (const ParamDecl& param : params)
            if (equals == text.npos) {
                if (!isSet(param.name))
                    add(before, text, param.name + "=", purposeOf(param));
            } else if (text.substr(0, equals) == param.name) {
                addNumbers(before, text, param);
            }
    }

    void addNumbers(std::string_view before, std::string_view text, const ParamDecl& param) {
        add(before, text, param.name + "=" + shortest(param.defaultValue), "the default");
        add(before, text, param.name + "=" + shortest(param.min), "the minimum");
        add(before, text, param.name + "=" + shortest(param.max), "the maximum");
    }

    bool isParameter(const Option& row) const {
        return row.value == parameterValue && form_.operands.starts_with("EPISODE");
    }

    bool isSet(const std::string& param) const {
        return std::ranges::any_of(line_.values, [&](const auto& value) {
            return isParameter(*value.first) && value.second.starts_with(param + "=");
        });
    }

    const CommandForm& form_;
    const Line line_;
    const ParamsOf& paramsOf_;
    Completion made_;
};

} // namespace

Completion completionOf(const CommandForm& form, std::span<const char* const> words, std::size_t at,
                        const ParamsOf& paramsOf) {
    return Completing(form, lineOf(form, words, at), paramsOf).of(words[at]);
}

} // namespace tarnwick
