#include "TarnwickMSL/Translation/Passes/Calls/Description.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Optimising/UnrollHints.h"

#include <llvm/IR/Instructions.h>
#include <llvm/IR/Module.h>

namespace tarnwick::msl {

using namespace llvm;

// Native widths keep the combining of instructions from inventing others.
static constexpr StringLiteral nativeWidths = "-n8:16:32:64";

// An endless loop without effects is for the user to find, not for the optimiser to delete.
static void describe(Function& function) {
    function.removeFnAttr(Attribute::MustProgress);
    function.removeFnAttr(Attribute::NoInline);
    function.removeFnAttr(Attribute::OptimizeNone);
    for (llvm::Argument& argument : function.args())
        argument.removeAttr(Attribute::NoAlias);
    for (BasicBlock& block : function)
        keepUnrollHints(*block.getTerminator());
}

// Without its logs, a program computes nothing for them.
static void dropLogs(Module& program) {
    for (Function& function : program) {
        if (!function.getName().starts_with("msl.log_"))
            continue;
        for (User* user : make_early_inc_range(function.users()))
            if (auto* call = dyn_cast<CallInst>(user))
                call->eraseFromParent();
    }
}

static bool isOfNumbers(Intrinsic::ID intrinsic) {
    switch (intrinsic) {
    case Intrinsic::abs:
    case Intrinsic::ceil:
    case Intrinsic::copysign:
    case Intrinsic::cos:
    case Intrinsic::fabs:
    case Intrinsic::floor:
    case Intrinsic::log2:
    case Intrinsic::maxnum:
    case Intrinsic::minnum:
    case Intrinsic::roundeven:
    case Intrinsic::sin:
    case Intrinsic::smax:
    case Intrinsic::smin:
    case Intrinsic::sqrt:
    case Intrinsic::trunc:
    case Intrinsic::umax:
    case Intrinsic::umin:
        return true;
    default:
        return false;
    }
}

// Results of the library's functions are defined, as Clang says of every function. It does not say
// so of its built-in functions. Without it, LLVM guards conditions that depend on them.
static void defineResults(Module& program) {
    for (Function& function : program)
        if (isOfNumbers(function.getIntrinsicID()))
            for (User* user : function.users())
                cast<CallBase>(user)->addRetAttr(Attribute::NoUndef);
}

void describe(Module& program, const Target& target) {
    if (!target.keepsLogs)
        dropLogs(program);
    if (program.getDataLayoutStr().find("-n8") == std::string::npos)
        program.setDataLayout(program.getDataLayoutStr() + nativeWidths.str());
    describeBuiltIns(program);
    defineResults(program);
    for (Function& function : program)
        if (!function.isDeclaration())
            describe(function);
}

} // namespace tarnwick::msl
