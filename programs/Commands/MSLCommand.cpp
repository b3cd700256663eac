// tarnwick msl: compiles any file in the Metal Shading Language.
#include "TarnwickCore/Findings.h"
#include "TarnwickMSL/Compile.h"
#include "programs/CommandLine/Output.h"
#include "programs/CommandLine/SourceFile.h"
#include "programs/Commands/Command.h"
#include "programs/Terminal/ProgressBar.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cstdio>

namespace tarnwick {
namespace {

using msl::Compilation;
using msl::EntryPoint;
using msl::Resource;

constexpr std::array<std::string_view, 5> stageNames{"vertex", "fragment", "kernel", "object",
                                                     "mesh"};

// The attribute of an argument in the source, and the kind of its binding.
struct ResourceName {
    std::string_view attribute, kind;
};
constexpr std::array<ResourceName, 10> resourceNames{{
    {"buffer", "uniform buffer"},
    {"buffer", "storage buffer"},
    {"texture", "sampled texture"},
    {"texture", "storage texture"},
    {"sampler", "sampler"},
    {"", "constexpr sampler"},
    {"color", "colour so far"},
    {"buffer", "acceleration structure"},
    {"", "loop report"},
    {"", "addresses of buffers"},
}};
static_assert(resourceNames.size() ==
              static_cast<std::size_t>(msl::ResourceKind::bufferAddresses) + 1);

std::string_view stageName(const EntryPoint& entry) {
    return stageNames[static_cast<std::size_t>(entry.stage)];
}

// "texture(3)", or "buffer(0) id(2)" for a member of an argument buffer.
std::string placeOf(const EntryPoint& entry, const Resource& resource, std::string_view attribute) {
    using msl::MemberKind;
    const MemberKind kind = attribute == "texture"   ? MemberKind::texture
                            : attribute == "sampler" ? MemberKind::sampler
                                                     : MemberKind::buffer;
    for (const msl::ArgumentMember& member : entry.members)
        if (member.kind == kind && member.index == resource.index)
            return "buffer(" + std::to_string(member.buffer) + ") id(" + std::to_string(member.id) +
                   ")";
    return std::string(attribute) + "(" + std::to_string(resource.index) + ")";
}

std::string lineOf(const EntryPoint& entry, const Resource& resource) {
    const ResourceName& name = resourceNames[static_cast<std::size_t>(resource.kind)];
    std::string line = "  binding " + std::to_string(resource.binding) + ": ";
    if (!name.attribute.empty())
        line += placeOf(entry, resource, name.attribute) + ", ";
    line += name.kind;
    if (resource.size != 0)
        line += ", " + std::to_string(resource.size) + " bytes";
    return line + (resource.isWritten ? ", written\n" : "\n");
}

// In the order of msl::Scalar.
constexpr std::array<std::string_view, 11> scalarNames{
    "bool", "char", "uchar", "short", "ushort", "int", "uint", "half", "float", "long", "ulong"};
static_assert(scalarNames.size() == static_cast<std::size_t>(msl::Scalar::uint64) + 1);

std::string lineOf(const msl::FunctionConstant& constant) {
    std::string line = "  function constant " + std::to_string(constant.index) + ": ";
    line.append(scalarNames[static_cast<std::size_t>(constant.scalar)]);
    if (constant.width > 1)
        line += std::to_string(constant.width);
    return line + " " + constant.name + (constant.isRequired ? ", required\n" : "\n");
}

std::string listing(const EntryPoint& entry) {
    std::string text = std::string(stageName(entry)) + " " + entry.name + ", " +
                       std::to_string(entry.words.size()) + " words\n";
    for (const Resource& resource : entry.resources)
        text += lineOf(entry, resource);
    for (const msl::FunctionConstant& constant : entry.constants)
        text += lineOf(constant);
    return text;
}

std::optional<msl::ConstantNumber> constantNumberOf(std::string_view text) {
    if (text == "true" || text == "false")
        return msl::ConstantNumber{.integer = text == "true"};
    const char* const end = text.data() + text.size();
    msl::ConstantNumber number;
    if (std::from_chars(text.data(), end, number.integer).ptr == end && !text.empty())
        return number;
    std::uint64_t wide = 0;
    if (std::from_chars(text.data(), end, wide).ptr == end && !text.empty())
        return msl::ConstantNumber{.integer = static_cast<std::int64_t>(wide)};
    number.isReal = true;
    if (std::from_chars(text.data(), end, number.real).ptr == end && !text.empty())
        return number;
    return std::nullopt;
}

// The value of NAME=VALUE; VALUE is a number for each component, separated by commas.
msl::ConstantValue constantOf(std::string_view assignment) {
    const std::size_t equals = assignment.find('=');
    if (equals == 0 || equals == assignment.npos)
        misuse("--constant requires NAME=VALUE, not " + quoted(assignment) + ".");
    msl::ConstantValue value{.name = std::string(assignment.substr(0, equals)), .numbers = {}};
    for (std::size_t at = equals; at != assignment.npos;) {
        const std::size_t end = assignment.find(',', at + 1);
        const std::string_view text = assignment.substr(at + 1, end - at - 1);
        const auto number = constantNumberOf(text);
        if (!number)
            misuse("--constant requires numbers, true or false, not " + quoted(text) + ".");
        value.numbers.push_back(*number);
        at = end;
    }
    return value;
}

msl::CompileOptions optionsOf(const Arguments& arguments) {
    msl::CompileOptions options{.target = {.keepsLogs = arguments.has("--logs")}};
    for (const std::string_view assignment : arguments.values("--constant"))
        options.constants.values.push_back(constantOf(assignment));
    return options;
}

// Compiled with the file's own name, for the messages.
Compilation compiled(std::string_view path, const msl::CompileOptions& options) {
    std::string name;
    for (const char character : path) {
        if (character == '"' || character == '\\')
            name += '\\';
        name += character == '\n' ? '?' : character;
    }
    ProgressBar bar("");
    bar.doing("Compiling " + std::string(path));
    return msl::compile("#line 1 \"" + name + "\"\n" + sourceText(path), options);
}

std::string namesOf(const Compilation& compilation) {
    std::string names;
    for (const EntryPoint& entry : compilation.entryPoints)
        names.append(names.empty() ? "" : ", ").append(stageName(entry)).append(" " + entry.name);
    return names.empty() ? "no entry point" : names;
}

const EntryPoint& entryNamed(const Compilation& compilation, std::string_view name,
                             std::string_view path) {
    for (const EntryPoint& entry : compilation.entryPoints)
        if (entry.name == name)
            return entry;
    misuse(std::string(path) + " has no entry point " + quoted(name) + ", but " +
           namesOf(compilation) + ".");
}

std::string_view bytesOf(const EntryPoint& entry) {
    return {reinterpret_cast<const char*>(entry.words.data()),
            entry.words.size() * sizeof entry.words[0]};
}

Status batch(const Arguments& arguments) {
    Status status = Status::done;
    const msl::CompileOptions options = optionsOf(arguments);
    for (const std::string_view path : arguments.operands()) {
        std::string line;
        try {
            const Compilation compilation = compiled(path, options);
            line =
                std::string(path) + (compilation.failed ? ": failed: " : ": ok: ") +
                (compilation.failed ? firstErrorLine(compilation.messages) : namesOf(compilation));
            if (compilation.failed)
                status = std::max(status, Status::failed);
        } catch (const CommandError& error) {
            line = std::string(path) + ": failed: " + error.what();
            status = std::max(status, error.status);
        }
        print(line + "\n");
    }
    return status;
}

Status compileOne(const Arguments& arguments) {
    if (arguments.operands().size() > 1)
        misuse("Several files require --batch.");
    const std::string_view path = arguments.operands().front();
    const auto name = arguments.value("--entry");
    const auto out = Output::of(arguments, "-o", FileKind::spirvModule);
    const Compilation compilation = compiled(path, optionsOf(arguments));
    std::fputs(compilation.messages.c_str(), stderr);
    if (compilation.failed)
        return Status::failed;
    if (out && !name && compilation.entryPoints.size() != 1)
        misuse("-o requires --entry: " + std::string(path) + " has " + namesOf(compilation) + ".");
    if (name)
        entryNamed(compilation, *name, path);
    for (const EntryPoint& entry : compilation.entryPoints) {
        if (name && entry.name != *name)
            continue;
        if (out)
            out->write(bytesOf(entry));
        out ? out->say(listing(entry)) : print(listing(entry));
    }
    return Status::done;
}

Status compileMSL(const Arguments& arguments) {
    return arguments.has("--batch") ? batch(arguments) : compileOne(arguments);
}

constexpr std::array<Option, 5> mslOptions{{
    {.name = "--entry",
     .value = "NAME",
     .help = "only this entry point",
     .byDefault = "all entry points"},
    {.name = "-o",
     .value = "OUT.spv",
     .help = "write the entry point's SPIR-V; - is standard output",
     .values = FileName{},
     .byDefault = "none"},
    {.name = "--logs", .help = "keep the logs of os_log, which Vulkan's validation layer prints"},
    {.name = "--constant",
     .value = "NAME=VALUE",
     .help = "a function constant's value: a number for each component, separated by commas, true "
             "or false",
     .byDefault = "values that are set when a pipeline is made",
     .isRepeatable = true},
    {.name = "--batch",
     .help = "compile several files and print a line for each",
     .excludes = "-o --entry"},
}};

} // namespace

const Command mslCommand{
    .name = "msl",
    .operands = "FILE.metal...",
    .summary = "Compiles a file of Metal Shading Language and lists its entry points.",
    .options = mslOptions,
    .run = compileMSL};

} // namespace tarnwick
