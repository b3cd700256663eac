#include "programs/Episode/WalkthroughText.h"

#include "TarnwickCore/Text/TerminalText.h"
#include "programs/Terminal/ColouredSource.h"
#include "programs/Terminal/JSONText.h"

#include <nlohmann/json.hpp>

#include <array>

namespace tarnwick {
namespace {

using nlohmann::ordered_json;
using Kind = WalkthroughLine::Kind;

// Indexed by the kinds.
constexpr std::array<std::string_view, 4> kindNames{"added", "context", "gap", "blank"};

// A line of the source, safe for a terminal. A tab is four blanks.
std::string codeText(std::string line) {
    for (std::size_t at = 0; (at = line.find('\t', at)) != std::string::npos;)
        line.replace(at, 1, 4, ' ');
    return terminalText(line);
}

std::string lineText(const WalkthroughLine& line, Colours colours) {
    if (line.kind == Kind::blank)
        return "\n";
    if (line.kind != Kind::added)
        return styled("    " + codeText(line.text), "2", colours) + "\n";
    const bool isPlain = colours == Colours::none;
    return "  " + styled("+", "1;32", colours) + " " +
           (isPlain ? codeText(line.text) : coloured(line.text)) + "\n";
}

std::string stageText(const WalkthroughStage& stage, std::size_t count, Colours colours) {
    const std::string number = std::to_string(stage.number) + "/" + std::to_string(count);
    std::string text = styled(number + "  " + terminalText(stage.title), "1", colours) + "\n";
    if (!stage.summary.empty())
        text += terminalText(stage.summary) + "\n";
    for (std::size_t page = 0; page < stage.pages.size(); ++page) {
        text +=
            "\n" +
            styled("page " + std::to_string(page + 1) + "/" + std::to_string(stage.pages.size()),
                   "2", colours) +
            "\n";
        for (const WalkthroughLine& line : stage.pages[page].lines)
            text += lineText(line, colours);
        if (!stage.pages[page].caption.empty())
            text += terminalText(stage.pages[page].caption) + "\n";
    }
    return text;
}

ordered_json pageDocument(const WalkthroughPage& page) {
    ordered_json lines = ordered_json::array();
    for (const auto& [text, kind] : page.lines)
        lines.push_back({{"kind", kindNames[static_cast<std::size_t>(kind)]}, {"text", text}});
    return {{"caption", page.caption}, {"lines", lines}};
}

} // namespace

std::string walkthroughText(std::span<const WalkthroughStage> stages, Colours colours) {
    std::string text;
    for (const WalkthroughStage& stage : stages)
        text += (text.empty() ? "" : "\n") + stageText(stage, stages.size(), colours);
    return text;
}

std::string walkthroughJSON(std::span<const WalkthroughStage> stages,
                            std::span<const Episode> episodes, std::int64_t capacity) {
    ordered_json list = ordered_json::array();
    for (std::size_t index = 0; index < stages.size(); ++index) {
        ordered_json pages = ordered_json::array();
        for (const WalkthroughPage& page : stages[index].pages)
            pages.push_back(pageDocument(page));
        list.push_back({{"number", stages[index].number},
                        {"source", episodes[index].path},
                        {"title", stages[index].title},
                        {"summary", stages[index].summary},
                        {"pages", std::move(pages)}});
    }
    const ordered_json document{{"capacity", capacity}, {"stages", std::move(list)}};
    return jsonText(document) + "\n";
}

} // namespace tarnwick
