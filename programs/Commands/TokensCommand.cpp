// tarnwick tokens: an episode's source in colours, or its tokens.
#include "TarnwickCore/Editor/MSLSyntax.h"
#include "programs/CommandLine/SourceFile.h"
#include "programs/Commands/Command.h"
#include "programs/Terminal/ColouredSource.h"
#include "programs/Terminal/Colours.h"

#include <array>
#include <unistd.h>

namespace tarnwick {
namespace {

// One token a line.
std::string tokensJSON(std::string_view source) {
    std::string text;
    for (const auto& [kind, range] : MSLSyntax::tokens(source)) {
        text += text.empty() ? "[\n" : ",\n";
        text += "  {\"kind\": \"" + std::string(rawValue(kind)) + "\", \"location\": ";
        text += std::to_string(range.location) + ", \"length\": " + std::to_string(range.length);
        text += "}";
    }
    return text.empty() ? "[]\n" : text + "\n]\n";
}

Status tokens(const Arguments& arguments) {
    const std::string source = sourceText(arguments.operand());
    if (arguments.has("--json"))
        print(tokensJSON(source));
    else if (coloursOf(STDOUT_FILENO) == Colours::ofTerminal)
        print(coloured(source));
    else
        printForeign(source);
    return Status::done;
}

constexpr std::array<Option, 1> tokensOptions{{
    {.name = "--json", .help = "print the tokens as JSON, in UTF-16 code units"},
}};

} // namespace

const Command tokensCommand{.name = "tokens",
                            .operands = "EPISODE",
                            .summary =
                                "Prints the episode's source, with its colours on a terminal.",
                            .options = tokensOptions,
                            .run = tokens};

} // namespace tarnwick
