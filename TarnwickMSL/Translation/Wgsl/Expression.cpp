#include "TarnwickMSL/Translation/Wgsl/Expression.h"

namespace tarnwick::msl::wgsl {

std::string within(const Expression& expression, Rank most) {
    return expression.rank <= most ? expression.text : "(" + expression.text + ")";
}

Expression asNumber(const Expression& repeating) {
    Expression made = repeating;
    made.text = repeating.repeated;
    made.rank = made.text.starts_with('-') ? Rank::unary : Rank::primary;
    made.repeated.clear();
    return made;
}

// `f(a < b, c > (d))` would be read as a template of two arguments (WGSL, 3.9 "Template Lists").
static bool startsTemplate(const Expression& expression, std::string_view next) {
    const std::size_t start =
        expression.rank == Rank::loose ? expression.text.find(" < ") : std::string::npos;
    return start != std::string::npos &&
           (expression.text.find('>', start) != std::string::npos || next.find('>') != next.npos);
}

static void note(Expression& made, const Expression& part) {
    made.readsMemory |= part.readsMemory;
    made.isConvergent |= part.isConvergent;
}

template <class List> static Expression callOf(std::string_view function, const List& arguments) {
    Expression made{.text = ")"};
    for (auto argument = std::rbegin(arguments); argument != std::rend(arguments); ++argument) {
        const bool isClosed = startsTemplate(*argument, made.text);
        made.text = (isClosed ? "(" + argument->text + ")" : argument->text) +
                    (made.text == ")" ? "" : ", ") + made.text;
        note(made, *argument);
    }
    made.text = std::string(function) + "(" + made.text;
    return made;
}

Expression call(std::string_view function, std::initializer_list<Expression> arguments) {
    return callOf(function, arguments);
}
Expression call(std::string_view function, const std::vector<Expression>& arguments) {
    return callOf(function, arguments);
}

Expression infix(const Expression& a, std::string_view operation, const Expression& b) {
    const bool isProduct = operation == "*" || operation == "/" || operation == "%";
    const bool isSum = operation == "+" || operation == "-";
    const bool isComparison = operation == "<" || operation == ">" || operation == "<=" ||
                              operation == ">=" || operation == "==" || operation == "!=";
    const Rank left = isProduct ? Rank::product : isSum || isComparison ? Rank::sum : Rank::unary;
    const Rank right = isSum ? Rank::product : isComparison ? Rank::sum : Rank::unary;
    std::string second = within(b, right);
    if (second.starts_with('-') && operation == "-")
        second = "(" + second + ")";
    Expression made{.text = within(a, left) + " " + std::string(operation) + " " + second,
                    .rank = isProduct ? Rank::product
                            : isSum   ? Rank::sum
                                      : Rank::loose,
                    .isSigned = a.isSigned};
    note(made, a);
    note(made, b);
    return made;
}

Expression prefix(std::string_view operation, const Expression& operand) {
    std::string inner = within(operand, Rank::primary);
    if (inner.starts_with('-'))
        inner = "(" + inner + ")";
    Expression made{
        .text = std::string(operation) + inner, .rank = Rank::unary, .isSigned = operand.isSigned};
    note(made, operand);
    return made;
}

Expression member(const Expression& value, std::string_view name) {
    Expression made{.text = within(value, Rank::primary) + "." + std::string(name),
                    .isSigned = value.isSigned};
    note(made, value);
    return made;
}

} // namespace tarnwick::msl::wgsl
