#include "TarnwickMSL/Translation/Reading/Access.h"

#include "TarnwickMSL/Translation/Reading/Ranges.h"

#include <numeric>

namespace tarnwick::msl::reading {

using namespace llvm;

static std::int64_t floorDivide(std::int64_t a, std::int64_t b) {
    return a / b - (a % b < 0 ? 1 : 0);
}

static std::int64_t sizeOf(Type* type, const DataLayout& layout) {
    return static_cast<std::int64_t>(layout.getTypeAllocSize(type));
}

// Bytes of the value itself: 12 for a vector of three floats, whose stride is 16.
static std::int64_t valueBytes(Type* type, const DataLayout& layout) {
    if (auto* vector = dyn_cast<FixedVectorType>(type))
        return static_cast<std::int64_t>(vector->getNumElements()) *
               sizeOf(vector->getElementType(), layout);
    return sizeOf(type, layout);
}

// Whether the terms, added to the offset, stay in [0, size).
static bool stay(std::int64_t offset, ArrayRef<Term> terms, std::int64_t size,
                 const DataLayout& layout) {
    std::int64_t least = offset, greatest = offset;
    for (const Term& term : terms) {
        const ConstantRange range = rangeOf(*term.index, layout).sextOrTrunc(32);
        if (range.isEmptySet())
            continue; // the index is undefined
        const std::int64_t low = range.getSignedMin().getSExtValue() * term.scale,
                           high = range.getSignedMax().getSExtValue() * term.scale;
        least += std::min(low, high);
        greatest += std::max(low, high);
    }
    return least >= 0 && greatest < size;
}

// A walk from a view's element down to the value at an offset.
class Descent {
  public:
    Descent(const View& view, const Place& place, const DataLayout& layout)
        : layout_(layout), shape_(view.layout), start_(place.offset), isRising_(place.isRising),
          isTyped_(place.isTyped), isExact_(place.isTyped || view.layout == Layout::explicit_),
          type(view.element), offset(place.offset),
          anchor(place.terms.empty() ? offset : place.terms.front().before), terms(place.terms) {
        if (view.isArray)
            intoArray(view.element, view.count);
    }

    // Goes down until the type wanted or a vector or scalar is reached.
    bool descend(Type* wanted);
    bool intoLane();

  private:
    void intoArray(Type* element, std::uint64_t count);
    bool intoMember();
    bool takes(Type* inner, bool isExact) const;
    bool tryMember(unsigned index, bool isExact = false);

    const DataLayout& layout_;
    Layout shape_;
    std::int64_t start_; // the place's offset
    bool isRising_;
    bool isTyped_; // each term counts elements of its own array
    bool isExact_; // the terms need no proof, except in a vector

