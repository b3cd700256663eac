#include "TarnwickMSL/Translation/Spirv/Calls.h"

#include "TarnwickMSL/Translation/Spirv/Atomics.h"
#include "TarnwickMSL/Translation/Spirv/Groups.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <array>
#include <string_view>

namespace tarnwick::msl::spirv {

using namespace llvm;

// Used if the pipeline sets none. Below the maximum of the packaged CPU driver (65,535).
static constexpr std::uint32_t defaultLoopBudget = 60000;

struct Extended {
    std::string_view name;
    GLSLstd450 instruction;
};

// clang-format off
static constexpr std::array extendeds{
    Extended{"tan",   GLSLstd450Tan},
    Extended{"asin",  GLSLstd450Asin},
    Extended{"acos",  GLSLstd450Acos},
    Extended{"atan",  GLSLstd450Atan},
    Extended{"atan2", GLSLstd450Atan2},
    Extended{"sinh",  GLSLstd450Sinh},
    Extended{"cosh",  GLSLstd450Cosh},
    Extended{"tanh",  GLSLstd450Tanh},
    Extended{"asinh", GLSLstd450Asinh},
    Extended{"acosh", GLSLstd450Acosh},
    Extended{"atanh", GLSLstd450Atanh},
};
// clang-format on

// Derivatives take 32-bit floats (SPIR-V 1.6, 3.52.16). Outside fragment functions there are no
// neighbours, and the derivative is 0.
static Id writeDerivative(Body& body, Stage stage, spv::Op op, const CallInst& call) {
    Type* type = call.getType();
    if (stage != Stage::fragment)
        return body.constants.null(type);
    Type* wide = shapedLike(type, body.f32());
    Id value = body.resized(wide, type, body.id(call.getArgOperand(0)), false);
    return body.resized(type, wide, body.emit(op, wide, {value}), false);
}

Id writeBuiltInCall(Body& body, Memory& memory, Stage stage, StringRef name, const CallInst& call) {
    for (const Extended& known : extendeds)
        if (name == StringRef(known.name.data(), known.name.size()))
            return body.extended(known.instruction, call.getType(),
                                 body.operands(call, 0, call.arg_size()));
    if (name == "dfdx")
        return writeDerivative(body, stage, spv::Op::OpDPdx, call);
    if (name == "dfdy")
        return writeDerivative(body, stage, spv::Op::OpDPdy, call);
    if (name == "fwidth")
        return writeDerivative(body, stage, spv::Op::OpFwidth, call);
    if (name == "loop_budget")
        return body.constants.specialisation(loopBudgetConstant, defaultLoopBudget);
    if (name == "discard") {
        body.module.require(spv::Capability::DemoteToHelperInvocation);
        body.act(spv::Op::OpDemoteToHelperInvocation, {});
        return 0;
    }
    StringRef symbol = call.getCalledFunction()->getName();
    if (name == "barrier" && stage != Stage::kernel)
        throw TranslationError("A barrier is available in a kernel only.");
    if (name.starts_with("simd_") && stage == Stage::vertex)
        throw TranslationError("SIMD-group functions are not available in a vertex function.");
    if (name == "barrier" || name == "fence") {
        writeBarrier(body, name == "barrier", call);
        return 0;
    }
    if (name.consume_front("simd_"))
        return writeSimdCall(body, name, call);
    if (name.consume_front("atomic_"))
        return writeAtomicCall(body, memory, name, call);
    throw CompilerFault("A built-in call is not known: " + symbol.str());
}

} // namespace tarnwick::msl::spirv
