#include "TarnwickCore/Findings/EpisodeFunctions.h"

#include "TarnwickCore/Findings/CodeText.h"
#include "TarnwickCore/Findings/Words.h"
#include "TarnwickCore/Text/Lines.h"

#include <algorithm>
#include <optional>
#include <utility>

namespace tarnwick {
namespace {

struct KindTexts {
    std::string_view title, signatures;
};

KindTexts textsOf(const AssembledShader& shader) {
    if (shader.isMesh())
        return {"a vertex episode defines:\n", ShaderAssembler::meshSignatures};
    if (shader.isParticles())
        return {"a particle episode defines:\n", ShaderAssembler::particleSignatures};
    return {"a fragment episode defines:\n", ShaderAssembler::fragmentSignatures};
}

// One line of the signatures.
struct Signature {
    std::string_view text; // "float4 shade(float2 uv, ...)", "struct Vertex { ... };"
    std::string_view type; // "float4", "struct"
    std::string_view name; // "shade", "Vertex"
};

Signature signatureOf(std::string_view line) {
    for (const std::string_view lead : {"and optionally ", "or, to read Inputs, "})
        line.remove_prefix(line.starts_with(lead) ? lead.size() : 0);
    const std::string_view type = wordAt(line, 0);
    return {line, type, wordAt(line, type.size() + 1)};
}

// The functions that the host calls in an episode like `shader`.
std::vector<Signature> signaturesOf(const AssembledShader& shader) {
    const bool isFragment = !shader.isMesh() && !shader.isParticles();
    std::vector<Signature> signatures;
    if (!isFragment)
        for (const std::string_view line : linesOf(textsOf(shader).signatures))
            signatures.push_back(signatureOf(line));
    for (const std::string_view line : linesOf(ShaderAssembler::fragmentSignatures)) {
        const Signature signature = signatureOf(line);
        const bool takesInputs = signature.text.find("Inputs") != std::string_view::npos;
        if (signature.name == "sound" || (isFragment && takesInputs == shader.usesInputs))
            signatures.push_back(signature);
    }
    return signatures;
}

const Signature* signatureNamed(const std::vector<Signature>& all, std::string_view name) {
    const auto found = std::ranges::find(all, name, &Signature::name);
    return found == all.end() ? nullptr : &*found;
}

// The text in the first quotation marks.
std::string_view quotedName(std::string_view message) {
    const std::size_t start = message.find('\'') + 1;
    return start == 0 ? "" : message.substr(start, message.find('\'', start) - start);
}

bool isError(const Diagnostic& diagnostic) {
    return diagnostic.severity == Severity::error;
}

// The place of the name in the line that defines a function or record of that name.
struct Definition {
    std::string type;
    TextPlace place;
};

std::optional<Definition> definitionOf(std::string_view source, std::string_view name) {
    const std::string code = codeText(source);
    std::int64_t number = 0;
    for (const std::string_view line : compilerLines(code)) {
        ++number;
        const std::size_t at = findWord(line, name);
        if (at == std::string_view::npos || at == 0)
            continue;
        const std::string_view before = line.substr(0, line.find_last_not_of(" \t", at - 1) + 1);
        const std::string_view type = wordBefore(before, before.size());
        if (type.empty() || type == "return")
            continue;
        return Definition{std::string(type), {number, static_cast<std::int64_t>(at) + 1}};
    }
    return std::nullopt;
}

std::string listed(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i)
        text += (i == 0 ? "'" : i + 1 < names.size() ? ", '" : " and '") + names[i] + "'";
    return text;
}

Diagnostic errorAt(const TextPlace& place, std::string message) {
    Diagnostic error{.severity = Severity::error, .line = place.line, .column = place.column};
    error.message = std::move(message);
    return error;
}

// Reads the diagnostics about generated code.
class HostMessages {
  public:
    HostMessages(std::string_view source, const AssembledShader& shader)
        : source_(source), shader_(shader), signatures_(signaturesOf(shader)) {}

    // `notes` are those that follow the error.
    void take(const Diagnostic& error, const std::vector<Diagnostic>& notes);
    std::vector<Finding> findings(bool areAllWanted) const;

  private:
    void takeUnknown(const Signature& signature, const std::vector<Diagnostic>& notes);
    void takeMisfit(const Signature& signature, const std::vector<Diagnostic>& notes);
    bool takeReturns();
    void addDefined(const Signature& signature, const TextPlace& place, const std::string& message);

