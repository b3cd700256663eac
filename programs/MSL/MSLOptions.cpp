#include "programs/MSL/MSLOptions.h"

#include "programs/CommandLine/CommandError.h"

#include <array>
#include <charconv>
#include <filesystem>

namespace tarnwick {
namespace {

std::vector<std::string_view> reflections() {
    return {"json"};
}

std::vector<std::string_view> targets() {
    return {"spirv", "wgsl"};
}

constexpr std::array<Option, 15> options{{
    {.name = "--entry",
     .value = "NAME",
     .help = "only this entry point",
     .byDefault = "all entry points"},
    {.name = "-o",
     .value = "OUT.spv",
     .help = "write the entry point's SPIR-V, or its WGSL (OUT.wgsl); - is standard output",
     .values = FileName{},
     .byDefault = "none"},
    {.name = "--target",
     .value = "LANGUAGE",
     .help = "the language of the result: spirv, for Vulkan 1.3, or wgsl, for WebGPU, which is "
             "printed",
     .values = OneOf{targets},
     .byDefault = "spirv"},
    {.name = "--reflect",
     .value = "json",
     .help = "print arguments, bindings, layouts and messages as a document",
     .values = OneOf{reflections},
     .byDefault = "a listing"},
    {.name = "--disassemble",
     .help = "print the SPIR-V as text of the SPIR-V assembler",
     .excludes = "--reflect"},
    {.name = "-D",
     .value = "NAME[=VALUE]",
     .help = "define a macro, whose default value is 1",
     .byDefault = "none",
     .isRepeatable = true,
     .isJoined = true},
    {.name = "-I",
     .value = "FOLDER",
     .help = "include files from this folder and the folders in it, and from no others",
     .values = FileName{},
     .byDefault = "none: only the library's headers",
     .isRepeatable = true,
     .isJoined = true},
    {.name = "-std",
     .value = "VERSION",
     .help = "the version of the language that __METAL_VERSION__ has: metal1.0 to metal3.1, before "
             "3.0 also macos-metal and ios-metal",
     .values = OneOf{msl::versionNames, "tarnwick help msl"},
     .byDefault = "metal3.1"},
    {.name = "-O", .help = "make fast code, the default", .excludes = "-O0"},
    {.name = "-O0", .help = "leave out the steps that only make code faster"},
    {.name = "--constant",
     .value = "NAME=VALUE",
     .help = "a function constant's value: a number for each component, separated by commas, true "
             "or false",
     .byDefault = "values that are set when a pipeline is made",
     .isRepeatable = true},
    {.name = "--logs", .help = "keep the logs of os_log, which Vulkan's validation layer prints"},
    {.name = "-MD", .help = "write the files that were read as a rule for make"},
    {.name = "-MF",
     .value = "OUT.d",
     .help = "the file for the rule",
     .values = FileName{},
     .byDefault = "the name after -o, ending in .d",
     .needs = "-MD"},
    {.name = "--batch",
     .help = "compile several files and print a line for each",
     .excludes = "-o --entry --reflect --disassemble -MD"},
}};

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

msl::Define defineOf(std::string_view text) {
    const std::size_t equals = text.find('=');
    msl::Define define{.name = std::string(text.substr(0, equals))};
    if (equals != text.npos)
        define.value = text.substr(equals + 1);
    if (!msl::isValid(define))
        misuse("-D requires a name of letters, digits and _, and a value in one line, not " +
               quoted(text) + ".");
    return define;
}

std::filesystem::path folderOf(const std::string& name) {
    std::error_code error;
    if (!std::filesystem::is_directory(name, error))
        misuse("-I requires a folder, but " + name + " is not a folder.");
    return name;
}

} // namespace

constinit const std::span<const Option> mslOptions = options;

msl::CompileOptions compileOptionsOf(const Arguments& arguments) {
    msl::Target target = arguments.textOf("--target") == "wgsl" ? msl::wgslTarget() : msl::Target();
    target.keepsLogs = arguments.has("--logs");
    target.isOptimised = !arguments.has("-O0");
    msl::CompileOptions made{
        .target = target,
        .version = msl::versionNamed(arguments.textOf("-std")).value_or(msl::newestVersion),
        .reflects = arguments.has("--reflect"),
        .lists = arguments.has("--disassemble")};
    for (const std::string& assignment : arguments.values("--constant"))
        made.constants.values.push_back(constantOf(assignment));
    for (const std::string& define : arguments.values("-D"))
        made.defines.push_back(defineOf(define));
    for (const std::string& folder : arguments.values("-I"))
        made.includes.push_back(folderOf(folder));
    return made;
}

} // namespace tarnwick
