#include "TarnwickMSL/Translation/Passes/Entry/Wrapper.h"

#include "TarnwickMSL/SamplerBits.h"
#include "TarnwickMSL/Translation/Passes/Calls/BuiltInCalls.h"
#include "TarnwickMSL/Translation/Passes/Calls/Inlining.h"
#include "TarnwickMSL/Translation/Passes/Entry/Interface.h"
#include "TarnwickMSL/Translation/Passes/Entry/MeshCalls.h"
#include "TarnwickMSL/Translation/Passes/Optimising/Costs.h"
#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/AsmParser/Parser.h>
#include <llvm/IR/InstIterator.h>
#include <llvm/Support/SourceMgr.h>

namespace tarnwick::msl {

using namespace llvm;

// The pointee's own type where the front end names it; else words of its size.
static Type* pointeeType(const Module& module, const Argument& argument) {
    LLVMContext& context = module.getContext();
    if (argument.elementBytes == 0) // of void
        return Type::getInt32Ty(context);
    StringRef name = argument.elementType;
    Type* type =
        StructType::getTypeByName(context, name.starts_with("%") ? name.drop_front() : name);
    if (!type && !name.empty() && !name.starts_with("%")) {
        SMDiagnostic ignored;
        type = parseType(name, ignored, module);
    }
    const DataLayout& layout = module.getDataLayout();
    if (type && type->isSized() && layout.getTypeAllocSize(type) == argument.elementBytes)
        return type;
    if (argument.elementBytes % 4 == 0)
        return ArrayType::get(Type::getInt32Ty(context), argument.elementBytes / 4);
    return ArrayType::get(Type::getInt8Ty(context), argument.elementBytes);
}

// Builds the call's arguments, in the order of the signature.
class Wrapping {
  public:
    Wrapping(ShaderModule& shader, Function& function, const EntrySignature& entry,
             Interface& interface, Language language)
        : shader_(shader), function_(function), entry_(entry), interface_(interface),
          language_(language), builder_(shader.module->getContext()) {}

    CallBase* build();

  private:
    Value* isOutsideGrid();
    void returnOutsideGrid();
    void markOutsideGrid();
    Value* argument(const Argument& given, llvm::Argument& formal);
    Value* absent(const Argument& given, llvm::Argument& formal);
    Value* buffer(const Argument& given);
    void hold(const Argument& record, const Argument& member);
    static TextureVariable textureOf(const Argument& given, std::uint32_t index);
    Value* textures(const Argument& given, llvm::Argument& formal);
    Value* samplers(const Argument& given, llvm::Argument& formal);
    Value* handle(const Argument& given, llvm::Argument& formal);
    Value* values(const Argument& given, llvm::Argument& formal);
    Value* passed(llvm::Argument& formal, Value* memory);
    AllocaInst* local(Type* type);
    AllocaInst* localFor(llvm::Argument& formal, std::uint64_t bytes);
    Value* at(Value* pointer, std::uint64_t offset);
    void writeResults(Value* record, CallBase& call);

