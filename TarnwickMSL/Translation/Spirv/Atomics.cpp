#include "TarnwickMSL/Translation/Spirv/Atomics.h"

#include "TarnwickMSL/Translation/TranslationError.h"

#include <llvm/ADT/StringSwitch.h>

namespace tarnwick::msl::spirv {

using namespace llvm;

// Metal's atomics are relaxed: no order beyond the one value.
static Id relaxed(Body& body) {
    return body.constants.word(0);
}

static Id scope(Body& body, spv::StorageClass storage) {
    bool isShared = storage == spv::StorageClass::Workgroup;
    return body.constants.word(
        static_cast<std::uint32_t>(isShared ? spv::Scope::Workgroup : spv::Scope::Device));
}

// All operations but sums of floats take integers of the same size.
static Type* integerOf(Type* type) {
    return Type::getIntNTy(type->getContext(), type->getScalarSizeInBits());
}

static Id change(Body& body, const Memory::Pointer& pointer, spv::Op op, Type* type, Id value) {
    if (type->isIntegerTy(64))
        body.module.require(spv::Capability::Int64Atomics);
    return body.emit(op, type, {pointer.id, scope(body, pointer.storage), relaxed(body), value});
}

static Id compareExchange(Body& body, const Memory::Pointer& pointer, Type* type, Id expected,
                          Id desired) {
    return body.emit(spv::Op::OpAtomicCompareExchange, type,
                     {pointer.id, scope(body, pointer.storage), relaxed(body), relaxed(body),
                      desired, expected});
}

std::optional<spv::Op> atomicChange(StringRef op, bool isSigned) {
    op.consume_front("fetch_");
    return StringSwitch<std::optional<spv::Op>>(op)
        .Case("exchange", spv::Op::OpAtomicExchange)
        .Case("add", spv::Op::OpAtomicIAdd)
        .Case("sub", spv::Op::OpAtomicISub)
        .Case("and", spv::Op::OpAtomicAnd)
        .Case("or", spv::Op::OpAtomicOr)
        .Case("xor", spv::Op::OpAtomicXor)
        .Case("min", isSigned ? spv::Op::OpAtomicSMin : spv::Op::OpAtomicUMin)
        .Case("max", isSigned ? spv::Op::OpAtomicSMax : spv::Op::OpAtomicUMax)
        .Cases("smin", "min_s", spv::Op::OpAtomicSMin)
        .Cases("smax", "max_s", spv::Op::OpAtomicSMax)
        .Cases("umin", "min_u", spv::Op::OpAtomicUMin)
        .Cases("umax", "max_u", spv::Op::OpAtomicUMax)
        .Default(std::nullopt);
}

static Id addFloat(Body& body, Memory& memory, const CallInst& call) {
    body.module.require(spv::Capability::AtomicFloat32AddEXT);
    body.module.extension("SPV_EXT_shader_atomic_float_add");
    Memory::Pointer to = memory.atomic(call.getArgOperand(0), call.getType(), true);
    if (!to.id)
        return body.constants.null(call.getType());
    return change(body, to, spv::Op::OpAtomicFAddEXT, call.getType(),
                  body.id(call.getArgOperand(1)));
}

Id writeAtomicCall(Body& body, Memory& memory, StringRef op, const CallInst& call) {
    if (call.getType()->isFloatTy() && op == "fetch_add")
        return addFloat(body, memory, call);
    const Value* pointer = call.getArgOperand(0);
    bool isStore = op == "store";
    Type* type = isStore ? call.getArgOperand(1)->getType() : call.getType();
    Type* integer = integerOf(type);
    Memory::Pointer to = memory.atomic(pointer, integer, op != "load");
    if (!to.id)
        return body.constants.null(isStore ? integer : type);
    Id place = scope(body, to.storage);
    auto operand = [&](unsigned n) {
        return body.bitcast(integer, type, body.id(call.getArgOperand(n)));
    };
    if (isStore) {
        body.act(spv::Op::OpAtomicStore, {to.id, place, relaxed(body), operand(1)});
        return 0;
    }
    Id before = 0;
    StringRef suffix = call.getCalledFunction()->getName().rsplit('.').second;
    if (op == "load")
        before = body.emit(spv::Op::OpAtomicLoad, integer, {to.id, place, relaxed(body)});
    else if (op.starts_with("compare_exchange"))
        before = compareExchange(body, to, integer, operand(1), operand(2));
    else if (auto known = atomicChange(op, suffix.starts_with("s") || suffix.starts_with("i")))
        before = change(body, to, *known, integer, operand(1));
    else
        throw CompilerFault("The atomic operation '" + op.str() + "' is not known.");
    return body.bitcast(type, integer, before);
}

static spv::Op changeOp(AtomicRMWInst::BinOp op) {
    switch (op) {
    case AtomicRMWInst::Xchg:
        return spv::Op::OpAtomicExchange;
    case AtomicRMWInst::Add:
        return spv::Op::OpAtomicIAdd;
    case AtomicRMWInst::Sub:
        return spv::Op::OpAtomicISub;
    case AtomicRMWInst::And:
        return spv::Op::OpAtomicAnd;
    case AtomicRMWInst::Or:
        return spv::Op::OpAtomicOr;
    case AtomicRMWInst::Xor:
        return spv::Op::OpAtomicXor;
    case AtomicRMWInst::Max:
        return spv::Op::OpAtomicSMax;
    case AtomicRMWInst::Min:
        return spv::Op::OpAtomicSMin;
    case AtomicRMWInst::UMax:
        return spv::Op::OpAtomicUMax;
    case AtomicRMWInst::UMin:
        return spv::Op::OpAtomicUMin;
    default:
        throw CompilerFault(
            "An atomic operation is left that Passes/Atomics should have expanded.");
    }
}

Id writeAtomic(Body& body, Memory& memory, const AtomicRMWInst& instruction) {
    Type* type = instruction.getType();
    Type* integer = integerOf(type);
    Memory::Pointer to = memory.atomic(instruction.getPointerOperand(), integer, true);
    if (!to.id)
        return body.constants.null(type);
    Id value = body.bitcast(integer, type, body.id(instruction.getValOperand()));
    Id before = change(body, to, changeOp(instruction.getOperation()), integer, value);
    return body.bitcast(type, integer, before);
}

Id writeAtomic(Body& body, Memory& memory, const AtomicCmpXchgInst& exchange) {
    Type* type = exchange.getNewValOperand()->getType();
    Memory::Pointer to = memory.atomic(exchange.getPointerOperand(), type, true);
    if (!to.id)
        return body.constants.null(exchange.getType());
    Id expected = body.id(exchange.getCompareOperand());
    Id before = compareExchange(body, to, type, expected, body.id(exchange.getNewValOperand()));
    Id same = body.emit(spv::Op::OpIEqual, body.i1(), {before, expected});
    return body.emit(spv::Op::OpCompositeConstruct, exchange.getType(), {before, same});
}

Id writeAtomicLoad(Body& body, Memory& memory, const LoadInst& load) {
    Type* integer = integerOf(load.getType());
    Memory::Pointer from = memory.atomic(load.getPointerOperand(), integer, false);
    if (!from.id)
        return body.constants.null(load.getType());
    Id value = body.emit(spv::Op::OpAtomicLoad, integer,
                         {from.id, scope(body, from.storage), relaxed(body)});
    return body.bitcast(load.getType(), integer, value);
}

void writeAtomicStore(Body& body, Memory& memory, const StoreInst& store) {
    Type* type = store.getValueOperand()->getType();
    Type* integer = integerOf(type);
    Memory::Pointer to = memory.atomic(store.getPointerOperand(), integer, true);
    if (!to.id)
        return;
    Id value = body.bitcast(integer, type, body.id(store.getValueOperand()));
    body.act(spv::Op::OpAtomicStore, {to.id, scope(body, to.storage), relaxed(body), value});
}

} // namespace tarnwick::msl::spirv
