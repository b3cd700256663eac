#include "TarnwickMSL/Translation/Passes/Entry/Interface.h"

#include "TarnwickMSL/Translation/Passes/Calls/MemoryTypes.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>

#include <array>
#include <optional>
#include <set>
#include <string_view>

namespace tarnwick::msl {

using namespace llvm;

// The attributes of Metal Shading Language 3.1, 5.2.3, and the types of their values in Vulkan 1.3,
// 15.9.
struct BuiltIn {
    std::string_view word;
    Scalar scalar;
    unsigned width;
};

// clang-format off
static constexpr std::array builtIns{
    BuiltIn{"vertex_id",                         Scalar::uint32, 1},
    BuiltIn{"instance_id",                       Scalar::uint32, 1},
    BuiltIn{"base_vertex",                       Scalar::uint32, 1},
    BuiltIn{"base_instance",                     Scalar::uint32, 1},
    BuiltIn{"position",                          Scalar::float_, 4},
    BuiltIn{"point_size",                        Scalar::float_, 1},
    BuiltIn{"point_coord",                       Scalar::float_, 2},
    BuiltIn{"clip_distance",                     Scalar::float_, 1},
    BuiltIn{"front_facing",                      Scalar::bool_,  1},
    BuiltIn{"primitive_id",                      Scalar::uint32, 1},
    BuiltIn{"position_in_patch",                 Scalar::float_, 3},
    BuiltIn{"amplification_id",                  Scalar::uint32, 1},
    BuiltIn{"amplification_count",               Scalar::uint32, 1},
    BuiltIn{"barycentric_coord",                 Scalar::float_, 3},
    BuiltIn{"sample_id",                         Scalar::uint32, 1},
    BuiltIn{"sample_mask",                       Scalar::uint32, 1},
    BuiltIn{"render_target_array_index",         Scalar::uint32, 1},
    BuiltIn{"viewport_array_index",              Scalar::uint32, 1},
    BuiltIn{"depth",                             Scalar::float_, 1},
    BuiltIn{"stencil",                           Scalar::uint32, 1},
    BuiltIn{"thread_position_in_grid",           Scalar::uint32, 3},
    BuiltIn{"thread_position_in_threadgroup",    Scalar::uint32, 3},
    BuiltIn{"thread_index_in_threadgroup",       Scalar::uint32, 1},
    BuiltIn{"threadgroup_position_in_grid",      Scalar::uint32, 3},
    BuiltIn{"threadgroups_per_grid",             Scalar::uint32, 3},
    BuiltIn{"threads_per_grid",                  Scalar::uint32, 3},
    BuiltIn{"threads_per_threadgroup",           Scalar::uint32, 3},
    BuiltIn{"dispatch_threads_per_threadgroup",  Scalar::uint32, 3},
    BuiltIn{"thread_index_in_simdgroup",         Scalar::uint32, 1},
    BuiltIn{"simdgroup_index_in_threadgroup",    Scalar::uint32, 1},
    BuiltIn{"threads_per_simdgroup",             Scalar::uint32, 1},
    BuiltIn{"simdgroups_per_threadgroup",        Scalar::uint32, 1},
};
// clang-format on

static const BuiltIn& builtInFor(std::string_view word) {
    for (const BuiltIn& builtIn : builtIns)
        if (builtIn.word == word)
            return builtIn;
    throw TranslationError("The attribute '" + std::string(word) + "' is not supported here.");
}

static bool isFloating(Scalar scalar) {
    return scalar == Scalar::float_ || scalar == Scalar::half;
}

static bool isSigned(Scalar scalar) {
    return scalar == Scalar::int8 || scalar == Scalar::int16 || scalar == Scalar::int32;
}

static Type* lanes(Type* scalar, unsigned width) {
    return width == 1 ? scalar : FixedVectorType::get(scalar, width);
}

Type* memoryType(LLVMContext& context, const StageValue& value) {
    Type* type = lanes(scalarType(context, value.scalar), value.width);
    if (value.attribute == "clip_distance" && value.index > 1)
        return ArrayType::get(type, value.index);
    return type;
}

// 32 bits a component: 16-bit inputs and outputs are optional in Vulkan.
static Type* crossingType(LLVMContext& context, Scalar scalar, unsigned width) {
    return lanes(isFloating(scalar) ? Type::getFloatTy(context) : Type::getInt32Ty(context), width);
}

static Scalar crossingScalar(Scalar scalar) {
    if (isFloating(scalar))
        return Scalar::float_;
    return isSigned(scalar) ? Scalar::int32 : Scalar::uint32;
}

static Type* sameLanes(Type* like, Type* scalar) {
    auto* vector = dyn_cast<FixedVectorType>(like);
    return lanes(scalar, vector ? vector->getNumElements() : 1);
}

static Value* fromCrossing(IRBuilder<>& builder, Value* value, Scalar scalar) {
    Type* type = sameLanes(value->getType(), scalarType(builder.getContext(), scalar));
    if (isFloating(scalar))
        return builder.CreateFPCast(value, type);
    if (scalar == Scalar::bool_)
        return builder.CreateZExt(builder.CreateIsNotNull(value), type);
    return builder.CreateTrunc(value, type);
}

static Value* toCrossing(IRBuilder<>& builder, Value* value, Scalar scalar) {
    auto* array = dyn_cast<ArrayType>(value->getType());
    if (array)
        return value;
    unsigned width = isa<FixedVectorType>(value->getType())
                         ? cast<FixedVectorType>(value->getType())->getNumElements()
                         : 1;
    Type* type = crossingType(builder.getContext(), scalar, width);
    return isFloating(scalar) ? builder.CreateFPCast(value, type)
                              : builder.CreateIntCast(value, type, isSigned(scalar));
}

static Value* firstLanes(IRBuilder<>& builder, Value* value, unsigned width) {
    auto* vector = dyn_cast<FixedVectorType>(value->getType());
    if (!vector || vector->getNumElements() == width)
        return value;
    if (width == 1)
        return builder.CreateExtractElement(value, std::uint64_t{0});
    SmallVector<int, 4> mask;
    for (unsigned lane = 0; lane < width; ++lane)
        mask.push_back(static_cast<int>(lane));
    return builder.CreateShuffleVector(value, mask);
}

static bool isPassed(const StageValue& value) {
    return value.attribute.empty() && value.presence != Presence::no;
}

static bool givesValues(const EntrySignature& entry) {
    return entry.stage == Stage::mesh || (entry.stage == Stage::vertex && entry.resultIsRecord);
}

StringRef Varyings::given(StringRef name) const {
    for (StringRef rest = name; !rest.empty(); rest = rest.split('.').second)
        if (given_.contains(rest))
            return rest;
    return name;
}

bool Varyings::isOfPrimitive(StringRef name) const {
    const auto found = given_.find(given(name));
    return found != given_.end() && found->second;
}

// The names of the values that an entry point passes to or reads from the other stage.
std::vector<StringRef> Varyings::namesOf(const EntrySignature& entry) const {
    std::vector<StringRef> names;
    if (givesValues(entry))
        for (const StageValue& value : entry.results)
            if (isPassed(value))
                names.push_back(value.name);
    if (entry.stage == Stage::fragment)
        for (const Argument& argument : entry.arguments)
            for (const StageValue& value : argument.values)
                if (isPassed(value))
                    names.push_back(given(value.name));
    return names;
}

// Each name has the lowest location that no other name in its entry points has: locations are few,
// and a program may have many entry points.
Varyings::Varyings(const std::vector<EntrySignature>& entries) {
    for (const EntrySignature& entry : entries)
        for (const StageValue& value : entry.results)
            if (givesValues(entry) && isPassed(value)) {
                bool& isOfPrimitive = given_.try_emplace(value.name, true).first->second;
                isOfPrimitive &= value.isOfPrimitive;
            }
    std::vector<std::vector<StringRef>> groups;
    for (const EntrySignature& entry : entries)
        groups.push_back(namesOf(entry));
    for (const std::vector<StringRef>& group : groups)
        for (StringRef name : group) {
            if (locations_.contains(name))
                continue;
            std::set<std::uint32_t> taken;
            for (const std::vector<StringRef>& other : groups)
                if (is_contained(other, name))
                    for (StringRef neighbour : other)
                        if (auto found = locations_.find(neighbour); found != locations_.end())
                            taken.insert(found->second);
            std::uint32_t free = 0;
            while (taken.contains(free))
                ++free;
            locations_[name] = free;
        }
}

std::uint32_t Varyings::location(StringRef name) const {
    auto found = locations_.find(given(name));
    return found == locations_.end() ? 0 : found->second;
}

// The lanes of the input of a whole patch (EntryPoint.h).
static std::optional<std::uint64_t> patchLane(StringRef word) {
    static constexpr std::array<StringRef, 4> lanes{"patch_id", "instance_id", "base_instance",
                                                    "control_points"};
    const auto* found = find(lanes, word);
    if (found == lanes.end())
        return std::nullopt;
    return static_cast<std::uint64_t>(found - lanes.begin());
}

GlobalVariable* Interface::global(const InterfaceVariable& variable, Type* type) {
    if (GlobalVariable* known = shader_.module->getNamedGlobal(variable.global))
        return known;
    shader_.interface.push_back(variable);
    bool isConstant = variable.kind == InterfaceKind::input ||
                      variable.kind == InterfaceKind::uniformBuffer ||
                      variable.kind == InterfaceKind::pushConstant;
    return new GlobalVariable(*shader_.module, type, isConstant, GlobalValue::ExternalLinkage,
                              nullptr, variable.global, nullptr, GlobalValue::NotThreadLocal, 0u);
}

static std::optional<GridMember> gridMember(StringRef word) {
    return StringSwitch<std::optional<GridMember>>(word)
        .Case("threads_per_grid", GridMember::size)
        .Case("grid_origin", GridMember::originOfStageIn)
        .Case("grid_size", GridMember::sizeOfStageIn)
        .Default(std::nullopt);
}

Value* Interface::readGrid(IRBuilder<>& builder, GridMember member) {
    const InterfaceVariable variable{.kind = InterfaceKind::pushConstant,
                                     .global = "msl.grid",
                                     .builtIn = {},
                                     .scalar = Scalar::uint32};
    Type* triple = FixedVectorType::get(builder.getInt32Ty(), 3);
    Type* grid = StructType::get(triple, triple, triple);
    return builder.CreateLoad(triple, builder.CreateStructGEP(grid, global(variable, grid),
                                                              static_cast<std::uint32_t>(member)));
}

// A built-in value without a Vulkan variable, computed from other values; null if there is a
// variable.
Value* Interface::derivedBuiltIn(IRBuilder<>& builder, StringRef word) {
    if (auto lane = shader_.patch == PatchKind::none ? std::nullopt : patchLane(word)) {
        InterfaceVariable variable{.kind = InterfaceKind::input,
                                   .global = "msl.in.patch",
                                   .builtIn = {},
                                   .isOfPatch = true,
                                   .scalar = Scalar::uint32};
        auto* type = FixedVectorType::get(builder.getInt32Ty(), 4);
        return builder.CreateExtractElement(builder.CreateLoad(type, global(variable, type)),
                                            *lane);
    }
    auto same = [&](StringRef other) { return readBuiltIn(builder, other); };
    Value* four = builder.getInt32(4);
    if (word == "thread_execution_width")
        return same("threads_per_simdgroup");
    if (word == "dispatch_simdgroups_per_threadgroup")
        return same("simdgroups_per_threadgroup");
    if (shader_.stage == Stage::kernel)
        if (const auto member = gridMember(word))
            return readGrid(builder, *member);
    if (word == "thread_index_in_quadgroup")
        return builder.CreateURem(same("thread_index_in_simdgroup"), four);
    if (word == "quadgroup_index_in_threadgroup")
        return builder.CreateUDiv(same("thread_index_in_threadgroup"), four);
    bool isDispatched = word == "dispatch_quadgroups_per_threadgroup";
    if (!isDispatched && word != "quadgroups_per_threadgroup")
        return nullptr;
    Value* size =
        same(isDispatched ? "dispatch_threads_per_threadgroup" : "threads_per_threadgroup");
    Value* threads = builder.CreateMulReduce(size);
    return builder.CreateUDiv(builder.CreateAdd(threads, builder.getInt32(3)), four);
}

// Vulkan's fragment functions have one variable with perspective and one without, each at one place
// of the pixel.
Value* Interface::barycentric(IRBuilder<>& builder, Interpolation interpolation) {
    InterfaceVariable variable{.kind = InterfaceKind::input,
                               .global = isPerspective(interpolation) ? "msl.in.barycentric_coord"
                                                                      : "msl.in.barycentric_linear",
                               .builtIn = "barycentric_coord",
                               .scalar = Scalar::float_,
                               .interpolation = interpolation};
    for (const InterfaceVariable& known : shader_.interface)
        if (known.global == variable.global && known.interpolation != interpolation)
            throw TranslationError("The attribute 'barycentric_coord' is available at one place of "
                                   "the pixel in a function.");
    Type* type = FixedVectorType::get(builder.getFloatTy(), 3);
    return builder.CreateLoad(type, global(variable, type));
}

Value* Interface::readBuiltIn(IRBuilder<>& builder, StringRef word) {
    if (Value* derived = derivedBuiltIn(builder, word))
        return derived;
    const BuiltIn& builtIn = builtInFor({word.data(), word.size()});
    Type* type = crossingType(builder.getContext(), builtIn.scalar, builtIn.width);
    InterfaceVariable variable{.kind = InterfaceKind::input,
                               .global = "msl.in." + word.str(),
                               .builtIn = word.str(),
                               .scalar = crossingScalar(builtIn.scalar)};
    return builder.CreateLoad(type, global(variable, type));
}

// A call of msl.attribute, which gives four lanes.
static Value* fetchedAttribute(IRBuilder<>& builder, Module& module, const StageValue& value,
                               Value* point) {
    Type* type = crossingType(builder.getContext(), value.scalar, 4);
    Type* word = builder.getInt32Ty();
    FunctionCallee fetch = module.getOrInsertFunction(
        isFloating(value.scalar) ? "msl.attribute.f32" : "msl.attribute.u32",
        FunctionType::get(type, {word, word}, false));
    auto* function = cast<Function>(fetch.getCallee());
    function->setMemoryEffects(MemoryEffects::none());
    function->setDoesNotThrow();
    function->setWillReturn();
    return builder.CreateCall(fetch, {builder.getInt32(value.index), point});
}

Value* Interface::readAttribute(IRBuilder<>& builder, const StageValue& value, Value* point) {
    StageAttribute attribute{.name = value.name,
                             .index = value.index,
                             .scalar = value.scalar,
                             .width = value.width,
                             .isOfControlPoint = value.isOfControlPoint};
    if (!is_contained(shader_.attributes, attribute))
        shader_.attributes.push_back(std::move(attribute));
    Value* four = fetchedAttribute(builder, *shader_.module, value, point);
    return fromCrossing(builder, firstLanes(builder, four, value.width), value.scalar);
}

// The colour so far at the pixel, which the writer fetches.
Value* Interface::readColor(IRBuilder<>& builder, const StageValue& value) {
    Scalar scalar = crossingScalar(value.scalar);
    StringRef suffix = scalar == Scalar::float_ ? "f32" : scalar == Scalar::int32 ? "s32" : "u32";
    Type* type = crossingType(builder.getContext(), scalar, 4);
    auto* function = FunctionType::get(type, {builder.getInt32Ty()}, false);
    FunctionCallee called =
        shader_.module->getOrInsertFunction(("msl.color_input." + suffix).str(), function);
    auto* declared = cast<Function>(called.getCallee());
    declared->setDoesNotAccessMemory();
    declared->setDoesNotThrow();
    declared->setWillReturn();
    Value* color = builder.CreateCall(called, {builder.getInt32(value.index)});
    return fromCrossing(builder, firstLanes(builder, color, value.width), value.scalar);
}

Value* Interface::read(IRBuilder<>& builder, const StageValue& value) {
    if (value.attribute == "attribute")
        return readAttribute(builder, value, builder.getInt32(0));
    if (value.attribute == "color")
        return readColor(builder, value);
    // Results alone, in a record that both stages use.
    if (value.attribute == "point_size" || value.attribute == "primitive_culled")
        return Constant::getNullValue(memoryType(builder.getContext(), value));
    if (Type* type = memoryType(builder.getContext(), value); type->isArrayTy())
        return builder.CreateLoad(type, global({.kind = InterfaceKind::input,
                                                .global = "msl.in." + value.attribute,
                                                .builtIn = value.attribute},
                                               type));
    if (!value.attribute.empty()) {
        Value* all = value.attribute == "barycentric_coord"
                         ? barycentric(builder, value.interpolation)
                         : readBuiltIn(builder, value.attribute);
        return fromCrossing(builder, firstLanes(builder, all, value.width), value.scalar);
    }
    GlobalVariable* input = atLocation(value);
    if (value.isInterpolant)
        return input;
    return fromCrossing(builder, builder.CreateLoad(input->getValueType(), input), value.scalar);
}

GlobalVariable* Interface::atLocation(const StageValue& value) {
    const std::string name = varyings_.given(value.name).str();
    InterfaceVariable variable{.kind = InterfaceKind::input,
                               .global = "msl.in." + name,
                               .builtIn = {},
                               .location = varyings_.location(value.name),
                               .isOfPrimitive = varyings_.isOfPrimitive(value.name),
                               .scalar = crossingScalar(value.scalar),
                               .interpolation = isFloating(value.scalar) ? value.interpolation
                                                                         : Interpolation::flat};
    Type* type = crossingType(shader_.module->getContext(), value.scalar, value.width);
    GlobalVariable* input = global(variable, type);
    if (input->getValueType() != type)
        throw TranslationError("Two values of different types are the value '" + name +
                               "' of the stage before.");
    return input;
}

void Interface::write(IRBuilder<>& builder, const StageValue& value, Value* stored) {
    if (value.attribute == "point_size" && shader_.patch != PatchKind::none)
        return; // patches are drawn as triangles
    InterfaceVariable variable{.kind = InterfaceKind::output,
                               .global = "msl.out." + value.name,
                               .builtIn = {},
                               .location = varyings_.location(value.name),
                               .scalar = crossingScalar(value.scalar)};
    bool isColor =
        shader_.stage == Stage::fragment && (value.attribute.empty() || value.attribute == "color");
    if (isColor) {
        variable.location = value.index;
        variable.source = value.source;
        variable.global = "msl.out.color." + std::to_string(value.index) +
                          (value.source ? ".source." + std::to_string(value.source) : "");
    } else if (!value.attribute.empty()) {
        variable.builtIn = builtInFor(value.attribute).word;
        variable.global = "msl.out." + value.attribute;
    } else {
        variable.interpolation =
            isFloating(value.scalar) ? value.interpolation : Interpolation::flat;
    }
    // A member without a value is written as well: the fragment function may read it.
    if (shader_.stage == Stage::vertex)
        stored = builder.CreateFreeze(stored);
    Value* crossing = toCrossing(builder, stored, value.scalar);
    builder.CreateStore(crossing, global(variable, crossing->getType()));
}

void Interface::writeElement(IRBuilder<>& builder, const StageValue& value, Value* stored,
                             Value* index, std::uint64_t count) {
    InterfaceVariable variable{.kind = InterfaceKind::output,
                               .global = "msl.out." +
                                         (value.attribute.empty() ? value.name : value.attribute),
                               .builtIn = value.attribute,
                               .isOfPrimitive = value.isOfPrimitive,
                               .scalar = crossingScalar(value.scalar)};
    if (value.attribute.empty())
        variable.location = varyings_.location(value.name);
    Value* crossing = toCrossing(builder, builder.CreateFreeze(stored), value.scalar);
    Type* element = crossing->getType();
    SmallVector<Value*, 3> steps{builder.getInt32(0), index};
    if (value.attribute == "clip_distance" && !element->isArrayTy()) { // Vulkan's is an array
        element = ArrayType::get(element, 1);
        steps.push_back(builder.getInt32(0));
    }
    GlobalVariable* all = global(variable, ArrayType::get(element, count));
    builder.CreateStore(crossing, builder.CreateGEP(all->getValueType(), all, steps));
}

} // namespace tarnwick::msl