    ShaderModule& shader_;
    Function& function_;
    const EntrySignature& entry_;
    Interface& interface_;
    Language language_;
    IRBuilder<> builder_;
};

AllocaInst* Wrapping::local(Type* type) {
    BasicBlock& entry = shader_.main->getEntryBlock();
    AllocaInst* made = IRBuilder<>(&entry, entry.begin()).CreateAlloca(type);
    made->setAlignment(Align(16));
    return made;
}

AllocaInst* Wrapping::localFor(llvm::Argument& formal, std::uint64_t bytes) {
    if (Type* record = formal.getParamByValType())
        return local(record);
    if (!formal.getType()->isPointerTy())
        return local(formal.getType());
    return local(ArrayType::get(builder_.getInt8Ty(), bytes));
}

Value* Wrapping::at(Value* pointer, std::uint64_t offset) {
    return offset == 0 ? pointer
                       : builder_.CreateConstInBoundsGEP1_64(builder_.getInt8Ty(), pointer, offset);
}

// The contents of `memory`, by address or by value as the function requires.
Value* Wrapping::passed(llvm::Argument& formal, Value* memory) {
    if (formal.getType()->isPointerTy())
        return memory;
    return builder_.CreateLoad(formal.getType(), memory);
}

Value* Wrapping::buffer(const Argument& given) {
    bool isThreadgroup = given.kind == ArgumentKind::threadgroup;
    bool isUniform = given.space == AddressSpace::constant && !isThreadgroup;
    // Arguments whose conditions exclude each other may share an index.
    std::string global =
        (isThreadgroup ? "msl.threadgroup." : "msl.buffer.") + std::to_string(given.index);
    if (given.presence == Presence::open && shader_.module->getNamedGlobal(global))
        global += "." + given.name;
    InterfaceVariable variable{.kind = isThreadgroup ? InterfaceKind::workgroup
                                       : isUniform   ? InterfaceKind::uniformBuffer
                                                     : InterfaceKind::storageBuffer,
                               .global = global,
                               .name = given.name,
                               .builtIn = {},
                               .index = given.index,
                               .elementBytes = given.elementBytes,
                               .isReference = given.isReference,
                               .isCoherent = given.isCoherent || given.hasRasterOrder};
    for (const Argument& member : given.members)
        hold(given, member);
    return interface_.global(variable, pointeeType(*shader_.module, given));
}

// A member of an argument buffer, which the step `argument-buffers` finds in the record.
void Wrapping::hold(const Argument& record, const Argument& member) {
    MemberKind kind = MemberKind::constants;
    std::uint64_t bytes = 8;
    if (member.kind == ArgumentKind::texture) {
        kind = MemberKind::texture;
        bytes = 4;
        shader_.textures.push_back(textureOf(member, member.index));
    } else if (member.kind == ArgumentKind::sampler) {
        kind = MemberKind::sampler;
        shader_.samplers.push_back(member.index);
    } else if (member.kind == ArgumentKind::buffer) {
        kind = MemberKind::buffer;
        buffer(member);
    } else {
        bytes = member.elementBytes;
    }
    shader_.members.push_back({.kind = kind,
                               .buffer = record.index,
                               .id = member.id,
                               .offset = member.offset,
                               .bytes = static_cast<std::uint32_t>(bytes),
                               .index = member.index,
                               .stride = static_cast<std::uint32_t>(record.elementBytes)});
}

TextureVariable Wrapping::textureOf(const Argument& given, std::uint32_t index) {
    return {.index = index,
            .shape = given.shape,
            .component = given.component,
            .isDepth = given.isDepth,
            .isRead = given.isRead,
            .isWritten = given.isWritten,
            .isCoherent = given.hasRasterOrder || given.isCoherent,
            .name = given.name};
}

Value* Wrapping::textures(const Argument& given, llvm::Argument& formal) {
    AllocaInst* memory = localFor(formal, 4 * std::uint64_t{given.count});
    for (std::uint32_t n = 0; n < given.count; ++n) {
        std::uint32_t index = given.index + n;
        while (any_of(shader_.textures, [&](const auto& other) { return other.index == index; }))
            index += mostTextures;
        shader_.textures.push_back(textureOf(given, index));
        builder_.CreateStore(builder_.getInt32(index), at(memory, 4 * std::uint64_t{n}));
    }
    return passed(formal, memory);
}

Value* Wrapping::samplers(const Argument& given, llvm::Argument& formal) {
    AllocaInst* memory = localFor(formal, 8 * std::uint64_t{given.count});
    for (std::uint32_t n = 0; n < given.count; ++n) {
        std::uint32_t index = given.index + n;
        shader_.samplers.push_back(index);
        builder_.CreateStore(builder_.getInt64(samplerArgumentBit | index),
                             at(memory, 8 * std::uint64_t{n}));
    }
    return passed(formal, memory);
}

// An acceleration structure, by its index; a mesh or a grid of mesh functions, of which there is
// one.
Value* Wrapping::handle(const Argument& given, llvm::Argument& formal) {
    AllocaInst* memory = localFor(formal, 4);
    builder_.CreateStore(builder_.getInt32(given.index), memory);
    return passed(formal, memory);
}

Value* Wrapping::values(const Argument& given, llvm::Argument& formal) {
    std::uint64_t bytes = 0;
    for (const StageValue& value : given.values)
        if (!value.isOfControlPoint)
            bytes = std::max(bytes, value.offset + 16);
    if (formal.getType()->isIntegerTy(1)) // a bool by value
        return builder_.CreateIsNotNull(interface_.read(builder_, given.values.front()));
    if (!formal.getType()->isPointerTy() && given.values.size() == 1 &&
        given.values.front().presence != Presence::no) {
        Value* only = interface_.read(builder_, given.values.front());
        if (only->getType() == formal.getType())
            return only;
    }
    AllocaInst* memory = localFor(formal, bytes);
    for (const StageValue& value : given.values)
        if (!value.isOfControlPoint) // a packed vector is not aligned as its lanes together
            builder_.CreateAlignedStore(
                value.presence == Presence::no
                    ? Constant::getNullValue(memoryType(builder_.getContext(), value))
                    : interface_.read(builder_, value),
                at(memory, value.offset), commonAlignment(Align(16), value.offset));
    return passed(formal, memory);
}

// An argument whose condition is false. Only code that never runs uses it; it is zero.
Value* Wrapping::absent(const Argument& given, llvm::Argument& formal) {
    Type* type = given.kind == ArgumentKind::buffer || given.kind == ArgumentKind::threadgroup
                     ? pointeeType(*shader_.module, given)
                     : nullptr;
    if (!type && !formal.getType()->isPointerTy() && given.kind != ArgumentKind::texture)
        return Constant::getNullValue(formal.getType());
    std::uint64_t bytes = std::max<std::uint64_t>(8 * given.count, 16 * given.values.size());
    for (const StageValue& value : given.values)
        bytes = std::max(bytes, value.offset + 16);
    AllocaInst* memory = type ? local(type) : localFor(formal, bytes);
    const DataLayout& layout = shader_.module->getDataLayout();
    builder_.CreateMemSet(memory, builder_.getInt8(given.kind == ArgumentKind::texture ? 0xff : 0),
                          layout.getTypeAllocSize(memory->getAllocatedType()), memory->getAlign());
    return type ? memory : passed(formal, memory);
}

Value* Wrapping::argument(const Argument& given, llvm::Argument& formal) {
    if (given.presence == Presence::no)
        return absent(given, formal);
    switch (given.kind) {
    case ArgumentKind::buffer:
    case ArgumentKind::threadgroup:
        return buffer(given);
    case ArgumentKind::texture:
        return textures(given, formal);
    case ArgumentKind::sampler:
        return samplers(given, formal);
    case ArgumentKind::accelerationStructure:
    case ArgumentKind::meshGrid:
    case ArgumentKind::mesh:
        return handle(given, formal);
    case ArgumentKind::payload:
        return payload(given, pointeeType(*shader_.module, given), interface_);
    case ArgumentKind::stageIn:
    case ArgumentKind::builtIn:
        return values(given, formal);
    }
    return nullptr;
}

void Wrapping::writeResults(Value* record, CallBase& call) {
    if (entry_.results.empty() || entry_.stage == Stage::mesh)
        return; // the calls of a mesh write its results
    if (!record && !entry_.resultIsRecord) {
        Value* plain = &call;
        if (plain->getType()->isIntegerTy(1))
            plain = builder_.CreateZExt(plain, builder_.getInt8Ty());
        StageValue result = entry_.results.front();
        if (entry_.stage == Stage::vertex)
            result.attribute = "position"; // the one plain result a vertex function can have
        interface_.write(builder_, result, plain);
        return;
    }
    if (!record) { // a record by value
        record = local(call.getType());
        builder_.CreateStore(&call, record);
    }
    for (const StageValue& value : entry_.results)
        if (value.presence != Presence::no)
            interface_.write(builder_, value,
                             builder_.CreateLoad(memoryType(builder_.getContext(), value),
                                                 at(record, value.offset)));
}

// A dispatch is rounded up to whole threadgroups; the kernel runs for the exact grid of Metal only.
Value* Wrapping::isOutsideGrid() {
    Value* position = interface_.readBuiltIn(builder_, "thread_position_in_grid");
    Value* grid = interface_.readBuiltIn(builder_, "threads_per_grid");
    Value* outside = builder_.getFalse();
    for (std::uint64_t axis = 0; axis < 3; ++axis)
        outside = builder_.CreateOr(
            outside, builder_.CreateICmpUGE(builder_.CreateExtractElement(position, axis),
                                            builder_.CreateExtractElement(grid, axis)));
    return outside;
}

// All threads of a workgroup must reach a barrier of WGSL. So threads outside the grid run as well,
// and the writer lets them change no memory.
void Wrapping::markOutsideGrid() {
    FunctionCallee mark =
        shader_.module->getOrInsertFunction(gridMark, builder_.getVoidTy(), builder_.getInt1Ty());
    cast<Function>(mark.getCallee())->setDoesNotThrow();
    builder_.CreateCall(mark, {builder_.CreateNot(isOutsideGrid())});
}

void Wrapping::returnOutsideGrid() {
    Value* outside = isOutsideGrid();
    BasicBlock* end = BasicBlock::Create(builder_.getContext(), "outside", shader_.main);
    BasicBlock* inside = BasicBlock::Create(builder_.getContext(), "inside", shader_.main);
    builder_.CreateCondBr(outside, end, inside);
    builder_.SetInsertPoint(end);
    builder_.CreateRetVoid();
    builder_.SetInsertPoint(inside);
}

static bool hasBarrier(const Function& function) {
    return any_of(instructions(function), [](const Instruction& instruction) {
        auto* call = dyn_cast<CallBase>(&instruction);
        return call && builtInName(*call) == "barrier";
    });
}

CallBase* Wrapping::build() {
    auto* type = FunctionType::get(builder_.getVoidTy(), false);
    shader_.main = Function::Create(type, GlobalValue::ExternalLinkage, "main", *shader_.module);
    shader_.main->setDoesNotThrow();
    builder_.SetInsertPoint(BasicBlock::Create(builder_.getContext(), "entry", shader_.main));
    if (entry_.stage == Stage::kernel && language_ == Language::wgsl && hasBarrier(function_))
        markOutsideGrid();
    else if (entry_.stage == Stage::kernel)
        returnOutsideGrid();
    if (entry_.stage == Stage::object || entry_.stage == Stage::mesh)
        clearMesh(builder_, shader_, interface_);
    SmallVector<Value*, 8> arguments;
    Value* record = nullptr;
    auto formal = function_.arg_begin();
    if (formal != function_.arg_end() && formal->hasStructRetAttr()) {
        record = local(formal->getParamStructRetType());
        arguments.push_back(record);
        ++formal;
    }
    for (const Argument& given : entry_.arguments) {
        if (formal == function_.arg_end())
            throw CompilerFault("The function '" + entry_.name + "' has lost an argument.");
        arguments.push_back(argument(given, *formal));
        ++formal;
    }
    CallInst* call = builder_.CreateCall(&function_, arguments);
    call->setCallingConv(function_.getCallingConv());
    writeResults(record, *call);
    builder_.CreateRetVoid();
    return call;
}

// The control points of the stage_in argument.
class ControlPoints {
  public:
    ControlPoints(ShaderModule& shader, const EntrySignature& entry, Interface& interface)
        : shader_(shader), interface_(interface) {
        for (const Argument& argument : entry.arguments)
            for (const StageValue& value : argument.values)
                if (value.isOfControlPoint)
                    values_.push_back(value);
    }
    // Replaces the library's calls by the values of the members.
    void replaceCalls(Function& body);

