#include "TarnwickMSL/Translation/Spirv/Groups.h"

#include "TarnwickMSL/Translation/Spirv/Stage.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>

#include <array>
#include <optional>

namespace tarnwick::msl::spirv {

using namespace llvm;

// mem_flags and thread_scope of the standard library, by their numbers.
static constexpr std::array kinds{spv::MemorySemanticsMask::UniformMemory,
                                  spv::MemorySemanticsMask::WorkgroupMemory,
                                  spv::MemorySemanticsMask::ImageMemory,
                                  spv::MemorySemanticsMask::WorkgroupMemory}; // of object_data
static constexpr std::array scopes{spv::Scope::Invocation, spv::Scope::Subgroup,
                                   spv::Scope::Workgroup, spv::Scope::Device};

// mem_flags::mem_threadgroup, mem_flags::mem_object_data
static constexpr std::uint64_t threadgroupFlags = 2 | 8;

static std::uint64_t numberOf(const Value* value, std::uint64_t otherwise) {
    auto* number = dyn_cast<ConstantInt>(value);
    return number ? number->getZExtValue() : otherwise;
}

// Only invocations in threadgroups have threadgroup memory and a scope of their threadgroup
// (Vulkan 1.3, "Runtime SPIR-V Validation"). A fence of another function orders its accesses for
// the device.
void writeBarrier(Body& body, bool waits, const CallInst& call) {
    bool isGrouped = hasThreadgroups(body.stage);
    std::uint64_t flags = numberOf(call.getArgOperand(1), 15);
    if (!isGrouped)
        flags &= ~threadgroupFlags;
    std::uint32_t semantics = 0;
    for (std::size_t kind = 0; kind < kinds.size(); ++kind)
        if (flags >> kind & 1)
            semantics |= static_cast<std::uint32_t>(kinds[kind]);
    if (semantics)
        semantics |= static_cast<std::uint32_t>(spv::MemorySemanticsMask::AcquireRelease);
    else if (!waits)
        return;
    spv::Scope given = scopes[numberOf(call.getArgOperand(0), 2) % scopes.size()];
    // Vulkan has no fence of a single invocation. The packaged CPU driver lets the threads of a
    // threadgroup wait for each other at a fence of a wider scope than the SIMD-group, which never
    // ends well where they have parted.
    if (given == spv::Scope::Invocation && !waits)
        given = isGrouped ? spv::Scope::Subgroup : spv::Scope::Device;
    if (given == spv::Scope::Workgroup && !isGrouped) {
        if (waits)
            throw TranslationError("threadgroup_barrier is available in a kernel, an object or a "
                                   "mesh function only.");
        given = spv::Scope::Device;
    }
    if (given == spv::Scope::Subgroup)
        body.module.require(spv::Capability::GroupNonUniform);
    Id scope = body.constants.word(static_cast<std::uint32_t>(given));
    Id order = body.constants.word(semantics);
    if (waits)
        body.act(spv::Op::OpControlBarrier, {scope, scope, order});
    else
        body.act(spv::Op::OpMemoryBarrier, {scope, order});
}

namespace {

struct Combination {
    spv::Op integer, real;
};

} // namespace

static std::optional<Combination> combination(StringRef name, bool isSigned) {
    using enum spv::Op;
    Combination least{isSigned ? OpGroupNonUniformSMin : OpGroupNonUniformUMin,
                      OpGroupNonUniformFMin};
    Combination most{isSigned ? OpGroupNonUniformSMax : OpGroupNonUniformUMax,
                     OpGroupNonUniformFMax};
    return StringSwitch<std::optional<Combination>>(name)
        .Case("add", Combination{OpGroupNonUniformIAdd, OpGroupNonUniformFAdd})
        .Case("mul", Combination{OpGroupNonUniformIMul, OpGroupNonUniformFMul})
        .Case("min", least)
        .Case("max", most)
        .Case("and", Combination{OpGroupNonUniformBitwiseAnd, OpNop})
        .Case("or", Combination{OpGroupNonUniformBitwiseOr, OpNop})
        .Case("xor", Combination{OpGroupNonUniformBitwiseXor, OpNop})
        .Default(std::nullopt);
}

static spv::GroupOperation operation(StringRef way) {
    return way == "reduce"      ? spv::GroupOperation::Reduce
           : way == "inclusive" ? spv::GroupOperation::InclusiveScan
                                : spv::GroupOperation::ExclusiveScan;
}

Id writeSimdCall(Body& body, StringRef name, const CallInst& call) {
    body.module.require(spv::Capability::GroupNonUniform);
    Id scope = body.constants.word(static_cast<std::uint32_t>(spv::Scope::Subgroup));
    Type* type = call.getType();
    auto operand = [&](unsigned n) { return body.id(call.getArgOperand(n)); };
    auto emit = [&](spv::Capability capability, spv::Op op, Operands operands) {
        body.module.require(capability);
        return body.emit(op, type, {scope}, operands);
    };
    body.needsEightLanes |= name == "matrix_lane";
    if (name == "lane" || name == "matrix_lane")
        return readBuiltIn(body, spv::BuiltIn::SubgroupLocalInvocationId, type);
    if (name == "size")
        return readBuiltIn(body, spv::BuiltIn::SubgroupSize, type);
    if (name == "elect")
        return emit(spv::Capability::GroupNonUniform, spv::Op::OpGroupNonUniformElect, {});
    if (name == "all")
        return emit(spv::Capability::GroupNonUniformVote, spv::Op::OpGroupNonUniformAll,
                    {operand(0)});
    if (name == "any")
        return emit(spv::Capability::GroupNonUniformVote, spv::Op::OpGroupNonUniformAny,
                    {operand(0)});
    if (name == "ballot")
        return emit(spv::Capability::GroupNonUniformBallot, spv::Op::OpGroupNonUniformBallot,
                    {operand(0)});
    if (name == "shuffle")
        return emit(spv::Capability::GroupNonUniformShuffle, spv::Op::OpGroupNonUniformShuffle,
                    {operand(0), operand(1)});
    auto [way, change] = name.split('_');
    StringRef suffix = call.getCalledFunction()->getName().rsplit('.').second;
    if (auto known = combination(change, suffix.starts_with("s")))
        return emit(spv::Capability::GroupNonUniformArithmetic,
                    type->isFPOrFPVectorTy() ? known->real : known->integer,
                    {static_cast<std::uint32_t>(operation(way)), operand(0)});
    throw CompilerFault("A built-in call is not known: simd_" + name.str());
}

} // namespace tarnwick::msl::spirv
