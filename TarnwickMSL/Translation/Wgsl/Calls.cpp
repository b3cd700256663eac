#include "TarnwickMSL/Translation/Wgsl/Calls.h"

#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Stage.h"

#include <llvm/ADT/StringSwitch.h>

#include <array>

namespace tarnwick::msl::wgsl {

using namespace llvm;

// Used if the pipeline sets none.
static constexpr std::string_view defaultLoopBudget = "60000u";

bool isPlainFunction(StringRef name) {
    return StringSwitch<bool>(name)
        .Cases("tan", "asin", "acos", "atan", "atan2", true)
        .Cases("sinh", "cosh", "tanh", "asinh", "acosh", "atanh", true)
        .Default(false);
}

[[noreturn]] static void refuse(const std::string& lack) {
    throw TranslationError("WGSL has no " + lack + ".");
}

// Outside fragment functions there are no neighbours, and the derivative is 0.
static Expression writeDerivative(Body& body, std::string_view function, const CallInst& call) {
    if (body.stage != Stage::fragment)
        return body.zero(call.getType());
    body.turnOff("derivative_uniformity");
    Expression made = wgsl::call(function, {body.value(call.getArgOperand(0))});
    made.isConvergent = true;
    return made;
}

static std::uint64_t numberOf(const Value* value, std::uint64_t otherwise) {
    auto* number = dyn_cast<ConstantInt>(value);
    return number ? number->getZExtValue() : otherwise;
}

// A barrier of WGSL orders one kind of memory and waits for the whole workgroup. A fence orders the
// accesses of its own thread, or of threads that run together, anyway.
static void writeBarrier(Body& body, bool waits, const CallInst& call) {
    const std::uint64_t scope = numberOf(call.getArgOperand(0), 2);
    const std::uint64_t flags = numberOf(call.getArgOperand(1), 15);
    const bool isOfGroup = scope > 1; // of threads that do not run together
    if (!waits) {
        if (isOfGroup && flags != 0)
            refuse("fence without a barrier");
        return;
    }
    if (!isOfGroup && body.stage != Stage::kernel)
        return body.writePending(true);
    if (body.stage != Stage::kernel)
        throw TranslationError("threadgroup_barrier is available in a kernel only.");
    body.writePending(true);
    if (flags & 1)
        body.line("storageBarrier();");
    if (flags & 4)
        body.line("textureBarrier();");
    if (flags & 10 || !(flags & 5))
        body.line("workgroupBarrier();");
}

static std::string_view scalarText(const Type* type, bool isSigned) {
    if (!type->isIntegerTy(1) && !type->isIntegerTy(32) && !type->isFloatTy())
        refuse("function constants of this type; --constant gives it a value in the compilation");
    return type->isIntegerTy(1) ? "bool" : type->isFloatTy() ? "f32" : isSigned ? "i32" : "u32";
}

static Expression writeFunctionConstant(Body& body, const CallInst& call) {
    const auto number =
        static_cast<std::uint32_t>(cast<ConstantInt>(call.getArgOperand(0))->getZExtValue());
    std::string name = "functionConstant";
    bool isSigned = false;
    for (const ConstantSignature& constant : body.shader.constants) {
        const std::uint32_t presence = functionConstantPresence(constant.index);
        if (number < functionConstantComponent(constant.index, 0) || number > presence)
            continue;
        name = number == presence ? "has_" + constant.name : constant.name;
        isSigned = number != presence && constant.scalar == Scalar::int32;
    }
    const std::string_view type = scalarText(call.getType(), isSigned);
    return body.overridden(number, name, type,
                           type == "bool"  ? "false"
                           : type == "f32" ? "0.0f"
                           : type == "i32" ? "0i"
                                           : "0u");
}

static std::string scanOf(StringRef way, StringRef change) {
    const std::string place = way == "inclusive"   ? "Inclusive"
                              : way == "exclusive" ? "Exclusive"
                                                   : "";
    std::string operation = change.str();
    operation.front() = static_cast<char>(std::toupper(operation.front()));
    return "subgroup" + place + operation;
}

static Expression writeSimdCall(Body& body, StringRef name, const CallInst& call) {
    if (body.stage == Stage::vertex)
        refuse("SIMD-group functions in a vertex function");
    body.require("subgroups");
    body.turnOff("subgroup_uniformity");
    const auto operand = [&](unsigned n) { return body.value(call.getArgOperand(n)); };
    body.needsEightLanes |= name == "matrix_lane";
    if (name == "lane" || name == "matrix_lane")
        return body.builtIn("subgroup_invocation_id", "u32");
    if (name == "size")
        return body.builtIn("subgroup_size", "u32");
    Expression made;
    if (name == "elect") {
        made = wgsl::call("subgroupElect", {});
    } else if (name == "all" || name == "any" || name == "ballot") {
        made = wgsl::call(name == "all"   ? "subgroupAll"
                          : name == "any" ? "subgroupAny"
                                          : "subgroupBallot",
                          {operand(0)});
    } else if (name == "shuffle") {
        const Expression value = operand(0);
        made = wgsl::call("subgroupShuffle", {value, body.unsignedValue(call.getArgOperand(1))});
        made.isSigned = value.isSigned;
    } else {
        const auto [way, change] = name.split('_');
        const StringRef suffix = call.getCalledFunction()->getName().rsplit('.').second;
        const bool isSigned = suffix.starts_with("s");
        const Value* given = call.getArgOperand(0);
        made = wgsl::call(scanOf(way, change),
                          {isSigned ? body.signedValue(given) : body.unsignedValue(given)});
        made.isSigned = isSigned && given->getType()->isIntOrIntVectorTy(32);
    }
    made.isConvergent = true;
    return made;
}

// The library's functions behind calls that WGSL has nothing for.
struct Lack {
    std::string_view name, words;
};
// clang-format off
static constexpr std::array lacks{
    Lack{"is_helper",            "simd_is_helper_thread"},
    Lack{"interpolate_centroid", "interpolation at a chosen place of the pixel (interpolant)"},
    Lack{"interpolate_sample",   "interpolation at a chosen place of the pixel (interpolant)"},
    Lack{"interpolate_offset",   "interpolation at a chosen place of the pixel (interpolant)"},
    Lack{"log_start",            "logs (os_log)"},
    Lack{"log_value",            "logs (os_log)"},
    Lack{"log_end",              "logs (os_log)"},
};
// clang-format on

std::optional<Expression> writeBuiltInCall(Body& body, StringRef name, const CallInst& call) {
    for (const Lack& lack : lacks)
        if (name == StringRef(lack.name))
            refuse(std::string(lack.words));
    if (isPlainFunction(name)) {
        std::vector<Expression> operands;
        for (const llvm::Use& operand : call.args())
            operands.push_back(body.value(operand));
        return wgsl::call(name.str(), operands);
    }
    // The samples of WebGPU are at Vulkan's standard places.
    if (name == "target_samples" || name == "standard_samples")
        return body.overridden(sampleCountConstant, "samples", "u32", "1u");
    if (name == "dfdx")
        return writeDerivative(body, "dpdx", call);
    if (name == "dfdy")
        return writeDerivative(body, "dpdy", call);
    if (name == "fwidth")
        return writeDerivative(body, "fwidth", call);
    if (name == "loop_budget")
        return body.overridden(loopBudgetConstant, "loopBudget", "u32", defaultLoopBudget);
    if (name == "function_constant")
        return writeFunctionConstant(body, call);
    if (name.consume_front("simd_"))
        return writeSimdCall(body, name, call);
    if (name == "discard") {
        if (body.stage != Stage::fragment)
            throw TranslationError("discard_fragment is available in a fragment function only.");
        body.writePending(true);
        body.line("discard;");
        return std::nullopt;
    }
    if (name == "barrier" || name == "fence") {
        writeBarrier(body, name == "barrier", call);
        return std::nullopt;
    }
    throw CompilerFault("A built-in call is not known: " +
                        call.getCalledFunction()->getName().str());
}

} // namespace tarnwick::msl::wgsl
