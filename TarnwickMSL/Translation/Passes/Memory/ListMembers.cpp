// A list with one access at a changing index stays in memory. The packaged CPU driver then keeps
// all members of all its elements there, and takes each access apart by invocations. A list for
// each member leaves only those members in memory that are accessed so. And LLVM 15 compares each
// two accesses of a variable of a kernel, so that shorter lists of accesses take it much less time.
#include "TarnwickMSL/Translation/Passes/Memory/ListMembers.h"

#include "TarnwickMSL/Translation/Passes/Memory/ByteSteps.h"
#include "TarnwickMSL/Translation/Reading/Access.h"

#include <llvm/Analysis/ValueTracking.h>
#include <llvm/IR/IRBuilder.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/IR/Instructions.h>
#include <llvm/Transforms/Utils/Local.h>

#include <optional>

namespace tarnwick::msl {

using namespace llvm;

namespace {

// All users of a variable, if they are steps, loads, stores and marks of its life.
struct Users {
    SmallVector<Instruction*, 16> accesses, marks;
    SmallVector<GetElementPtrInst*, 16> steps;
};

// A load or store of one member of an element.
struct MemberAccess {
    Instruction* instruction = nullptr;
    reading::Place place;
    SmallVector<reading::Step, 2> elements; // for each array of the list
    unsigned member = 0;
    std::optional<SmallVector<reading::Step, 2>> inside; // the steps to a whole value in the member
};

class List {
  public:
    // Absent if the variable is no list of records, or cannot be divided.
    static std::optional<List> make(AllocaInst& variable);
    // The lists of the members.
    SmallVector<AllocaInst*, 4> divide();

  private:
    explicit List(AllocaInst& variable);
    bool find();
    std::optional<MemberAccess> memberAccess(Instruction& instruction) const;
    void showElements(GetElementPtrInst& step) const;
    bool isOfPadding(const Instruction& instruction) const;
    bool follow(const reading::Access& access, MemberAccess& found, bool& isFirst) const;
    AllocaInst* part(unsigned member) const;
    Value* address(const MemberAccess& access, AllocaInst& part) const;
    Value* insideMember(const MemberAccess& access, std::int64_t start, Value* pointer,
                        IRBuilder<>& builder) const;

