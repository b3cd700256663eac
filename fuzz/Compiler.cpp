// The whole compiler in this process, from text to SPIR-V, as the worker runs it. Each step's
// result is checked (TARNWICK_CHECK_STEPS), and each module by the validator of SPIR-V. A text
// without the library's header is an episode and is assembled first.
//
// A first line `// @target WORDS` chooses the target: each word is a member of msl::Target, which
// then has the other value than by default.
#include "TarnwickCore/Diagnostics.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "TarnwickMSL/Translation/FrontEnd.h"
#include "TarnwickMSL/Translation/Spirv/Validator.h"
#include "TarnwickMSL/Wire.h"
#include "TarnwickMSL/Worker/Translate.h"
#include "TarnwickSpirv/Module.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>
#include <span>

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

struct TargetWord {
    std::string_view word;
    bool msl::Target::*member;
};

constexpr std::array<TargetWord, 11> targetWords{{
    {"addsFloatsInBuffers", &msl::Target::addsFloatsInBuffers},
    {"ordersFragments", &msl::Target::ordersFragments},
    {"keepsLogs", &msl::Target::keepsLogs},
    {"followsAddresses", &msl::Target::followsAddresses},
    {"hasMeshFunctions", &msl::Target::hasMeshFunctions},
    {"specialisesUniforms", &msl::Target::specialisesUniforms},
    {"hasFloat16", &msl::Target::hasFloat16},
    {"hasInt8", &msl::Target::hasInt8},
    {"hasInt16", &msl::Target::hasInt16},
    {"hasInt64", &msl::Target::hasInt64},
    {"isOptimised", &msl::Target::isOptimised},
}};

msl::Target targetOf(std::string_view text) {
    msl::Target target;
    const std::string_view line = text.substr(0, text.find('\n'));
    if (!line.starts_with("// @target"))
        return target;
    for (const TargetWord& each : targetWords)
        if (line.find(each.word) != std::string_view::npos)
            target.*each.member = !(target.*each.member);
    return target;
}

const msl::StandardLibrary& library() {
    static const msl::StandardLibrary library = msl::StandardLibrary::build();
    return library;
}

// What a long session gives must be what a new one gives.
void compareWithNewSession(std::string_view text, const msl::TranslationOptions& options,
                           const msl::Compilation& made) {
    const auto fresh = msl::StandardLibrary::fromPrecompiled(library().precompiled());
    const msl::Compilation again = msl::translate(text, fresh, options);
    law(again.failed == made.failed, "a new session takes the same programs");
    law(again.entryPoints.size() == made.entryPoints.size(), "it finds the same entry points");
    for (std::size_t at = 0; at < made.entryPoints.size(); ++at)
        law(again.entryPoints[at].words == made.entryPoints[at].words, "it makes the same modules");
    law(again.messages == made.messages, "it has the same messages");
}

// The GPU layer parses modules to change them, and writes them again.
void rewrite(const msl::EntryPoint& entry) {
    std::optional<spv::ExecutionModel> model;
    spirv::eachInstruction(spirv::Operands(std::span(entry.words).subspan(5)),
                           [&](const spirv::Instruction& each) {
                               if (each.op == spv::Op::OpEntryPoint)
                                   model = static_cast<spv::ExecutionModel>(each.operands[0]);
                           });
    law(model.has_value(), "a module has an entry point");
    const spirv::Words written = spirv::Module(entry.words).finish(*model);
    law(spirv::Module(written).finish(*model) == written, "a written module reads back equal");
    law(msl::spirvFaults(written).empty(), "a written module is valid");
}

void checkMessages(const msl::Compilation& made) {
    law(made.messages.find("The compiler has a fault") == std::string::npos, made.messages.c_str());
    for (const msl::Diagnostic& one : made.diagnostics)
        law(!one.text.empty() && one.text.find('\n') == std::string::npos,
            "a diagnostic is one line");
    const auto isError = [](const msl::Diagnostic& one) {
        return one.kind == msl::DiagnosticKind::error;
    };
    law(!made.failed || std::ranges::any_of(made.diagnostics, isError),
        "a program that fails has an error");
    law(!made.failed || made.entryPoints.empty(), "a program that fails has no entry points");
    DiagnosticParser::parse(made.messages);
}

std::uint32_t numberOf(std::string_view text) {
    std::uint32_t number = 2166136261u;
    for (const char c : text)
        number = (number ^ static_cast<unsigned char>(c)) * 16777619u;
    return number;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    setenv("TARNWICK_CHECK_STEPS", "all", 1);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static msl::Remains remains;
    const std::string_view text = textOf(bytes, size);
    const msl::TranslationOptions options{.target = targetOf(text),
                                          .moreWarningsIn = "",
                                          .constants = {},
                                          .includes = {},
                                          .reflects = true};
    const msl::Compilation made = msl::translate(text, library(), options, nullptr, &remains);
    checkMessages(made);
    const std::string answer = msl::toBytes(made);
    const auto read = msl::compilationFrom(answer);
    law(read && msl::toBytes(*read) == answer, "an answer reads back equal");
    if (numberOf(text) % 16 == 0) {
        compareWithNewSession(text, options, made);
        std::ranges::for_each(made.entryPoints, rewrite);
    }
    library().tidy();
    remains.tidy();
    return 0;
}
