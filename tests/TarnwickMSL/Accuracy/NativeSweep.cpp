#include "tests/TarnwickMSL/Accuracy/NativeSweep.h"

#include "TarnwickMSL/Translation/FrontEnd.h"
#include "TarnwickMSL/Translation/Passes/Driver.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Weights.h"

#include <llvm/ExecutionEngine/Orc/LLJIT.h>
#include <llvm/ExecutionEngine/Orc/ThreadSafeModule.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/Passes/PassBuilder.h>
#include <llvm/Support/TargetSelect.h>
#include <llvm/Target/TargetMachine.h>

#include <algorithm>
#include <stdexcept>

namespace tarnwick::trials {

namespace {

using namespace llvm;
using namespace llvm::orc;

constexpr const char* prologue = "#include <metal_stdlib>\nusing namespace metal;\n";

std::string bodyText(const Case& row, const std::string& bits, const std::string& at) {
    return "typedef float T; typedef int I; T x = as_type<float>(" + bits +
           "), y = 0, z = 0, r; { " + row.body + " } out[" + at + "] = r;";
}

std::string nativeSweepText(const Case& row) {
    return prologue +
           std::string("kernel void sweep(constant uint& first [[buffer(0)]], "
                       "device float* out [[buffer(1)]], constant uint& count [[buffer(2)]]) {\n"
                       "    uint from = first, n = count;\n"
                       "    for (uint i = 0; i < n; i++) { ") +
           bodyText(row, "from + i", "i") + " }\n}\n";
}

// Functions that the compiler leaves to the device.
bool isOfDevice(const Function& callee) {
    return msl::isTranscendental(callee) || callee.getName().starts_with("msl.");
}

bool callsTheDevice(const Function& function) {
    return llvm::any_of(instructions(function), [](const Instruction& instruction) {
        const auto* call = dyn_cast<CallBase>(&instruction);
        return call && call->getCalledFunction() && isOfDevice(*call->getCalledFunction());
    });
}

// The steps up to `inline`; the kernel is then one function.
void inlineAll(Module& module, const std::vector<msl::EntrySignature>& entries) {
    msl::Work work(module, entries);
    for (const msl::Step& step : msl::steps())
        if (step.scope == msl::Scope::program && !step.language)
            msl::perform(step, work);
}

void optimise(Module& module, TargetMachine& machine) {
    PassBuilder builder(&machine);
    LoopAnalysisManager loops;
    FunctionAnalysisManager functions;
    CGSCCAnalysisManager calls;
    ModuleAnalysisManager modules;
    builder.registerModuleAnalyses(modules);
    builder.registerCGSCCAnalyses(calls);
    builder.registerFunctionAnalyses(functions);
    builder.registerLoopAnalyses(loops);
    builder.crossRegisterProxies(loops, functions, calls, modules);
    builder.buildPerModuleDefaultPipeline(OptimizationLevel::O3).run(module, modules);
}

} // namespace

std::string deviceSweepText(const Case& row, const std::string& name) {
    return "kernel void " + name +
           "(constant uint& first [[buffer(0)]], device float* out [[buffer(1)]], "
           "uint i [[thread_position_in_grid]]) { " +
           bodyText(row, "first + i", "i") + " }\n";
}

struct NativeSweep::Engine {
    std::unique_ptr<LLJIT> jit;
    void (*function)(const std::uint32_t*, float*, const std::uint32_t*) = nullptr;
};

NativeSweep::NativeSweep(std::unique_ptr<Engine> engine) : engine_(std::move(engine)) {}
NativeSweep::~NativeSweep() = default;

std::unique_ptr<NativeSweep> NativeSweep::make(const Case& row) {
    static const bool isReady = !InitializeNativeTarget() && !InitializeNativeTargetAsmPrinter();
    static const msl::StandardLibrary library = msl::StandardLibrary::build();
    auto context = std::make_unique<LLVMContext>();
    msl::Parsed parsed = msl::parse(nativeSweepText(row), library, *context);
    if (parsed.failed || !isReady)
        throw std::runtime_error(row.name + ": " + parsed.messages);
    inlineAll(*parsed.module, parsed.entries);
    Function& kernel = *parsed.module->getFunction(parsed.entries[0].symbol);
    if (callsTheDevice(kernel))
        return nullptr;

    auto target = cantFail(JITTargetMachineBuilder::detectHost());
    target.setCodeGenOptLevel(CodeGenOptLevel::Aggressive);
    const auto machine = cantFail(target.createTargetMachine());
    auto engine = std::make_unique<Engine>();
    engine->jit = cantFail(LLJITBuilder().setJITTargetMachineBuilder(target).create());
    parsed.module->setDataLayout(engine->jit->getDataLayout());
    parsed.module->setTargetTriple(engine->jit->getTargetTriple().str());
    for (Function& function : *parsed.module)
        if (&function != &kernel && !function.isDeclaration())
            function.setLinkage(GlobalValue::InternalLinkage);
    kernel.setLinkage(GlobalValue::ExternalLinkage);
    kernel.setCallingConv(CallingConv::C);
    kernel.setName("sweep");
    kernel.addFnAttr("reciprocal-estimates", "none");
    optimise(*parsed.module, *machine);
    cantFail(engine->jit->addIRModule({std::move(parsed.module), std::move(context)}));
    engine->function = cantFail(engine->jit->lookup("sweep"))
                           .toPtr<void(const std::uint32_t*, float*, const std::uint32_t*)>();
    return std::unique_ptr<NativeSweep>(new NativeSweep(std::move(engine)));
}

void NativeSweep::run(std::uint32_t first, std::span<float> results) const {
    const auto count = static_cast<std::uint32_t>(results.size());
    engine_->function(&first, results.data(), &count);
}

} // namespace tarnwick::trials
