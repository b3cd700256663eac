// Lambdas: functions of what they captured, procedures that change it, and bodies of loops that a
// function template runs.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <utility>

namespace tarnwick::trials {

void Generator::lambda() {
    return chance(50) ? function() : procedure();
}

// Of copies or references; a single expression.
void Generator::function() {
    Function made{.name = fresh("f"), .result = anyType()};
    const Scope outer = scope_;
    std::string parameters;
    for (std::uint32_t i = 0; i < 1 + below(2); i++) {
        made.values.push_back(anyType());
        const std::string name = fresh("a");
        parameters += (i > 0 ? ", " : "") + typeName(made.values.back()) + " " + name;
        scope_.variables.push_back({name, made.values.back(), false});
    }
    const std::uint32_t before = std::exchange(iterations_, 0);
    const std::uint32_t multiplier = std::exchange(multiplier_, 1);
    const std::uint32_t budget = std::exchange(budget_, 40);
    const std::string body = exactly(made.result, tamed(made.result, 2));
    made.iterations = std::exchange(iterations_, before);
    multiplier_ = multiplier;
    budget_ = budget;
    scope_ = outer;
    // A phase's copies would be of all threadgroup memory, atomic values included.
    const bool isOfCopies = chance(70) && scope_.atomics.empty();
    line("const auto " + made.name + (isOfCopies ? " = [=](" : " = [&](") + parameters + ") -> " +
         typeName(made.result) + " { return " + body + "; };");
    scope_.lambdas.push_back(made);
}

// Of references; a block that returns a number.
void Generator::procedure() {
    Function made{.name = fresh("f"), .values = {anyType()}, .isProcedure = true};
    const Scope outer = scope_;
    const std::string name = fresh("a");
    const std::uint32_t before = std::exchange(iterations_, 0);
    const std::uint32_t multiplier = std::exchange(multiplier_, 1);
    const std::uint32_t budget = std::exchange(budget_, 40);
    const int loops = std::exchange(loops_, 0), switches = std::exchange(switches_, 0);
    const Type result = std::exchange(result_, Kind::unsigned_);
    const std::string recordResult = std::exchange(recordResult_, "");
    open("auto " + made.name + " = [&](" + typeName(made.values[0]) + " " + name + ") -> uint {");
    scope_.variables.push_back({name, made.values[0], true});
    block(3);
    line("return h;");
    close("};");
    made.iterations = std::exchange(iterations_, before);
    multiplier_ = multiplier;
    budget_ = budget;
    loops_ = loops;
    switches_ = switches;
    result_ = result;
    recordResult_ = recordResult;
    scope_ = outer;
    scope_.lambdas.push_back(made);
}

// The loop is in a function template; its body's return is a continue, or a break where it is
// false.
void Generator::repetition(std::uint32_t trips) {
    const Scope outer = scope_;
    const std::string i = fresh("i");
    const int loops = std::exchange(loops_, 0), switches = std::exchange(switches_, 0);
    const Type result = std::exchange(result_, Kind::unsigned_);
    const std::string recordResult = std::exchange(recordResult_, "");
    iterations_ += trips * multiplier_;
    multiplier_ *= trips;
    open("repeated(" + std::to_string(trips) + "u, [&](uint " + i + ") -> bool {");
    scope_.variables.push_back({i, Kind::unsigned_, true});
    block(3);
    line("return " + condition(1) + ";");
    close("});");
    multiplier_ /= trips;
    loops_ = loops;
    switches_ = switches;
    result_ = result;
    recordResult_ = recordResult;
    scope_ = outer;
}

} // namespace tarnwick::trials
