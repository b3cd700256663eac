// Pieces of the text: expressions with the rank of their outermost operator, and how they are put
// together (WGSL, 8.18 "Operator Precedence and Associativity").
#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl::wgsl {

// WGSL lets few kinds of operators stand beside each other without parentheses: products in sums,
// and both in comparisons. All others have the rank `loose` and get parentheses.
enum class Rank : std::uint8_t { primary, unary, product, sum, loose };

struct Expression {
    std::string text;
    Rank rank = Rank::primary;
    bool isSigned = false;     // its integers are i32, not u32
    bool readsMemory = false;  // of memory that may change before the expression is used
    bool isConvergent = false; // depends on the invocations that run together
    std::string repeated = {}; // of a vector with equal lanes: the number, of rank primary
};

// The number that all lanes of a vector are, where WGSL takes one beside another vector.
Expression asNumber(const Expression& repeating);

std::string within(const Expression& expression, Rank most); // in parentheses above the rank

Expression call(std::string_view function, std::initializer_list<Expression> arguments);
Expression call(std::string_view function, const std::vector<Expression>& arguments);
// Two operands of the same types. The result is signed if the first operand is.
Expression infix(const Expression& a, std::string_view operation, const Expression& b);
Expression prefix(std::string_view operation, const Expression& operand);
Expression member(const Expression& value, std::string_view name);

} // namespace tarnwick::msl::wgsl
