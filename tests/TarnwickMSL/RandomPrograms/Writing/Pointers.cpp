// Pointers and references: to variables, members and elements, to arrays and records; pointers that
// a condition chooses, that move, and that walk along an array.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>

namespace tarnwick::trials {

// The variables and elements of that very type to which a pointer may lead.
std::vector<Generator::Variable> Generator::places(Type type) {
    std::vector<Variable> found;
    for (const Variable& variable : scope_.variables)
        if (variable.type == type)
            found.push_back(variable);
    for (const Array& array : scope_.arrays)
        if (array.type == type)
            found.push_back({array.name + placeIn(array), type, array.writable, array.space});
    return found;
}

void Generator::pointer() {
    switch (below(7)) {
    case 0:
        return span();
    case 1:
        return recordPointer();
    case 2:
        return scope_.pointers.empty() ? pointerTo(anyType()) : movePointer();
    case 3:
        return pointers(anyType());
    default:
        return pointerTo(anyType());
    }
}

// What a pointer leads to; constant memory is const by itself.
static std::string target(Space space, bool isWritable, Type type) {
    const bool isConst = !isWritable && space != Space::constant;
    return spaceName(space) + (isConst ? "const " : "") + typeName(type);
}

// A pointer or a reference to one of the variables of a type.
void Generator::pointerTo(Type type) {
    std::vector<Variable> found = places(type);
    if (found.empty())
        return declaration();
    const Variable first = any(found);
    std::erase_if(found, [&](const Variable& other) {
        return other.space != first.space || other.writable != first.writable;
    });
    const std::string to = target(first.space, first.writable, type);
    const std::string name = fresh("p");
    if (chance(35)) {
        line(to + "& " + name + " = " + first.name + ";");
        scope_.variables.push_back({name, type, first.writable, first.space});
        return;
    }
    const std::string other = any(found).name;
    const std::string chosen =
        chance(50) ? condition(1) + " ? &" + first.name + " : &" + other : "&" + first.name;
    line(to + "* " + name + " = " + chosen + ";");
    scope_.variables.push_back({"(*" + name + ")", type, first.writable, first.space});
    scope_.pointers.push_back({name, {first.name, other, any(found).name}});
    if (chance(30))
        movePointer();
}

// An array of pointers.
void Generator::pointers(Type type) {
    std::vector<Variable> found = places(type);
    std::erase_if(found, [&](const Variable& other) {
        return other.space != found.front().space || other.writable != found.front().writable;
    });
    if (found.size() < 2)
        return pointerTo(type);
    const Variable first = found.front();
    const std::uint32_t length = 2 + below(3);
    const std::string name = fresh("p");
    std::string values;
    for (std::uint32_t i = 0; i < length; i++)
        values += (i > 0 ? ", &" : "&") + any(found).name;
    line(target(first.space, first.writable, type) + "* " + name + "[" + std::to_string(length) +
         "] = {" + values + "};");
    scope_.arrays.push_back({.name = "(*" + name,
                             .type = type,
                             .length = length,
                             .writable = first.writable,
                             .member = ")",
                             .space = first.space});
}

// A pointer into an array, or a reference to all of it or to one of its rows.
void Generator::span() {
    std::vector<Array> found;
    std::copy_if(scope_.arrays.begin(), scope_.arrays.end(), std::back_inserter(found),
                 [](const Array& array) { return array.member.empty(); });
    if (found.empty())
        return declareArray(anyType());
    Array array = any(found);
    const std::string name = fresh("p");
    const std::string to = target(array.space, array.writable, array.type);
    const std::string from = array.name + (array.rows > 0 ? "[" + index(array.rows) + "]" : "");
    array.rows = 0;
    array.name = name;
    if (!array.isPointer && chance(40)) {
        line(to + " (&" + name + ")[" + std::to_string(array.length) + "] = " + from + ";");
    } else {
        const std::uint32_t skipped = below(array.length - 1);
        const std::string at = std::to_string(skipped);
        line(to + "* " + name + " = " +
             (chance(50) ? from + " + " + at : "&" + from + "[" + at + "]") + ";");
        array.length -= skipped;
        array.isPointer = true;
    }
    scope_.arrays.push_back(array);
}

void Generator::recordPointer() {
    if (scope_.shaped.empty())
        return pointerTo(anyType());
    const Record first = any(scope_.shaped);
    std::vector<Record> others;
    for (const Record& record : scope_.shaped)
        if (record.shape == first.shape && record.space == first.space)
            others.push_back(record);
    const std::string name = fresh("p"), other = any(others).name;
    line(spaceName(first.space) + shapes_[first.shape].name + "* " + name + " = " +
         (chance(60) ? condition(1) + " ? &" + first.name + " : &" + other : "&" + first.name) +
         ";");
    const Record made{.name = "(*" + name + ")", .shape = first.shape, .space = first.space};
    scope_.shaped.push_back(made);
    declareMembers(made, true);
    scope_.pointers.push_back({name, {first.name, other}});
}

void Generator::movePointer() {
    const Pointer pointer = any(scope_.pointers);
    const std::string move = pointer.name + " = &" + any(pointer.targets) + ";";
    line(chance(70) ? "if (" + condition(1) + ") " + move : move);
}

// A loop along an array, forwards or backwards. The pointer is counted, since the array's name may
// be `(*p).m` of a pointer that moves.
void Generator::walk() {
    std::vector<Array> found;
    std::copy_if(scope_.arrays.begin(), scope_.arrays.end(), std::back_inserter(found),
                 [](const Array& array) { return array.isWhole(); });
    if (found.empty())
        return span();
    const Array array = any(found);
    const std::string p = fresh("p"), i = fresh("i"), count = std::to_string(array.length);
    const bool isFixed = array.name.find_first_of("(*[") == std::string::npos;
    const bool isBackwards = chance(30);
    const std::string to = target(array.space, array.writable, array.type);
    iterations_ += array.length * multiplier_;
    multiplier_ *= array.length;
    if (isBackwards) {
        line(to + "* " + p + " = " + array.name + " + " + count + ";");
        open("for (uint " + i + " = " + count + "u; " + i + "-- > 0u;) {");
        line(p + "--;");
    } else if (isFixed) {
        open("for (" + to + "* " + p + " = " + array.name + "; " + p + " < " + array.name + " + " +
             count + "; ++" + p + ") {");
    } else {
        line(to + "* " + p + " = " + array.name + ";");
        open("for (uint " + i + " = 0u; " + i + " < " + count + "u; " + i + "++, " + p + "++) {");
    }
    const Scope outer = scope_;
    scope_.variables.push_back({"(*" + p + ")", array.type, array.writable, array.space});
    loops_++;
    if (isFixed)
        line("h = mixed(h, uint(" + p + " - " + array.name + "));");
    block(2);
    loops_--;
    scope_ = outer;
    close();
    multiplier_ /= array.length;
}

} // namespace tarnwick::trials
