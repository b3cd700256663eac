// In: vectors of up to 16 lanes, which LLVM makes when it copies a record of bytes or joins stores
// of neighbouring members. Out: each of their lanes as a value of its own, at most four lanes in a
// vector, as SPIR-V without Vector16 requires.
//
// The pass visits blocks in reverse postorder, so that the lanes of an operand exist before the
// instruction that uses them; only phis can use a later value, and their lanes are filled at the
// end. A bit cast between vectors of different lane sizes joins or cuts whole lanes by shifts.
//
// Invariant: the lanes in the map of a wide value are its lanes in order, the first lane in the
// lowest bits, as in memory on a little-endian machine. An unknown instruction keeps its wide
// operands: the check of the form then names it.
#include "TarnwickMSL/Translation/Passes/Values/WideVectors.h"

#include <llvm/ADT/PostOrderIterator.h>
#include <llvm/Analysis/VectorUtils.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/IntrinsicInst.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;

constexpr unsigned mostLanes = 4;

static bool isWide(const Type* type) {
    auto* vector = dyn_cast<FixedVectorType>(type);
    return vector && vector->getNumElements() > mostLanes;
}

// As the result or as an operand, which may be a constant.
static bool hasWide(const Instruction& instruction) {
    return isWide(instruction.getType()) || any_of(instruction.operands(), [](const Use& operand) {
               return isWide(operand->getType());
           });
}

static unsigned laneCount(const Type* type) {
    auto* vector = dyn_cast<FixedVectorType>(type);
    return vector ? vector->getNumElements() : 1;
}

namespace {

using Lanes = SmallVector<Value*, 16>;

class Splitter {
  public:
    explicit Splitter(Function& main) : main_(main) {}
    void run();

  private:
    Lanes lanesOf(Value* value, IRBuilder<>& builder);
    std::optional<Lanes> split(Instruction& instruction, IRBuilder<>& builder);
    std::optional<Lanes> eachLane(Instruction& instruction, IRBuilder<>& builder);
    Lanes load(LoadInst& load, IRBuilder<>& builder);
    void store(StoreInst& store, IRBuilder<>& builder);
    void fillPhis();

