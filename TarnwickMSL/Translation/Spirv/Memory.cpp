#include "TarnwickMSL/Translation/Spirv/Memory.h"

#include "TarnwickMSL/Translation/Spirv/Stage.h"
#include "TarnwickMSL/Translation/TranslationError.h"

namespace tarnwick::msl::spirv {

using namespace llvm;

Memory::Memory(Body& body, const ShaderModule& shader) : body_(body), shader_(shader) {}

// An index as 32 bits: LLVM's are of any width, and signed.
static Id word(Body& body, const Value* index) {
    if (auto* cast = dyn_cast<CastInst>(index))
        if (isa<SExtInst, ZExtInst>(cast) && cast->getOperand(0)->getType()->isIntegerTy(32))
            index = cast->getOperand(0);
    return body.resized(body.i32(), index->getType(), body.id(index), true);
}

Id Memory::sum(const Step& step) {
    Id total = 0;
    for (const Term& term : step.terms) {
        Id part = word(body_, term.index);
        if (term.scale != 1)
            part = body_.emit(spv::Op::OpIMul, body_.i32(),
                              {part, body_.constants.word(static_cast<std::uint32_t>(term.scale))});
        total = total ? body_.emit(spv::Op::OpIAdd, body_.i32(), {total, part}) : part;
    }
    Id constant = body_.constants.word(static_cast<std::uint32_t>(step.constant));
    if (!total)
        return constant;
    return step.constant ? body_.emit(spv::Op::OpIAdd, body_.i32(), {total, constant}) : total;
}

// A packaged CPU driver may read an overwritten register for an index that is used twice. So each
// index into local memory is a value of its own; UMin also keeps it inside the array.
Id Memory::index(const Step& step, bool isLocal) {
    Id value = sum(step);
    if (!isLocal || step.terms.empty() || !step.bound)
        return value;
    Id last = body_.constants.word(static_cast<std::uint32_t>(step.bound - 1));
    return body_.extended(GLSLstd450UMin, body_.i32(), {value, last});
}

// The last index into the view's own array, whose length the pipeline sets.
Id Memory::lastIndex(const Variable& variable) {
    return body_.emit(spv::Op::OpISub, body_.i32(), {variable.length, body_.constants.word(1)});
}

// The index into the view's own array.
Id Memory::firstIndex(const Step& step, const Variable& variable) {
    if (!variable.length)
        return index(step, variable.view.layout == Layout::plain);
    return body_.extended(GLSLstd450UMin, body_.i32(), {sum(step), lastIndex(variable)});
}

static bool isDynamicLane(const Access& access) {
    return !access.steps.empty() && access.steps.back().isLane &&
           !access.steps.back().terms.empty();
}

Id Memory::chain(const Found& found, const Access& access, bool stopsAtLane) {
    const Variable& variable = *found.variable;
    bool isLocal = variable.view.layout == Layout::plain;
    SmallVector<std::uint32_t, 6> indices;
    if (variable.isBlock)
        indices.push_back(body_.constants.word(0));
    Type* at = variable.view.element;
    bool isFirst = variable.view.isArray;
    ArrayRef<Step> steps = access.steps;
    if (stopsAtLane)
        steps = steps.drop_back();
    for (const Step& step : steps) {
        if (isFirst) {
            indices.push_back(firstIndex(step, variable));
        } else if (auto* record = dyn_cast<StructType>(at)) {
            auto member = static_cast<unsigned>(step.constant);
            indices.push_back(body_.constants.word(
                body_.types.member(record, member, variable.view.layout).value_or(0)));
            at = record->getElementType(member);
        } else {
            indices.push_back(index(step, isLocal));
            at = at->isArrayTy() ? at->getArrayElementType()
                                 : cast<FixedVectorType>(at)->getElementType();
        }
        isFirst = false;
    }
    if (indices.empty())
        return variable.id;
    Id pointee = body_.types.inMemory(at, variable.view.layout);
    return body_.emit(spv::Op::OpAccessChain, body_.module.pointer(found.root->storage, pointee),
                      {variable.id}, indices);
}

// A leaf's value as another type of the same size; booleans count as bytes.
Id Memory::converted(Type* to, Type* from, Id value) {
    if (to == from)
        return value;
    if (to->isIntegerTy(1))
        return body_.emit(spv::Op::OpINotEqual, to, {value, body_.constants.null(from)});
    if (from->isIntegerTy(1))
        return body_.select(to, value, body_.constants.integer(to, 1), body_.constants.null(to));
    return body_.bitcast(to, from, value);
}

static Type* vectorOf(const Access& lane, const View& view) {
    Type* at = view.element;
    ArrayRef<Step> steps = lane.steps;
    if (view.isArray)
        steps = steps.drop_front();
    for (const Step& step : steps.drop_back())
        at = at->isStructTy() ? at->getStructElementType(static_cast<unsigned>(step.constant))
                              : at->getArrayElementType();
    return at;
}

Id Memory::readNarrow(const Found& found, const Access& access) {
    LLVMContext& context = body_.types.context();
    Access wide = access;
    wide.form = Access::Form::whole;
    wide.type = Type::getIntNTy(context, access.leaf->getScalarSizeInBits());
    Id value = read(found, wide);
    if (access.first)
        value = body_.emit(spv::Op::OpShiftRightLogical, wide.type,
                           {value, body_.constants.integer(wide.type, access.first * 8)});
    unsigned bits = access.type->isIntegerTy(1) ? 8 : access.type->getScalarSizeInBits();
    Type* integer = Type::getIntNTy(context, bits);
    return converted(access.type, integer, body_.resized(integer, wide.type, value, false));
}

Id Memory::read(const Found& found, const Access& access) {
    switch (access.form) {
    case Access::Form::outside:
        return body_.constants.null(access.type);
    case Access::Form::whole: {
        bool isPlain = found.variable->view.layout == Layout::plain;
        if (isPlain && isDynamicLane(access)) {
            Type* vector = vectorOf(access, found.variable->view);
            Id whole = body_.emit(spv::Op::OpLoad, vector, {chain(found, access, true)});
            Id lane = index(access.steps.back(), true);
            Id value = body_.emit(spv::Op::OpVectorExtractDynamic, access.leaf, {whole, lane});
            return converted(access.type, access.leaf, value);
        }
        Id value = body_.emit(spv::Op::OpLoad, access.leaf, {chain(found, access, false)});
        return converted(access.type, access.leaf, value);
    }
    case Access::Form::lanes: {
        Id value = body_.emit(spv::Op::OpLoad, access.leaf, {chain(found, access, false)});
        SmallVector<std::uint32_t, 6> operands{value, value};
        for (unsigned lane = 0; lane < laneCount(access.type); ++lane)
            operands.push_back(access.first + lane < laneCount(access.leaf) ? access.first + lane
                                                                            : 0xffffffff);
        return body_.emit(spv::Op::OpVectorShuffle, access.type, operands);
    }
    case Access::Form::narrow:
        return found.variable->view.isPacked ? readPart(found, access) : readNarrow(found, access);
    case Access::Form::inWord:
        return readPart(found, access);
    case Access::Form::parts:
    case Access::Form::halves: {
        SmallVector<std::uint32_t, 8> parts;
        for (const Access& part : access.parts)
            parts.push_back(read(found, part));
        if (access.form == Access::Form::parts)
            return body_.emit(spv::Op::OpCompositeConstruct, access.type, parts);
        auto* pair = FixedVectorType::get(access.parts.front().type, 2);
        return converted(access.type, pair, body_.emit(spv::Op::OpCompositeConstruct, pair, parts));
    }
    }
    return 0;
}

void Memory::writeNarrow(const Found& found, const Access& access, Id value) {
    LLVMContext& context = body_.types.context();
    unsigned bits = access.type->isIntegerTy(1) ? 8 : access.type->getScalarSizeInBits();
    unsigned wideBits = access.leaf->getScalarSizeInBits();
    Type* integer = Type::getIntNTy(context, bits);
    Access wide = access;
    wide.form = Access::Form::whole;
    wide.type = Type::getIntNTy(context, wideBits);
    Id before = read(found, wide);
    Id inserted = body_.resized(wide.type, integer, converted(integer, access.type, value), false);
    APInt field = APInt::getBitsSet(wideBits, access.first * 8, access.first * 8 + bits);
    Id mask = body_.constants.integer(wide.type, field.getZExtValue());
    Id moved = body_.emit(spv::Op::OpShiftLeftLogical, wide.type,
                          {inserted, body_.constants.integer(wide.type, access.first * 8)});
    // A choice of bits that a driver may select against `before` (Passes/Values/BitChoices.h).
    Id full = body_.emit(spv::Op::OpBitwiseOr, wide.type, {before, mask});
    Id missing = body_.emit(spv::Op::OpBitwiseXor, wide.type, {moved, mask});
    write(found, wide, body_.emit(spv::Op::OpISub, wide.type, {full, missing}));
}

void Memory::writeParts(const Found& found, const Access& access, Id value) {
    Type* type = access.type;
    if (access.form == Access::Form::halves) {
        type = FixedVectorType::get(access.parts.front().type, 2);
        value = converted(type, access.type, value);
    }
    for (unsigned part = 0; part < access.parts.size(); ++part)
        write(found, access.parts[part],
              body_.emit(spv::Op::OpCompositeExtract, access.parts[part].type, {value, part}));
}

void Memory::write(const Found& found, const Access& access, Id value) {
    switch (access.form) {
    case Access::Form::outside:
        return;
    case Access::Form::whole: {
        Id leaf = converted(access.leaf, access.type, value);
        bool isPlain = found.variable->view.layout == Layout::plain;
        if (isPlain && isDynamicLane(access)) {
            Type* vector = vectorOf(access, found.variable->view);
            Id pointer = chain(found, access, true);
            Id before = body_.emit(spv::Op::OpLoad, vector, {pointer});
            Id lane = index(access.steps.back(), true);
            Id after = body_.emit(spv::Op::OpVectorInsertDynamic, vector, {before, leaf, lane});
            return body_.act(spv::Op::OpStore, {pointer, after});
        }
        return body_.act(spv::Op::OpStore, {chain(found, access, false), leaf});
    }
    case Access::Form::lanes: {
        Id pointer = chain(found, access, false);
        unsigned given = laneCount(access.type), there = laneCount(access.leaf);
        bool isWhole = access.first == 0 && given >= there;
        Id before = isWhole ? value : body_.emit(spv::Op::OpLoad, access.leaf, {pointer});
        SmallVector<std::uint32_t, 6> operands{value, before};
        for (unsigned lane = 0; lane < there; ++lane) {
            bool isGiven = lane >= access.first && lane < access.first + given;
            operands.push_back(isGiven ? lane - access.first : given + lane);
        }
        Id after = body_.emit(spv::Op::OpVectorShuffle, access.leaf, operands);
        return body_.act(spv::Op::OpStore, {pointer, after});
    }
    case Access::Form::narrow:
        return found.variable->view.isPacked ? writePart(found, access, value)
                                             : writeNarrow(found, access, value);
    case Access::Form::inWord:
        return writePart(found, access, value);
    case Access::Form::parts:
    case Access::Form::halves:
        return writeParts(found, access, value);
    }
}

Memory::Found Memory::find(const Value* pointer, const Use& use) {
    const DataLayout& layout = body_.types.dataLayout();
    Place place = placeOf(pointer, layout);
    Found found{.root = &root(place.root), .variable = nullptr, .access = {}};
    bool isBuffer = found.root->interface && found.root->variables.front().isBlock;
    if (isBuffer && use.isWrite && found.root->storage == spv::StorageClass::StorageBuffer)
        resources_[found.root->resource].isWritten = true;
    for (Variable& variable : found.root->variables) {
        std::optional<Access> planned = access(variable.view, place, use.type, layout);
        if (!planned || !suits(*planned, use, isBuffer) || (isBuffer && !isCertain(*planned)))
            continue;
        found.variable = &variable;
        found.access = std::move(*planned);
        return found;
    }
    if (!isBuffer)
        throw CompilerFault("A local value is used as another type in a way that is not known.");
    View view = unitView(place, use.type, layout);
    if (use.isAtomic)
        view.element = use.type;
    found.variable = &addBlock(*found.root, view);
    std::optional<Access> planned = access(found.variable->view, place, use.type, layout);
    if (!planned || !suits(*planned, use, true))
        throw CompilerFault("A buffer is used as another type in a way that is not known.");
    found.access = std::move(*planned);
    return found;
}

Id Memory::load(const Value* pointer, Type* type, Align align) {
    Place place = placeOf(pointer, body_.types.dataLayout());
    if (addressOf(place.root))
        return read(spot(place, align), type);
    const Root& from = root(place.root);
    if (from.isComputed)
        return computed(from, pointer, type);
    Found found = find(pointer, {.type = type});
    return read(found, found.access);
}

void Memory::store(const Value* pointer, Type* type, Id value, Align align) {
    Place place = placeOf(pointer, body_.types.dataLayout());
    if (addressOf(place.root)) {
        storesByAddress_ = true;
        return write(spot(place, align), type, value);
    }
    Found found = find(pointer, {.type = type, .isWrite = true});
    bool isSigned = found.root->interface && isSignedColor(shader_.stage, *found.root->interface);
    if (isSigned) // the wrapper stores it whole
        return body_.act(
            spv::Op::OpStore,
            {found.variable->id, body_.emit(spv::Op::OpBitcast, signedType(body_, type), {value})});
    write(found, found.access, value);
}

Memory::Pointer Memory::atomic(const Value* pointer, Type* type, bool isStore) {
    Place place = placeOf(pointer, body_.types.dataLayout());
    if (addressOf(place.root)) {
        storesByAddress_ |= isStore;
        return {this->pointer(spot(place, Align()), type),
                spv::StorageClass::PhysicalStorageBuffer};
    }
    Found found = find(pointer, {.type = type, .isWrite = isStore, .isAtomic = true});
    const spv::StorageClass storage = found.root->storage;
    if (storage == spv::StorageClass::Function || storage == spv::StorageClass::Private)
        throw TranslationError("An atomic operation is on a variable of a thread; it must be on "
                               "device or threadgroup memory.");
    if (found.access.form == Access::Form::outside)
        return {0, storage};
    return {chain(found, found.access, false), storage};
}

Id Memory::input(const Value* pointer, Type* type) {
    Found found = find(pointer, {.type = type});
    if (found.root->storage != spv::StorageClass::Input || found.access.form != Access::Form::whole)
        throw TranslationError("An interpolant must be a member of the record with the attribute "
                               "'stage_in'.");
    return chain(found, found.access, false);
}

Id Memory::variable(const GlobalVariable& global) {
    const Variable& only = root(&global).variables.front();
    if (only.view.isArray || only.view.element != global.getValueType())
        throw CompilerFault("The variable '" + global.getName().str() + "' has another type.");
    return only.id;
}

Id Memory::gridSize() {
    if (shader_.stage != Stage::kernel) {
        Type* triple = FixedVectorType::get(body_.i32(), 3);
        Id groups = readBuiltIn(body_, spv::BuiltIn::NumWorkgroups, triple);
        Id size = body_.emit(spv::Op::OpCompositeConstruct, triple, threadgroupSize(body_));
        return body_.emit(spv::Op::OpIMul, triple, {groups, size});
    }
    for (const InterfaceVariable& variable : shader_.interface)
        if (variable.kind == InterfaceKind::pushConstant)
            if (const GlobalVariable* global = shader_.module->getNamedGlobal(variable.global))
                return load(global, FixedVectorType::get(body_.i32(), 3));
    throw CompilerFault("A kernel's grid size is not among what it is given.");
}

} // namespace tarnwick::msl::spirv
