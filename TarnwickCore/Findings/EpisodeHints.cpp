#include "TarnwickCore/Findings/EpisodeHints.h"

#include "TarnwickCore/Findings/CodeText.h"
#include "TarnwickCore/Findings/DeclarationCheck.h"
#include "TarnwickCore/Findings/Hints.h"
#include "TarnwickCore/Findings/Words.h"
#include "TarnwickCore/Text/Blanks.h"
#include "TarnwickCore/Text/Lines.h"

#include <algorithm>
#include <array>

namespace tarnwick {
namespace {

struct Argument {
    std::string_view name, declaration, kinds; // of episode
};

// The arguments that the host passes to shade.
constexpr std::array<Argument, 5> arguments{{
    {"u", "constant Uniforms& u", "every episode"},
    {"p", "constant Params& p", "every episode"},
    {"uv", "float2 uv", "every episode without a grid"},
    {"in", "Inputs in", "a fragment episode that asks for it"},
    {"trails", "Trails trails", "a particle episode"},
}};

std::string forArgument(const Argument& argument) {
    return std::string(argument.name) + " is shade's argument " +
           std::string(argument.declaration) + " in " + std::string(argument.kinds) +
           "; other functions that use it take it too";
}

} // namespace

EpisodeHints::EpisodeHints(const Episode& episode)
    : episode_(episode), code_(codeText(episode.text)), lines_(compilerLines(episode.text)),
      codeLines_(compilerLines(code_)) {}

bool EpisodeHints::declares(std::string_view name) const {
    return std::ranges::find(episode_.params(), name, &ParamDecl::name) != episode_.params().end();
}

bool EpisodeHints::declaresIn(std::int64_t number, std::string_view name) const {
    if (number < 1 || number > static_cast<std::int64_t>(codeLines_.size()) || name.empty())
        return false;
    const std::string_view line = codeLines_[static_cast<std::size_t>(number) - 1];
    const std::size_t at = findWord(line, name);
    if (at == std::string_view::npos)
        return false;
    const std::size_t end = line.find_last_not_of(blanks, at == 0 ? 0 : at - 1) + 1;
    const std::string_view type = wordBefore(line, std::min(end, at));
    return end < at && !type.empty() && type != "return";
}

std::string EpisodeHints::forMissingParameter(std::string_view name) const {
    for (const Diagnostic& warning : declarationWarnings(episode_.text)) {
        const std::string_view line = lines_[static_cast<std::size_t>(warning.line) - 1];
        if (findWord(line, name) != std::string_view::npos)
            return "line " + std::to_string(warning.line) + ": " + warning.message;
    }
    const std::string declaration = "// @param " + std::string(name) + " 0.5 0 1";
    if (episode_.params().empty())
        return "a line such as " + declaration + " declares it";
    std::string names;
    for (const ParamDecl& param : episode_.params())
        names += (names.empty() ? "" : ", ") + param.name;
    return "the parameters are " + names + "; a line such as " + declaration + " declares another";
}

// A hint for a function that is defined below the line that calls it.
std::string EpisodeHints::forLaterDefinition(std::string_view name, std::int64_t line) const {
    for (auto at = static_cast<std::size_t>(std::max<std::int64_t>(line, 0));
         at < codeLines_.size(); ++at) {
        const std::string_view text = codeLines_[at];
        const std::size_t found = findWord(text, name);
        // A definition begins a line, with its type.
        if (found == std::string_view::npos || found == 0 || !isWordCharacter(text[0]) ||
            !text.substr(found + name.size()).starts_with('(') ||
            text.substr(0, found).find_first_of("=(;{") != std::string_view::npos)
            continue;
        return std::string(name) + " is defined in line " + std::to_string(at + 1) +
               ", below its use: move it up";
    }
    return {};
}

std::string EpisodeHints::forUnknownName(const Diagnostic& message, std::string_view name) const {
    if (message.message.ends_with("in 'Params'"))
        return forMissingParameter(name);
    if (std::string later = forLaterDefinition(name, message.line); !later.empty())
        return later;
    if (message.message.starts_with("use of undeclared identifier")) {
        if (declares(name))
            return std::string(name) + " is a parameter: p." + std::string(name);
        const auto argument = std::ranges::find(arguments, name, &Argument::name);
        if (argument != arguments.end())
            return forArgument(*argument);
    }
    const std::string_view line = lines_[static_cast<std::size_t>(message.line) - 1];
    const std::string hint = hintOf(message, line);
    if (hint.empty() && message.message.ends_with("in 'Uniforms'"))
        return "u has resolution, time, timeDelta, mouse and frame";
    return hint;
}

std::string EpisodeHints::hintFor(const Diagnostic& message) const {
    // For a program without shade, the entry point of another system is the useful hint.
    if (message.line == 0 && message.message.starts_with("'shade' is not defined"))
        for (const std::string_view name : {"mainImage", "main"})
            if (findWord(code_, name) != std::string_view::npos)
                return hintForName(name);
    if (message.line < 1 || message.line > static_cast<std::int64_t>(lines_.size()))
        return {};
    if (const std::string_view name = unknownName(message.message); !name.empty())
        return forUnknownName(message, name);
    return hintOf(message, lines_[static_cast<std::size_t>(message.line) - 1]);
}

} // namespace tarnwick