    Function& main_;
    DenseMap<Value*, Lanes> known_;
    SmallVector<Instruction*, 16> old_; // whose values stand as lanes now
};

// `width` bits from bit `from` of consecutive lanes, the first lane lowest.
Value* bitsAt(ArrayRef<Value*> lanes, unsigned from, unsigned width, IRBuilder<>& builder) {
    unsigned bits = lanes.front()->getType()->getScalarSizeInBits();
    Type* type = builder.getIntNTy(width);
    Value* result = nullptr;
    for (unsigned at = from / bits * bits; at < from + width; at += bits) {
        Value* lane = builder.CreateBitCast(lanes[at / bits], builder.getIntNTy(bits));
        if (at < from)
            lane = builder.CreateLShr(lane, from - at);
        lane = builder.CreateZExtOrTrunc(lane, type);
        if (at > from)
            lane = builder.CreateShl(lane, at - from);
        result = result ? builder.CreateOr(result, lane) : lane;
    }
    return result;
}

Lanes asLanes(ArrayRef<Value*> lanes, Type* type, IRBuilder<>& builder) {
    Type* scalar = type->getScalarType();
    unsigned bits = scalar->getScalarSizeInBits();
    Lanes result;
    for (unsigned n = 0; n < laneCount(type); ++n)
        result.push_back(builder.CreateBitCast(bitsAt(lanes, n * bits, bits, builder), scalar));
    return result;
}

Value* joined(ArrayRef<Value*> lanes, Type* type, IRBuilder<>& builder) {
    if (!type->isVectorTy())
        return lanes.front();
    Value* vector = PoisonValue::get(type);
    for (std::uint64_t n = 0; n < lanes.size(); ++n)
        vector = builder.CreateInsertElement(vector, lanes[n], n);
    return vector;
}

Lanes Splitter::lanesOf(Value* value, IRBuilder<>& builder) {
    if (auto found = known_.find(value); found != known_.end())
        return found->second;
    if (!value->getType()->isVectorTy())
        return {value};
    Lanes lanes;
    for (std::uint64_t n = 0; n < laneCount(value->getType()); ++n)
        lanes.push_back(builder.CreateExtractElement(value, n)); // folds, of a constant
    return lanes;
}

// By words where they are whole: other invocations may store to the bytes beside.
static Type* unitOf(Type* type, Align alignment, IRBuilder<>& builder) {
    bool isByWords = alignment >= 4 && type->getPrimitiveSizeInBits() % 32 == 0;
    return isByWords ? builder.getInt32Ty() : type->getScalarType();
}

Lanes Splitter::load(LoadInst& load, IRBuilder<>& builder) {
    auto* input = dyn_cast<GlobalVariable>(load.getPointerOperand());
    if (input && input->getValueType()->isVectorTy() && !isWide(input->getValueType())) {
        Value* whole = builder.CreateLoad(input->getValueType(), input); // built-ins are read whole
        return asLanes(lanesOf(whole, builder), load.getType(), builder);
    }
    Type* unit = unitOf(load.getType(), load.getAlign(), builder);
    unsigned bits = unit->getScalarSizeInBits();
    Lanes units;
    for (unsigned at = 0; at < load.getType()->getPrimitiveSizeInBits(); at += bits)
        units.push_back(builder.CreateAlignedLoad(
            unit, builder.CreateConstGEP1_64(builder.getInt8Ty(), load.getPointerOperand(), at / 8),
            Align(bits / 8)));
    return asLanes(units, load.getType(), builder);
}

void Splitter::store(StoreInst& store, IRBuilder<>& builder) {
    Type* type = store.getValueOperand()->getType();
    Type* unit = unitOf(type, store.getAlign(), builder);
    unsigned bits = unit->getScalarSizeInBits();
    Lanes lanes = lanesOf(store.getValueOperand(), builder);
    for (unsigned at = 0; at < type->getPrimitiveSizeInBits(); at += bits)
        builder.CreateAlignedStore(
            builder.CreateBitCast(bitsAt(lanes, at, bits, builder), unit),
            builder.CreateConstGEP1_64(builder.getInt8Ty(), store.getPointerOperand(), at / 8),
            Align(bits / 8));
}

std::optional<Lanes> Splitter::eachLane(Instruction& instruction, IRBuilder<>& builder) {
    SmallVector<Lanes, 3> operands;
    for (Value* operand : instruction.operands())
        operands.push_back(lanesOf(operand, builder));
    Lanes result;
    for (unsigned n = 0; n < laneCount(instruction.getType()); ++n) {
        auto at = [&](unsigned k) { return operands[k][operands[k].size() == 1 ? 0 : n]; };
        Type* type = instruction.getType()->getScalarType();
        if (auto* operation = dyn_cast<BinaryOperator>(&instruction))
            result.push_back(builder.CreateBinOp(operation->getOpcode(), at(0), at(1)));
        else if (auto* cast = dyn_cast<CastInst>(&instruction))
            result.push_back(builder.CreateCast(cast->getOpcode(), at(0), type));
        else if (auto* compare = dyn_cast<CmpInst>(&instruction))
            result.push_back(builder.CreateCmp(compare->getPredicate(), at(0), at(1)));
        else if (isa<SelectInst>(instruction))
            result.push_back(builder.CreateSelect(at(0), at(1), at(2)));
        else if (isa<FreezeInst>(instruction))
            result.push_back(builder.CreateFreeze(at(0)));
        else if (auto* unary = dyn_cast<UnaryOperator>(&instruction))
            result.push_back(builder.CreateUnOp(unary->getOpcode(), at(0)));
        else if (auto* call = dyn_cast<IntrinsicInst>(&instruction);
                 call && isTriviallyVectorizable(call->getIntrinsicID()))
            result.push_back(
                call->arg_size() == 1
                    ? builder.CreateIntrinsic(type, call->getIntrinsicID(), {at(0)})
                    : builder.CreateIntrinsic(type, call->getIntrinsicID(), {at(0), at(1)}));
        else
            return std::nullopt;
    }
    return result;
}

// The lanes of the result; none for a store. Nothing if the instruction is not known.
std::optional<Lanes> Splitter::split(Instruction& instruction, IRBuilder<>& builder) {
    Type* type = instruction.getType();
    if (auto* access = dyn_cast<LoadInst>(&instruction))
        return load(*access, builder);
    if (auto* access = dyn_cast<StoreInst>(&instruction)) {
        store(*access, builder);
        return Lanes{};
    }
    if (isa<BitCastInst>(instruction))
        return asLanes(lanesOf(instruction.getOperand(0), builder), type, builder);
    if (auto* shuffle = dyn_cast<ShuffleVectorInst>(&instruction)) {
        Lanes both = lanesOf(shuffle->getOperand(0), builder), result;
        both.append(lanesOf(shuffle->getOperand(1), builder));
        for (int lane : shuffle->getShuffleMask())
            result.push_back(lane < 0 ? PoisonValue::get(type->getScalarType())
                                      : both[static_cast<std::size_t>(lane)]);
        return result;
    }
    bool isInsertion = isa<InsertElementInst>(instruction);
    if (!isInsertion && !isa<ExtractElementInst>(instruction))
        return eachLane(instruction, builder);
    auto* index = dyn_cast<ConstantInt>(instruction.getOperand(isInsertion ? 2 : 1));
    Lanes lanes = lanesOf(instruction.getOperand(0), builder);
    if (!index || index->getZExtValue() >= lanes.size())
        return std::nullopt;
    Value*& lane = lanes[index->getZExtValue()];
    if (!isInsertion)
        return Lanes{lane};
    lane = instruction.getOperand(1);
    return lanes;
}

void Splitter::fillPhis() {
    for (auto& [value, lanes] : known_) {
        auto* phi = dyn_cast<PHINode>(value);
        for (unsigned n = 0; phi && n < phi->getNumIncomingValues(); ++n) {
            IRBuilder<> builder(phi->getIncomingBlock(n)->getTerminator());
            Lanes incoming = lanesOf(phi->getIncomingValue(n), builder);
            for (std::size_t lane = 0; lane < lanes.size(); ++lane)
                cast<PHINode>(lanes[lane])->addIncoming(incoming[lane], phi->getIncomingBlock(n));
        }
    }
}

void Splitter::run() {
    ReversePostOrderTraversal<Function*> order(&main_);
    for (BasicBlock* block : order)
        for (Instruction& instruction : make_early_inc_range(*block)) {
            Type* type = instruction.getType();
            if (!hasWide(instruction))
                continue;
            IRBuilder<> builder(&instruction);
            std::optional<Lanes> lanes = Lanes{};
            if (auto* phi = dyn_cast<PHINode>(&instruction))
                for (unsigned n = 0; n < laneCount(type); ++n)
                    lanes->push_back(
                        builder.CreatePHI(type->getScalarType(), phi->getNumIncomingValues()));
            else
                lanes = split(instruction, builder);
            if (!lanes)
                continue;
            if (isWide(type))
                known_[&instruction] = *lanes;
            else if (!type->isVoidTy())
                instruction.replaceAllUsesWith(joined(*lanes, type, builder));
            old_.push_back(&instruction);
        }
    fillPhis();
    for (Instruction* instruction : reverse(old_)) {
        // The operands of an instruction that is not known remain.
        if (all_of(instruction->users(), [&](User* user) { return is_contained(old_, user); }))
            instruction->replaceAllUsesWith(PoisonValue::get(instruction->getType()));
    }
    for (Instruction* instruction : old_)
        if (instruction->use_empty())
            instruction->eraseFromParent();
}

} // namespace

void splitWideVectors(Function& main) {
    if (any_of(instructions(main), hasWide))
        Splitter(main).run();
}

} // namespace tarnwick::msl
