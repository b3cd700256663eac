#include "tests/TarnwickMSL/Passes/Running.h"

#include "TarnwickMSL/Translation/Passes/Driver.h"
#include "TarnwickMSL/Translation/Passes/Forms/Form.h"
#include "TarnwickMSL/Translation/Passes/Forms/Text.h"

#include <gtest/gtest.h>
#include <llvm/AsmParser/Parser.h>
#include <llvm/ExecutionEngine/Orc/LLJIT.h>
#include <llvm/Support/SourceMgr.h>
#include <llvm/Support/TargetSelect.h>

namespace tarnwick::msl::test {

using namespace llvm;
using namespace llvm::orc;

static const char* const header =
    "target datalayout = \"e-p:32:32-i64:64-v16:16-v24:32-v32:32-v48:64-v96:128-v192:256-v256:256-"
    "v512:512-v1024:1024-G1\"\ntarget triple = \"spir-unknown-unknown\"\n";

EntrySignature flatFragment() {
    auto argument = [](const char* name) {
        return Argument{.kind = ArgumentKind::builtIn,
                        .values = {{.name = name, .scalar = Scalar::uint32}}};
    };
    return {.name = "f",
            .symbol = "f",
            .stage = Stage::fragment,
            .arguments = {argument("a"), argument("b")},
            .results = {{.name = "c", .attribute = "color", .scalar = Scalar::uint32}}};
}

std::unique_ptr<Module> parse(const std::string& assembly, LLVMContext& context) {
    SMDiagnostic fault;
    auto module = parseAssemblyString(header + assembly, fault, context);
    EXPECT_TRUE(module) << fault.getMessage().str() << "\n" << fault.getLineContents().str();
    return module;
}

void prepare(Module& program, const std::vector<EntrySignature>& entries) {
    Work work(program, entries);
    for (const Step& step : steps())
        if (step.scope == Scope::program && !step.language)
            perform(step, work);
}

ShaderModule lower(Module& program, const EntrySignature& entry,
                   const std::vector<EntrySignature>& entries) {
    Work work(program, entries);
    work.entry = &entry;
    for (const Step& step : steps())
        if (step.scope == Scope::entryPoint && !step.language) // without the writers
            perform(step, work);
    return std::move(work.shader);
}

ShaderModule lowered(const std::string& assembly, LLVMContext& context,
                     const EntrySignature& entry) {
    auto module = parse(assembly, context);
    const std::vector<EntrySignature> entries{entry};
    prepare(*module, entries);
    ShaderModule shader = lower(*module, entry, entries);
    std::string fault = checkForm(shader);
    EXPECT_EQ(fault, "") << text(shader);
    return shader;
}

struct Native::Engine {
    std::unique_ptr<LLJIT> jit;
};

static std::uint32_t giveBudget() {
    return Twins::budget;
}

static void define(LLJIT& jit, const char* name, void* address) {
    cantFail(jit.getMainJITDylib().define(
        absoluteSymbols({{jit.mangleAndIntern(name),
                          {ExecutorAddr::fromPtr(address), JITSymbolFlags::Exported}}})));
}

// Through text into a context of its own, with the globals that the host would give defined.
Native::Native(const Module& module) : engine_(std::make_unique<Engine>()) {
    static const bool isReady = !InitializeNativeTarget() && !InitializeNativeTargetAsmPrinter();
    EXPECT_TRUE(isReady);
    engine_->jit = cantFail(LLJITBuilder().create());
    auto context = std::make_unique<LLVMContext>();
    SMDiagnostic fault;
    auto copy = parseAssemblyString(text(module, {}, {}), fault, *context);
    copy->setDataLayout(engine_->jit->getDataLayout());
    copy->setTargetTriple(engine_->jit->getTargetTriple().str());
    for (GlobalVariable& global : copy->globals())
        if (global.isDeclaration()) {
            global.setInitializer(Constant::getNullValue(global.getValueType()));
            global.setConstant(false);
        }
    define(*engine_->jit, "msl.loop_budget", reinterpret_cast<void*>(&giveBudget));
    cantFail(engine_->jit->addIRModule({std::move(copy), std::move(context)}));
}

Native::~Native() = default;

void* Native::address(const std::string& symbol) const {
    auto found = engine_->jit->lookup(symbol);
    if (found)
        return found->toPtr<void*>();
    consumeError(found.takeError());
    return nullptr;
}

std::uint32_t Twins::budget = 60'000;

Twins::Twins(const std::string& assembly)
    : context_(std::make_unique<LLVMContext>()),
      shader(lowered(assembly, *context_, flatFragment())) {
    LLVMContext other;
    auto module = parse(assembly, other);
    module->getFunction("f")->setLinkage(GlobalValue::ExternalLinkage);
    before_ = std::make_unique<Native>(*module);
    after_ = std::make_unique<Native>(*shader.module);
}

std::uint32_t Twins::original(std::uint32_t a, std::uint32_t b) const {
    using Function = std::uint32_t(std::uint32_t, std::uint32_t);
    return reinterpret_cast<Function*>(before_->address("f"))(a, b);
}

Outcome Twins::structured(std::uint32_t a, std::uint32_t b) const {
    auto put = [&](const char* name, std::uint32_t value) {
        if (auto* word = static_cast<std::uint32_t*>(after_->address(name)))
            *word = value;
    };
    auto get = [&](const char* name) {
        auto* word = static_cast<std::uint32_t*>(after_->address(name));
        return word ? *word : 0;
    };
    put("msl.in.a", a);
    put("msl.in.b", b);
    put("msl.loop_report", 0);
    put("msl.out.color.0", 0);
    reinterpret_cast<void (*)()>(after_->address("main"))();
    return {get("msl.out.color.0"), get("msl.loop_report")};
}

} // namespace tarnwick::msl::test