    std::string_view source_;
    const AssembledShader& shader_;
    std::vector<Signature> signatures_;
    std::vector<std::string> missing_;
    std::optional<Diagnostic> other_; // a name similar to the missing one
    std::vector<Finding> defined_;    // functions defined differently from how they are called
    std::vector<Finding> rest_;
};

void HostMessages::take(const Diagnostic& error, const std::vector<Diagnostic>& notes) {
    const Signature* const named = signatureNamed(signatures_, quotedName(error.message));
    const bool isMisfit = error.message.starts_with("no matching function for call to");
    if (named != nullptr && !isMisfit)
        return takeUnknown(*named, notes);
    if (named != nullptr && isMisfit && !notes.empty())
        return takeMisfit(*named, notes);
    if (!takeReturns())
        rest_.push_back({error, ""});
}

void HostMessages::takeUnknown(const Signature& signature, const std::vector<Diagnostic>& notes) {
    const std::string name(signature.name);
    if (std::ranges::find(missing_, name) != missing_.end())
        return;
    missing_.push_back(name);
    for (const Diagnostic& note : notes)
        if (note.line > 0 && note.message.ends_with("declared here"))
            other_ = note;
}

void HostMessages::takeMisfit(const Signature& signature, const std::vector<Diagnostic>& notes) {
    constexpr std::string_view lead = "candidate function not viable: ";
    for (const Diagnostic& note : notes) {
        if (note.line == 0 || !note.message.starts_with(lead))
            continue;
        addDefined(signature, {note.line, note.column},
                   "does not accept the arguments of the host: " +
                       note.message.substr(lead.size()));
        return;
    }
}

// Adds each finding once.
void HostMessages::addDefined(const Signature& signature, const TextPlace& place,
                              const std::string& message) {
    Finding finding;
    finding.diagnostic = errorAt(place, "'" + std::string(signature.name) + "' " + message);
    finding.hint = signature.text;
    if (std::ranges::find(defined_, finding) == defined_.end())
        defined_.push_back(std::move(finding));
}

// Finds functions with another return type. The message of the compiler does not name them.
bool HostMessages::takeReturns() {
    bool isFound = false;
    for (const Signature& signature : signatures_) {
        if (signature.type == "struct")
            continue;
        const auto definition = definitionOf(source_, signature.name);
        if (!definition || definition->type == signature.type)
            continue;
        isFound = true;
        addDefined(signature, definition->place,
                   "returns " + definition->type + "; the host requires " +
                       std::string(signature.type));
    }
    return isFound;
}

std::vector<Finding> HostMessages::findings(bool areAllWanted) const {
    std::vector<Finding> findings;
    const bool isAbsent = std::ranges::any_of(
        missing_, [&](const std::string& name) { return !definitionOf(source_, name); });
    if (!missing_.empty() && (areAllWanted || isAbsent)) {
        Diagnostic missing{.severity = Severity::error,
                           .message = listed(missing_) + (missing_.size() > 1 ? " are" : " is") +
                                      " not defined"};
        if (other_ && missing_.size() == 1) {
            missing.line = other_->line;
            missing.column = other_->column;
            missing.message += ", but '" + std::string(quotedName(other_->message)) + "' is";
        }
        findings.push_back({missing, ""});
        findings.push_back({{.severity = Severity::note, .message = definitionsOf(shader_)}, ""});
    }
    if (areAllWanted)
        findings.insert(findings.end(), defined_.begin(), defined_.end());
    if (areAllWanted && findings.empty())
        return rest_;
    return findings;
}

} // namespace

std::string definitionsOf(const AssembledShader& shader) {
    const auto [title, signatures] = textsOf(shader);
    return std::string(title).append(signatures);
}

std::vector<Finding> aboutEpisodeFunctions(std::string_view source, const AssembledShader& shader,
                                           const std::vector<Diagnostic>& diagnostics) {
    std::vector<Finding> findings;
    HostMessages host(source, shader);
    bool hasOwnError = false;
    for (std::size_t at = 0; at < diagnostics.size();) {
        const Diagnostic& head = diagnostics[at];
        std::vector<Diagnostic> notes;
        for (++at; at < diagnostics.size() && diagnostics[at].severity == Severity::note; ++at)
            notes.push_back(diagnostics[at]);
        if (head.line == 0 && isError(head)) {
            host.take(head, notes);
            continue;
        }
        if (head.line == 0)
            continue; // nothing that the author can change
        hasOwnError |= isError(head);
        findings.push_back({head, ""});
        for (const Diagnostic& note : notes)
            if (note.line > 0)
                findings.push_back({note, ""});
    }
    const std::vector<Finding> ofHost = host.findings(!hasOwnError);
    findings.insert(findings.end(), ofHost.begin(), ofHost.end());
    return findings;
}

} // namespace tarnwick
