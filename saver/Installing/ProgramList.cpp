// A setting is a line "name: value". A backslash at the end of a line continues it; in the value of
// "programs", the two characters \n end a command.
#include "saver/Installing/ProgramList.h"

#include "TarnwickCore/Text/Numbers.h"

#include <algorithm>
#include <cstddef>
#include <optional>
#include <vector>

namespace tarnwick {
namespace {

constexpr std::string_view blanks = " \t\r";
constexpr std::string_view commandEnd = "\\n";

// Bytes of the settings.
struct Range {
    std::size_t begin = 0, end = 0;
};

// One command with all bytes up to the next one.
struct Entry {
    Range range;
    std::string text;     // without blanks around it and without continuations
    bool isEnded = false; // by the two characters
};

std::string_view trimmed(std::string_view text) {
    const std::size_t begin = text.find_first_not_of(blanks);
    if (begin == std::string_view::npos)
        return {};
    return text.substr(begin, text.find_last_not_of(blanks) - begin + 1);
}

bool isContinued(std::string_view line) {
    return line.ends_with('\\');
}

// The end of the line that begins at `begin`, without its line break.
std::size_t lineEnd(std::string_view text, std::size_t begin) {
    return std::min(text.find('\n', begin), text.size());
}

// The value of a setting, over all continued lines, without the last line break; the last value if
// there are several.
std::optional<Range> valueOf(std::string_view settings, std::string_view name) {
    std::optional<Range> found;
    for (std::size_t at = 0; at < settings.size();) {
        const std::size_t begin = at;
        std::size_t end = lineEnd(settings, at);
        const std::string_view first = settings.substr(begin, end - begin);
        const bool isComment = trimmed(first).starts_with('#') || trimmed(first).starts_with('!');
        while (!isComment && end < settings.size() &&
               isContinued(settings.substr(begin, end - begin)))
            end = lineEnd(settings, end + 1);
        const std::size_t colon = first.find(':');
        if (!isComment && colon != std::string_view::npos &&
            trimmed(first.substr(0, colon)) == name)
            found = Range{begin + colon + 1, end};
        at = end + 1;
    }
    return found;
}

// Past blanks, and past one continuation.
std::size_t pastContinuation(std::string_view text, std::size_t at, std::size_t end) {
    const std::size_t next = std::min(text.find_first_not_of(blanks, at), end);
    return text.substr(next, 2) == "\\\n" && next + 2 <= end ? next + 2 : at;
}

std::vector<Entry> entriesOf(std::string_view settings, const Range& value) {
    std::vector<Entry> entries;
    Entry entry{.range = {pastContinuation(settings, value.begin, value.end), 0}, .text = {}};
    auto finish = [&](std::size_t end, bool isEnded) {
        entry.range.end = end;
        entry.isEnded = isEnded;
        entry.text = trimmed(entry.text);
        if (isEnded || !entry.text.empty())
            entries.push_back(entry);
        entry = {.range = {end, 0}, .text = {}};
    };
    for (std::size_t at = entry.range.begin; at < value.end;) {
        const std::string_view two = settings.substr(at, std::min<std::size_t>(2, value.end - at));
        if (two == commandEnd) {
            at = pastContinuation(settings, at + 2, value.end);
            finish(at, true);
        } else if (two == "\\\n") {
            at += 2;
        } else {
            entry.text += settings[at++];
        }
    }
    finish(value.end, false);
    return entries;
}

// The command without the mark of disabled ones, a visual and a name.
std::string_view commandOf(std::string_view entry) {
    if (entry.starts_with('-'))
        entry = trimmed(entry.substr(1));
    const std::size_t colon = entry.find(':');
    if (colon != std::string_view::npos && entry.find_first_of(" \t\"/'") > colon)
        entry = trimmed(entry.substr(colon + 1));
    if (entry.starts_with('"'))
        if (const std::size_t quote = entry.find('"', 1); quote != std::string_view::npos)
            entry = trimmed(entry.substr(quote + 1));
    return entry;
}

// The first word of sh, for the two forms that are written here: plain, or in single quotes.
std::string programOf(std::string_view command) {
    if (!command.starts_with('\''))
        return std::string(command.substr(0, command.find_first_of(" \t")));
    constexpr std::string_view quotedQuote = "'\\''";
    std::string program;
    for (std::size_t at = 1; at < command.size(); ++at) {
        if (command[at] != '\'') {
            program += command[at];
        } else if (command.substr(at).starts_with(quotedQuote)) {
            program += '\'';
            at += quotedQuote.size() - 1;
        } else {
            break;
        }
    }
    return program;
}

bool isOf(const Entry& entry, std::string_view program) {
    return programOf(commandOf(entry.text)) == program;
}

std::string lineOf(const ListedProgram& program) {
    std::string name = program.name;
    std::ranges::replace_if(
        name, [](char c) { return c == '"' || c == '\\' || (c >= 0 && c < 0x20); }, '\'');
    return "  \"" + name + "\"\t" + program.command + "\t\t\\n\\\n";
}

// The number of the selected program after the programs at `removed`, ascending, are gone; -1 is
// none.
std::string selectedAfter(std::int64_t selected, const std::vector<std::int64_t>& removed) {
    if (std::ranges::binary_search(removed, selected))
        return "-1";
    const auto before = std::ranges::lower_bound(removed, selected) - removed.begin();
    return std::to_string(selected - before);
}

void correctSelected(std::string& settings, const std::vector<std::int64_t>& removed) {
    const std::optional<Range> value = valueOf(settings, "selected");
    if (!value)
        return;
    const std::string_view text =
        std::string_view(settings).substr(value->begin, value->end - value->begin);
    const std::string_view number = trimmed(text);
    const auto selected = signedIntegerOf(number);
    if (!selected || *selected < 0)
        return;
    const auto at = value->begin + static_cast<std::size_t>(number.data() - text.data());
    settings.replace(at, number.size(), selectedAfter(*selected, removed));
}

} // namespace

bool listsProgram(std::string_view settings, std::string_view program) {
    const std::optional<Range> value = valueOf(settings, "programs");
    return value && std::ranges::any_of(entriesOf(settings, *value),
                                        [&](const Entry& entry) { return isOf(entry, program); });
}

std::string withProgram(std::string_view settings, const ListedProgram& added) {
    std::string result(settings);
    const std::optional<Range> value = valueOf(settings, "programs");
    if (!value) {
        if (!result.empty() && !result.ends_with('\n'))
            result += '\n';
        if (result.ends_with("\\\n")) // the last line would go on in the new one
            result += '\n';
        return result + "programs:\t\\\n" + lineOf(added) + "\n";
    }
    const std::vector<Entry> entries = entriesOf(settings, *value);
    // A value without a command, or whose last command is not ended, has no continued line after
    // it.
    if (entries.empty() || !entries.back().isEnded ||
        settings[entries.back().range.end - 1] != '\n') {
        const std::string_view end = entries.empty()          ? "\t\\\n"
                                     : entries.back().isEnded ? "\\\n"
                                                              : "\t\\n\\\n";
        std::size_t at = entries.empty() ? value->begin : entries.back().range.end;
        return result.insert(at, std::string(end) + lineOf(added));
    }
    return result.insert(entries.back().range.end, lineOf(added));
}

std::string withoutProgram(std::string_view settings, std::string_view program) {
    std::string result(settings);
    const std::optional<Range> value = valueOf(settings, "programs");
    if (!value)
        return result;
    const std::vector<Entry> entries = entriesOf(settings, *value);
    std::vector<std::int64_t> removed;
    for (std::size_t i = entries.size(); i-- > 0;)
        if (isOf(entries[i], program)) {
            result.erase(entries[i].range.begin, entries[i].range.end - entries[i].range.begin);
            removed.insert(removed.begin(), static_cast<std::int64_t>(i));
        }
    if (!removed.empty())
        correctSelected(result, removed);
    return result;
}

} // namespace tarnwick
