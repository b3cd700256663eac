// The rules that the code obeys after each step. Later steps keep them.
#pragma once

#include "TarnwickMSL/Translation/ShaderModule.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace tarnwick::msl {

// The rules, in the order in which the steps establish them.
enum class Form : std::uint8_t {
    any,
    calls,
    main,
    copies,
    pointers,
    handles,
    choices,
    flow,
    lanes,
    widths,
    operations,
    memory,
    types,
    addresses,
    exits,
    loops,
    selections,
    phis,
    bindings,
};

// The rule as a sentence; "" for Form::any.
std::string_view sentence(Form form);

// Checks the module with LLVM's verifier, and all rules up to `form`. Returns the first rule that
// does not hold, with the instruction or block, as a sentence; "" if all hold. `shader` is needed
// from Form::main on.
std::string checkForm(const llvm::Module& module, const ShaderModule* shader, Form form);

// Checks one rule alone.
std::string checkRule(const llvm::Module& module, const ShaderModule* shader, Form form);

// A hash of all instructions and their operands, by address: it shows whether code changed.
std::size_t fingerprint(const llvm::Module& module);

// Checks all rules.
std::string checkForm(const ShaderModule& shader);

} // namespace tarnwick::msl
