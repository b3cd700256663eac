// The packaged CPU driver fills a table anew for each group of invocations and gathers from it: a
// grid's six corners, two lanes each, took a twentieth of all its time.
#include "TarnwickMSL/Translation/Passes/Values/TwoValuedTables.h"

#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned mostElements = 32; // bits of a word

// What a lane is where its bit is clear and set; bit i belongs to element i.
struct LaneChoice {
    Constant* clear = nullptr;
    Constant* set = nullptr; // null where the lane is always `clear`
    std::uint32_t bits = 0;
};

struct TableRead {
    const Constant* table;
    unsigned size; // elements
    Value* index;
};

static std::optional<TableRead> tableRead(const LoadInst& load) {
    auto* address = dyn_cast<GetElementPtrInst>(load.getPointerOperand());
    if (!address || !load.isSimple() || address->getNumOperands() != 3)
        return {};
    auto* global = dyn_cast<GlobalVariable>(address->getPointerOperand());
    auto* first = dyn_cast<ConstantInt>(address->getOperand(1));
    if (!global || !global->isConstant() || !global->hasDefinitiveInitializer() || !first ||
        !first->isZero() || !address->getOperand(2)->getType()->isIntegerTy(32))
        return {};
    auto* type = dyn_cast<ArrayType>(global->getValueType());
    if (!type || address->getSourceElementType() != type || type->getNumElements() == 0 ||
        type->getNumElements() > mostElements || type->getElementType() != load.getType())
        return {};
    return TableRead{global->getInitializer(), static_cast<unsigned>(type->getNumElements()),
                     address->getOperand(2)};
}

static std::optional<LaneChoice> choice(const TableRead& read, unsigned lane) {
    LaneChoice result;
    for (unsigned i = 0; i < read.size; i++) {
        Constant* value = read.table->getAggregateElement(i);
        if (value && value->getType()->isVectorTy())
            value = value->getAggregateElement(lane);
        if (!value || isa<UndefValue>(value))
            return {};
        if (i == 0)
            result.clear = value;
        if (value == result.clear)
            continue;
        if (result.set && value != result.set)
            return {};
        result.set = value;
        result.bits |= 1u << i;
    }
    return result;
}

static Value* chosen(IRBuilder<>& builder, const LaneChoice& lane, Value* place) {
    if (!lane.set)
        return lane.clear;
    Value* bit = builder.CreateAnd(builder.CreateLShr(builder.getInt32(lane.bits), place), 1);
    return builder.CreateSelect(builder.CreateICmpNE(bit, builder.getInt32(0)), lane.set,
                                lane.clear);
}

static bool replace(LoadInst& load) {
    const auto read = tableRead(load);
    if (!read)
        return false;
    Type* type = load.getType();
    auto* vector = dyn_cast<FixedVectorType>(type);
    if (!type->getScalarType()->isFloatingPointTy() && !type->getScalarType()->isIntegerTy())
        return false;
    SmallVector<LaneChoice, 4> lanes;
    for (unsigned lane = 0; lane < (vector ? vector->getNumElements() : 1); lane++) {
        const auto found = choice(*read, lane);
        if (!found)
            return false;
        lanes.push_back(*found);
    }
    IRBuilder<> builder(&load);
    // An index past the table selects one of its values. The shift is never too large.
    Value* place = builder.CreateAnd(read->index, mostElements - 1);
    Value* value = vector ? PoisonValue::get(type) : chosen(builder, lanes[0], place);
    for (unsigned lane = 0; vector && lane < lanes.size(); lane++)
        value = builder.CreateInsertElement(value, chosen(builder, lanes[lane], place), lane);
    load.replaceAllUsesWith(value);
    return true;
}

bool replaceTwoValuedTables(Function& main) {
    SmallVector<LoadInst*, 8> replaced;
    for (Instruction& instruction : make_early_inc_range(instructions(main)))
        if (auto* load = dyn_cast<LoadInst>(&instruction); load && replace(*load))
            replaced.push_back(load);
    for (LoadInst* load : replaced) {
        auto* address = cast<Instruction>(load->getPointerOperand());
        load->eraseFromParent();
        if (address->use_empty())
            address->eraseFromParent();
    }
    return !replaced.empty();
}

} // namespace tarnwick::msl
