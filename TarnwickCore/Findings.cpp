#include "TarnwickCore/Findings.h"

#include "TarnwickCore/Findings/Brackets.h"
#include "TarnwickCore/Findings/DeclarationCheck.h"
#include "TarnwickCore/Findings/EpisodeFunctions.h"
#include "TarnwickCore/Findings/EpisodeHints.h"
#include "TarnwickCore/Findings/Hints.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <set>
#include <utility>

namespace tarnwick {
namespace {

bool isError(const Diagnostic& diagnostic) {
    return diagnostic.severity == Severity::error;
}

// Whether the error may be the consequence of an unpaired bracket. The compiler reports such errors
// far after the bracket, often only in generated code.
bool isLate(const Diagnostic& diagnostic) {
    constexpr std::array<std::string_view, 6> messages{"extraneous closing brace",
                                                       "function definition is not allowed here",
                                                       "unterminated ",
                                                       "expected '}'",
                                                       "unexpected type name",
                                                       "expected ';' after top level declarator"};
    return isError(diagnostic) &&
           (diagnostic.line == 0 || std::ranges::any_of(messages, [&](std::string_view message) {
                return diagnostic.message.starts_with(message);
            }));
}

bool isBefore(const Diagnostic& one, const Diagnostic& other) {
    return std::pair(one.line, one.column) < std::pair(other.line, other.column);
}

// `diagnostics` before `cause`, then `cause` in place of its consequences.
std::vector<Diagnostic> replaced(std::span<const Diagnostic> diagnostics, const Diagnostic& cause) {
    std::vector<Diagnostic> kept;
    bool isKept = true; // whether the notes that follow are kept
    for (const Diagnostic& diagnostic : diagnostics) {
        if (diagnostic.severity != Severity::note)
            isKept = diagnostic.line > 0 && isBefore(diagnostic, cause);
        if (isKept)
            kept.push_back(diagnostic);
    }
    kept.push_back(cause);
    return kept;
}

// An unmatched closing brace may be the end of a function whose opening brace is missing. The
// compiler reads such a function as a declaration.
Diagnostic sourceOf(const Diagnostic& unpaired, std::span<const Diagnostic> diagnostics) {
    for (const Diagnostic& diagnostic : diagnostics) {
        const bool isFunction =
            diagnostic.message.starts_with("expected ';' after top level declarator") ||
            diagnostic.message.starts_with("expected function body");
        if (unpaired.message.starts_with("'}'") && isFunction && diagnostic.line > 0 &&
            isBefore(diagnostic, unpaired)) {
            Diagnostic missing = diagnostic;
            missing.message = "'{' is missing: the function's body begins here";
            return missing;
        }
    }
    return unpaired;
}

// Replaces the errors that an unclosed bracket or declaration causes in later code.
std::vector<Diagnostic> withoutRunningOn(std::string_view source,
                                         std::span<const Diagnostic> diagnostics) {
    if (std::ranges::any_of(diagnostics, isLate)) {
        auto cause = unpairedBracket(source);
        auto isOwn = [](const Diagnostic& one) { return isError(one) && one.line > 0; };
        auto isAwaited = [](const Diagnostic& one) {
            return isError(one) && one.line == 0 && one.message.starts_with("expected ");
        };
        if (!cause && std::ranges::none_of(diagnostics, isOwn) &&
            std::ranges::any_of(diagnostics, isAwaited))
            cause = unfinishedEnd(source);
        if (cause)
            return replaced(diagnostics, sourceOf(*cause, diagnostics));
    }
    return {diagnostics.begin(), diagnostics.end()};
}

// A parameter name that breaks the generated record is reported at the author's own line.
void nameBrokenParameters(std::string_view source, std::vector<Finding>& findings) {
    auto isGenerated = [](const Finding& finding) { return finding.diagnostic.line == 0; };
    if (std::ranges::none_of(findings, isGenerated))
        return;
    std::vector<Finding> broken;
    for (const Diagnostic& diagnostic : declarationWarnings(source))
        if (isError(diagnostic))
            broken.push_back({diagnostic, ""});
    if (broken.empty())
        return;
    std::erase_if(findings, isGenerated);
    findings.insert(findings.begin(), broken.begin(), broken.end());
}

void addHints(const EpisodeHints& hints, std::vector<Finding>& findings) {
    for (Finding& finding : findings)
        if (finding.hint.empty() && finding.diagnostic.severity != Severity::note)
            finding.hint = hints.hintFor(finding.diagnostic);
}

// Whether `diagnostic` is about the rest of a line whose declaration the compiler could not read.
bool isStumble(const Diagnostic& cause, const Diagnostic& diagnostic) {
    constexpr std::array<std::string_view, 3> stumbles{"expected ", "cannot combine with previous",
                                                       "declaration does not declare anything"};
    if (diagnostic.line != cause.line)
        return false;
    // For an unknown name in the place of a value, only this message shows that the name is a type.
    if (cause.message.starts_with("use of undeclared identifier"))
        return diagnostic.message.starts_with("expected ';' after expression");
    return std::ranges::any_of(stumbles, [&](std::string_view stumble) {
        return diagnostic.message.starts_with(stumble);
    });
}

// Whether `diagnostic` follows from `cause`: it is about the rest of the line, or about the name
// that the line would have declared.
bool followsFrom(const Diagnostic& cause, const Diagnostic& diagnostic, const EpisodeHints& hints) {
    const bool isUnread = !unknownName(cause.message).empty() ||
                          cause.message.starts_with("expected ';' after expression");
    if (cause.line == 0 || !isUnread)
        return false;
    return isStumble(cause, diagnostic) ||
           (diagnostic.message.starts_with("use of undeclared identifier") &&
            hints.declaresIn(cause.line, unknownName(diagnostic.message)));
}

// Removes diagnostics that follow from an error with a hint.
std::vector<Finding> withoutConsequences(const EpisodeHints& hints, std::vector<Finding> findings) {
    std::vector<Finding> kept;
    std::vector<Diagnostic> causes;
    bool isKept = true; // whether the notes that follow are kept
    for (Finding& finding : findings) {
        const Diagnostic& diagnostic = finding.diagnostic;
        if (diagnostic.severity != Severity::note)
            isKept = std::ranges::none_of(causes, [&](const Diagnostic& cause) {
                return followsFrom(cause, diagnostic, hints);
            });
        if (!isKept)
            continue;
        if (!finding.hint.empty())
            causes.push_back(diagnostic);
        kept.push_back(std::move(finding));
    }
    return kept;
}

void keepFirstOfHints(std::vector<Finding>& findings) {
    std::set<std::string> said;
    for (Finding& finding : findings)
        if (!finding.hint.empty() && !said.insert(finding.hint).second)
            finding.hint.clear();
}

} // namespace

std::vector<Finding> findingsOf(const Episode& episode, std::span<const Diagnostic> diagnostics) {
    const std::string_view source = episode.text;
    const EpisodeHints hints(episode);
    std::vector<Finding> findings =
        aboutEpisodeFunctions(source, episode.shader, withoutRunningOn(source, diagnostics));
    nameBrokenParameters(source, findings);
    addHints(hints, findings);
    findings = withoutConsequences(hints, std::move(findings));
    keepFirstOfHints(findings);
    return findings;
}

std::vector<Finding> withDeclarationWarnings(const Episode& episode,
                                             std::vector<Finding> findings) {
    for (const Diagnostic& diagnostic : declarationWarnings(episode.text))
        if (!isError(diagnostic))
            findings.push_back({diagnostic, ""});
    return findings;
}

std::vector<Finding> errorsAmong(std::span<const Finding> findings) {
    std::vector<Finding> errors;
    std::ranges::copy_if(findings, std::back_inserter(errors),
                         [](const Finding& finding) { return isError(finding.diagnostic); });
    return errors;
}

std::string inOneLine(const Finding& finding, std::string_view place) {
    const auto& [diagnostic, hint] = finding;
    return (diagnostic.line > 0 ? std::string(place) + ": " : "") + diagnostic.message +
           (hint.empty() ? "" : " (" + hint + ")");
}

std::string firstError(std::span<const Finding> findings) {
    const std::vector<Finding> errors = errorsAmong(findings);
    return errors.empty() ? ""
                          : inOneLine(errors.front(),
                                      "line " + std::to_string(errors.front().diagnostic.line));
}

std::string firstErrorLine(std::string_view compilerText) {
    const std::size_t error = compilerText.find("error: ");
    const std::size_t from =
        error == compilerText.npos ? 0 : compilerText.rfind('\n', error) + 1; // npos + 1 is 0
    return std::string(compilerText.substr(from, compilerText.find('\n', from) - from));
}

} // namespace tarnwick
