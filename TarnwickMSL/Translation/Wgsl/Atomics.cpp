// Atomic values of WGSL are integers of 32 bits. Floats are exchanged as their bits; sums of floats
// are loops already (Passes/Memory/Atomics). WGSL's only compare-exchange may fail without a
// reason, so it is repeated until it did not. A minimum or maximum with the other sign than the
// memory's is a loop of them.
#include "TarnwickMSL/Translation/Wgsl/Atomics.h"

#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/AtomicSigns.h"

#include <llvm/ADT/StringSwitch.h>

namespace tarnwick::msl::wgsl {

using namespace llvm;

static std::string functionOf(StringRef op) {
    op.consume_front("fetch_");
    return StringSwitch<std::string>(op)
        .Case("exchange", "atomicExchange")
        .Case("add", "atomicAdd")
        .Case("sub", "atomicSub")
        .Case("and", "atomicAnd")
        .Case("or", "atomicOr")
        .Case("xor", "atomicXor")
        .Cases("min", "smin", "min_s", "umin", "min_u", "atomicMin")
        .Cases("max", "smax", "max_s", "umax", "max_u", "atomicMax")
        .Default("");
}

// An atomic operation in a thread that is outside the grid must not happen.
static Expression performed(Body& body, const std::string& text, Sign sign) {
    const std::string name = body.names.make("before");
    body.writePending(true);
    if (body.condition().empty()) {
        body.line("let " + name + " = " + text + ";");
    } else {
        body.line("var " + name + ": " + (sign == Sign::yes ? "i32" : "u32") + ";");
        body.changeShared(name + " = " + text + ";");
    }
    return {.text = name, .isSigned = sign == Sign::yes};
}

static Expression operandOf(Body& body, const Value* value, Sign sign) {
    Type* type = value->getType();
    return body.withSign(body.bitcast(body.i32(), type, body.value(value)), body.i32(), sign);
}

// Repeats the lines between until they break; a thread that may change nothing skips them.
static void repeat(Body& body, const std::function<void()>& lines) {
    body.open(body.condition().empty() ? "loop {" : "while (" + body.condition() + ") {");
    lines();
    body.close();
}

static Expression changeOfOtherSign(Body& body, const Memory::Atomic& to,
                                    const std::string& function, const Value* value, Type* type) {
    const Sign sign = to.sign == Sign::yes ? Sign::no : Sign::yes;
    const Expression operand = body.named(operandOf(body, value, sign), "operand");
    body.writePending(true);
    const Expression seen{.text = body.names.make("seen"), .isSigned = to.sign == Sign::yes};
    const std::string result = body.names.make("result");
    Expression made = call(function == "atomicMin" ? "min" : "max",
                           {body.withSign(seen, body.i32(), sign), operand});
    made.isSigned = sign == Sign::yes;
    body.line("var " + seen.text + " = atomicLoad(&" + to.text + ");");
    repeat(body, [&] {
        body.line("let " + result + " = atomicCompareExchangeWeak(&" + to.text + ", " + seen.text +
                  ", " + body.withSign(made, body.i32(), to.sign).text + ");");
        body.line("if (" + result + ".exchanged) { break; }");
        body.line(seen.text + " = " + result + ".old_value;");
    });
    return body.bitcast(type, body.i32(), seen);
}

static Expression change(Body& body, const Memory::Atomic& to, const std::string& function,
                         const Value* value, const Instruction& by) {
    Type* type = by.getType();
    if (to.text.empty())
        return body.zero(type);
    if (comparedSign(by).value_or(to.sign) != to.sign)
        return changeOfOtherSign(body, to, function, value, type);
    const Expression operand = operandOf(body, value, to.sign);
    const Expression before =
        performed(body, function + "(&" + to.text + ", " + operand.text + ")", to.sign);
    return body.bitcast(type, body.i32(), before);
}

static Expression exchanged(Body& body, const Memory::Atomic& to, const Value* expected,
                            const Value* desired, Type* type) {
    if (to.text.empty())
        return body.zero(type);
    const Expression old = body.named(operandOf(body, expected, to.sign), "expected");
    const Expression made = body.named(operandOf(body, desired, to.sign), "desired");
    body.writePending(true);
    const std::string seen = body.names.make("seen"), result = body.names.make("result");
    body.line("var " + seen + " = " + old.text + ";");
    repeat(body, [&] {
        body.line("let " + result + " = atomicCompareExchangeWeak(&" + to.text + ", " + old.text +
                  ", " + made.text + ");");
        body.line(seen + " = " + result + ".old_value;");
        body.line("if (" + result + ".exchanged || " + seen + " != " + old.text + ") { break; }");
    });
    return body.bitcast(type, body.i32(), {.text = seen, .isSigned = to.sign == Sign::yes});
}

static Expression loaded(Body& body, const Memory::Atomic& from, Type* type) {
    if (from.text.empty())
        return body.zero(type);
    Expression value{.text = "atomicLoad(&" + from.text + ")",
                     .isSigned = from.sign == Sign::yes,
                     .readsMemory = true};
    return body.bitcast(type, body.i32(), value);
}

static void stored(Body& body, const Memory::Atomic& to, const Value* value) {
    const Expression operand = operandOf(body, value, to.sign);
    if (!to.text.empty())
        body.changeShared("atomicStore(&" + to.text + ", " + operand.text + ");");
}

std::optional<Expression> writeAtomicCall(Body& body, Memory& memory, StringRef op,
                                          const CallInst& call) {
    const Memory::Atomic place = memory.atomic(call.getArgOperand(0));
    if (op == "store") {
        stored(body, place, call.getArgOperand(1));
        return std::nullopt;
    }
    if (op == "load")
        return loaded(body, place, call.getType());
    if (op.starts_with("compare_exchange"))
        return exchanged(body, place, call.getArgOperand(1), call.getArgOperand(2), call.getType());
    const std::string function = functionOf(op);
    if (function.empty())
        throw CompilerFault("The atomic operation '" + op.str() + "' is not known.");
    return change(body, place, function, call.getArgOperand(1), call);
}

static std::string functionOf(AtomicRMWInst::BinOp op) {
    switch (op) {
    case AtomicRMWInst::Xchg:
        return "atomicExchange";
    case AtomicRMWInst::Add:
        return "atomicAdd";
    case AtomicRMWInst::Sub:
        return "atomicSub";
    case AtomicRMWInst::And:
        return "atomicAnd";
    case AtomicRMWInst::Or:
        return "atomicOr";
    case AtomicRMWInst::Xor:
        return "atomicXor";
    case AtomicRMWInst::Max:
    case AtomicRMWInst::UMax:
        return "atomicMax";
    case AtomicRMWInst::Min:
    case AtomicRMWInst::UMin:
        return "atomicMin";
    default:
        throw CompilerFault(
            "An atomic operation is left that Passes/Atomics should have expanded.");
    }
}

Expression writeAtomic(Body& body, Memory& memory, const AtomicRMWInst& instruction) {
    return change(body, memory.atomic(instruction.getPointerOperand()),
                  functionOf(instruction.getOperation()), instruction.getValOperand(), instruction);
}

Expression writeAtomic(Body& body, Memory& memory, const AtomicCmpXchgInst& exchange) {
    return exchanged(body, memory.atomic(exchange.getPointerOperand()),
                     exchange.getCompareOperand(), exchange.getNewValOperand(),
                     exchange.getNewValOperand()->getType());
}

Expression writeAtomicLoad(Body& body, Memory& memory, const LoadInst& load) {
    return loaded(body, memory.atomic(load.getPointerOperand()), load.getType());
}

void writeAtomicStore(Body& body, Memory& memory, const StoreInst& store) {
    stored(body, memory.atomic(store.getPointerOperand()), store.getValueOperand());
}

} // namespace tarnwick::msl::wgsl