  public:
    Type* type;
    std::int64_t offset; // of the place in `type`
    std::int64_t anchor; // in `type`, of the array that the first term indexes
    SmallVector<Term, 2> terms;
    SmallVector<Step, 4> steps;
    bool isOutside = false;
    bool isCertain = true; // Access
};

void Descent::intoArray(Type* element, std::uint64_t count) {
    std::int64_t stride = std::max<std::int64_t>(1, sizeOf(element, layout_));
    Step step{.constant = floorDivide(offset, stride), .terms = {}, .bound = count};
    SmallVector<Term, 2> rest;
    for (const Term& term : terms) {
        if (term.scale % stride == 0)
            step.terms.push_back({term.index, term.scale / stride, 0});
        else
            rest.push_back(term);
    }
    const std::int64_t last = count ? static_cast<std::int64_t>(count) - 1 : INT64_MAX;
    if (step.terms.empty() && (step.constant < 0 || step.constant > last)) {
        isOutside = rest.empty();
        step.constant = std::clamp<std::int64_t>(step.constant, 0, last); // the rest may lead back
    }
    const std::int64_t passed = start_ - offset;
    offset -= step.constant * stride;
    anchor = rest.empty() ? offset : rest.front().before - passed;
    anchor -= floorDivide(anchor, stride) * stride;
    isCertain = isCertain && (rest.empty() || isExact_ || stay(offset, rest, stride, layout_));
    terms = std::move(rest);
    steps.push_back(std::move(step));
    type = element;
}

// Whether every term counts elements of some array (or lanes of a vector) inside; `isExact`: one by
// one.
bool Descent::takes(Type* inner, bool isExact) const {
    SmallVector<Type*, 8> open{inner};
    SmallVector<Term, 2> left = terms;
    while (!open.empty() && !left.empty()) {
        Type* at = open.pop_back_val();
        if (auto* record = dyn_cast<StructType>(at))
            open.append(record->element_begin(), record->element_end());
        Type* element = at->isArrayTy()    ? at->getArrayElementType()
                        : at->isVectorTy() ? cast<FixedVectorType>(at)->getElementType()
                                           : nullptr;
        if (!element)
            continue;
        std::int64_t stride = std::max<std::int64_t>(1, sizeOf(element, layout_));
        erase_if(left, [&](const Term& term) {
            return isExact ? term.scale == stride : term.scale % stride == 0;
        });
        open.push_back(element);
    }
    return left.empty();
}

bool Descent::tryMember(unsigned index, bool isExact) {
    auto* record = cast<StructType>(type);
    auto place = static_cast<std::int64_t>(
        layout_.getStructLayout(record)->getElementOffset(index).getFixedValue());
    Type* inner = record->getElementType(index);
    // Padding that an explicit layout leaves out cannot be reached.
    if (!takes(inner, isExact) || (shape_ == Layout::explicit_ && inner->isArrayTy() &&
                                   inner->getArrayElementType()->isIntegerTy(8)))
        return false;
    steps.push_back({.constant = index, .terms = {}, .bound = record->getNumElements()});
    isCertain = isCertain && (terms.empty() || isExact_ ||
                              stay(offset - place, terms, sizeOf(inner, layout_), layout_));
    offset -= place;
    anchor -= place;
    type = inner;
    return true;
}

bool Descent::intoMember() {
    auto* record = cast<StructType>(type);
    const StructLayout& members = *layout_.getStructLayout(record);
    auto size = static_cast<std::int64_t>(members.getSizeInBytes().getFixedValue());
    if (record->getNumElements() == 0 || (terms.empty() && (offset < 0 || offset >= size)))
        return false;
    std::int64_t meant = std::clamp<std::int64_t>(anchor, 0, size - 1);
    unsigned index = members.getElementContainingOffset(static_cast<std::uint64_t>(meant));
    if (tryMember(index))
        return true;
    if (terms.empty())
        return false;
    // Steps that only rise from the offset, such as those of a loop over all words of a variable,
    // do not belong to an array that begins behind it.
    const auto isAhead = [&](unsigned other) {
        return isRising_ &&
               static_cast<std::int64_t>(members.getElementOffset(other).getFixedValue()) > offset;
    };
    for (bool isExact : {true, false})
        for (unsigned other = 0; other < record->getNumElements(); ++other)
            if (!isAhead(other) && tryMember(other, isExact))
                return true;
    return false;
}

bool Descent::descend(Type* wanted) {
    while (!isOutside) {
        if (type == wanted && offset == 0 && terms.empty())
            return true;
        if (type->isStructTy()) {
            if (!intoMember())
                return false;
        } else if (type->isArrayTy()) {
            intoArray(type->getArrayElementType(), type->getArrayNumElements());
        } else {
            return true;
        }
    }
    return true;
}

bool Descent::intoLane() {
    auto* vector = dyn_cast<FixedVectorType>(type);
    if (!vector)
        return false;
    isCertain = isCertain && (terms.empty() || isTyped_ ||
                              stay(offset, terms, valueBytes(vector, layout_), layout_));
    intoArray(vector->getElementType(), vector->getNumElements());
    steps.back().isLane = true;
    return terms.empty() && offset == 0;
}

static bool isScalar(Type* type) {
    return type->isIntegerTy() || type->isFloatingPointTy();
}

class Planner {
  public:
    Planner(const View& view, const DataLayout& layout) : view_(view), layout_(layout) {}
    std::optional<Access> plan(const Place& place, Type* type);

  private:
    std::optional<Access> lanes(Descent& at, FixedVectorType* type);
    std::optional<Access> scalar(const Place& place, Descent& at, Type* type);
    std::optional<Access> parts(const Place& place, Type* type);
    std::optional<Access> halves(const Place& place, Type* type);
    std::optional<Access> packed(const Place& place, Type* type);
    static Access leaf(Descent& at, Type* type, Access::Form form, std::uint32_t first = 0);

