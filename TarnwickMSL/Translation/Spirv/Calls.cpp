#include "TarnwickMSL/Translation/Spirv/Calls.h"

#include "TarnwickMSL/Translation/Spirv/Atomics.h"
#include "TarnwickMSL/Translation/Spirv/Groups.h"
#include "TarnwickMSL/Translation/Spirv/Logs.h"
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
static Id writeDerivative(Body& body, spv::Op op, const CallInst& call) {
    Type* type = call.getType();
    if (body.stage != Stage::fragment)
        return body.constants.null(type);
    Type* wide = shapedLike(type, body.f32());
    Id value = body.resized(wide, type, body.id(call.getArgOperand(0)), false);
    return body.resized(type, wide, body.emit(op, wide, {value}), false);
}

// The library's functions behind calls that only fragment functions have.
struct FragmentCall {
    std::string_view name, function;
};
static constexpr std::array fragmentCalls{
    FragmentCall{"discard", "discard_fragment"},
    FragmentCall{"is_helper", "simd_is_helper_thread"},
    FragmentCall{"target_samples", "get_num_samples"},
    FragmentCall{"standard_samples", "get_sample_position"},
};

static void checkStage(const Body& body, StringRef name) {
    for (const FragmentCall& known : fragmentCalls)
        if (name == StringRef(known.name) && body.stage != Stage::fragment)
            throw TranslationError(std::string(known.function) +
                                   " is available in a fragment function only.");
}

static Id writeHelperTest(Body& body, const CallInst& call) {
    body.module.require(spv::Capability::DemoteToHelperInvocation);
    body.module.extension("SPV_EXT_demote_to_helper_invocation");
    return body.emit(spv::Op::OpIsHelperInvocationEXT, call.getType(), {});
}

static Id writeInterpolation(Body& body, Memory& memory, StringRef place, const CallInst& call) {
    body.module.require(spv::Capability::InterpolationFunction);
    SmallVector<std::uint32_t, 2> operands{memory.input(call.getArgOperand(0), call.getType())};
    operands.append(body.operands(call, 1, call.arg_size()));
    GLSLstd450 instruction = place == "centroid" ? GLSLstd450InterpolateAtCentroid
                             : place == "sample" ? GLSLstd450InterpolateAtSample
                                                 : GLSLstd450InterpolateAtOffset;
    return body.extended(instruction, call.getType(), operands);
}

Id writeBuiltInCall(Body& body, Memory& memory, StringRef name, const CallInst& call) {
    for (const Extended& known : extendeds)
        if (name == StringRef(known.name.data(), known.name.size()))
            return body.extended(known.instruction, call.getType(),
                                 body.operands(call, 0, call.arg_size()));
    checkStage(body, name);
    if (name == "is_helper")
        return writeHelperTest(body, call);
    if (name == "target_samples" || name == "standard_samples") {
        body.needsStandardSamples |= name == "standard_samples";
        return body.constants.specialisation(sampleCountConstant, 1);
    }
    if (name.consume_front("interpolate_"))
        return writeInterpolation(body, memory, name, call);
    if (name == "dfdx")
        return writeDerivative(body, spv::Op::OpDPdx, call);
    if (name == "dfdy")
        return writeDerivative(body, spv::Op::OpDPdy, call);
    if (name == "fwidth")
        return writeDerivative(body, spv::Op::OpFwidth, call);
    if (name == "loop_budget")
        return body.constants.specialisation(loopBudgetConstant, defaultLoopBudget);
    if (name == "function_constant")
        return body.constants.specialisation(
            static_cast<std::uint32_t>(cast<ConstantInt>(call.getArgOperand(0))->getZExtValue()),
            call.getType());
    if (name == "discard") {
        body.module.require(spv::Capability::DemoteToHelperInvocation);
        body.act(spv::Op::OpDemoteToHelperInvocation, {});
        return 0;
    }
    StringRef symbol = call.getCalledFunction()->getName();
    if (name == "barrier" || name == "fence") {
        writeBarrier(body, name == "barrier", call);
        return 0;
    }
    if (name.consume_front("log_")) {
        writeLogCall(body, name, call);
        return 0;
    }
    if (name.consume_front("simd_"))
        return writeSimdCall(body, name, call);
    if (name.consume_front("atomic_"))
        return writeAtomicCall(body, memory, name, call);
    throw CompilerFault("A built-in call is not known: " + symbol.str());
}

} // namespace tarnwick::msl::spirv
