#include "TarnwickMSL/Translation/SpirvWriter.h"

#include "TarnwickMSL/Translation/LoopControl.h"
#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/Spirv/Arithmetic.h"
#include "TarnwickMSL/Translation/Spirv/Atomics.h"
#include "TarnwickMSL/Translation/Spirv/Calls.h"
#include "TarnwickMSL/Translation/Reading/Deferred.h"
#include "TarnwickMSL/Translation/Spirv/Fetches.h"
#include "TarnwickMSL/Translation/Spirv/Images.h"
#include "TarnwickMSL/Translation/Spirv/Intrinsics.h"
#include "TarnwickMSL/Translation/Spirv/Meshes.h"
#include "TarnwickMSL/Translation/Spirv/RayQueries.h"
#include "TarnwickMSL/Translation/Spirv/Stage.h"
#include "TarnwickMSL/Translation/Spirv/Vectors.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/Demangle/Demangle.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace spirv;

static std::uint32_t bindingAfter(const ShaderModule& shader) {
    std::uint32_t next = firstBinding(shader.stage);
    for (const InterfaceVariable& variable : shader.interface) {
        if (hasBinding(variable.kind))
            next = std::max(next, variable.binding + 1);
    }
    for (const TextureVariable& texture : shader.textures)
        next = std::max(next, texture.binding + 1);
    return next;
}

class FunctionWriter {
  public:
    explicit FunctionWriter(const ShaderModule& shader)
        : shader_(shader),
          body_(module_, shader.module->getContext(), shader.module->getDataLayout(), shader.stage),
          memory_(body_, shader), images_(body_, shader, bindingAfter(shader)),
          fetches_(body_, shader), rays_(body_, [this] { return images_.takeBinding(); }),
          meshes_(body_, memory_, shader) {
        body_.onDemand = [this](const Instruction& instruction) {
            return isDeferred(instruction) ? value(instruction) : 0;
        };
    }
    EntryPoint write();

  private:
    void block(const BasicBlock& block);
    void phi(const PHINode& phi);
    void instruction(const Instruction& instruction);
    Id value(const Instruction& instruction);
    Id call(const CallInst& call);
    void terminator(const Instruction& terminator);
    void merge(const BasicBlock& block, bool isBranching);
    void fillPhis();
    void modes();
    void function();
    std::vector<Resource> resources() const;
    std::vector<FunctionConstant> constants() const;

    bool isOfMesh() const { return shader_.stage == Stage::object || shader_.stage == Stage::mesh; }

    const ShaderModule& shader_;
    Module module_;
    Body body_;
    Memory memory_;
    Images images_;
    Fetches fetches_;
    RayQueries rays_;
    Meshes meshes_;
    std::vector<std::pair<const PHINode*, std::size_t>> phis_; // and the place of their operands
};

// The operands are filled in after all blocks are written: a value may come from a later block.
void FunctionWriter::phi(const PHINode& phi) {
    SmallVector<std::uint32_t, 8> operands(2 * phi.getNumIncomingValues(), 0u);
    std::size_t at = body_.code.size() + 3;
    body_.set(&phi, body_.emit(spv::Op::OpPhi, phi.getType(), operands));
    phis_.emplace_back(&phi, at);
}

void FunctionWriter::fillPhis() {
    body_.onDemand = nullptr; // the operands' blocks are complete
    for (auto [phi, at] : phis_) {
        for (unsigned incoming = 0; incoming < phi->getNumIncomingValues(); ++incoming) {
            body_.code[at++] = body_.id(phi->getIncomingValue(incoming));
            body_.code[at++] = body_.label(phi->getIncomingBlock(incoming));
        }
    }
}

// NAME of a call to `msl.NAME.SUFFIX`.
static StringRef builtInName(StringRef symbol) {
    return symbol.consume_front("msl.") ? symbol.take_until([](char c) { return c == '.'; })
                                        : StringRef();
}

