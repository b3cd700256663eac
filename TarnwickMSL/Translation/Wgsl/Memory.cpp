#include "TarnwickMSL/Translation/Wgsl/Memory.h"

#include "TarnwickMSL/Translation/Reading/Ranges.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"
#include "TarnwickMSL/Translation/Wgsl/Stage.h"
#include "TarnwickMSL/Translation/Wgsl/Vectors.h"

namespace tarnwick::msl::wgsl {

using namespace llvm;

static Place placeIn(const Value* pointer, const DataLayout& layout) {
    Place place = placeOf(pointer, layout);
    if (addressOf(place.root))
        throw TranslationError("WGSL has no pointers in buffers.");
    return place;
}

Access Memory::find(const Root& root, const Place& place, Type* type) {
    std::optional<Access> planned = access(root.view, place, type, body_.layout);
    if (!planned)
        throw CompilerFault("Memory is used as another type in a way that is not known.");
    return std::move(*planned);
}

// The index as an expression of type u32, modulo 2^32.
Expression Memory::index(const Step& step) {
    Expression total;
    for (const Term& term : step.terms) {
        Expression part = body_.unsignedValue(term.index);
        if (term.scale != 1)
            part = infix(part, "*", body_.number(static_cast<std::uint32_t>(term.scale)));
        total = total.text.empty() ? part : infix(total, "+", part);
    }
    const auto constant = static_cast<std::uint32_t>(step.constant);
    if (total.text.empty())
        return body_.number(constant);
    if (step.constant < 0)
        return infix(total, "-", body_.number(0u - constant));
    return constant ? infix(total, "+", body_.number(constant)) : total;
}

// Whether the index is in [0, bound) for certain.
static bool isInside(const Step& step, const DataLayout& layout) {
    std::int64_t least = step.constant, most = step.constant;
    for (const Term& term : step.terms) {
        const ConstantRange range = rangeOf(*term.index, layout).sextOrTrunc(32);
        if (range.isEmptySet())
            continue;
        const std::int64_t low = range.getSignedMin().getSExtValue() * term.scale,
                           high = range.getSignedMax().getSExtValue() * term.scale;
        least += std::min(low, high);
        most += std::max(low, high);
    }
    return least >= 0 && most < static_cast<std::int64_t>(step.bound);
}

// Metal's arrays are clamped to their ends (docs/compiler.md), buffers are not.
std::string Memory::clamped(const Root& root, const Step& step, bool isFirst) {
    const Expression at = index(step);
    const bool isOfBuffer = root.view.layout == Layout::explicit_;
    if (isFirst && !root.length.empty())
        return call("min", {at, {.text = root.length + " - 1u"}}).text;
    if (isOfBuffer || step.terms.empty() || !step.bound || isInside(step, body_.layout))
        return at.text;
    return call("min", {at, body_.number(static_cast<std::uint32_t>(step.bound - 1))}).text;
}

std::string Memory::chain(const Root& root, ArrayRef<Step> steps) {
    std::string text = root.name;
    Type* at = root.view.element;
    bool isFirst = root.view.isArray;
    for (const Step& step : steps) {
        if (isFirst) {
            text += "[" + clamped(root, step, true) + "]";
        } else if (auto* record = dyn_cast<StructType>(at)) {
            text += ".m" + std::to_string(step.constant);
            at = record->getElementType(static_cast<unsigned>(step.constant));
        } else if (at->isArrayTy()) {
            text += "[" + clamped(root, step, false) + "]";
            at = at->getArrayElementType();
        } else {
            const bool isKnown = step.terms.empty();
            text += isKnown ? laneOf({}, static_cast<unsigned>(step.constant)).text
                            : "[" + clamped(root, step, false) + "]";
            at = cast<FixedVectorType>(at)->getElementType();
        }
        isFirst = false;
    }
    return text;
}

// A leaf's value as another type of the same size.
Expression Memory::converted(Type* to, Type* from, const Expression& value) {
    if (to == from)
        return value;
    if (to->isIntegerTy(1))
        return infix(value, "!=", body_.zero(from));
    if (from->isIntegerTy(1))
        return call(body_.type(to), {value});
    return body_.bitcast(to, from, value);
}

Expression Memory::read(const Root& root, const Access& access) {
    switch (access.form) {
    case Access::Form::outside:
        return body_.zero(access.type);
    case Access::Form::whole: {
        Expression value{.text = chain(root, access.steps),
                         .isSigned = root.sign == Sign::yes && access.leaf->isIntOrIntVectorTy(32)};
        if (root.isAtomic)
            value.text = "atomicLoad(&" + value.text + ")";
        value.readsMemory = root.kind != Kind::constant;
        return converted(access.type, access.leaf, value);
    }
    case Access::Form::lanes: {
        const std::string lanes = std::string("xyzw").substr(access.first, laneCount(access.type));
        Expression value{.text = chain(root, access.steps)};
        value.readsMemory = root.kind != Kind::constant;
        if (lanes.size() < laneCount(access.type) ||
            access.first + lanes.size() > laneCount(access.leaf))
            throw CompilerFault("Lanes past the end of a vector are read.");
        return converted(access.type, shapedLike(access.type, access.leaf->getScalarType()),
                         member(value, lanes));
    }
    case Access::Form::parts: {
        std::vector<Expression> parts;
        for (const Access& part : access.parts)
            parts.push_back(body_.withSign(read(root, part), part.type, Sign::no));
        return call(body_.type(access.type), parts);
    }
    case Access::Form::narrow:
    case Access::Form::inWord:
    case Access::Form::halves:
        break;
    }
    throw CompilerFault("A part of a word is read that Passes/Widths should have replaced.");
}

void Memory::change(const Root& root, const std::string& text) {
    if (root.isReport)
        return body_.report(text);
    root.isShared ? body_.changeShared(text) : body_.change(text);
}

void Memory::write(const Root& root, const Access& access, const Expression& value) {
    switch (access.form) {
    case Access::Form::outside:
        return;
    case Access::Form::whole: {
        const std::string to = chain(root, access.steps);
        const Expression stored =
            body_.withSign(converted(access.leaf, access.type, value), access.leaf, root.sign);
        if (root.isAtomic)
            return change(root, "atomicStore(&" + to + ", " + stored.text + ");");
        return change(root, to + " = " + stored.text + ";");
    }
    case Access::Form::lanes: {
        const std::string to = chain(root, access.steps);
        const Expression parts = body_.named(value, "lanes");
        for (unsigned lane = 0; lane < laneCount(access.type); ++lane) {
            Type* scalar = access.leaf->getScalarType();
            change(root,
                   laneOf({.text = to}, access.first + lane).text + " = " +
                       converted(scalar, access.type->getScalarType(), laneOf(parts, lane)).text +
                       ";");
        }
        return;
    }
    case Access::Form::parts: {
        const Expression parts = body_.named(value, "parts");
        for (unsigned part = 0; part < access.parts.size(); ++part) {
            Expression one =
                access.type->isVectorTy() ? laneOf(parts, part)
                : access.type->isStructTy()
                    ? member(parts, "m" + std::to_string(part))
                    : Expression{.text = parts.text + "[" + std::to_string(part) + "]"};
            write(root, access.parts[part], one);
        }
        return;
    }
    case Access::Form::narrow:
    case Access::Form::inWord:
    case Access::Form::halves:
        break;
    }
    throw CompilerFault("A part of a word is written that Passes/Widths should have replaced.");
}

Expression Memory::computed(const Root& root, const Place& place, Type* type) {
    const Expression whole =
        computedBuiltIn(body_, root.interface->builtIn, [this] { return gridSize(); });
    if (type == root.view.element)
        return whole;
    if (!type->isIntegerTy(32) || !place.terms.empty() || place.offset % 4 != 0)
        throw CompilerFault("A built-in value is read as another type.");
    return root.view.element->isVectorTy() ? laneOf(whole, static_cast<unsigned>(place.offset / 4))
                                           : whole;
}

Expression Memory::load(const Value* pointer, Type* type) {
    const Place place = placeIn(pointer, body_.layout);
    const Root& from = root(place.root);
    if (from.kind == Kind::computed)
        return computed(from, place, type);
    if (from.kind == Kind::ignored)
        return body_.zero(type);
    return read(from, find(from, place, type));
}

void Memory::store(const Value* pointer, const Value* value) {
    const Place place = placeIn(pointer, body_.layout);
    const Root& to = root(place.root);
    const Expression stored = body_.value(value);
    if (to.kind == Kind::ignored)
        return;
    write(to, find(to, place, value->getType()), stored);
}

Memory::Atomic Memory::atomic(const Value* pointer) {
    const Place place = placeIn(pointer, body_.layout);
    const Root& of = root(place.root);
    if (!of.isAtomic)
        throw TranslationError("An atomic operation is on a variable of a thread; it must be on "
                               "device or threadgroup memory.");
    const Access found = find(of, place, body_.i32());
    if (found.form == Access::Form::outside)
        return {"", of.sign};
    if (found.form != Access::Form::whole)
        throw CompilerFault("An atomic value is no whole word.");
    return {chain(of, found.steps), of.sign};
}

Expression Memory::gridSize() {
    for (const InterfaceVariable& variable : shader_.interface)
        if (variable.kind == InterfaceKind::pushConstant)
            if (const GlobalVariable* global = shader_.module->getNamedGlobal(variable.global))
                return load(global, FixedVectorType::get(body_.i32(), 3));
    throw CompilerFault("A kernel's grid size is not among what it is given.");
}

} // namespace tarnwick::msl::wgsl
