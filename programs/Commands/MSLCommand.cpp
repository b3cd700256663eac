// tarnwick msl: compiles any file in the Metal Shading Language.
#include "TarnwickCore/Findings.h"
#include "TarnwickCore/Text/TerminalText.h"
#include "TarnwickMSL/Compile.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/SourceFile.h"
#include "programs/Commands/Command.h"
#include "programs/MSL/Dependencies.h"
#include "programs/MSL/EntryListing.h"
#include "programs/MSL/MSLNames.h"
#include "programs/MSL/MSLOptions.h"
#include "programs/MSL/ReflectionDocument.h"
#include "programs/Terminal/ProgressBar.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <optional>

namespace tarnwick {
namespace {

using msl::Compilation;
using msl::EntryPoint;

constexpr std::string_view standardInput = "-";

// The name of the source in messages and documents.
std::string nameOf(std::string_view path) {
    return path == standardInput ? "<stdin>" : std::string(path);
}

Compilation compiled(std::string_view path, msl::CompileOptions options) {
    options.name = nameOf(path);
    const std::string text = sourceText(path == standardInput ? "/dev/stdin" : path);
    ProgressBar bar("");
    bar.doing("Compiling " + options.name);
    return msl::compile(text, options);
}

std::string namesOf(const Compilation& compilation) {
    std::string names;
    for (const EntryPoint& entry : compilation.entryPoints)
        names.append(names.empty() ? "" : ", ")
            .append(nameIn(stageNames, entry.stage))
            .append(" " + entry.name);
    return names.empty() ? "no entry point" : names;
}

void requireEntry(const Compilation& compilation, std::string_view name, std::string_view path) {
    if (std::ranges::find(compilation.entryPoints, name, &EntryPoint::name) ==
        compilation.entryPoints.end())
        misuse(nameOf(path) + " has no entry point " + quoted(name) + ", but " +
               namesOf(compilation) + ".");
}

// Each line as a comment of WGSL.
std::string commented(std::string_view lines) {
    std::string text;
    for (std::size_t at = 0; at < lines.size();) {
        const std::size_t end = lines.find('\n', at) + 1;
        text.append("// ").append(lines.substr(at, end - at));
        at = end;
    }
    return text;
}

std::string fileOf(const EntryPoint& entry) {
    if (!entry.text.empty())
        return commented(listing(entry)) + entry.text;
    return {reinterpret_cast<const char*>(entry.words.data()),
            entry.words.size() * sizeof entry.words[0]};
}

Status batch(const Arguments& arguments) {
    Status status = Status::done;
    const msl::CompileOptions options = compileOptionsOf(arguments);
    for (const std::string_view path : arguments.operands()) {
        std::string line;
        try {
            const Compilation compilation = compiled(path, options);
            line =
                nameOf(path) + (compilation.failed ? ": failed: " : ": ok: ") +
                (compilation.failed ? firstErrorLine(compilation.messages) : namesOf(compilation));
            if (compilation.failed)
                status = std::max(status, Status::failed);
        } catch (const CommandError& error) {
            line = nameOf(path) + ": failed: " + error.what();
            status = std::max(status, error.status);
        }
        print(terminalText(line) + "\n");
    }
    return status;
}

FileKind kindOf(const Arguments& arguments) {
    return arguments.textOf("--target") == "wgsl" ? FileKind::wgslText : FileKind::spirvModule;
}

// The rule for make and the file that it is written to.
struct RuleFile {
    Output file;
    std::string target; // of the rule
};

std::optional<RuleFile> ruleFileOf(const Arguments& arguments, const std::optional<Output>& out) {
    if (!arguments.has("-MD"))
        return std::nullopt;
    const bool hasName = out && !out->isStandardOutput();
    const std::string source(arguments.operands().front());
    const std::string target =
        hasName
            ? out->name()
            : std::filesystem::path(source).replace_extension(endingOf(kindOf(arguments))).string();
    if (auto named = Output::of(arguments, "-MF", FileKind::makeRule))
        return RuleFile{std::move(*named), target};
    if (!hasName)
        misuse("-MD requires -MF OUT.d or -o OUT" + std::string(endingOf(kindOf(arguments))) + ".");
    Output beside = Output::at(std::filesystem::path(target).replace_extension(".d"),
                               FileKind::makeRule, {arguments.operands().front()});
    beside.check();
    return RuleFile{std::move(beside), target};
}

// What the options ask to see of the entry points.
std::string report(const Arguments& arguments, const Compilation& compilation) {
    const std::string_view only = arguments.value("--entry").value_or("");
    if (arguments.has("--reflect"))
        return reflectionDocument(compilation, nameOf(arguments.operands().front()), only);
    std::string text;
    for (std::size_t i = 0; i < compilation.entryPoints.size(); ++i) {
        const EntryPoint& entry = compilation.entryPoints[i];
        if (!only.empty() && entry.name != only)
            continue;
        if (!entry.text.empty() && !arguments.has("-o"))
            text += fileOf(entry);
        else if (arguments.has("--disassemble"))
            text += "; " + std::string(nameIn(stageNames, entry.stage)) + " " + entry.name + "\n" +
                    compilation.listings[i];
        else
            text += listing(entry);
    }
    return text;
}

Status compileOne(const Arguments& arguments) {
    if (arguments.operands().size() > 1)
        misuse("Several files require --batch.");
    const std::string_view path = arguments.operands().front();
    const auto name = arguments.value("--entry");
    const auto out = Output::of(arguments, "-o", kindOf(arguments));
    const auto rule = ruleFileOf(arguments, out);
    const Compilation compilation = compiled(path, compileOptionsOf(arguments));
    std::fputs(terminalLines(compilation.messages).c_str(), stderr);
    if (compilation.failed) {
        if (arguments.has("--reflect"))
            print(report(arguments, compilation));
        return Status::failed;
    }
    if (out && !name && compilation.entryPoints.size() != 1)
        misuse("-o requires --entry: " + nameOf(path) + " has " + namesOf(compilation) + ".");
    if (name)
        requireEntry(compilation, *name, path);
    if (out)
        for (const EntryPoint& entry : compilation.entryPoints)
            if (!name || entry.name == *name)
                out->write(fileOf(entry));
    if (rule)
        rule->file.write(dependencyRule(rule->target, path, compilation.files));
    const std::string text = terminalLines(report(arguments, compilation));
    out ? out->say(text) : print(text);
    return Status::done;
}

Status compileMSL(const Arguments& arguments) {
    return arguments.has("--batch") ? batch(arguments) : compileOne(arguments);
}

} // namespace

const Command mslCommand{
    .name = "msl",
    .operands = "FILE.metal...",
    .summary =
        "Compiles a file of Metal Shading Language and lists its entry points; - is standard "
        "input.",
    .options = mslOptions,
    .run = compileMSL};

} // namespace tarnwick