    AllocaInst& variable_;
    const DataLayout& layout_;
    StructType* record_ = nullptr;
    SmallVector<std::uint64_t, 2> counts_; // elements of each array, outer one first
    SmallVector<std::int64_t, 2> strides_; // bytes of them
    Users users_;
    SmallVector<MemberAccess, 16> accesses_;
    SmallVector<Instruction*, 4> dead_; // stores of padding
};

} // namespace

// The choices among the uses of a variable, through steps and other choices.
static SmallVector<WeakTrackingVH, 4> choicesOf(AllocaInst& variable) {
    SmallVector<WeakTrackingVH, 4> found;
    SmallVector<Instruction*, 8> open{&variable};
    while (!open.empty()) {
        for (User* user : open.pop_back_val()->users()) {
            if (!isa<GetElementPtrInst, SelectInst>(user) || is_contained(found, user))
                continue;
            open.push_back(cast<Instruction>(user));
            if (isa<SelectInst>(user))
                found.push_back(user);
        }
    }
    return found;
}

static bool isSimpleAccess(const User* user, const Value* pointer) {
    auto* load = dyn_cast<LoadInst>(user);
    auto* store = dyn_cast<StoreInst>(user);
    return (load && load->isSimple()) ||
           (store && store->isSimple() && store->getValueOperand() != pointer);
}

static Instruction* through(Instruction& access, Value* pointer, IRBuilder<>& builder) {
    Instruction* copy = builder.Insert(access.clone());
    copy->setOperand(isa<StoreInst>(access) ? 1 : 0, pointer);
    return copy;
}

// Replaces an access through a choice of two pointers by accesses through both, one of which
// counts, and a step from the choice by a choice of two steps.
static void splitUse(Instruction& use, SelectInst& choice) {
    IRBuilder<> builder(&use);
    Value *is = choice.getCondition(), *yes = choice.getTrueValue(), *no = choice.getFalseValue();
    if (auto* store = dyn_cast<StoreInst>(&use)) {
        Value* value = store->getValueOperand();
        for (Value* pointer : {yes, no}) {
            Value* old = builder.CreateAlignedLoad(value->getType(), pointer, store->getAlign());
            Value* stored = pointer == yes ? builder.CreateSelect(is, value, old)
                                           : builder.CreateSelect(is, old, value);
            through(use, pointer, builder)->setOperand(0, stored);
        }
    } else {
        Value* first = through(use, yes, builder);
        use.replaceAllUsesWith(builder.CreateSelect(is, first, through(use, no, builder)));
    }
    use.eraseFromParent();
}

static bool isSplittable(const SelectInst& choice, const AllocaInst& variable) {
    const auto isOfVariable = [&](const Value* pointer) {
        return getUnderlyingObject(pointer, 0) == &variable;
    };
    return isOfVariable(choice.getTrueValue()) && isOfVariable(choice.getFalseValue()) &&
           all_of(choice.users(), [&](const User* user) {
               return isSimpleAccess(user, &choice) || isa<GetElementPtrInst>(user);
           });
}

// Accesses through choices of pointers into the variable become choices of values.
static void splitChoices(AllocaInst& variable) {
    auto open = choicesOf(variable);
    while (!open.empty()) {
        Value* value = open.pop_back_val();
        auto* choice = dyn_cast_or_null<SelectInst>(value);
        if (!choice || !isSplittable(*choice, variable))
            continue;
        for (User* user : make_early_inc_range(choice->users()))
            splitUse(*cast<Instruction>(user), *choice);
        choice->eraseFromParent();
        if (open.empty())
            open = choicesOf(variable);
        erase_if(open, [&](const Value* each) {
            auto* other = dyn_cast_or_null<SelectInst>(each);
            return !other || !isSplittable(*other, variable);
        });
    }
}

static std::optional<Users> usersOf(AllocaInst& variable) {
    Users found;
    SmallVector<Instruction*, 8> open{&variable};
    while (!open.empty()) {
        Instruction* pointer = open.pop_back_val();
        for (User* user : pointer->users()) {
            auto* instruction = cast<Instruction>(user);
            if (auto* step = dyn_cast<GetElementPtrInst>(user)) {
                found.steps.push_back(step);
                open.push_back(step);
            } else if (instruction->isLifetimeStartOrEnd()) {
                found.marks.push_back(instruction);
            } else if (isSimpleAccess(user, pointer)) {
                found.accesses.push_back(instruction);
            } else {
                return std::nullopt;
            }
        }
    }
    return found;
}

List::List(AllocaInst& variable) : variable_(variable), layout_(variable.getDataLayout()) {
    Type* type = variable.getAllocatedType();
    while (auto* array = dyn_cast<ArrayType>(type)) {
        type = array->getElementType();
        counts_.push_back(array->getNumElements());
        strides_.push_back(static_cast<std::int64_t>(layout_.getTypeAllocSize(type)));
    }
    record_ = dyn_cast<StructType>(type);
}

std::optional<List> List::make(AllocaInst& variable) {
    if (!variable.isStaticAlloca() || variable.isArrayAllocation())
        return std::nullopt;
    List list(variable);
    const bool isList = !list.counts_.empty() && list.record_ != nullptr;
    if (!isList || list.strides_.back() == 0 || !list.find())
        return std::nullopt;
    return list;
}

// Whether all accesses are of one member each, and one of them is at a changing index. No load that
// is of a member reads padding, so that stores of padding have no effect.
bool List::find() {
    splitChoices(variable_);
    auto users = usersOf(variable_);
    if (!users)
        return false;
    users_ = std::move(*users);
    if (all_of(users_.steps, [](const auto* step) { return step->hasAllConstantIndices(); }))
        return false;
    for (GetElementPtrInst* step : users_.steps)
        showElements(*step);
    for (Instruction* instruction : users_.accesses) {
        auto access = memberAccess(*instruction);
        if (!access && isOfPadding(*instruction)) {
            dead_.push_back(instruction);
            continue;
        }
        if (!access)
            return false;
        accesses_.push_back(std::move(*access));
    }
    return true;
}

void List::showElements(GetElementPtrInst& step) const {
    showProducts(step);
    const auto chosen = chosenStep(step, step.getOperand(1));
    if (chosen && chosen->others % strides_.back() == 0 &&
        countsElements(*chosen, variable_, layout_))
        showChoice(step);
}

static bool isPadding(Type* type, std::int64_t from, std::int64_t to, const DataLayout& layout) {
    const auto overlaps = [&](Type* part, std::int64_t at) {
        return from < at + static_cast<std::int64_t>(layout.getTypeAllocSize(part)) && to > at &&
               !isPadding(part, from - at, to - at, layout);
    };
    if (auto* record = dyn_cast<StructType>(type)) {
        const StructLayout& members = *layout.getStructLayout(record);
        for (unsigned n = 0; n < record->getNumElements(); ++n)
            if (overlaps(record->getElementType(n),
                         static_cast<std::int64_t>(members.getElementOffset(n).getFixedValue())))
                return false;
        return true;
    }
    Type* element = type->isArrayTy() ? type->getArrayElementType() : type->getScalarType();
    if (element == type)
        return false;
    const auto size = static_cast<std::int64_t>(layout.getTypeAllocSize(element));
    const auto count = static_cast<std::int64_t>(
        type->isArrayTy() ? type->getArrayNumElements()
                          : cast<FixedVectorType>(type)->getNumElements());
    for (std::int64_t n = 0; n < count; ++n)
        if (overlaps(element, n * size))
            return false;
    return true;
}

// Whether it is a store to bytes that no member has. LLVM makes them of copies of records.
bool List::isOfPadding(const Instruction& instruction) const {
    const auto* store = dyn_cast<StoreInst>(&instruction);
    const std::int64_t size = strides_.back();
    if (!store)
        return false;
    const reading::Place place = reading::placeOf(store->getPointerOperand(), layout_);
    if (any_of(place.terms, [&](const auto& term) { return term.scale % size != 0; }))
        return false;
    const std::int64_t from = (place.offset % size + size) % size;
    const auto bytes =
        static_cast<std::int64_t>(layout_.getTypeStoreSize(store->getValueOperand()->getType()));
    return from + bytes <= size && isPadding(record_, from, from + bytes, layout_);
}

std::optional<MemberAccess> List::memberAccess(Instruction& instruction) const {
    MemberAccess found{.instruction = &instruction};
    found.place = reading::placeOf(getLoadStorePointerOperand(&instruction), layout_);
    const reading::View view{.element = variable_.getAllocatedType()};
    const auto access = reading::access(view, found.place, getLoadStoreType(&instruction), layout_);
    bool isFirst = true;
    if (!access || !isCertain(*access) || !follow(*access, found, isFirst))
        return std::nullopt;
    if (access->form == reading::Access::Form::whole)
        found.inside.emplace(ArrayRef(access->steps).drop_front(counts_.size() + 1));
    return found;
}

static bool areEqual(const reading::Step& a, const reading::Step& b) {
    return a.constant == b.constant && equal(a.terms, b.terms, [](const auto& x, const auto& y) {
               return x.index == y.index && x.scale == y.scale;
           });
}

// All parts of the value are in the same member of the same element.
bool List::follow(const reading::Access& access, MemberAccess& found, bool& isFirst) const {
    for (const reading::Access& part : access.parts)
        if (!follow(part, found, isFirst))
            return false;
    if (!access.parts.empty())
        return true;
    if (access.form == reading::Access::Form::outside || access.steps.size() <= counts_.size())
        return false;
    const auto elements = ArrayRef(access.steps).take_front(counts_.size());
    const auto member = static_cast<unsigned>(access.steps[counts_.size()].constant);
    if (!isFirst)
        return member == found.member && equal(elements, found.elements, areEqual);
    isFirst = false;
    found.member = member;
    found.elements.assign(elements.begin(), elements.end());
    return true;
}

AllocaInst* List::part(unsigned member) const {
    Type* type = record_->getElementType(member);
    for (std::uint64_t count : reverse(counts_))
        type = ArrayType::get(type, count);
    IRBuilder<> builder(&variable_);
    return builder.CreateAlloca(type, nullptr, variable_.getName());
}

static Value* product(const reading::Term& term, IRBuilder<>& builder) {
    Value* index = builder.CreateSExtOrTrunc(const_cast<Value*>(term.index), builder.getInt32Ty());
    return term.scale == 1
               ? index
               : builder.CreateMul(index, ConstantInt::getSigned(index->getType(), term.scale));
}

static Value* sum(const reading::Step& step, IRBuilder<>& builder) {
    Value* total = ConstantInt::getSigned(builder.getInt32Ty(), step.constant);
    for (const reading::Term& term : step.terms)
        total = builder.CreateAdd(product(term, builder), total);
    return total;
}

static Value* stepped(Value* pointer, std::int64_t bytes, IRBuilder<>& builder) {
    return bytes == 0 ? pointer
                      : builder.CreateGEP(builder.getInt8Ty(), pointer,
                                          ConstantInt::getSigned(builder.getInt32Ty(), bytes));
}

// The steps from the start of the member, which is `start` bytes behind that of the list where all
// indices are zero. The constant before a term says which array the term counts.
Value* List::insideMember(const MemberAccess& access, std::int64_t start, Value* pointer,
                          IRBuilder<>& builder) const {
    const std::int64_t size = strides_.back();
    const auto first = static_cast<std::int64_t>(
        layout_.getStructLayout(record_)->getElementOffset(access.member).getFixedValue());
    const auto end = first + static_cast<std::int64_t>(
                                 layout_.getTypeAllocSize(record_->getElementType(access.member)));
    std::int64_t at = 0;
    for (const reading::Term& term : access.place.terms) {
        if (term.scale % size == 0)
            continue;
        const std::int64_t before = (term.before % size + size) % size;
        if (before >= first && before < end) {
            pointer = stepped(pointer, before - first - at, builder);
            at = before - first;
        }
        pointer = builder.CreateGEP(builder.getInt8Ty(), pointer, product(term, builder));
    }
    return stepped(pointer, access.place.offset - start - at, builder);
}

Value* List::address(const MemberAccess& access, AllocaInst& part) const {
    IRBuilder<> builder(access.instruction);
    auto start = static_cast<std::int64_t>(
        layout_.getStructLayout(record_)->getElementOffset(access.member).getFixedValue());
    SmallVector<Value*, 3> indices{builder.getInt32(0)};
    for (auto [step, stride] : zip(access.elements, strides_)) {
        indices.push_back(sum(step, builder));
        start += step.constant * stride;
    }
    if (access.inside)
        for (const reading::Step& step : *access.inside)
            indices.push_back(sum(step, builder));
    Value* value = builder.CreateGEP(part.getAllocatedType(), &part, indices);
    return access.inside ? value : insideMember(access, start, value, builder);
}

// A list of one member is aligned as its scalars are, not as the record was.
static void limitAlignment(Instruction& access, const DataLayout& layout) {
    const Align most = layout.getABITypeAlign(getLoadStoreType(&access)->getScalarType());
    if (auto* load = dyn_cast<LoadInst>(&access))
        load->setAlignment(std::min(load->getAlign(), most));
    else if (auto* store = dyn_cast<StoreInst>(&access))
        store->setAlignment(std::min(store->getAlign(), most));
}

SmallVector<AllocaInst*, 4> List::divide() {
    SmallVector<AllocaInst*, 4> made(record_->getNumElements(), nullptr);
    SmallVector<WeakTrackingVH, 16> old;
    for (const MemberAccess& access : accesses_) {
        AllocaInst*& list = made[access.member];
        if (!list)
            list = part(access.member);
        const unsigned operand = isa<LoadInst>(access.instruction)
                                     ? LoadInst::getPointerOperandIndex()
                                     : StoreInst::getPointerOperandIndex();
        access.instruction->setOperand(operand, address(access, *list));
        limitAlignment(*access.instruction, layout_);
    }
    for (Instruction* unused : concat<Instruction* const>(users_.marks, dead_))
        unused->eraseFromParent();
    old.append(users_.steps.begin(), users_.steps.end());
    old.push_back(&variable_);
    RecursivelyDeleteTriviallyDeadInstructionsPermissive(old);
    erase(made, nullptr);
    return made;
}

bool divideLists(Function& main) {
    SmallVector<AllocaInst*, 8> open;
    for (Instruction& instruction : instructions(main))
        if (auto* variable = dyn_cast<AllocaInst>(&instruction))
            open.push_back(variable);
    bool isChanged = false;
    while (!open.empty()) {
        auto list = List::make(*open.pop_back_val());
        if (!list)
            continue;
        isChanged = true;
        append_range(open, list->divide());
    }
    return isChanged;
}

} // namespace tarnwick::msl