Id FunctionWriter::call(const CallInst& call) {
    if (auto* intrinsic = dyn_cast<IntrinsicInst>(&call))
        return writeIntrinsic(body_, *intrinsic);
    const Function* callee = call.getCalledFunction();
    StringRef name = callee ? builtInName(callee->getName()) : StringRef();
    if (name.empty())
        throw callee ? TranslationError("The function '" + demangle(callee->getName()) +
                                        "' is called but not defined.")
                     : TranslationError("Function pointers are not supported in a shader.");
    if (name == "attribute")
        return fetches_.write(call);
    if (RayQueries::takes(name))
        return rays_.write(name, call);
    return Images::takes(name) ? images_.write(name, call)
                               : writeBuiltInCall(body_, memory_, name, call);
}

Id FunctionWriter::value(const Instruction& instruction) {
    if (auto* operation = dyn_cast<BinaryOperator>(&instruction))
        return writeBinary(body_, *operation);
    if (auto* compare = dyn_cast<CmpInst>(&instruction))
        return writeCompare(body_, *compare);
    if (auto* cast = dyn_cast<CastInst>(&instruction))
        return writeCast(body_, *cast);
    if (auto* called = dyn_cast<CallInst>(&instruction))
        return call(*called);
    switch (instruction.getOpcode()) {
    case Instruction::Load: {
        auto& load = cast<LoadInst>(instruction);
        return load.isAtomic()
                   ? writeAtomicLoad(body_, memory_, load)
                   : memory_.load(load.getPointerOperand(), load.getType(), load.getAlign());
    }
    case Instruction::FNeg:
        return body_.emit(spv::Op::OpFNegate, instruction.getType(),
                          {body_.id(instruction.getOperand(0))});
    case Instruction::Select:
        return body_.emit(spv::Op::OpSelect, instruction.getType(),
                          body_.operands(instruction, 0, 3));
    case Instruction::InsertElement:
        return writeInsertElement(body_, cast<InsertElementInst>(instruction));
    case Instruction::ExtractElement:
        return writeExtractElement(body_, cast<ExtractElementInst>(instruction));
    case Instruction::ShuffleVector:
        return writeShuffle(body_, cast<ShuffleVectorInst>(instruction));
    case Instruction::InsertValue:
        return writeInsertValue(body_, cast<InsertValueInst>(instruction));
    case Instruction::ExtractValue:
        return writeExtractValue(body_, cast<ExtractValueInst>(instruction));
    case Instruction::AtomicRMW:
        return writeAtomic(body_, memory_, cast<AtomicRMWInst>(instruction));
    case Instruction::AtomicCmpXchg:
        return writeAtomic(body_, memory_, cast<AtomicCmpXchgInst>(instruction));
    default:
        throw CompilerFault(std::string("An instruction is left: ") + instruction.getOpcodeName());
    }
}

void FunctionWriter::instruction(const Instruction& instruction) {
    if (auto* store = dyn_cast<StoreInst>(&instruction)) {
        if (store->isAtomic())
            return writeAtomicStore(body_, memory_, *store);
        const Value* stored = store->getValueOperand();
        return memory_.store(store->getPointerOperand(), stored->getType(), body_.id(stored),
                             store->getAlign());
    }
    // A pointer is resolved at its use. Atomics are relaxed, so fences have no effect.
    bool isSilent = instruction.getType()->isPointerTy() || isa<FenceInst>(instruction);
    if (isSilent || isDeferred(instruction))
        return;
    if (Id made = value(instruction))
        body_.set(&instruction, made);
}

static std::uint32_t maskOf(LoopControl control) {
    switch (control) {
    case LoopControl::none:
        return 0;
    case LoopControl::unroll:
        return static_cast<std::uint32_t>(spv::LoopControlMask::Unroll);
    case LoopControl::keep:
        return static_cast<std::uint32_t>(spv::LoopControlMask::DontUnroll);
    }
    return 0;
}

