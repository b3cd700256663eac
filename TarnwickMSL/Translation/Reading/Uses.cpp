#include "TarnwickMSL/Translation/Reading/Uses.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/IntrinsicInst.h>

#include <numeric>

namespace tarnwick::msl::reading {

using namespace llvm;

// The user's use of the memory at `pointer`; its type is null if the user does not access it.
static Use useBy(const User& user, const Value* pointer) {
    if (auto* load = dyn_cast<LoadInst>(&user))
        return {{}, load->getType(), false, load->isAtomic()};
    if (auto* store = dyn_cast<StoreInst>(&user))
        return {{}, store->getValueOperand()->getType(), true, store->isAtomic()};
    if (auto* change = dyn_cast<AtomicRMWInst>(&user))
        return {{}, change->getType(), true, true};
    if (auto* exchange = dyn_cast<AtomicCmpXchgInst>(&user))
        return {{}, exchange->getNewValOperand()->getType(), true, true};
    auto* call = dyn_cast<CallInst>(&user); // the library's atomics
    if (!call || isa<IntrinsicInst>(call) || call->arg_empty() || call->getArgOperand(0) != pointer)
        return {};
    return {
        {}, call->arg_size() > 1 ? call->getArgOperand(1)->getType() : call->getType(), true, true};
}

std::vector<Use> usesOf(const Value& root, const DataLayout& layout) {
    std::vector<Use> uses;
    SmallVector<const Value*, 8> open{&root};
    while (!open.empty()) {
        const Value* pointer = open.pop_back_val();
        for (const User* user : pointer->users()) {
            Use use = useBy(*user, pointer);
            if (use.type) {
                use.place = placeOf(pointer, layout);
                uses.push_back(std::move(use));
            } else if (isa<PHINode, SelectInst>(user)) {
                throw CompilerFault("A pointer is chosen at run time.");
            } else if (user->getType()->isPointerTy()) {
                open.push_back(user);
            }
        }
    }
    return uses;
}

// In shared memory another invocation may write the bytes beside the value, and an atomic value
// must be in memory as itself.
bool suits(const Access& access, const Use& use, bool isShared) {
    if (use.isAtomic)
        return access.form == Access::Form::outside ||
               (access.form == Access::Form::whole && access.leaf == use.type);
    return !(use.isWrite && isShared && storesBeside(access));
}

static void addScalars(Type* type, SmallVectorImpl<Type*>& scalars) {
    if (auto* record = dyn_cast<StructType>(type)) {
        for (Type* member : record->elements())
            addScalars(member, scalars);
    } else if (type->isArrayTy()) {
        addScalars(type->getArrayElementType(), scalars);
    } else {
        scalars.push_back(type->getScalarType());
    }
}

static std::uint64_t stepOf(const Place& place) {
    auto step = static_cast<std::uint64_t>(std::abs(place.offset));
    for (const Term& term : place.terms)
        step = std::gcd(step, static_cast<std::uint64_t>(std::abs(term.scale)));
    return step;
}

static std::uint64_t unitOf(const Place& place, Type* type, const DataLayout& layout) {
    SmallVector<Type*, 4> scalars;
    addScalars(type, scalars);
    std::uint64_t unit = std::gcd(stepOf(place), std::uint64_t{4});
    for (Type* scalar : scalars)
        unit = std::gcd(unit, layout.getTypeAllocSize(scalar).getFixedValue());
    return unit;
}

static Type* integerOf(LLVMContext& context, std::uint64_t bytes) {
    return Type::getIntNTy(context, static_cast<unsigned>(bytes) * 8);
}

View unitView(const Place& place, Type* type, const DataLayout& layout) {
    return {.element = integerOf(type->getContext(), unitOf(place, type, layout)),
            .isArray = true,
            .count = 0,
            .layout = Layout::explicit_};
}

// The one type of all uses if all their places are multiples of its stride; else null.
static Type* onlyType(ArrayRef<Use> uses, const DataLayout& layout) {
    Type* type = uses.empty() ? nullptr : uses.front().type;
    if (!type || type->isAggregateType())
        return nullptr;
    std::uint64_t stride = layout.getTypeAllocSize(type).getFixedValue();
    for (const Use& use : uses)
        if (use.type != type || stepOf(use.place) % stride != 0)
            return nullptr;
    return type;
}

View commonView(ArrayRef<Use> uses, std::uint64_t bytes, LLVMContext& context,
                const DataLayout& layout) {
    Type* element = onlyType(uses, layout);
    if (!element) {
        std::uint64_t unit = 4;
        SmallVector<Type*, 8> scalars;
        for (const Use& use : uses) {
            unit = std::gcd(unit, unitOf(use.place, use.type, layout));
            addScalars(use.type, scalars);
        }
        bool isOne = !scalars.empty() && all_equal(scalars) &&
                     layout.getTypeAllocSize(scalars.front()).getFixedValue() == unit;
        element = isOne ? scalars.front() : integerOf(context, unit);
    }
    std::uint64_t stride = layout.getTypeAllocSize(element).getFixedValue();
    return {.element = element,
            .isArray = true,
            .count = std::max<std::uint64_t>(1, (bytes + stride - 1) / stride),
            .layout = Layout::plain};
}

View packedView(std::uint64_t bytes, LLVMContext& context) {
    return {.element = integerOf(context, 4),
            .isArray = true,
            .count = std::max<std::uint64_t>(1, (bytes + 3) / 4),
            .layout = Layout::plain,
            .isPacked = true};
}

} // namespace tarnwick::msl::reading
