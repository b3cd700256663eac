// In: reads and writes of whole vectors in buffers. Out: a store writes only the lanes that the
// program changed, and a load of which one lane is used reads only that lane.
//
// Invariant: memory holds the same bytes after the pass. A store is narrowed only if MemorySSA
// shows that no write can lie between the load of the old lanes and the store; then those lanes
// already have their values. All stores are examined before the first is replaced, because the
// analysis does not follow the changes.
//
// Why: the packaged CPU driver reads and writes buffers lane by lane, each under a mask of its own:
// a particle's update that left three of four lanes alone took a quarter longer for writing them
// back.
#include "TarnwickMSL/Translation/Passes/Memory/NarrowAccess.h"

#include <llvm/Analysis/MemorySSA.h>
#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>

#include <bitset>
#include <optional>

namespace tarnwick::msl {

using namespace llvm;

using Lanes = SmallVector<std::pair<unsigned, Value*>, 4>;

static bool isBuffer(const Value* pointer) {
    auto* root = dyn_cast<GlobalVariable>(getUnderlyingObject(pointer));
    return root && root->isDeclaration();
}

static unsigned width(const Type* type) {
    return cast<FixedVectorType>(type)->getNumElements();
}

// What was put into a vector on the way to `value`, the last first, and the vector itself.
static Value* base(Value* value, Lanes& lanes) {
    std::bitset<16> seen;
    while (auto* insert = dyn_cast<InsertElementInst>(value)) {
        auto* index = dyn_cast<ConstantInt>(insert->getOperand(2));
        if (!index || index->getZExtValue() >= width(insert->getType()))
            break;
        const auto lane = static_cast<unsigned>(index->getZExtValue());
        if (!seen.test(lane))
            lanes.emplace_back(lane, insert->getOperand(1));
        seen.set(lane);
        value = insert->getOperand(0);
    }
    return value;
}

static Value* laneAddress(IRBuilder<>& builder, Value* pointer, Type* element, unsigned lane) {
    return lane == 0 ? pointer : builder.CreateConstInBoundsGEP1_32(element, pointer, lane);
}

static Align laneAlignment(Align whole, Type* element, unsigned lane) {
    return commonAlignment(whole, lane * (element->getScalarSizeInBits() / 8));
}

// Whether the buffer has the same value at `store` as at `load`.
static bool isUnchanged(LoadInst& load, StoreInst& store, MemorySSA& memory) {
    MemorySSAWalker& walker = *memory.getWalker();
    const MemoryLocation place = MemoryLocation::get(&store);
    return walker.getClobberingMemoryAccess(&load) ==
           walker.getClobberingMemoryAccess(memory.getMemoryAccess(&store)->getDefiningAccess(),
                                            place);
}

static bool narrow(StoreInst& store, MemorySSA& memory) {
    auto* type = dyn_cast<FixedVectorType>(store.getValueOperand()->getType());
    if (!type || !store.isSimple() || !isBuffer(store.getPointerOperand()))
        return false;
    Lanes lanes;
    auto* load = dyn_cast<LoadInst>(base(store.getValueOperand(), lanes));
    if (!load || !load->isSimple() || lanes.empty() || lanes.size() >= width(type) ||
        load->getPointerOperand() != store.getPointerOperand() ||
        !isUnchanged(*load, store, memory))
        return false;
    IRBuilder<> builder(&store);
    Type* element = type->getElementType();
    for (const auto& [lane, value] : lanes)
        builder.CreateAlignedStore(value,
                                   laneAddress(builder, store.getPointerOperand(), element, lane),
                                   laneAlignment(store.getAlign(), element, lane));
    return true;
}

// The lane that all uses of a load take, if it is one.
static std::optional<unsigned> onlyLane(const LoadInst& load) {
    std::optional<unsigned> only;
    for (const User* user : load.users()) {
        auto* extract = dyn_cast<ExtractElementInst>(user);
        auto* index = extract ? dyn_cast<ConstantInt>(extract->getIndexOperand()) : nullptr;
        if (!index || index->getZExtValue() >= width(load.getType()) ||
            (only && *only != index->getZExtValue()))
            return {};
        only = static_cast<unsigned>(index->getZExtValue());
    }
    return only;
}

static bool narrow(LoadInst& load) {
    auto* type = dyn_cast<FixedVectorType>(load.getType());
    if (!type || !load.isSimple() || !isBuffer(load.getPointerOperand()))
        return false;
    const auto lane = onlyLane(load);
    if (!lane)
        return false;
    IRBuilder<> builder(&load);
    Type* element = type->getElementType();
    Value* value = builder.CreateAlignedLoad(
        element, laneAddress(builder, load.getPointerOperand(), element, *lane),
        laneAlignment(load.getAlign(), element, *lane));
    for (User* user : make_early_inc_range(load.users())) {
        user->replaceAllUsesWith(value);
        cast<Instruction>(user)->eraseFromParent();
    }
    return true;
}

static void dropUnused(Instruction* instruction) {
    while (instruction && instruction->use_empty() && !instruction->mayHaveSideEffects()) {
        auto* from = dyn_cast<Instruction>(instruction->getOperand(0));
        instruction->eraseFromParent();
        instruction = from && isa<InsertElementInst, LoadInst>(from) ? from : nullptr;
    }
}

bool narrowAccess(Function& main, FunctionAnalysisManager& analyses) {
    SmallVector<StoreInst*, 16> stores;
    for (Instruction& instruction : instructions(main))
        if (auto* store = dyn_cast<StoreInst>(&instruction);
            store && isa<InsertElementInst>(store->getValueOperand()))
            stores.push_back(store);
    if (!stores.empty()) {
        MemorySSA& memory = analyses.getResult<MemorySSAAnalysis>(main).getMSSA();
        // Each is judged before any goes, while the analysis holds.
        erase_if(stores, [&](StoreInst* store) { return !narrow(*store, memory); });
    }
    for (StoreInst* store : stores) {
        auto* value = dyn_cast<Instruction>(store->getValueOperand());
        store->eraseFromParent();
        dropUnused(value);
    }
    SmallVector<LoadInst*, 16> narrowed;
    for (Instruction& instruction : instructions(main))
        if (auto* load = dyn_cast<LoadInst>(&instruction); load && narrow(*load))
            narrowed.push_back(load);
    for (LoadInst* load : narrowed)
        load->eraseFromParent();
    return !stores.empty() || !narrowed.empty();
}

} // namespace tarnwick::msl
