#include "TarnwickGPU/Points/SpirvLink.h"

#include <algorithm>
#include <array>
#include <set>

namespace tarnwick::gpu {

namespace {

using enum spv::Op;

// Which operands of an instruction are ids: all but `literals` from the `first` on (0 literals: all
// that follow).
struct Form {
    spv::Op from, to; // of these opcodes
    bool hasType = true;
    bool hasResult = true;
    std::size_t first = noLiterals;
    std::size_t literals = 0;

    static constexpr std::size_t noLiterals = 1000;
};

constexpr bool typed = true, hasId = true;

// SPIR-V 1.6, 3.52, as far as the layer's compiler uses it in functions.
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
    // types, constants and decorations
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

bool isKnown(Operands section) {
    bool known = true;
    eachInstruction(section,
                    [&](const Instruction& each) { known = known && formOf(each.op) != nullptr; });
    return known;
}

class Linking {
  public:
    Linking(SpirvCode& into, const SpirvCode& from) : into_(into), from_(from) {}

    std::map<Id, Id> run() {
        for (const spv::Capability capability : from_.capabilities)
            into_.require(capability);
        if (const auto import = from_.importedInstructions())
            ids_[*import] = into_.extendedInstructions();
        eachInstruction(from_.declarations, [this](const Instruction& each) { declare(each); });
        eachInstruction(from_.annotations, [this](const Instruction& each) {
            if (!shared_.contains(each.operands[0]))
                append(into_.annotations, each.op, renamed(each));
        });
        eachInstruction(from_.functions, [this](const Instruction& each) {
            append(into_.functions, each.op, renamed(each));
        });
        for (const Id variable : from_.interface)
            into_.interface.push_back(idOf(variable));
        return std::move(ids_);
    }

  private:
    Id idOf(Id id) {
        Id& known = ids_[id];
        if (known == 0)
            known = into_.newId();
        return known;
    }

    Words renamed(const Instruction& each) {
        const Form& form = *formOf(each.op);
        Words operands(each.operands.begin(), each.operands.end());
        for (std::size_t at = 0; at < operands.size(); ++at)
            if (isId(form, at))
                operands[at] = idOf(operands[at]);
        return operands;
    }

    // Types and constants that both modules have become one; specialisation constants by number.
    void declare(const Instruction& each) {
        const std::size_t result = formOf(each.op)->hasType ? 1 : 0;
        const Id id = each.operands[result];
        if (const auto special = from_.specialisation(id))
            if (const auto known = into_.specialised(*special))
                return share(id, *known);
        Words operands(each.operands.begin(), each.operands.end());
        const Form& form = *formOf(each.op);
        for (std::size_t at = 0; at < operands.size(); ++at)
            if (at != result && isId(form, at))
                operands[at] = idOf(operands[at]);
        if (const auto known = into_.find({each.op, operands}))
            return share(id, *known);
        operands[result] = idOf(id);
        into_.add({each.op, operands});
    }

    void share(Id id, Id known) {
        ids_[id] = known;
        shared_.insert(id);
    }

    SpirvCode& into_;
    const SpirvCode& from_;
    std::map<Id, Id> ids_;
    std::set<Id> shared_; // of `from`
};

} // namespace

std::optional<std::map<Id, Id>> link(SpirvCode& into, const SpirvCode& from) {
    if (!isKnown(into.functions) || !isKnown(from.functions) || !isKnown(from.declarations) ||
        !isKnown(from.annotations) || !from.extensions.empty())
        return std::nullopt;
    return Linking(into, from).run();
}

std::optional<Words> idsOf(const Instruction& instruction) {
    const Form* form = formOf(instruction.op);
    if (!form)
        return std::nullopt;
    Words ids;
    const std::size_t result = form->hasType ? 1 : 0;
    for (std::size_t at = 0; at < instruction.operands.size(); ++at)
        if (isId(*form, at) && !(form->hasResult && at == result))
            ids.push_back(instruction.operands[at]);
    return ids;
}

bool isIdOperand(spv::Op op, std::size_t operand) {
    const Form* form = formOf(op);
    return form && isId(*form, operand);
}

std::optional<Id> resultOf(const Instruction& instruction) {
    const Form* form = formOf(instruction.op);
    if (!form || !form->hasResult)
        return std::nullopt;
    return instruction.operands[form->hasType ? 1 : 0];
}

} // namespace tarnwick::gpu