  private:
    void read(CallBase& call);
    Value* count(CallBase& call);

    ShaderModule& shader_;
    Interface& interface_;
    std::vector<StageValue> values_;
};

void ControlPoints::read(CallBase& call) {
    IRBuilder<> builder(&call);
    for (const StageValue& value : values_) {
        Value* place = builder.CreateConstInBoundsGEP1_64(builder.getInt8Ty(),
                                                          call.getArgOperand(0), value.offset);
        Value* given = interface_.readAttribute(builder, value, call.getArgOperand(1));
        builder.CreateAlignedStore(given, place, Align(1));
    }
}

Value* ControlPoints::count(CallBase& call) {
    IRBuilder<> builder(&call);
    return shader_.controlPoints ? builder.getInt32(shader_.controlPoints)
                                 : interface_.readBuiltIn(builder, "control_points");
}

void ControlPoints::replaceCalls(Function& body) {
    for (Instruction& instruction : make_early_inc_range(instructions(body))) {
        auto* call = dyn_cast<CallBase>(&instruction);
        StringRef name = call ? builtInName(*call) : StringRef();
        if (name != "control_point" && name != "control_points")
            continue;
        if (shader_.patch == PatchKind::none)
            tarnwick::msl::at(instruction, []() {
                throw TranslationError("Control points are available in a patch function only.");
            });
        if (name == "control_points")
            call->replaceAllUsesWith(count(*call));
        else
            read(*call);
        call->eraseFromParent();
    }
}

static void requireMeshes(const EntrySignature& entry, const Target& target) {
    const bool isOfMesh = entry.stage == Stage::object || entry.stage == Stage::mesh;
    if (isOfMesh && target.language == Language::wgsl)
        throw TranslationError("WGSL has no object and mesh functions.");
    if (isOfMesh && !target.hasMeshFunctions)
        throw TranslationError("The function '" + entry.name +
                               "' requires pipelines of object and mesh functions "
                               "(VK_EXT_mesh_shader), which are not available here.");
}

void wrap(ShaderModule& shader, const EntrySignature& entry,
          const std::vector<EntrySignature>& allEntries, const Target& target) {
    requireMeshes(entry, target);
    shader.ordersFragments =
        target.ordersFragments && entry.stage == Stage::fragment &&
        any_of(entry.arguments, [](const Argument& given) { return given.hasRasterOrder; });
    Function& body = *shader.module->getFunction(entry.symbol);
    const Varyings varyings(allEntries);
    Interface interface(shader, varyings);
    ControlPoints(shader, entry, interface).replaceCalls(body);
    replaceMeshCalls(body, shader, entry, interface);
    inlineCall(*Wrapping(shader, body, entry, interface, target.language).build());
    if (body.hasFnAttribute(unrollsMark))
        shader.main->addFnAttr(unrollsMark);
    body.eraseFromParent();
}

} // namespace tarnwick::msl