    const View& view_;
    const DataLayout& layout_;
};

Access Planner::leaf(Descent& at, Type* type, Access::Form form, std::uint32_t first) {
    return {.form = form,
            .type = type,
            .leaf = at.type,
            .steps = std::move(at.steps),
            .first = first,
            .parts = {},
            .isCertain = at.isCertain};
}

static Place moved(Place place, std::int64_t bytes) {
    place.offset += bytes;
    return place;
}

std::optional<Access> Planner::parts(const Place& place, Type* type) {
    Access access{.form = Access::Form::parts, .type = type};
    auto* record = dyn_cast<StructType>(type);
    auto* vector = dyn_cast<FixedVectorType>(type);
    Type* element = vector   ? vector->getElementType()
                    : record ? nullptr
                             : type->getArrayElementType();
    std::uint64_t count = vector   ? vector->getNumElements()
                          : record ? record->getNumElements()
                                   : type->getArrayNumElements();
    for (std::uint64_t part = 0; part < count; ++part) {
        auto index = static_cast<unsigned>(part);
        Type* inner = record ? record->getElementType(index) : element;
        std::int64_t bytes =
            record ? static_cast<std::int64_t>(
                         layout_.getStructLayout(record)->getElementOffset(index).getFixedValue())
                   : static_cast<std::int64_t>(part) * sizeOf(inner, layout_);
        std::optional<Access> planned = plan(moved(place, bytes), inner);
        if (!planned)
            return std::nullopt;
        access.parts.push_back(std::move(*planned));
    }
    return access;
}

std::optional<Access> Planner::halves(const Place& place, Type* type) {
    std::int64_t bytes = sizeOf(type, layout_) / 2;
    if (bytes < 1)
        return std::nullopt;
    Type* half = Type::getIntNTy(type->getContext(), static_cast<unsigned>(bytes) * 8);
    std::optional<Access> low = plan(place, half), high = plan(moved(place, bytes), half);
    if (!low || !high)
        return std::nullopt;
    Access access{.form = Access::Form::halves, .type = type};
    access.parts.push_back(std::move(*low));
    access.parts.push_back(std::move(*high));
    return access;
}

std::optional<Access> Planner::lanes(Descent& at, FixedVectorType* type) {
    auto* vector = dyn_cast<FixedVectorType>(at.type);
    if (!vector || !at.terms.empty())
        return std::nullopt;
    std::int64_t lane = sizeOf(vector->getElementType(), layout_);
    if (at.offset == 0 && valueBytes(vector, layout_) == valueBytes(type, layout_))
        return leaf(at, type, Access::Form::whole);
    bool fits = at.offset >= 0 && at.offset % lane == 0 &&
                at.offset + valueBytes(type, layout_) <= valueBytes(vector, layout_) &&
                vector->getElementType() == type->getElementType();
    if (!fits)
        return std::nullopt;
    return leaf(at, type, Access::Form::lanes, static_cast<std::uint32_t>(at.offset / lane));
}

std::optional<Access> Planner::scalar(const Place& place, Descent& at, Type* type) {
    std::int64_t bytes = sizeOf(type, layout_);
    auto* vector = dyn_cast<FixedVectorType>(at.type);
    if (vector && at.terms.empty() && at.offset == 0 && bytes == valueBytes(vector, layout_))
        return leaf(at, type, Access::Form::whole);
    if (vector && sizeOf(vector->getElementType(), layout_) < bytes)
        return halves(place, type);
    if (vector) {
        at.intoLane();
        if (at.isOutside) // in the padding of a vector of three
            return std::nullopt;
    }
    if (!isScalar(at.type) || !at.terms.empty() || at.offset < 0)
        return std::nullopt;
    std::int64_t there = sizeOf(at.type, layout_);
    if (there == bytes && at.offset == 0)
        return leaf(at, type, Access::Form::whole);
    if (there > bytes && at.offset + bytes <= there)
        return leaf(at, type, Access::Form::narrow, static_cast<std::uint32_t>(at.offset));
    return there < bytes ? halves(place, type) : std::nullopt;
}

// A scalar in words that it shares. Absent if it is whole words, or at a known byte of one.
std::optional<Access> Planner::packed(const Place& place, Type* type) {
    const std::int64_t bytes = sizeOf(type, layout_), word = sizeOf(view_.element, layout_);
    std::int64_t step = place.offset;
    for (const Term& term : place.terms)
        step = std::gcd(step, term.scale);
    if (step % std::min(bytes, word) != 0)
        return halves(place, type); // it may begin in one word and end in the next
    if (bytes >= word || all_of(place.terms, [&](const Term& t) { return t.scale % word == 0; }))
        return std::nullopt;
    Step inBytes{.constant = place.offset, .terms = place.terms, .bound = view_.count};
    return Access{.form = Access::Form::inWord,
                  .type = type,
                  .leaf = view_.element,
                  .steps = {std::move(inBytes)}};
}

std::optional<Access> Planner::plan(const Place& place, Type* type) {
    if (view_.isPacked && isScalar(type))
        if (auto found = packed(place, type))
            return found;
    Descent at(view_, place, layout_);
    bool reached = at.descend(type);
    if (at.isOutside && !type->isAggregateType())
        return Access{.form = Access::Form::outside, .type = type};
    if (reached && at.type == type && at.offset == 0 && at.terms.empty() &&
        !type->isAggregateType())
        return leaf(at, type, Access::Form::whole);
    if (type->isAggregateType())
        return parts(place, type);
    if (!reached)
        return std::nullopt;
    if (auto* vector = dyn_cast<FixedVectorType>(type)) {
        if (auto found = lanes(at, vector))
            return found;
        return parts(place, type);
    }
    return scalar(place, at, type);
}

// Whether the view is one array of scalars that words consist of.
static bool dividesWords(const View& view, const DataLayout& layout) {
    auto* array = dyn_cast<ArrayType>(view.element);
    Type* element = array && !view.isArray ? array->getElementType() : view.element;
    return (array != nullptr || view.isArray) && isScalar(element) &&
           4 % sizeOf(element, layout) == 0;
}

std::optional<Access> access(const View& view, const Place& place, Type* type,
                             const DataLayout& layout) {
    if (place.isOfWords && !dividesWords(view, layout))
        return std::nullopt;
    return Planner(view, layout).plan(place, type);
}

bool isCertain(const Access& access) {
    return access.isCertain && all_of(access.parts, isCertain);
}

bool storesBeside(const Access& access) {
    if (access.form == Access::Form::narrow || access.form == Access::Form::inWord ||
        any_of(access.parts, storesBeside))
        return true;
    return access.form == Access::Form::lanes &&
           (access.first > 0 || laneCount(access.type) < laneCount(access.leaf));
}

} // namespace tarnwick::msl::reading
