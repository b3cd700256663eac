// In: loads and stores of any scalars, from variables with members of any types. Out: each variable
// has the type that wordType gives it, and a load or store of scalars that the target lacks is one
// of the words around them, with shifts.
//
// The place of an access in its word is known if all steps to it are whole words; then the steps
// stay as they are, and the writer sees the members that they reach. Otherwise the variable is
// accessed as one array of words, at the number of bytes divided by four.
//
// A store of a part of a word changes the word. Another invocation may change its other bytes at
// the same time, if the variable is not a local one. So such a store is two atomic operations: the
// first clears the bits, the second sets those of the value. Invocations that store equal values in
// the same bytes leave that value, in whatever order they run; a load between the two operations
// is a race in the program itself.
#include "TarnwickMSL/Translation/Passes/Widths/WordMemory.h"

#include "TarnwickMSL/Translation/Passes/Widths/Packing.h"
#include "TarnwickMSL/Translation/Passes/Widths/WordTypes.h"
#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/Reading/Access.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Module.h>
#include <llvm/Transforms/Utils/Local.h>

namespace tarnwick::msl {

using namespace llvm;

namespace {

constexpr std::uint64_t wordBytes = 4;

// An access's address, as words.
class WordPlace {
  public:
    WordPlace(Value* pointer, Align align, FoldingBuilder& builder, const DataLayout& layout);

    // How the bytes of the value are spread over words.
    bool isKnown() const { return known_; }
    unsigned firstByte() const { return first_; } // in its word, if it is known

    // The word at a number of words from the first one; the place must be known.
    Value* word(std::uint64_t index);

    struct Spot {
        Value* pointer; // to the word
        Value* shift;   // of the byte's lowest bit
    };
    Spot spot(std::uint64_t byte);          // at a number of bytes from the first
    unsigned unit() const { return unit_; } // bytes; a run of these lies within one word

  private:
    Value* bytes(std::uint64_t further);
    Value* wordAt(Value* bytes);

