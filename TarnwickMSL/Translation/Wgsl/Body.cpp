#include "TarnwickMSL/Translation/Wgsl/Body.h"

#include "TarnwickMSL/Translation/TranslationError.h"
#include "TarnwickMSL/Translation/Wgsl/Naming.h"
#include "TarnwickMSL/Translation/Wgsl/ValueUses.h"

#include <llvm/ADT/SmallString.h>
#include <llvm/Support/raw_ostream.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>

namespace tarnwick::msl::wgsl {

using namespace llvm;
using llvm::Use;

// Longer expressions get a name of their own.
static constexpr std::size_t longestPart = 72;

Body::Body(const ShaderModule& shader)
    : shader(shader), stage(shader.stage), layout(shader.module->getDataLayout()) {
    for (const std::string& name : {inputName(), outputName()})
        names.make(name);
    names.make("Inputs");
    names.make("Outputs");
}

// Whether the type is of integers that have a sign in WGSL.
static bool hasSign(const Type* type) {
    return type->isIntOrIntVectorTy(32);
}

std::string Body::type(Type* type, Sign sign) {
    if (auto* array = dyn_cast<ArrayType>(type))
        return "array<" + this->type(array->getElementType(), sign) + ", " +
               std::to_string(array->getNumElements()) + ">";
    if (auto* made = dyn_cast<StructType>(type))
        return record(made);
    Type* scalar = type->getScalarType();
    const bool isReal = scalar->isFloatTy(), isBoolean = scalar->isIntegerTy(1);
    if (!isReal && !isBoolean && !scalar->isIntegerTy(32))
        throw CompilerFault("A value has a type that WGSL does not have.");
    const std::string name = isReal              ? "f32"
                             : isBoolean         ? "bool"
                             : sign == Sign::yes ? "i32"
                                                 : "u32";
    if (!type->isVectorTy())
        return name;
    const std::string vector = "vec" + std::to_string(laneCount(type));
    return isBoolean ? vector + "<bool>" : vector + name.front();
}

std::string Body::record(StructType* type) {
    std::string& known = records_[type];
    if (!known.empty())
        return known;
    StringRef given = type->hasName() ? type->getName() : "Record";
    given.consume_front("struct.");
    given.consume_front("class.");
    const std::string name =
        names.make(plainName(given.rsplit(':').second.empty() ? given : given.rsplit(':').second));
    std::string members;
    for (unsigned index = 0; index < type->getNumElements(); ++index)
        members += "    m" + std::to_string(index) + ": " +
                   this->type(type->getElementType(index)) + ",\n";
    declare("struct " + name + " {\n" + members + "}\n");
    return records_[type] = name;
}

// The shortest text that gives the number again.
static std::string shortest(float number) {
    std::array<char, 40> digits{};
    const auto [end, error] = std::to_chars(digits.data(), digits.data() + digits.size(), number);
    std::string text(digits.data(), end);
    if (text.find_first_of(".e") == text.npos)
        text += ".0";
    return text + "f";
}

Expression Body::floating(const ConstantFP& number) {
    const float value = number.getValueAPF().convertToFloat();
    if (!std::isfinite(value))
        return atRunTime(&number);
    return {.text = shortest(value), .rank = std::signbit(value) ? Rank::unary : Rank::primary};
}

Expression Body::real(Type* type, double value) {
    return constant(ConstantFP::get(type, value));
}

Expression Body::aggregate(const Constant* constant, Sign sign) {
    Type* type = constant->getType();
    const std::string name = this->type(type, sign);
    if (constant->isNullValue() && type->isVectorTy())
        return {.text = name + "()",
                .isSigned = sign == Sign::yes,
                .repeated = this->constant(constant->getSplatValue(), sign).text};
    if (constant->isNullValue())
        return {.text = name + "()", .isSigned = sign == Sign::yes};
    if (type->isVectorTy())
        if (const Constant* repeated = constant->getSplatValue()) {
            const std::string number = this->constant(repeated, sign).text;
            return {.text = name + "(" + number + ")",
                    .isSigned = sign == Sign::yes,
                    .repeated = number};
        }
    std::string parts;
    const unsigned count = type->isVectorTy()  ? laneCount(type)
                           : type->isArrayTy() ? static_cast<unsigned>(type->getArrayNumElements())
                                               : type->getStructNumElements();
    for (unsigned index = 0; index < count; ++index)
        parts +=
            (index ? ", " : "") + this->constant(constant->getAggregateElement(index), sign).text;
    return {.text = name + "(" + parts + ")", .isSigned = sign == Sign::yes};
}

Expression Body::constant(const Constant* constant, Sign sign) {
    Type* type = constant->getType();
    if (isa<UndefValue>(constant))
        return this->constant(Constant::getNullValue(type), sign);
    if (type->isVectorTy() || type->isAggregateType())
        return aggregate(constant, sign);
    if (auto* number = dyn_cast<ConstantFP>(constant))
        return floating(*number);
    auto* number = dyn_cast<ConstantInt>(constant);
    if (!number)
        throw CompilerFault("A constant is left that is no number.");
    if (type->isIntegerTy(1))
        return {.text = number->isZero() ? "false" : "true"};
    const auto word = static_cast<std::uint32_t>(number->getZExtValue());
    if (sign == Sign::no)
        return {.text = std::to_string(word) + "u"};
    const auto value = static_cast<std::int32_t>(word);
    if (value == INT32_MIN)
        return {.text = "i32(-2147483648)", .isSigned = true};
    return {.text = std::to_string(value) + "i",
            .rank = value < 0 ? Rank::unary : Rank::primary,
            .isSigned = true};
}

Expression Body::atRunTime(const Constant* constant) {
    Type* type = constant->getType();
    if (type->isVectorTy()) {
        std::vector<Expression> lanes;
        for (unsigned lane = 0; lane < laneCount(type); ++lane)
            lanes.push_back(atRunTime(constant->getAggregateElement(lane)));
        return call(this->type(type), lanes);
    }
    auto* number = dyn_cast<ConstantFP>(constant);
    const bool isFinite = !number || number->getValueAPF().isFinite();
    std::string& known = hidden_[constant];
    if (known.empty()) {
        const std::string name = names.make(isFinite ? "constant" : "bits");
        known = isFinite ? name : "bitcast<f32>(" + name + ")";
        declare("var<private> " + name + ": " +
                (isFinite
                     ? this->type(type) + " = " + this->constant(constant).text
                     : "u32 = " +
                           std::to_string(number->getValueAPF().bitcastToAPInt().getZExtValue()) +
                           "u") +
                ";\n");
    }
    return {.text = known};
}

Expression Body::withSign(const Expression& given, Type* type, Sign sign) {
    const bool isSigned = sign == Sign::yes;
    if (!hasSign(type) || given.isSigned == isSigned)
        return given;
    Expression made = call(this->type(type, sign), {given});
    made.isSigned = isSigned;
    return made;
}

Expression Body::value(const Value* value) {
    if (auto found = variables_.find(value); found != variables_.end())
        return found->second;
    if (auto found = values_.find(value); found != values_.end())
        return found->second;
    if (auto* constant = dyn_cast<Constant>(value))
        return hidesConstants && !isa<UndefValue>(constant) ? atRunTime(constant)
                                                            : this->constant(constant);
    auto* instruction = dyn_cast<Instruction>(value);
    if (instruction)
        if (auto found = pending_.find(instruction); found != pending_.end()) {
            const Expression made = found->second;
            pending_.erase(found);
            return values_[value] = made; // an index may ask for its parts once more
        }
    if (instruction && onDemand)
        return onDemand(*instruction);
    throw CompilerFault("A value is used before it is written.");
}

Expression Body::unsignedValue(const Value* value) {
    return withSign(this->value(value), value->getType(), Sign::no);
}

Expression Body::signedValue(const Value* value) {
    auto* constant = dyn_cast<Constant>(value);
    if (constant && !hidesConstants && hasSign(value->getType()))
        return this->constant(constant, Sign::yes);
    return withSign(this->value(value), value->getType(), Sign::yes);
}

Expression Body::bitcast(Type* to, Type* from, const Expression& value) {
    if (to == from || (hasSign(to) && hasSign(from)))
        return value;
    Expression made = call("bitcast<" + type(to) + ">", {value});
    made.isSigned = false;
    return made;
}

bool isName(const std::string& text) {
    return std::ranges::all_of(text, [](char letter) {
        return std::isalnum(static_cast<unsigned char>(letter)) || letter == '_' || letter == '.';
    });
}

Expression Body::named(const Expression& given, std::string_view name) {
    if (isName(given.text))
        return given;
    const std::string made = names.make(name);
    line("let " + made + " = " + given.text + ";");
    return {.text = made, .isSigned = given.isSigned};
}

void Body::line(const std::string& text) {
    lines_ += std::string(4 * depth_, ' ') + text + "\n";
}

void Body::open(const std::string& text) {
    line(text);
    ++depth_;
}

void Body::close(const std::string& text) {
    --depth_;
    line(text);
}

void Body::change(const std::string& text) {
    writePending(true);
    line(text);
}

void Body::startCondition(const Expression& isInGrid) {
    isInGrid_ = named(isInGrid, "isInGrid").text;
    if (!shader.module->getFunction(budgetMark))
        return;
    isWithinBudget_ = names.make("isWithinBudget");
    line("var " + isWithinBudget_ + " = true;");
}

void Body::endUnless(const Expression& isWithinBudget) {
    line(isWithinBudget_ + " = " + infix({.text = isWithinBudget_}, "&", isWithinBudget).text +
         ";");
}

std::string Body::condition() const {
    return isWithinBudget_.empty() ? isInGrid_ : isInGrid_ + " && " + isWithinBudget_;
}

void Body::changeShared(const std::string& text) {
    changeIf(condition(), text);
}

void Body::report(const std::string& text) {
    changeIf(isInGrid_, text);
}

void Body::changeIf(const std::string& condition, const std::string& text) {
    if (condition.empty())
        return change(text);
    writePending(true);
    open("if (" + condition + ") {");
    line(text);
    close();
}

void Body::writePending(bool onlyReads) {
    SmallVector<std::pair<const Instruction*, Expression>, 8> written;
    for (const auto& [instruction, expression] : pending_)
        if (!onlyReads || expression.readsMemory)
            written.emplace_back(instruction, expression);
    for (auto& [instruction, expression] : written) {
        pending_.erase(instruction);
        const std::string name = names.make(nameOf(*instruction));
        line("let " + name + " = " + expression.text + ";");
        values_[instruction] = {.text = name, .isSigned = expression.isSigned};
    }
}

// Whether the value is used once, by an instruction of its own block or at the end of the block.
bool Body::canWait(const Instruction& instruction, const Expression& value) const {
    const auto uses = usesIn(instruction);
    if (uses.size() != 1 || value.text.size() > longestPart)
        return false;
    const auto* user = cast<Instruction>(uses.front()->getUser());
    if (auto* phi = dyn_cast<PHINode>(user))
        return !value.isConvergent && !value.readsMemory &&
               phi->getIncomingBlock(*uses.front()) == instruction.getParent();
    return user->getParent() == instruction.getParent();
}

void Body::define(const Instruction& instruction, const Expression& value) {
    if (auto found = variables_.find(&instruction); found != variables_.end()) {
        const Sign sign = found->second.isSigned ? Sign::yes : Sign::no;
        return line(found->second.text + " = " + withSign(value, instruction.getType(), sign).text +
                    ";");
    }
    if (instruction.use_empty())
        return;
    if (isa<ExtractElementInst, LoadInst>(instruction) && isName(value.text) &&
        !value.readsMemory) {
        values_[&instruction] = value; // a member of a name is as short as another name
        return;
    }
    if (canWait(instruction, value)) {
        pending_[&instruction] = value;
        return;
    }
    const std::string name = names.make(nameOf(instruction));
    line("let " + name + " = " + value.text + ";");
    values_[&instruction] = {.text = name, .isSigned = value.isSigned};
}

void Body::declareVariable(const Value& value) {
    const std::string name = names.make(nameOf(value));
    const Sign sign = prefersSigned(value) ? Sign::yes : Sign::no;
    line("var " + name + ": " + type(value.getType(), sign) + ";");
    setVariable(value, name, sign);
}

void Body::declare(const std::string& text) {
    if (declared_.insert(text).second)
        declarations_ += text;
}

std::string Body::function(std::string_view name, const std::string& text) {
    std::string& known = functions_[text];
    if (!known.empty())
        return known;
    const std::string made = names.make(name);
    std::string with = text;
    for (std::size_t at = with.find("NAME"); at != with.npos; at = with.find("NAME", at))
        with.replace(at, 4, made);
    functionTexts_ += with + "\n";
    return functions_[text] = made;
}

Expression Body::overridden(std::uint32_t id, std::string_view name, std::string_view type,
                            std::string_view byDefault) {
    if (id > 65535)
        throw TranslationError("WGSL has no override constants with numbers above 65535; this one "
                               "would have " +
                               std::to_string(id) + ".");
    Declared& known = overrides_[id];
    if (known.name.empty())
        known = {names.make(name), std::string(type), std::string(byDefault)};
    return {.text = known.name, .isSigned = known.type == "i32"};
}

Expression Body::builtIn(std::string_view word, std::string_view type) {
    std::string& known = builtIns_[std::string(word)];
    if (known.empty()) {
        known = stage == Stage::kernel ? names.make(word) : std::string(word);
        const std::string text =
            "@builtin(" + std::string(word) + ") " + known + ": " + std::string(type);
        stage == Stage::kernel ? parameters_.push_back(text) : addInput(text);
    }
    return {.text = (stage == Stage::kernel ? "" : inputName() + ".") + known};
}

// The input of a signed format is signed.
static bool isSigned(const StageAttribute& attribute) {
    return attribute.scalar == Scalar::int8 || attribute.scalar == Scalar::int16 ||
           attribute.scalar == Scalar::int32;
}

Expression Body::attribute(std::uint32_t index, Type* type) {
    const auto given = find_if(shader.attributes,
                               [index](const StageAttribute& each) { return each.index == index; });
    const bool isKnown = given != shader.attributes.end();
    const Sign sign = isKnown && hasSign(type) && isSigned(*given) ? Sign::yes : Sign::no;
    std::string& known = attributes_[index];
    if (known.empty()) {
        known = names.make(isKnown ? given->name : "attribute");
        addInput("@location(" + std::to_string(index) + ") " + known + ": " +
                 this->type(type, sign));
    }
    return {.text = inputName() + "." + known, .isSigned = sign == Sign::yes};
}

std::vector<StageAttribute> Body::attributes() const {
    std::vector<StageAttribute> used;
    for (const StageAttribute& attribute : shader.attributes)
        if (attributes_.contains(attribute.index))
            used.push_back(attribute);
    llvm::sort(used, [](const auto& a, const auto& b) { return a.index < b.index; });
    return used;
}

static std::string structure(std::string_view name, const std::vector<std::string>& members) {
    std::string text = "struct " + std::string(name) + " {\n";
    for (const std::string& member : members)
        text += "    " + member + ",\n";
    return text + "}\n\n";
}

std::string Body::finish(const std::string& attributes) {
    std::string text;
    for (const std::string& extension : extensions_)
        text += "enable " + extension + ";\n";
    for (const std::string& rule : diagnostics_)
        text += "diagnostic(off, " + rule + ");\n";
    if (!text.empty())
        text += "\n";
    for (const auto& [id, made] : overrides_)
        text += "@id(" + std::to_string(id) + ") override " + made.name + ": " + made.type + " = " +
                made.byDefault + ";\n";
    text += (overrides_.empty() ? "" : "\n") + declarations_;
    if (!declarations_.empty())
        text += "\n";
    if (!inputs_.empty())
        text += structure("Inputs", inputs_);
    if (!outputs_.empty())
        text += structure("Outputs", outputs_);
    std::string parameters = inputs_.empty() ? "" : inputName() + ": Inputs";
    for (const std::string& parameter : parameters_)
        parameters += (parameters.empty() ? "" : ", ") + parameter;
    text += functionTexts_ + attributes + "\nfn main(" + parameters + ")" +
            (outputs_.empty() ? "" : " -> Outputs") + " {\n";
    if (!outputs_.empty())
        text += "    var " + outputName() + ": Outputs;\n";
    return text + lines_ + "}\n";
}

std::vector<std::string> Body::features() const {
    std::vector<std::string> all;
    for (std::string name : extensions_) {
        std::ranges::replace(name, '_', '-');
        all.push_back(std::move(name));
    }
    return all;
}

std::vector<Override> Body::overrides() const {
    std::vector<Override> all;
    for (const auto& [id, made] : overrides_)
        all.push_back({.id = id,
                       .name = made.name,
                       .scalar = made.type == "bool"  ? Scalar::bool_
                                 : made.type == "i32" ? Scalar::int32
                                 : made.type == "u32" ? Scalar::uint32
                                                      : Scalar::float_});
    return all;
}

} // namespace tarnwick::msl::wgsl
