// Conditions, and variables of bool and of vectors of it.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <array>

namespace tarnwick::trials {

std::string Generator::comparison(int depth) {
    static constexpr std::array<const char*, 6> operations{"<", "<=", ">", ">=", "==", "!="};
    const Kind kind = anyKind();
    const std::string left = expression(kind, depth).text;
    const char* operation = operations[below(6)];
    return "(" + left + " " + operation + " " + expression(kind, depth).text + ")";
}

std::string Generator::condition(int depth) {
    // Bits of what changes fast make both branches likely.
    if (chance(45))
        return "((" + leaf(Kind::unsigned_).text + " & " + std::to_string(1 + below(7)) +
               "u) == " + std::to_string(below(2)) + "u)";
    if (!scope_.flags.empty() && chance(35))
        return flagTest();
    if (depth > 0 && chance(20))
        return vectorCondition(depth);
    if (depth <= 0 || chance(50))
        return comparison(depth);
    if (chance(25))
        return "!" + condition(depth - 1);
    const std::string left = condition(depth - 1);
    const char* operation = chance(50) ? " && " : " || ";
    return "(" + left + operation + condition(depth - 1) + ")";
}

// A condition that changes a variable where it is evaluated so far.
std::string Generator::effectfulCondition() {
    const std::string variable = writableVariable(Kind::unsigned_, Space::thread);
    if (variable.empty())
        return condition(1);
    const std::string bump = "(bump(" + variable + ", " + leaf(Kind::unsigned_).text + ") & " +
                             std::to_string(1 + below(7)) + "u) != 0u";
    const std::string left = condition(1);
    const char* operation = chance(50) ? " && " : " || ";
    std::string text = "(" + left + operation + bump + ")";
    if (chance(40))
        text = "(" + text + (chance(50) ? " && " : " || ") + condition(1) + ")";
    return text;
}

// A vector of bools.
std::string Generator::lanewise(std::uint32_t lanes, int depth) {
    static constexpr std::array<const char*, 6> operations{" < ",  " <= ", " > ",
                                                           " >= ", " == ", " != "};
    for (const Flag& flag : scope_.flags)
        if (flag.lanes == lanes && chance(20))
            return flag.name;
    if (depth > 0 && chance(20)) {
        const std::string bools = "bool" + std::to_string(lanes) + "(";
        const std::string left = bools + lanewise(lanes, depth - 1) + ")";
        return "(" + left + (chance(50) ? " && " : " || ") + bools + lanewise(lanes, 0) + "))";
    }
    if (depth > 0 && chance(10))
        return "!" + lanewise(lanes, depth - 1);
    const Type type{anyKind(), lanes};
    const std::string left = expression(type, depth).text;
    const char* operation = operations[below(6)];
    return "(" + left + operation + expression(type, depth).text + ")";
}

std::string Generator::vectorCondition(int depth) {
    return (chance(50) ? "any(" : "all(") + lanewise(2 + below(3), depth - 1) + ")";
}

void Generator::declareFlag() {
    const Flag made{fresh("f"), chance(60) ? 1 : 2 + below(3)};
    if (made.lanes == 1) {
        line("bool " + made.name + " = " + condition(2) + ";");
    } else {
        line("bool" + std::to_string(made.lanes) + " " + made.name + " = " +
             lanewise(made.lanes, 1) + ";");
    }
    scope_.flags.push_back(made);
}

void Generator::assignFlag() {
    const Flag flag = any(scope_.flags);
    const std::string target = flag.lanes == 1 ? flag.name : lane(flag.name, flag.lanes);
    line(target + " = " + (chance(20) ? "!" + target : condition(2)) + ";");
}

std::string Generator::flagTest() {
    const Flag flag = any(scope_.flags);
    if (flag.lanes == 1)
        return flag.name;
    if (chance(40))
        return lane(flag.name, flag.lanes);
    return (chance(50) ? "any(" : "all(") + flag.name + ")";
}

} // namespace tarnwick::trials
