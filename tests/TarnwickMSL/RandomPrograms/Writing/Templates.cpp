// Templates of functions and of a record, with arguments that are types, numbers and lambdas.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>

namespace tarnwick::trials {

// A function template of the program: values of any type move between an array, a reference and
// the parameters.
void Generator::genericHelper() {
    const std::string name = fresh("generic");
    const auto place = [&] {
        return "kept[" + (chance(50) ? index(3) : std::to_string(below(3))) + "]";
    };
    const Scope outer = scope_;
    scope_ = {};
    budget_ = iterations_ = 0; // calls of functions with loops are not counted here
    multiplier_ = 1;
    scope_.variables = {{"h", Kind::unsigned_, true}, {"k", Kind::unsigned_, true}};
    open("template <class T> T " + name +
         "(T a, T b, thread T& r, uint k = " + literal(Kind::unsigned_).text + ") {");
    line("T kept[3] = {a, b, r};");
    line("uint h = k * 3u;");
    const std::uint32_t steps = 2 + below(4);
    for (std::uint32_t i = 0; i < steps; i++) {
        switch (below(6)) {
        case 0:
            line("exchange(" + place() + ", " + place() + ");");
            break;
        case 1:
            line(place() + " = chosen(" + condition(1) + ", " + (chance(50) ? "a" : "b") + ", r);");
            break;
        case 2: {
            const std::string round = fresh("i");
            open("for (uint " + round + " = 0u; " + round + " < " + std::to_string(2 + below(4)) +
                 "u; " + round + "++) {");
            line("T first = kept[0];");
            line("kept[0] = kept[1];");
            line("kept[1] = " + place() + ";");
            line("kept[2] = first;");
            line("if (" + condition(0) + ") break;");
            line("h = mixed(h, k + " + round + ");");
            close();
            break;
        }
        case 3:
            line("if constexpr (sizeof(T) > 4) r = " + place() + ";");
            line("else exchange(r, " + place() + ");");
            break;
        case 4:
            line("if (" + condition(1) + ") return " + place() + ";");
            break;
        default:
            line("h = mixed(h, " + expression(Kind::unsigned_, 2).text + ");");
        }
    }
    line("return " + place() + ";");
    close();
    scope_ = outer;
    generics_.push_back(name);
}

void Generator::generic() {
    switch (below(5)) {
    case 0:
        return ring();
    case 1:
        return folded();
    case 2:
        return line("h = unrolled<" + std::to_string(1 + below(6)) + ">(" +
                    tamed(Kind::unsigned_, 1) + ");");
    default:
        return genericCall();
    }
}

// With its type deduced or given.
void Generator::genericCall() {
    const Type type = anyType();
    const std::string reference = writableVariable(type, Space::thread);
    if (reference.empty())
        return declaration();
    if (generics_.empty() || chance(30)) {
        const std::string other = writableVariable(type, Space::thread);
        return line("exchange(" + reference + ", " + other + ");");
    }
    const std::string name = any(generics_), a = exactly(type, tamed(type, 1)),
                      b = exactly(type, tamed(type, 1)), made = fresh("v");
    line(typeName(type) + " " + made + " = " + name +
         (chance(40) ? "<" + typeName(type) + ">" : "") + "(" + a + ", " + b + ", " + reference +
         (chance(70) ? ", " + leaf(Kind::unsigned_).text : "") + ");");
    scope_.variables.push_back({made, type, true});
}

void Generator::ring() {
    if (!scope_.rings.empty() && chance(70)) {
        const Ring ring = any(scope_.rings);
        if (chance(50))
            return line(ring.name + ".push(" + exactly(ring.type, tamed(ring.type, 2)) + ");");
        const std::string name = fresh("v");
        line(typeName(ring.type) + " " + name + " = " + ring.name +
             (chance(50) ? ".oldest();" : ".back(" + leaf(Kind::unsigned_).text + ");"));
        scope_.variables.push_back({name, ring.type, true});
        return;
    }
    const Ring made{fresh("ring"), anyType()};
    line("Ring<" + typeName(made.type) + ", " + std::to_string(2 + below(4)) + "> " + made.name +
         " = {" + (chance(50) ? "{" + tamed(made.type, 1) + "}" : "") + "};");
    line(made.name + ".push(" + exactly(made.type, tamed(made.type, 1)) + ");");
    scope_.rings.push_back(made);
}

// A sum over an array with a lambda for each element.
void Generator::folded() {
    std::vector<Array> found;
    std::copy_if(scope_.arrays.begin(), scope_.arrays.end(), std::back_inserter(found),
                 [](const Array& array) {
                     return array.isWhole() && !array.isPointer && array.space == Space::thread;
                 });
    if (found.empty())
        return genericCall();
    const Array array = any(found);
    const std::string value = fresh("a");
    iterations_ += array.length * multiplier_;
    line("h = folded(" + array.name + ", h, [](" + typeName(array.type) + " " + value +
         ") { return " + bitsText(array.type, value) + "; });");
}

} // namespace tarnwick::trials
