// docs/glsl.md has the table of hints that the compiler's findings have.
#include "TarnwickCore/Findings/Hints.h"
#include "tests/handbook/WrittenPart.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <utility>
#include <vector>

namespace tarnwick {
namespace {

// In backticks; no row has a backtick.
std::string code(std::string_view text) {
    return "`" + std::string(text) + "`";
}

// A sentence of the table begins in lower case, after "hint:".
std::string cellOf(const Hint& hint) {
    return hint.isSentence ? std::string(hint.instead) : code(hint.instead);
}

// Names of a topic with the same hint share a row.
std::string tableOf(const HintTopic& topic) {
    std::vector<std::pair<std::string, std::string>> rows; // hint, names
    for (const Hint& hint : topic.hints) {
        const std::string cell = cellOf(hint);
        const auto row = std::ranges::find(rows, cell, &std::pair<std::string, std::string>::first);
        if (row == rows.end())
            rows.emplace_back(cell, code(hint.name));
        else
            row->second += ", " + code(hint.name);
    }
    std::string table = "| instead of | write |\n|---|---|\n";
    for (const auto& [cell, names] : rows)
        table += "| " + names + " | " + cell + " |\n";
    return table;
}

TEST(GLSLPage, hasEveryHint) {
    std::string wanted;
    for (const HintTopic& topic : hintTopics())
        wanted += "### " + std::string(topic.title) + "\n\n" + tableOf(topic) + "\n";
    expectWrittenPart("glsl.md", wanted);
}

} // namespace
} // namespace tarnwick