    FoldingBuilder& builder_;
    Value* pointer_;
    reading::Place place_;
    bool known_ = false, keepsSteps_ = false;
    unsigned first_ = 0, unit_ = 1;
};

} // namespace

static unsigned zerosOf(const reading::Term& term, const DataLayout& layout) {
    const APInt scale(64, static_cast<std::uint64_t>(term.scale));
    return scale.countr_zero() + computeKnownBits(term.index, layout).countMinTrailingZeros();
}

WordPlace::WordPlace(Value* pointer, Align align, FoldingBuilder& builder, const DataLayout& layout)
    : builder_(builder), pointer_(pointer), place_(reading::placeOf(pointer, layout)) {
    const auto offset = static_cast<std::uint64_t>(place_.offset);
    const bool isOfAddress = reading::addressOf(place_.root);
    unsigned zeros = isOfAddress ? 0 : 2; // low bits that the terms leave as they are
    keepsSteps_ = true;
    for (const reading::Term& term : place_.terms) {
        zeros = std::min(zeros, zerosOf(term, layout));
        keepsSteps_ &= term.scale % static_cast<std::int64_t>(wordBytes) == 0;
    }
    known_ = zeros == 2 || align >= wordBytes;
    first_ = zeros == 2 ? offset % wordBytes : 0;
    keepsSteps_ |= isOfAddress && known_;
    const bool isEven = align >= 2 || (zeros == 1 && offset % 2 == 0);
    unit_ = known_ && first_ == 0 ? wordBytes : isEven ? 2 : 1;
}

Value* WordPlace::bytes(std::uint64_t further) {
    Value* sum = builder_.getInt32(
        static_cast<std::uint32_t>(static_cast<std::uint64_t>(place_.offset) + further));
    for (const reading::Term& term : place_.terms) {
        Value* index =
            builder_.CreateSExtOrTrunc(const_cast<Value*>(term.index), builder_.getInt32Ty());
        Value* scale = builder_.getInt32(static_cast<std::uint32_t>(term.scale));
        sum = builder_.CreateAdd(builder_.CreateMul(index, scale), sum);
    }
    return sum;
}

// The word with a byte of the variable.
Value* WordPlace::wordAt(Value* bytes) {
    if (const Value* base = reading::addressOf(place_.root)) {
        auto* address = const_cast<Value*>(base);
        Type* wide = address->getType();
        Value* sum = builder_.CreateAdd(address, builder_.CreateSExtOrTrunc(bytes, wide));
        Value* whole = builder_.CreateAnd(sum, ConstantInt::getSigned(wide, -4));
        return builder_.CreateIntToPtr(whole, builder_.getPtrTy());
    }
    auto* root = const_cast<Value*>(place_.root);
    return builder_.CreateGEP(builder_.getInt32Ty(), root, builder_.CreateLShr(bytes, 2));
}

Value* WordPlace::word(std::uint64_t index) {
    if (!keepsSteps_)
        return wordAt(bytes(index * wordBytes - first_));
    const std::uint64_t step = index * wordBytes - first_;
    return step ? builder_.CreateGEP(builder_.getInt8Ty(), pointer_,
                                     builder_.getInt32(static_cast<std::uint32_t>(step)))
                : pointer_;
}

WordPlace::Spot WordPlace::spot(std::uint64_t byte) {
    Value* at = bytes(byte);
    Value* low = at;
    if (const Value* base = reading::addressOf(place_.root))
        low = builder_.CreateAdd(
            at, builder_.CreateTrunc(const_cast<Value*>(base), builder_.getInt32Ty()));
    return {wordAt(at), builder_.CreateShl(builder_.CreateAnd(low, 3), 3)};
}

static std::uint64_t laneBytes(const Type* type) {
    return std::max(1u, type->getScalarSizeInBits() / 8);
}

static std::uint64_t laneCount(const Type* type) {
    auto* vector = dyn_cast<FixedVectorType>(type);
    return vector ? vector->getNumElements() : 1;
}

static std::uint64_t bytesOf(const Type* type) {
    return laneBytes(type) * laneCount(type);
}

static WordList wordsOf(Value* value, FoldingBuilder& builder) {
    Type* type = value->getType();
    SmallVector<WordList, 4> lanes;
    for (std::uint64_t index = 0; index < laneCount(type); ++index) {
        Value* lane = type->isVectorTy() ? builder.CreateExtractElement(value, index) : value;
        const unsigned bits = type->getScalarSizeInBits();
        Value* whole = builder.CreateBitCast(lane, builder.getIntNTy(bits));
        WordList words{builder.CreateZExtOrTrunc(whole, builder.getInt32Ty())};
        if (bits > 32)
            words.push_back(
                builder.CreateTrunc(builder.CreateLShr(whole, 32), builder.getInt32Ty()));
        lanes.push_back(std::move(words));
    }
    return packed(lanes, laneBytes(type), builder);
}

static Value* laneValue(ArrayRef<Value*> words, Type* type, FoldingBuilder& builder) {
    const unsigned bits = type->getScalarSizeInBits();
    if (bits == 1)
        return builder.CreateIsNotNull(builder.CreateAnd(words.front(), 0xff));
    Type* integer = builder.getIntNTy(bits);
    Value* whole = builder.CreateZExtOrTrunc(words.front(), integer);
    if (bits > 32)
        whole =
            builder.CreateOr(whole, builder.CreateShl(builder.CreateZExt(words[1], integer), 32));
    return builder.CreateBitCast(whole, type);
}

static Value* valueOf(ArrayRef<Value*> words, Type* type, FoldingBuilder& builder) {
    Type* lane = type->getScalarType();
    Value* value = PoisonValue::get(type);
    for (std::uint64_t index = 0; index < laneCount(type); ++index) {
        Value* one = laneValue(laneOf(words, index, laneBytes(type), builder), lane, builder);
        value = type->isVectorTy() ? builder.CreateInsertElement(value, one, index) : one;
    }
    return value;
}

// The bits of a number of bytes.
static std::uint32_t maskOf(std::uint64_t bytes) {
    return bytes >= wordBytes ? ~0u : (1u << bytes * 8) - 1;
}

namespace {

class Converter {
  public:
    Converter(ShaderModule& shader, const Stands& stands)
        : shader_(shader), stands_(stands), layout_(shader.module->getDataLayout()) {}
    bool run();

  private:
    void convertVariables();
    void convert(GlobalVariable& global);
    void convert(AllocaInst& local);
    bool isInWords(Type* type, const Value* pointer) const;
    void convert(LoadInst& load);
    void convert(StoreInst& store);
    WordList read(WordPlace& place, std::uint64_t bytes, FoldingBuilder& builder) const;
    void write(WordPlace& place, WordList words, std::uint64_t bytes, bool isPrivate,
               FoldingBuilder& builder) const;
    void writePart(Value* pointer, Value* mask, Value* bits, bool isPrivate,
                   FoldingBuilder& builder) const;
    bool isPrivate(const Value* root) const;
    void checkPayload(const Value* root) const;

