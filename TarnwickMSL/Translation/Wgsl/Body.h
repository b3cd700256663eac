// The text being written, and the expressions of LLVM's values in it.
//
// A value that is used once, in its own block, becomes part of the expression that uses it; others
// get a name by `let`, or by a variable if they are used outside of the braces of their definition.
// Phis are variables. All names are different, so that no one hides another.
//
// Integers of LLVM have no sign, those of WGSL have: an operation that needs the other sign
// converts, which keeps the bits. Each variable and each `let` has the sign of its expression.
#pragma once

#include "TarnwickMSL/EntryPoint.h"
#include "TarnwickMSL/Translation/Reading/Lanes.h"
#include "TarnwickMSL/Translation/ShaderModule.h"
#include "TarnwickMSL/Translation/Wgsl/Expression.h"
#include "TarnwickMSL/Translation/Wgsl/Names.h"

#include <llvm/ADT/DenseMap.h>
#include <llvm/ADT/MapVector.h>
#include <llvm/IR/Constants.h>
#include <llvm/IR/DataLayout.h>
#include <llvm/IR/Instructions.h>

#include <functional>
#include <map>
#include <set>
#include <string>
#include <vector>

namespace tarnwick::msl::wgsl {

using namespace reading;

enum class Sign : std::uint8_t { no, yes };

// Whether the text is a name or a number, perhaps with members.
bool isName(const std::string& text);

class Body {
  public:
    explicit Body(const ShaderModule& shader);

    const ShaderModule& shader;
    const Stage stage;
    const llvm::DataLayout& layout;
    Names names;

    // Types. Integers of 32 bits, floats of 32 bits, booleans, vectors, arrays and records of them.
    std::string type(llvm::Type* type, Sign sign = Sign::no);

    // Values. An instruction that is not written at its own place is written by `onDemand`.
    Expression value(const llvm::Value* value);
    Expression unsignedValue(const llvm::Value* value);
    Expression signedValue(const llvm::Value* value);
    std::function<Expression(const llvm::Instruction&)> onDemand;
    Expression constant(const llvm::Constant* constant, Sign sign = Sign::no);
    Expression number(std::uint32_t value) { return {.text = std::to_string(value) + "u"}; }
    Expression real(llvm::Type* type, double value);
    Expression zero(llvm::Type* type) { return constant(llvm::Constant::getNullValue(type)); }
    // A constant that WGSL does not know when it checks the text. Constant expressions must not
    // overflow, divide by zero or give an infinity or NaN (WGSL, 8.3 "Constant Expressions").
    Expression atRunTime(const llvm::Constant* constant);
    // Operands of constants alone are read at run time while this is set.
    bool hidesConstants = false;
    // The expression with integers of the sign.
    Expression withSign(const Expression& given, llvm::Type* type, Sign sign);
    Expression bitcast(llvm::Type* to, llvm::Type* from, const Expression& value);
    // A name for an expression that is needed several times.
    Expression named(const Expression& given, std::string_view name);

    // Statements.
    void line(const std::string& text);
    void open(const std::string& text); // ends with a brace
    void close(const std::string& text = "}");
    void reopen() { ++depth_; } // after a text of `close` that ends with a brace again
    // A statement that changes memory. First writes the values that read it before; `text` must be
    // made of expressions that were asked for already.
    void change(const std::string& text);
    void changeShared(const std::string& text); // memory that other threads see
    void report(const std::string& text);       // to the host, past the loop budget too
    // Whether a thread changes shared memory. From `startCondition` on only if it is in the grid,
    // and from each `endUnless` on only if the value is true as well.
    void startCondition(const Expression& isInGrid);
    void endUnless(const Expression& isWithinBudget);
    std::string condition() const; // "" if all threads change it

    // Gives the instruction's value to its users: a part of an expression, a name or a variable.
    void define(const llvm::Instruction& instruction, const Expression& value);
    void declareVariable(const llvm::Value& value); // of a phi, or one used outside its scope
    bool isVariable(const llvm::Value& value) const { return variables_.contains(&value); }
    void setVariable(const llvm::Value& value, std::string name, Sign sign) {
        variables_[&value] = {.text = std::move(name), .isSigned = sign == Sign::yes};
    }
    // Values that the next instructions may not move behind them.
    void writePending(bool onlyReads);

    bool needsEightLanes = false; // EntryPoint.h

    // Declarations of the module, once for each text.
    void declare(const std::string& text);
    void require(std::string_view extension) { extensions_.emplace(extension); }
    void turnOff(std::string_view rule) { diagnostics_.emplace(rule); }
    // A function of the module, by a text with its own name as NAME; returns the name.
    std::string function(std::string_view name, const std::string& text);
    // The name of an override with a number, and its text of type and default.
    Expression overridden(std::uint32_t id, std::string_view name, std::string_view type,
                          std::string_view byDefault);
    bool hasOverride(std::uint32_t id) const { return overrides_.contains(id); }
    // A built-in value of the entry point, by WGSL's word. Those of a kernel are parameters,
    // because no member of a record is uniform if another one is not (WGSL, "Uniformity").
    Expression builtIn(std::string_view word, std::string_view type);
    // The attribute of a vertex descriptor, which has four lanes.
    Expression attribute(std::uint32_t index, llvm::Type* type);
    std::vector<StageAttribute> attributes() const; // that were asked for
    void addInput(const std::string& text) { inputs_.push_back(text); }
    void addOutput(const std::string& text) { outputs_.push_back(text); }
    bool hasOutputs() const { return !outputs_.empty(); }
    std::string inputName() const { return "in"; }
    std::string outputName() const { return "out"; }

    std::string finish(const std::string& attributes);
    std::vector<std::string> features() const;
    std::vector<Override> overrides() const;

    llvm::Type* i1() { return llvm::Type::getInt1Ty(shader.module->getContext()); }
    llvm::Type* i32() { return llvm::Type::getInt32Ty(shader.module->getContext()); }
    llvm::Type* f32() { return llvm::Type::getFloatTy(shader.module->getContext()); }

  private:
    std::string record(llvm::StructType* type);
    Expression floating(const llvm::ConstantFP& number);
    Expression aggregate(const llvm::Constant* constant, Sign sign);
    void changeIf(const std::string& condition, const std::string& text);
    bool canWait(const llvm::Instruction& instruction, const Expression& value) const;

    struct Declared {
        std::string name, type, byDefault;
    };
    std::string declarations_, functionTexts_, lines_;
    std::string isInGrid_, isWithinBudget_; // names; "" for conditions that always hold
    std::set<std::string> declared_;
    std::size_t depth_ = 1;
    llvm::DenseMap<const llvm::Value*, Expression> values_, variables_;
    llvm::MapVector<const llvm::Instruction*, Expression> pending_;
    llvm::DenseMap<const llvm::Constant*, std::string> hidden_;
    std::map<llvm::Type*, std::string> records_;
    std::map<std::string, std::string, std::less<>> functions_, builtIns_;
    std::map<std::uint32_t, Declared> overrides_;
    std::set<std::string, std::less<>> extensions_, diagnostics_;
    std::vector<std::string> parameters_, inputs_, outputs_;
    std::map<std::uint32_t, std::string> attributes_;
};

} // namespace tarnwick::msl::wgsl
