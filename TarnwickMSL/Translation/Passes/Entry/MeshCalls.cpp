#include "TarnwickMSL/Translation/Passes/Entry/MeshCalls.h"

#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;

// The threadgroup memory of a name in ShaderModule.h.
static GlobalVariable* shared(StringRef name, std::uint64_t words, ShaderModule& shader,
                              Interface& interface) {
    Type* type = ArrayType::get(Type::getInt32Ty(shader.module->getContext()), words);
    return interface.global({.kind = InterfaceKind::workgroup,
                             .global = name.str(),
                             .builtIn = {},
                             .scalar = Scalar::uint32,
                             .elementBytes = 4 * words,
                             .isReference = true},
                            type);
}

namespace {

class MeshCalls {
  public:
    MeshCalls(ShaderModule& shader, const EntrySignature& entry, Interface& interface)
        : shader_(shader), entry_(entry), interface_(interface) {}
    void replace(CallBase& call, StringRef name);

  private:
    // Stores the operands in the elements of the memory from `index` on.
    void store(IRBuilder<>& builder, GlobalVariable* memory, Value* index, ArrayRef<Value*> values);
    void storeRecord(IRBuilder<>& builder, CallBase& call, bool isOfPrimitive);
    void storeValue(IRBuilder<>& builder, const StageValue& value, Value* given, Value* index);

    ShaderModule& shader_;
    const EntrySignature& entry_;
    Interface& interface_;
};

} // namespace

void MeshCalls::store(IRBuilder<>& builder, GlobalVariable* memory, Value* index,
                      ArrayRef<Value*> values) {
    for (std::uint32_t n = 0; n < values.size(); ++n)
        builder.CreateStore(values[n],
                            builder.CreateGEP(memory->getValueType(), memory,
                                              {builder.getInt32(0),
                                               builder.CreateAdd(index, builder.getInt32(n))}));
}

void MeshCalls::storeValue(IRBuilder<>& builder, const StageValue& value, Value* given,
                           Value* index) {
    if (value.attribute == "primitive_culled")
        return store(builder, shared(meshCulled, entry_.mostPrimitives, shader_, interface_), index,
                     builder.CreateZExt(given, builder.getInt32Ty()));
    interface_.writeElement(builder, value, given, index,
                            value.isOfPrimitive ? entry_.mostPrimitives : entry_.mostVertices);
}

// Points need a size (Vulkan 1.3, VUID-RuntimeSpirv-PointSize); it is 1 by default.
static bool needsPointSize(const EntrySignature& entry) {
    return entry.topology == Topology::point && none_of(entry.results, [](const StageValue& value) {
               return value.attribute == "point_size";
           });
}

void MeshCalls::storeRecord(IRBuilder<>& builder, CallBase& call, bool isOfPrimitive) {
    Value* index = call.getArgOperand(0);
    for (const StageValue& value : entry_.results) {
        if (value.isOfPrimitive != isOfPrimitive || value.presence == Presence::no)
            continue;
        Value* place = builder.CreateConstInBoundsGEP1_64(builder.getInt8Ty(),
                                                          call.getArgOperand(1), value.offset);
        Value* given = builder.CreateAlignedLoad(memoryType(builder.getContext(), value), place,
                                                 Align(1)); // a packed vector
        storeValue(builder, value, given, index);
    }
    if (!isOfPrimitive && needsPointSize(entry_))
        storeValue(builder, {.name = "point_size", .attribute = "point_size"},
                   ConstantFP::get(builder.getFloatTy(), 1.0), index);
}

void MeshCalls::replace(CallBase& call, StringRef name) {
    const bool isOfGrid = name == "mesh_grid";
    if (isOfGrid ? entry_.stage != Stage::object : entry_.topology == Topology::none)
        at(call, [&] {
            throw TranslationError(isOfGrid
                                       ? "The grid of mesh functions is set by the argument of "
                                         "an object function only."
                                       : "A mesh is set by the argument of a mesh function "
                                         "only.");
        });
    IRBuilder<> builder(&call);
    Value* zero = builder.getInt32(0);
    SmallVector<Value*, 3> operands(call.args());
    if (isOfGrid)
        store(builder, shared(meshGrid, 3, shader_, interface_), zero, operands);
    else if (name == "mesh_count")
        store(builder, shared(meshCount, 1, shader_, interface_), zero, operands);
    else if (name == "mesh_index")
        store(builder,
              shared(meshIndices,
                     indexCount(entry_.topology) * std::uint64_t{entry_.mostPrimitives}, shader_,
                     interface_),
              operands[0], operands[1]);
    else
        storeRecord(builder, call, name == "mesh_primitive");
    call.eraseFromParent();
}

void replaceMeshCalls(Function& body, ShaderModule& shader, const EntrySignature& entry,
                      Interface& interface) {
    MeshCalls calls(shader, entry, interface);
    for (Instruction& instruction : make_early_inc_range(instructions(body)))
        if (auto* call = dyn_cast<CallBase>(&instruction))
            if (StringRef name = builtInName(*call); name.starts_with("mesh_"))
                calls.replace(*call, name);
}

void clearMesh(IRBuilder<>& builder, ShaderModule& shader, Interface& interface) {
    constexpr std::uint32_t threadgroupScope = 2, threadgroupFlag = 2; // of Library/types/compute.h
    const bool isObject = shader.stage == Stage::object;
    GlobalVariable* memory =
        shared(isObject ? meshGrid : meshCount, isObject ? 3 : 1, shader, interface);
    builder.CreateStore(Constant::getNullValue(memory->getValueType()), memory);
    Type* word = builder.getInt32Ty();
    FunctionCallee barrier = shader.module->getOrInsertFunction(
        "msl.barrier.1", FunctionType::get(builder.getVoidTy(), {word, word}, false));
    auto* function = cast<Function>(barrier.getCallee());
    function->setConvergent();
    function->setDoesNotThrow();
    function->setWillReturn();
    builder.CreateCall(barrier,
                       {builder.getInt32(threadgroupScope), builder.getInt32(threadgroupFlag)});
}

// The bits of the smallest number in the type; at most 32.
static unsigned smallestNumber(Type* type) {
    if (auto* record = dyn_cast<StructType>(type)) {
        unsigned smallest = 32;
        for (Type* member : record->elements())
            smallest = std::min(smallest, smallestNumber(member));
        return smallest;
    }
    if (type->isArrayTy())
        return smallestNumber(type->getArrayElementType());
    return std::clamp(type->getScalarSizeInBits(), 8u, 32u);
}

Value* payload(const Argument& given, Type* pointee, Interface& interface) {
    const unsigned bits = smallestNumber(pointee);
    const std::uint64_t bytes = given.isReference ? given.elementBytes : mostPayloadBytes;
    const std::uint64_t count = std::max<std::uint64_t>(1, (8 * bytes + bits - 1) / bits);
    return interface.global({.kind = InterfaceKind::payload,
                             .global = payloadName,
                             .builtIn = {},
                             .elementBytes = bytes,
                             .isReference = true},
                            ArrayType::get(Type::getIntNTy(pointee->getContext(), bits), count));
}

} // namespace tarnwick::msl