    ShaderModule& shader_;
    const Stands& stands_;
    const DataLayout& layout_;
    bool isChanged_ = false;
};

} // namespace

void Converter::convert(GlobalVariable& global) {
    Type* old = global.getValueType();
    const std::uint64_t bytes = layout_.getTypeAllocSize(old).getFixedValue();
    InterfaceVariable* known = nullptr;
    for (InterfaceVariable& variable : shader_.interface)
        if (global.getName() == variable.global)
            known = &variable;
    if (isFormatOfLog(global))
        return;
    Type* type = wordType(old, stands_, layout_);
    // An array of elements that are not whole words is one of words.
    if (known && !known->isReference && bytes % wordBytes != 0 && type != old)
        type = Type::getInt32Ty(global.getContext());
    if (type == old)
        return;
    if (known)
        known->elementBytes = (known->elementBytes + wordBytes - 1) / wordBytes * wordBytes;
    Constant* value = nullptr;
    if (global.hasInitializer())
        value = isa<UndefValue>(global.getInitializer())
                    ? UndefValue::get(type)
                    : wordConstant(*global.getInitializer(), type, layout_);
    auto* made = new GlobalVariable(*global.getParent(), type, global.isConstant(),
                                    global.getLinkage(), value, "", &global,
                                    GlobalValue::NotThreadLocal, global.getAddressSpace());
    made->takeName(&global);
    made->setSection(global.getSection());
    global.replaceAllUsesWith(made);
    global.eraseFromParent();
    isChanged_ = true;
}

void Converter::convert(AllocaInst& local) {
    Type* type = wordType(local.getAllocatedType(), stands_, layout_);
    isChanged_ |= type != local.getAllocatedType();
    local.setAllocatedType(type);
    local.setAlignment(std::max(local.getAlign(), Align(wordBytes)));
}

void Converter::convertVariables() {
    for (GlobalVariable& global : make_early_inc_range(shader_.module->globals()))
        convert(global);
    for (Instruction& instruction : shader_.main->getEntryBlock())
        if (auto* local = dyn_cast<AllocaInst>(&instruction))
            convert(*local);
}

// Whether an access must become one of words: for its type, or because of steps that are not of
// whole words, for which the writer would take smaller integers. Values between the stages are
// words in any case, but LLVM may read parts of them.
bool Converter::isInWords(Type* type, const Value* pointer) const {
    const reading::Place place = reading::placeOf(pointer, layout_);
    if (stands_.areInMemoryOf(type))
        return true;
    const auto isPart = [](std::int64_t bytes) {
        return bytes % static_cast<std::int64_t>(wordBytes) != 0;
    };
    return shader_.lacks.anySmall() && !reading::addressOf(place.root) &&
           (isPart(place.offset) ||
            any_of(place.terms, [&](const reading::Term& term) { return isPart(term.scale); }));
}

static Value* loadWord(Value* pointer, FoldingBuilder& builder) {
    return builder.CreateAlignedLoad(builder.getInt32Ty(), pointer, Align(wordBytes));
}

WordList Converter::read(WordPlace& place, std::uint64_t bytes, FoldingBuilder& builder) const {
    WordList words;
    if (place.isKnown()) {
        const unsigned shift = place.firstByte() * 8;
        WordList loaded;
        for (std::uint64_t at = 0; at < place.firstByte() + bytes; at += wordBytes)
            loaded.push_back(loadWord(place.word(at / wordBytes), builder));
        for (std::uint64_t at = 0; at < bytes; at += wordBytes) {
            Value* word = builder.CreateLShr(loaded[at / wordBytes], shift);
            if (shift && at / wordBytes + 1 < loaded.size())
                word = builder.CreateOr(word,
                                        builder.CreateShl(loaded[at / wordBytes + 1], 32 - shift));
            words.push_back(word);
        }
        return words;
    }
    words.assign((bytes + wordBytes - 1) / wordBytes, builder.getInt32(0));
    for (std::uint64_t at = 0; at < bytes; at += place.unit()) {
        const auto [pointer, shift] = place.spot(at);
        Value* part = builder.CreateLShr(loadWord(pointer, builder), shift);
        if (bytes > place.unit())
            part = builder.CreateAnd(part, maskOf(place.unit()));
        Value*& into = words[at / wordBytes];
        into = builder.CreateOr(into, builder.CreateShl(part, at % wordBytes * 8));
    }
    return words;
}

void Converter::writePart(Value* pointer, Value* mask, Value* bits, bool isPrivate,
                          FoldingBuilder& builder) const {
    Value* others = builder.CreateNot(mask);
    if (isPrivate) {
        Value* kept = builder.CreateAnd(loadWord(pointer, builder), others);
        builder.CreateAlignedStore(builder.CreateOr(kept, bits), pointer, Align(wordBytes));
        return;
    }
    const auto change = [&](AtomicRMWInst::BinOp operation, Value* operand) {
        builder.CreateAtomicRMW(operation, pointer, operand, Align(wordBytes),
                                AtomicOrdering::Monotonic);
    };
    change(AtomicRMWInst::And, others);
    auto* constant = dyn_cast<ConstantInt>(bits);
    if (!constant || !constant->isZero())
        change(AtomicRMWInst::Or, bits);
}

void Converter::write(WordPlace& place, WordList words, std::uint64_t bytes, bool isPrivate,
                      FoldingBuilder& builder) const {
    if (!place.isKnown()) {
        for (std::uint64_t at = 0; at < bytes; at += place.unit()) {
            const auto [pointer, shift] = place.spot(at);
            Value* mask = builder.getInt32(maskOf(place.unit()));
            Value* part = builder.CreateLShr(words[at / wordBytes], at % wordBytes * 8);
            writePart(pointer, builder.CreateShl(mask, shift),
                      builder.CreateShl(builder.CreateAnd(part, mask), shift), isPrivate, builder);
        }
        return;
    }
    const std::uint64_t first = place.firstByte(), end = first + bytes;
    words.push_back(builder.getInt32(0));
    for (std::uint64_t at = 0; at < end; at += wordBytes) {
        Value* bits = builder.CreateShl(words[at / wordBytes], first * 8);
        if (first && at)
            bits = builder.CreateOr(bits,
                                    builder.CreateLShr(words[at / wordBytes - 1], 32 - first * 8));
        const std::uint64_t from = at ? 0 : first;
        const std::uint32_t mask = maskOf(end - at) & ~maskOf(from);
        if (mask == ~0u)
            builder.CreateAlignedStore(bits, place.word(at / wordBytes), Align(wordBytes));
        else
            writePart(place.word(at / wordBytes), builder.getInt32(mask),
                      builder.CreateAnd(bits, mask), isPrivate, builder);
    }
}

void Converter::convert(LoadInst& load) {
    FoldingBuilder builder(load.getContext(), InstSimplifyFolder(layout_));
    builder.SetInsertPoint(&load);
    WordPlace place(load.getPointerOperand(), load.getAlign(), builder, layout_);
    const WordList words = read(place, bytesOf(load.getType()), builder);
    load.replaceAllUsesWith(valueOf(words, load.getType(), builder));
    load.eraseFromParent();
}

void Converter::checkPayload(const Value* root) const {
    if (root->getName() == payloadName)
        throw TranslationError("Storing less than 32 bits in the payload needs integers of 8 and "
                               "16 bits, which the device lacks.");
}

// Whether only this invocation uses the variable.
bool Converter::isPrivate(const Value* root) const {
    return isa<AllocaInst>(root) || any_of(shader_.interface, [&](const auto& variable) {
               return root->getName() == variable.global && variable.kind == InterfaceKind::output;
           });
}

void Converter::convert(StoreInst& store) {
    FoldingBuilder builder(store.getContext(), InstSimplifyFolder(layout_));
    builder.SetInsertPoint(&store);
    const Value* root = reading::placeOf(store.getPointerOperand(), layout_).root;
    checkPayload(root);
    WordPlace place(store.getPointerOperand(), store.getAlign(), builder, layout_);
    Value* value = store.getValueOperand();
    write(place, wordsOf(value, builder), bytesOf(value->getType()), isPrivate(root), builder);
    store.eraseFromParent();
}

bool Converter::run() {
    SmallVector<Instruction*, 32> accesses;
    SmallVector<WeakTrackingVH, 32> old;
    for (Instruction& instruction : instructions(*shader_.main)) {
        Value* pointer = getLoadStorePointerOperand(&instruction);
        if (!pointer || instruction.isAtomic() ||
            !isInWords(getLoadStoreType(&instruction), pointer))
            continue;
        accesses.push_back(&instruction);
        old.push_back(pointer);
    }
    convertVariables();
    for (Instruction* access : accesses)
        at(*access, [&] {
            if (auto* load = dyn_cast<LoadInst>(access))
                convert(*load);
            else
                convert(*cast<StoreInst>(access));
        });
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
    return isChanged_ || !accesses.empty();
}

bool useWordMemory(ShaderModule& shader) {
    return shader.lacks.any() && Converter(shader, Stands(shader.lacks)).run();
}

} // namespace tarnwick::msl
