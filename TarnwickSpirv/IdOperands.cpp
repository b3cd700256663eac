#include "TarnwickSpirv/IdOperands.h"

#include <algorithm>
#include <array>

namespace tarnwick::spirv {

namespace {

using enum spv::Op;

// Which operands of an instruction are ids: all but `literals` of them from the `first` on. With 0
// literals none is an id from the `first` on.
struct Form {
    spv::Op from, to; // of these opcodes
    bool hasType = true;
    bool hasResult = true;
    std::size_t first = noLiterals;
    std::size_t literals = 0;

    static constexpr std::size_t noLiterals = 1000;
};

constexpr bool typed = true, hasId = true;

// SPIR-V 1.6, 3.52: the instructions that this project's compiler writes, but for derivatives,
// sampling at an implied level, atomic operations and those of groups.
// clang-format off
constexpr std::array forms{
    Form{OpExtInst, OpExtInst, typed, hasId, 3, 1},
    Form{OpUndef, OpUndef},
    Form{OpFunction, OpFunction, typed, hasId, 2, 1},
    Form{OpFunctionParameter, OpFunctionParameter},
    Form{OpFunctionEnd, OpFunctionEnd, !typed, !hasId},
    Form{OpFunctionCall, OpFunctionCall},
    Form{OpVariable, OpVariable, typed, hasId, 2, 1},
    Form{OpLoad, OpLoad, typed, hasId, 3},
    Form{OpStore, OpStore, !typed, !hasId, 2},
    Form{OpAccessChain, OpInBoundsAccessChain},
    Form{OpArrayLength, OpArrayLength, typed, hasId, 3},
    Form{OpVectorExtractDynamic, OpVectorInsertDynamic},
    Form{OpVectorShuffle, OpVectorShuffle, typed, hasId, 4},
    Form{OpCompositeConstruct, OpCompositeConstruct},
    Form{OpCompositeExtract, OpCompositeExtract, typed, hasId, 3},
    Form{OpCompositeInsert, OpCompositeInsert, typed, hasId, 4},
    Form{OpCopyObject, OpTranspose},
    Form{OpSampledImage, OpSampledImage},
    Form{OpImageSampleExplicitLod, OpImageSampleExplicitLod, typed, hasId, 4, 1},
    Form{OpImageSampleDrefExplicitLod, OpImageSampleDrefExplicitLod, typed, hasId, 5, 1},
    Form{OpImageFetch, OpImageFetch, typed, hasId, 4, 1},
    Form{OpImageGather, OpImageGather, typed, hasId, 5, 1},
    Form{OpImageRead, OpImageRead, typed, hasId, 4, 1},
    Form{OpImage, OpImage},
    Form{OpImageQuerySizeLod, OpImageQuerySize},
    Form{OpImageQueryLevels, OpImageQuerySamples},
    Form{OpConvertFToU, OpBitcast},
    Form{OpSNegate, OpSMulExtended},
    Form{OpAny, OpFUnordGreaterThanEqual},
    Form{OpShiftRightLogical, OpBitCount},
    Form{OpPhi, OpPhi},
    Form{OpLoopMerge, OpLoopMerge, !typed, !hasId, 2},
    Form{OpSelectionMerge, OpSelectionMerge, !typed, !hasId, 1},
    Form{OpLabel, OpLabel, !typed, hasId},
    Form{OpBranch, OpBranch, !typed, !hasId},
    Form{OpBranchConditional, OpBranchConditional, !typed, !hasId, 3},
    Form{OpReturn, OpReturn, !typed, !hasId},
    Form{OpUnreachable, OpUnreachable, !typed, !hasId},
    Form{OpCopyLogical, OpCopyLogical},
    Form{OpDemoteToHelperInvocation, OpDemoteToHelperInvocation, !typed, !hasId},
    // Types, constants and decorations.
    Form{OpTypeVoid, OpTypeBool, !typed, hasId},
    Form{OpTypeInt, OpTypeFloat, !typed, hasId, 1},
    Form{OpTypeVector, OpTypeMatrix, !typed, hasId, 2},
    Form{OpTypeImage, OpTypeImage, !typed, hasId, 2},
    Form{OpTypeSampler, OpTypeStruct, !typed, hasId},
    Form{OpTypePointer, OpTypePointer, !typed, hasId, 1, 1},
    Form{OpTypeFunction, OpTypeFunction, !typed, hasId},
    Form{OpConstantTrue, OpConstantFalse},
    Form{OpConstant, OpConstant, typed, hasId, 2},
    Form{OpConstantComposite, OpConstantComposite},
    Form{OpConstantNull, OpSpecConstantFalse},
    Form{OpSpecConstant, OpSpecConstant, typed, hasId, 2},
    Form{OpSpecConstantComposite, OpSpecConstantComposite},
    Form{OpSpecConstantOp, OpSpecConstantOp, typed, hasId, 2, 1},
    Form{OpDecorate, OpDecorate, !typed, !hasId, 1},
    Form{OpMemberDecorate, OpMemberDecorate, !typed, !hasId, 1},
};
// clang-format on

const Form* formOf(spv::Op op) {
    const auto found = std::find_if(forms.begin(), forms.end(), [op](const Form& form) {
        return op >= form.from && op <= form.to;
    });
    return found == forms.end() ? nullptr : &*found;
}

bool isId(const Form& form, std::size_t operand) {
    const std::size_t literals = form.literals == 0 ? Form::noLiterals : form.literals;
    return operand < form.first || operand >= form.first + literals;
}

} // namespace

bool isKnown(spv::Op op) {
    return formOf(op) != nullptr;
}

bool isIdOperand(spv::Op op, std::size_t operand) {
    const Form* form = formOf(op);
    return form && isId(*form, operand);
}

std::optional<std::size_t> resultOperand(spv::Op op) {
    const Form* form = formOf(op);
    if (!form || !form->hasResult)
        return std::nullopt;
    return form->hasType ? 1 : 0;
}

std::optional<Id> resultOf(const Instruction& instruction) {
    const auto at = resultOperand(instruction.op);
    return at ? std::optional(instruction.operands[*at]) : std::nullopt;
}

std::optional<Words> idsOf(const Instruction& instruction) {
    const Form* form = formOf(instruction.op);
    if (!form)
        return std::nullopt;
    Words ids;
    const auto result = resultOperand(instruction.op);
    for (std::size_t at = 0; at < instruction.operands.size(); ++at)
        if (isId(*form, at) && at != result)
            ids.push_back(instruction.operands[at]);
    return ids;
}

} // namespace tarnwick::spirv
