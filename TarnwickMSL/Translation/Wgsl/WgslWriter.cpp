#include "TarnwickMSL/Translation/WgslWriter.h"

#include "TarnwickMSL/Translation/Places.h"
#include "TarnwickMSL/Translation/Reading/Deferred.h"
#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Atomics.h"
#include "TarnwickMSL/Translation/Wgsl/Calls.h"
#include "TarnwickMSL/Translation/Wgsl/Naming.h"
#include "TarnwickMSL/Translation/Wgsl/Operations.h"
#include "TarnwickMSL/Translation/Wgsl/Scoping.h"
#include "TarnwickMSL/Translation/Wgsl/Stage.h"
#include "TarnwickMSL/Translation/Wgsl/Textures.h"
#include "TarnwickMSL/Translation/Wgsl/ValueUses.h"
#include "TarnwickMSL/Translation/Wgsl/Vectors.h"

#include <llvm/Demangle/Demangle.h>
#include <llvm/IR/InstIterator.h>

namespace tarnwick::msl {

using namespace llvm;
using namespace wgsl;

static std::uint32_t bindingAfter(const ShaderModule& shader) {
    std::uint32_t next = firstBinding(shader.stage);
    for (const InterfaceVariable& variable : shader.interface)
        if (hasBinding(variable.kind) || variable.kind == InterfaceKind::pushConstant)
            next = std::max(next, variable.binding + 1);
    for (const TextureVariable& texture : shader.textures)
        next = std::max(next, texture.binding + 1);
    return next;
}

namespace {

class TextWriter {
  public:
    explicit TextWriter(const ShaderModule& shader)
        : shader_(shader), body_(shader),
          memory_(body_, [this] { return textures_.takeBinding(); }),
          textures_(body_, bindingAfter(shader)), flow_(shader), scoping_(flow_, *shader.main) {
        body_.onDemand = [this](const Instruction& instruction) { return value(instruction); };
    }
    EntryPoint write();

  private:
    void refuseOthers() const;
    void scope(const Scope& scope);
    void statement(const Scope& in, const Statement& statement, bool isLast);
    void branch(const Statement& branch);
    void copies(const Statement& copies);
    void instruction(const Instruction& instruction);
    std::optional<Expression> call(const CallInst& call);
    Expression value(const Instruction& instruction);
    std::optional<Expression> written(const Instruction& instruction);
    Expression inserted(const InsertValueInst& insert);
    Expression extracted(const ExtractValueInst& extract);
    std::string attributes();
    std::vector<Resource> resources() const;
    std::vector<FunctionConstant> constants() const;