void FunctionWriter::merge(const BasicBlock& block, bool isBranching) {
    auto found = shader_.structure.find(const_cast<BasicBlock*>(&block));
    if (found == shader_.structure.end())
        return;
    const Merge& merge = found->second;
    if (merge.continueTarget)
        body_.act(spv::Op::OpLoopMerge,
                  {body_.label(merge.merge), body_.label(merge.continueTarget),
                   maskOf(markedLoopControl(block))});
    else if (isBranching)
        body_.act(spv::Op::OpSelectionMerge, {body_.label(merge.merge), 0});
}

void FunctionWriter::terminator(const Instruction& terminator) {
    if (isa<ReturnInst>(terminator) && isOfMesh())
        return meshes_.end();
    if (isa<ReturnInst>(terminator)) {
        if (shader_.ordersFragments)
            body_.act(spv::Op::OpEndInvocationInterlockEXT, {});
        return body_.act(spv::Op::OpReturn, {});
    }
    if (isa<UnreachableInst>(terminator))
        return body_.act(spv::Op::OpUnreachable, {});
    auto* branch = dyn_cast<BranchInst>(&terminator);
    if (!branch)
        throw CompilerFault("A terminator is left that is no branch.");
    // The two targets of one branch must differ (SPIR-V 1.6, 3.52.17).
    bool isBranching =
        branch->isConditional() && branch->getSuccessor(0) != branch->getSuccessor(1);
    Id condition = isBranching ? body_.id(branch->getCondition()) : 0; // may write it
    merge(*branch->getParent(), isBranching); // the last instruction but one
    Id first = body_.label(branch->getSuccessor(0));
    if (!isBranching)
        return body_.act(spv::Op::OpBranch, {first});
    body_.act(spv::Op::OpBranchConditional,
              {condition, first, body_.label(branch->getSuccessor(1))});
}

void FunctionWriter::block(const BasicBlock& block) {
    if (!block.isEntryBlock())
        body_.act(spv::Op::OpLabel, {body_.label(&block)});
    for (const Instruction& each : block) {
        if (auto* merged = dyn_cast<PHINode>(&each))
            phi(*merged);
        else if (each.isTerminator())
            terminator(each);
        else
            at(each, [&] { instruction(each); });
    }
}

void FunctionWriter::modes() {
    if (shader_.stage == Stage::fragment)
        module_.executionMode(spv::ExecutionMode::OriginUpperLeft);
    if (shader_.stage == Stage::fragment && shader_.earlyFragmentTests)
        module_.executionMode(spv::ExecutionMode::EarlyFragmentTests);
    if (shader_.coversAfterDepth) {
        module_.require(spv::Capability::SampleMaskPostDepthCoverage);
        module_.extension("SPV_KHR_post_depth_coverage");
        module_.executionMode(spv::ExecutionMode::PostDepthCoverage);
    }
    if (shader_.ordersFragments) {
        module_.require(spv::Capability::FragmentShaderPixelInterlockEXT);
        module_.extension("SPV_EXT_fragment_shader_interlock");
        module_.executionMode(spv::ExecutionMode::PixelInterlockOrderedEXT);
    }
    if (hasThreadgroups(shader_.stage))
        module_.executionMode(spv::ExecutionMode::LocalSizeId, threadgroupSize(body_));
    if (isOfMesh())
        meshes_.modes();
    if (shader_.patch == PatchKind::none)
        return;
    module_.require(spv::Capability::Tessellation);
    module_.executionMode(shader_.patch == PatchKind::quad ? spv::ExecutionMode::Quads
                                                           : spv::ExecutionMode::Triangles);
}

