#include "TarnwickMSL/Translation/Wgsl/Naming.h"

#include "TarnwickMSL/Translation/Wgsl/Names.h"

#include <llvm/IR/Instructions.h>

#include <algorithm>
#include <array>

namespace tarnwick::msl::wgsl {

using namespace llvm;

// clang-format off
// What Clang calls values that are no variables. Each says what an expression says anyway.
static constexpr std::array<std::string_view, 32> operations{
    "add", "agg", "and", "arrayidx", "call", "cmp", "cond", "conv", "dec", "div", "elt", "frombool", "inc",
    "land", "lnot", "lor", "mul", "neg", "not", "or", "rem", "select", "shl", "shr", "spec", "splat", "sub",
    "tmp", "tobool", "vecext", "vecinit", "xor",
};
// clang-format on

static bool isOfProgram(const std::string& name) {
    return !name.empty() && !std::ranges::binary_search(operations, name);
}

// Values that are the same variable at another time, or a part of it. Looks at `left` more values:
// ways through many choices are too many to follow.
static std::string nameWithin(const Value& value, unsigned depth, unsigned& left) {
    const std::string own = plainName(value.getName().str());
    if (isOfProgram(own) || depth == 0 || left == 0)
        return own;
    --left;
    const auto* user = dyn_cast<User>(&value);
    const bool isChoice = isa<SelectInst, PHINode, ExtractElementInst, FreezeInst>(value);
    for (unsigned operand = isa<SelectInst>(value) ? 1 : 0;
         isChoice && operand < user->getNumOperands(); ++operand) {
        const Value& given = *user->getOperand(operand);
        const std::string name = isa<Constant>(given) ? "" : nameWithin(given, depth - 1, left);
        if (isOfProgram(name))
            return name;
        if (isa<ExtractElementInst>(value))
            break;
    }
    return own;
}

std::string nameOf(const Value& value) {
    static constexpr unsigned farthest = 5; // choices between the value and the name
    unsigned left = 16;
    return nameWithin(value, farthest, left);
}

} // namespace tarnwick::msl::wgsl
