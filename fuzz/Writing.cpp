// The editor's reading of unfinished text: names, completion, help for calls, differences,
// findings.
#include "TarnwickCore/Diagnostics.h"
#include "TarnwickCore/Findings.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "player/Writing/CallHelp.h"
#include "player/Writing/Completion.h"
#include "player/Writing/DeclarationReader.h"
#include "player/Writing/SourceNames.h"
#include "player/Writing/TextDiff.h"

#include <algorithm>

using namespace tarnwick;
using namespace tarnwick::fuzz;
using namespace tarnwick::player;

namespace {

void checkNames(const std::string& text) {
    SourceNames names;
    DeclarationReader::read(text, names);
    for (const SourceVariable& one : names.variables)
        law(one.from <= one.to && one.to <= text.size(), "a name is visible within the text");
    for (std::size_t at = 0; at < names.tokens.size(); ++at) {
        law(names.tokens[at].end() <= text.size(), "a token is within the text");
        const std::size_t pair = names.pairs[at];
        law(pair >= names.tokens.size() || names.pairs[pair] == at, "brackets are pairs");
    }
}

void complete(const std::string& text, std::size_t at) {
    for (const CompletionCause cause : {CompletionCause::typing, CompletionCause::request}) {
        const Completions completions = completionsAt(text, at, cause);
        law(completions.from <= at, "a completed word begins before the cursor");
        for (const Completion& one : completions.list)
            law(!one.name.empty(), "a completion has a name");
    }
    for (const auto& help : {callAround(text, at), functionAt(text, at)})
        if (help) {
            law(!help->signatures.empty() && help->at <= text.size(), "help has a signature");
            for (const std::string& signature : help->signatures) {
                const auto [begin, end] = argumentRange(signature, help->argument.value_or(0));
                law(begin <= end && end <= signature.size(), "an argument is in its signature");
            }
        }
}

// The lines of one text are the same and the removed ones, those of the other the same and the
// added ones.
void compare(const std::string& before, const std::string& after) {
    std::size_t removed = 0, added = 0;
    for (const DiffLine& line : textDiff(before, after)) {
        if (line.kind != DiffLine::Kind::added)
            law(line.before == ++removed, "all lines of the first text are in order");
        if (line.kind != DiffLine::Kind::removed)
            law(line.after == ++added, "all lines of the second text are in order");
    }
}

void find(const std::string& text, std::string_view messages) {
    const Episode episode = Episode::of(text);
    const auto findings = findingsOf(episode, DiagnosticParser::parse(messages));
    law(errorsAmong(findings).size() <= findings.size(), "errors are findings");
    law(firstError(findings).find('\n') == std::string::npos, "the first error is one line");
    withDeclarationWarnings(episode, findings);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    Choices input(bytes, size);
    const std::size_t high = input.byte();
    const std::size_t place = high << 8 | input.byte();
    const std::string other = input.text();
    const std::string text = input.rest();
    checkNames(text);
    complete(text, std::min(place, text.size()));
    compare(other, text);
    compare(text, text);
    find(text, other);
    return 0;
}