void FunctionWriter::function() {
    body_.type(); // the first declaration
    if (shader_.ordersFragments)
        body_.act(spv::Op::OpBeginInvocationInterlockEXT, {});
    if (isOfMesh())
        meshes_.begin();
    // Each block comes after those that dominate it; unreachable blocks come last.
    ReversePostOrderTraversal<const Function*> order(shader_.main);
    SmallPtrSet<const BasicBlock*, 32> written;
    for (const BasicBlock* each : order) {
        block(*each);
        written.insert(each);
    }
    for (const BasicBlock& each : *shader_.main)
        if (!written.contains(&each))
            block(each);
    fillPhis();
    body_.finish(module_.main(), body_.label(&shader_.main->getEntryBlock()));
}

std::vector<Resource> FunctionWriter::resources() const {
    std::vector<Resource> all = memory_.resources();
    all.insert(all.end(), images_.resources().begin(), images_.resources().end());
    all.insert(all.end(), rays_.resources().begin(), rays_.resources().end());
    llvm::sort(all, [](const Resource& a, const Resource& b) { return a.binding < b.binding; });
    if (shader_.stage == Stage::vertex && !all.empty() &&
        all.back().binding >= firstBinding(Stage::fragment))
        throw TranslationError("The function '" + shader_.name +
                               "' uses more than 32 buffers, textures and samplers.");
    return all;
}

// The function constants that the code reads or asks for; all, if conditions depend on some.
std::vector<FunctionConstant> FunctionWriter::constants() const {
    std::vector<FunctionConstant> used;
    for (const ConstantSignature& constant : shader_.constants) {
        const bool isAsked =
            body_.constants.hasSpecialisation(functionConstantPresence(constant.index));
        bool isRead = false;
        for (std::uint32_t component = 0; component < constant.width; ++component)
            isRead |= body_.constants.hasSpecialisation(
                functionConstantComponent(constant.index, component));
        if (isRead || isAsked || shader_.isShapedByConstants)
            used.push_back({.name = constant.name,
                            .index = constant.index,
                            .scalar = constant.scalar,
                            .width = constant.width,
                            .isRequired = isRead && !isAsked});
    }
    llvm::sort(used, [](const auto& a, const auto& b) { return a.index < b.index; });
    return used;
}

static spv::ExecutionModel modelOf(const ShaderModule& shader) {
    switch (shader.stage) {
    case Stage::vertex:
        return shader.patch == PatchKind::none ? spv::ExecutionModel::Vertex
                                               : spv::ExecutionModel::TessellationEvaluation;
    case Stage::fragment:
        return spv::ExecutionModel::Fragment;
    case Stage::kernel:
        return spv::ExecutionModel::GLCompute;
    case Stage::object:
        return spv::ExecutionModel::TaskEXT;
    case Stage::mesh:
        return spv::ExecutionModel::MeshEXT;
    }
    return spv::ExecutionModel::Fragment;
}

EntryPoint FunctionWriter::write() {
    modes();
    function();
    memory_.finish();
    return {.name = shader_.name,
            .stage = shader_.stage,
            .words = module_.finish(modelOf(shader_)),
            .resources = resources(),
            .usesLoopBudget = shader_.usesLoopBudget,
            .needsStandardSamples = body_.needsStandardSamples,
            .needsEightLanes = body_.needsEightLanes,
            .writesPointSize = memory_.writesPointSize(),
            .colorAttachments = memory_.colorAttachments(),
            .threadgroupBytes = memory_.threadgroupBytes(),
            .threadgroupPointers = memory_.threadgroupPointers(),
            .mostThreads = shader_.mostThreads,
            .attributes = fetches_.used(),
            .patch = shader_.patch,
            .controlPoints = shader_.controlPoints,
            .constants = constants(),
            .isShapedByConstants = shader_.isShapedByConstants,
            .storesByAddress = memory_.storesByAddress(),
            .members = shader_.members};
}

EntryPoint writeSpirv(const ShaderModule& shader) {
    return FunctionWriter(shader).write();
}

} // namespace tarnwick::msl