    const ShaderModule& shader_;
    Body body_;
    Memory memory_;
    Textures textures_;
    Flow flow_;
    Scoping scoping_;
    bool discards_ = false;
};

} // namespace

// NAME of a call to `msl.NAME.SUFFIX`.
static StringRef builtInName(StringRef symbol) {
    return symbol.consume_front("msl.") ? symbol.take_until([](char c) { return c == '.'; })
                                        : StringRef();
}

std::optional<Expression> TextWriter::call(const CallInst& call) {
    if (auto* intrinsic = dyn_cast<IntrinsicInst>(&call))
        return writeIntrinsic(body_, *intrinsic);
    const Function* callee = call.getCalledFunction();
    StringRef name = callee ? builtInName(callee->getName()) : StringRef();
    if (name.empty())
        throw callee ? TranslationError("The function '" + demangle(callee->getName()) +
                                        "' is called but not defined.")
                     : TranslationError("Function pointers are not supported in a shader.");
    discards_ |= name == "discard";
    if (name == "attribute")
        return writeAttribute(body_, call);
    if (callee->getName() == gridMark) {
        body_.startCondition(body_.value(call.getArgOperand(0)));
        return std::nullopt;
    }
    if (callee->getName() == budgetMark) {
        body_.endUnless(prefix("!", body_.value(call.getArgOperand(0))));
        return std::nullopt;
    }
    if (name.starts_with("ray_query"))
        throw TranslationError("WGSL has no ray tracing.");
    if (Textures::takes(name))
        return textures_.write(name, call);
    if (name.consume_front("atomic_"))
        return writeAtomicCall(body_, memory_, name, call);
    return writeBuiltInCall(body_, name, call);
}

// An array or a record with one other element.
Expression TextWriter::inserted(const InsertValueInst& insert) {
    const Expression whole = body_.value(insert.getAggregateOperand());
    const std::string name = body_.names.make("changed");
    body_.line("var " + name + " = " + whole.text + ";");
    std::string place = name;
    for (unsigned index : insert.getIndices())
        place += insert.getType()->isStructTy() ? ".m" + std::to_string(index)
                                                : "[" + std::to_string(index) + "]";
    body_.line(place + " = " + body_.unsignedValue(insert.getInsertedValueOperand()).text + ";");
    return {.text = name};
}

// A member of the pair that frexp or a compare-exchange gives.
Expression TextWriter::extracted(const ExtractValueInst& extract) {
    const auto* pair = dyn_cast<Instruction>(extract.getAggregateOperand());
    const unsigned index = extract.getIndices().front();
    if (auto* exchange = dyn_cast_or_null<AtomicCmpXchgInst>(pair)) {
        const Expression seen = body_.value(exchange);
        return index == 0
                   ? seen
                   : infix(seen, "==",
                           body_.withSign(body_.value(exchange->getCompareOperand()), body_.i32(),
                                          seen.isSigned ? Sign::yes : Sign::no));
    }
    auto* intrinsic = dyn_cast_or_null<IntrinsicInst>(pair);
    if (intrinsic && intrinsic->getIntrinsicID() == Intrinsic::frexp) {
        Expression made = member(body_.value(intrinsic), index == 0 ? "fract" : "exp");
        made.isSigned = index == 1;
        return made;
    }
    Expression whole = body_.value(extract.getAggregateOperand());
    return extract.getAggregateOperand()->getType()->isStructTy()
               ? member(whole, "m" + std::to_string(index))
               : Expression{.text =
                                within(whole, Rank::primary) + "[" + std::to_string(index) + "]"};
}

// Absent for a statement.
std::optional<Expression> TextWriter::written(const Instruction& instruction) {
    if (auto* operation = dyn_cast<BinaryOperator>(&instruction))
        return writeBinary(body_, *operation);
    if (auto* compare = dyn_cast<CmpInst>(&instruction))
        return writeCompare(body_, *compare);
    if (auto* cast = dyn_cast<CastInst>(&instruction))
        return writeCast(body_, *cast);
    if (auto* called = dyn_cast<CallInst>(&instruction))
        return call(*called);
    switch (instruction.getOpcode()) {
    case Instruction::Load: {
        auto& load = cast<LoadInst>(instruction);
        return load.isAtomic() ? writeAtomicLoad(body_, memory_, load)
                               : memory_.load(load.getPointerOperand(), load.getType());
    }
    case Instruction::FNeg:
        return prefix("-", body_.value(instruction.getOperand(0)));
    case Instruction::Select:
        return writeSelect(body_, cast<SelectInst>(instruction));
    case Instruction::InsertElement:
        return writeInsertElement(body_, cast<InsertElementInst>(instruction));
    case Instruction::ExtractElement:
        return writeExtractElement(body_, cast<ExtractElementInst>(instruction));
    case Instruction::ShuffleVector:
        return writeShuffle(body_, cast<ShuffleVectorInst>(instruction));
    case Instruction::InsertValue:
        return inserted(cast<InsertValueInst>(instruction));
    case Instruction::ExtractValue:
        return extracted(cast<ExtractValueInst>(instruction));
    case Instruction::AtomicRMW:
        return writeAtomic(body_, memory_, cast<AtomicRMWInst>(instruction));
    case Instruction::AtomicCmpXchg:
        return writeAtomic(body_, memory_, cast<AtomicCmpXchgInst>(instruction));
    default:
        throw CompilerFault(std::string("An instruction is left: ") + instruction.getOpcodeName());
    }
}

// Whether WGSL would evaluate the operation itself, and might refuse its result.
static bool isOfConstants(const Instruction& instruction) {
    const auto* call = dyn_cast<CallInst>(&instruction);
    const Function* callee = call ? call->getCalledFunction() : nullptr;
    const bool isPlain = isa<BinaryOperator, CastInst, IntrinsicInst>(instruction) ||
                         (callee && isPlainFunction(builtInName(callee->getName())));
    return isPlain && all_of(call ? call->args() : instruction.operands(),
                             [](const llvm::Use& operand) { return isa<Constant>(operand); });
}

Expression TextWriter::value(const Instruction& instruction) {
    if (!isDeferred(instruction))
        throw CompilerFault("A value is used before it is written.");
    return *written(instruction);
}

void TextWriter::instruction(const Instruction& instruction) {
    if (auto* store = dyn_cast<StoreInst>(&instruction))
        return store->isAtomic()
                   ? writeAtomicStore(body_, memory_, *store)
                   : memory_.store(store->getPointerOperand(), store->getValueOperand());
    // A pointer is resolved at its use. Atomics are relaxed, so fences have no effect.
    const bool isSilent = instruction.getType()->isPointerTy() || isa<FenceInst>(instruction);
    if (isSilent || isDeferred(instruction))
        return;
    body_.hidesConstants = isOfConstants(instruction);
    const std::optional<Expression> made = written(instruction);
    body_.hidesConstants = false;
    if (made)
        body_.define(instruction, *made);
}

static bool mentions(const std::string& text, const std::string& name) {
    const auto isLetter = [](char letter) {
        return std::isalnum(static_cast<unsigned char>(letter)) || letter == '_';
    };
    for (std::size_t at = text.find(name); at != text.npos; at = text.find(name, at + 1)) {
        const std::size_t end = at + name.size();
        if ((at == 0 || !isLetter(text[at - 1])) && (end == text.size() || !isLetter(text[end])))
            return true;
    }
    return false;
}

// All phis of a block get their values at once: no assignment may change what a later one reads.
void TextWriter::copies(const Statement& copies) {
    struct Copy {
        std::string name, text;
        bool declares;
    };
    std::vector<Copy> left;
    for (const PHINode& phi : copies.to->phis()) {
        const Value* given = phi.getIncomingValueForBlock(copies.block);
        if (given == &phi || isa<UndefValue>(given))
            continue;
        const bool declares = scoping_.isDeclaredBy(copies, phi);
        if (declares)
            body_.setVariable(phi, body_.names.make(nameOf(phi)),
                              prefersSigned(phi) ? Sign::yes : Sign::no);
        const Expression to = body_.value(&phi);
        const Expression value =
            to.isSigned ? body_.signedValue(given) : body_.unsignedValue(given);
        left.push_back({to.text, value.text, declares});
    }
    const auto isRead = [&](const Copy& by, const Copy& copy) {
        return &by != &copy && mentions(by.text, copy.name);
    };
    while (!left.empty()) {
        auto next = find_if(left, [&](const Copy& copy) {
            return none_of(left, [&](const Copy& by) { return isRead(by, copy); });
        });
        if (next == left.end()) { // a ring: all read what others change
            for (Copy& copy : left) {
                const std::string name = body_.names.make("next_" + copy.name);
                body_.line("let " + name + " = " + copy.text + ";");
                copy.text = name;
            }
            continue;
        }
        body_.line((next->declares ? "var " : "") + next->name + " = " + next->text + ";");
        left.erase(next);
    }
}

void TextWriter::branch(const Statement& branch) {
    const auto* end = cast<BranchInst>(branch.block->getTerminator());
    const Expression condition = body_.value(end->getCondition());
    const bool hasFirst = !branch.first->statements.empty();
    const bool hasSecond = !branch.second->statements.empty();
    if (!hasFirst && !hasSecond)
        return;
    const Expression shown = hasFirst ? condition : prefix("!", condition);
    body_.open("if (" + shown.text + ") {");
    scope(hasFirst ? *branch.first : *branch.second);
    body_.close(hasFirst && hasSecond ? "} else {" : "}");
    if (!hasFirst || !hasSecond)
        return;
    body_.reopen();
    scope(*branch.second);
    body_.close();
}

void TextWriter::statement(const Scope& in, const Statement& statement, bool isLast) {
    switch (statement.kind) {
    case StatementKind::code:
        for (const Instruction& each : *statement.block)
            if (!isa<PHINode, AllocaInst>(each) && !each.isTerminator())
                at(each, [&] { instruction(each); });
        return;
    case StatementKind::copies:
        return copies(statement);
    case StatementKind::branch:
        return branch(statement);
    case StatementKind::loop:
        body_.open("loop {");
        scope(*statement.first);
        if (statement.second) {
            body_.open("continuing {");
            scope(*statement.second);
            body_.close();
        }
        return body_.close();
    case StatementKind::breaking:
        return body_.line("break;");
    case StatementKind::repeating:
        return body_.line("continue;");
    case StatementKind::returning:
        if (memory_.writesPointSize())
            placePoint(body_);
        if (body_.hasOutputs())
            body_.line("return " + body_.outputName() + ";");
        else if (in.around || !isLast)
            body_.line("return;");
        return;
    }
}

void TextWriter::scope(const Scope& scope) {
    for (std::size_t place = 0; place < scope.statements.size(); ++place) {
        for (const Instruction* value : scoping_.before(scope, place))
            body_.declareVariable(*value);
        statement(scope, *scope.statements[place], place + 1 == scope.statements.size());
    }
}

void TextWriter::refuseOthers() const {
    if (shader_.stage == Stage::object || shader_.stage == Stage::mesh)
        throw TranslationError("WGSL has no object and mesh functions.");
    if (shader_.patch != PatchKind::none)
        throw TranslationError("WGSL has no tessellation.");
    if (shader_.coversAfterDepth)
        throw TranslationError("WGSL has no [[post_depth_coverage]].");
}

std::string TextWriter::attributes() {
    if (shader_.stage == Stage::kernel)
        return "@compute @workgroup_size(" + threadgroupSize(body_) + ")";
    return shader_.stage == Stage::vertex ? "@vertex" : "@fragment";
}

std::vector<Resource> TextWriter::resources() const {
    std::vector<Resource> all = memory_.resources();
    all.insert(all.end(), textures_.resources().begin(), textures_.resources().end());
    llvm::sort(all, [](const Resource& a, const Resource& b) { return a.binding < b.binding; });
    return all;
}

// The function constants that the text reads or asks for; all, if conditions depend on some.
std::vector<FunctionConstant> TextWriter::constants() const {
    std::vector<FunctionConstant> used;
    for (const ConstantSignature& constant : shader_.constants) {
        const bool isAsked = body_.hasOverride(functionConstantPresence(constant.index));
        bool isRead = false;
        for (std::uint32_t component = 0; component < constant.width; ++component)
            isRead |= body_.hasOverride(functionConstantComponent(constant.index, component));
        if (isRead || isAsked || shader_.isShapedByConstants)
            used.push_back({.name = constant.name,
                            .index = constant.index,
                            .scalar = constant.scalar,
                            .width = constant.width,
                            .isRequired = isRead && !isAsked});
    }
    llvm::sort(used, [](const auto& a, const auto& b) { return a.index < b.index; });
    return used;
}

EntryPoint TextWriter::write() {
    refuseOthers();
    memory_.declareOutputs();
    memory_.declareLocals();
    scope(flow_.all());
    const std::vector<Resource> used = resources();
    const bool hasEffects =
        discards_ || any_of(used, [](const Resource& each) { return each.isWritten; });
    if (shader_.earlyFragmentTests && hasEffects)
        throw TranslationError("WGSL has no [[early_fragment_tests]].");
    std::string text = body_.finish(attributes());
    return {.name = shader_.name,
            .stage = shader_.stage,
            .text = std::move(text),
            .resources = used,
            .usesLoopBudget = shader_.usesLoopBudget,
            .needsEightLanes = body_.needsEightLanes,
            .writesPointSize = memory_.writesPointSize(),
            .colorAttachments = memory_.colorAttachments(),
            .threadgroupBytes = memory_.threadgroupBytes(),
            .threadgroupPointers = memory_.threadgroupPointers(),
            .mostThreads = shader_.mostThreads,
            .attributes = body_.attributes(),
            .constants = constants(),
            .isShapedByConstants = shader_.isShapedByConstants,
            .members = shader_.members,
            .overrides = body_.overrides(),
            .features = body_.features()};
}

EntryPoint writeWgsl(const ShaderModule& shader) {
    return TextWriter(shader).write();
}

} // namespace tarnwick::msl
