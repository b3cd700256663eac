#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

void Generator::line(const std::string& text) {
    text_ += std::string(static_cast<std::size_t>(indent_) * 4, ' ') + text + "\n";
}

void Generator::open(const std::string& head) {
    line(head);
    indent_++;
    depth_++;
}

void Generator::close(const std::string& tail) {
    indent_--;
    depth_--;
    line(tail);
}

std::string Generator::fresh(const char* stem) {
    return stem + std::to_string(names_++);
}

bool Generator::affords(std::uint32_t trips) const {
    return iterations_ + trips * multiplier_ <= budget_;
}

std::string Generator::writableVariable(Type type, std::optional<Space> space) {
    std::vector<std::string> found;
    for (const Variable& variable : scope_.variables)
        if (variable.type == type && variable.writable &&
            variable.space == space.value_or(variable.space))
            found.push_back(variable.name);
    return found.empty() ? std::string() : any(found);
}

// 1 to `most` statements in a scope of their own.
void Generator::block(std::uint32_t most) {
    const Scope outer = scope_;
    const std::uint32_t statements = 1 + below(most);
    for (std::uint32_t i = 0; i < statements; i++)
        statement();
    scope_ = outer;
}

void Generator::statement() {
    const std::uint32_t choice = below(100);
    if (choice < 6)
        record();
    else if (choice < 10)
        pointer();
    else if (choice < 12)
        generic();
    else if (choice < 14 && scope_.hasWorld)
        world();
    else if (choice < 17 && !scope_.atomics.empty())
        atomic();
    else if (choice < 22)
        declaration();
    else if (choice < 46)
        assignment();
    else if (choice < 54)
        stir();
    else if (choice < 62)
        effect();
    else if (choice < 70 && (loops_ > 0 || chance(6)))
        jump();
    else if (depth_ > (isLarge_ ? 4 : 3))
        assignment();
    else if (choice < 73)
        lambda();
    else if (choice < 81)
        conditional();
    else if (choice < 88)
        multiway();
    else
        loop();
}

void Generator::declaration() {
    if (chance(12))
        return declareFlag();
    if (chance(8))
        return declarePacked();
    const Type type = anyType();
    if (chance(25))
        return declareArray(type);
    const std::string name = fresh("v");
    line(typeName(type) + " " + name + " = " + tamed(type, 2) + ";");
    scope_.variables.push_back({name, type, true});
}

// An array, or an array of arrays; the values that are not given are zero.
void Generator::declareArray(Type type) {
    const std::string name = fresh("v");
    Array made{.name = name, .type = type, .length = 2 + below(type.isScalar() ? longArray : 3)};
    if (chance(20)) {
        made.rows = 2 + below(2);
        made.length = 2 + below(3);
    }
    const auto row = [&] {
        std::string values;
        const std::uint32_t given = 1 + below(made.length);
        for (std::uint32_t i = 0; i < given; i++)
            values += (i > 0 ? ", " : "") + tamed(type, 1);
        return "{" + values + "}";
    };
    const std::string first = row();
    const std::string length = "[" + std::to_string(made.length) + "]";
    if (made.rows == 0)
        line(typeName(type) + " " + name + length + " = " + first + ";");
    else
        line(typeName(type) + " " + name + "[" + std::to_string(made.rows) + "]" + length + " = {" +
             first + ", " + row() + "};");
    scope_.arrays.push_back(made);
}

void Generator::arrayAssignment(const Array& array) {
    const std::string target = element(array).text;
    if (array.type.isScalar() || chance(60))
        return line(target + " = " + tamed(array.type, 2) + ";");
    const Variable part{target, array.type, true};
    return array.type.isMatrix() ? assignElements(part) : assignLanes(part);
}

// A number keeps some of its bits on a condition: a choice of bits against one of its operands.
void Generator::assignBits() {
    const Kind kind = chance(40) ? Kind::float_ : Kind::unsigned_;
    const std::string target = writableVariable(kind);
    if (target.empty())
        return declaration();
    const std::string other = fresh("v");
    line(typeName(kind) + " " + other + " = " + tamed(kind, 2) + ";");
    static constexpr std::array<const char*, 4> masks{"0xffff0000u", "0xff00u", "0x80000000u",
                                                      "0xff0f00fu"};
    const std::string mask = masks[below(4)];
    std::string kept = "(" + target + " & ~" + mask + ")", taken = "(" + other + " & " + mask + ")";
    if (chance(50))
        std::swap(kept, taken);
    const std::string value = kind == Kind::float_
                                  ? "copysign(" + target + ", " + other + " + 0.125f)"
                              : chance(30) ? "insert_bits(" + target + ", " + other + ", 8u, 13u)"
                                           : "(" + kept + " | " + taken + ")";
    const std::string question = "(h % " + std::to_string(2 + below(4)) + "u == 1u)";
    const std::uint32_t form = below(3);
    if (form == 0)
        line("if " + question + " " + target + " = " + value + ";");
    else
        line(target + " = " + question + " ? " + value + " : " + (form == 1 ? target : other) +
             ";");
}

void Generator::assignment() {
    if (chance(loops_ == 0 ? 15 : 5))
        return assignBits();
    if (chance(25) && !scope_.arrays.empty()) {
        const Array array = any(scope_.arrays);
        if (array.writable)
            return arrayAssignment(array);
    }
    if (chance(20) && !scope_.flags.empty())
        return assignFlag();
    if (chance(20) && !scope_.packed.empty())
        return assignPacked(any(scope_.packed));
    if (chance(20) && !scope_.fields.empty())
        return assignField();
    const Type type = anyType();
    const std::string target = writableVariable(type);
    if (target.empty())
        return declaration();
    static constexpr std::array<const char*, 5> compound{" += ", " -= ", " ^= ", " *= ", " |= "};
    if (!type.isScalar() && chance(45))
        return type.isMatrix() ? assignElements({target, type}) : assignLanes({target, type});
    // The product of two ushorts is an int, which may overflow.
    static constexpr std::array<const char*, 4> sums{" += ", " -= ", " ^= ", " |= "};
    const bool isUnsigned = type.kind == Kind::unsigned_ || type.kind == Kind::ulong_;
    if (wraps(type.kind) && type.kind != Kind::long_ && chance(35))
        line(target + (isUnsigned ? compound[below(5)] : sums[below(4)]) + tamed(type, 2) + ";");
    else if (type == Kind::unsigned_ && chance(20))
        line(target + (chance(50) ? "++;" : "--;"));
    else
        line(target + " = " + tamed(type, 3) + ";");
}

// Folds something of the moment into the result.
void Generator::stir() {
    const Type type = anyType();
    line("h = mixed(h, " + bitsText(type, tamed(type, 1)) + ");");
}

// A call that changes its caller's variables.
void Generator::effect() {
    std::vector<Function> found = functions_;
    found.insert(found.end(), scope_.lambdas.begin(), scope_.lambdas.end());
    if (found.empty())
        return stir();
    const Function function = any(found);
    const bool isCallable = scope_.hasWorld || !function.takesWorld;
    return isCallable && affords(function.iterations) ? effectOf(function) : stir();
}

void Generator::effectOf(const Function& function) {
    std::string arguments = function.takesWorld ? "world" : "";
    for (const Type type : function.values)
        arguments += (arguments.empty() ? "" : ", ") + exactly(type, tamed(type, 1));
    for (const Type type : function.references) {
        const std::string variable = writableVariable(type, Space::thread);
        if (variable.empty())
            return stir();
        arguments += (arguments.empty() ? "" : ", ") + variable;
    }
    if (function.arrayLength > 0) {
        const auto fits =
            std::find_if(scope_.arrays.begin(), scope_.arrays.end(), [&](const Array& array) {
                return array.writable && array.isWhole() && array.type == Kind::unsigned_ &&
                       array.space == Space::thread && array.length == function.arrayLength &&
                       (function.takesPointer || !array.isPointer);
            });
        if (fits == scope_.arrays.end()) {
            const std::string name = fresh("v");
            line("uint " + name + "[" + std::to_string(function.arrayLength) + "] = {h, " +
                 leaf(Kind::unsigned_).text + "};");
            scope_.arrays.push_back({name, Kind::unsigned_, function.arrayLength, true});
            arguments += ", " + name;
        } else {
            arguments += ", " + fits->name;
        }
    }
    iterations_ += function.iterations * multiplier_;
    // In a statement of its own: the call may change h, and C++ leaves open which of mixed's
    // arguments comes first.
    const std::string result = fresh("v");
    line(typeName(function.result) + " " + result + " = " + function.name + "(" + arguments + ");");
    line("h = mixed(h, " + bitsText(function.result, result) + ");");
}

void Generator::conditional() {
    open("if (" + (chance(25) ? effectfulCondition() : condition(2)) + ") {");
    block(3);
    if (chance(20)) {
        close("} else if (" + condition(1) + ") {");
        indent_++;
        depth_++;
        block(2);
    }
    if (chance(40)) {
        close("} else {");
        indent_++;
        depth_++;
        block(3);
    }
    close();
}

void Generator::jump() {
    const std::uint32_t choice = below(10);
    std::string statement;
    if (loops_ > 0 && choice < 4)
        statement = "break;";
    else if (loops_ > 0 && choice < 8)
        statement = "continue;";
    else
        statement = "return " + returned() + ";";
    line("if (" + (chance(20) ? effectfulCondition() : condition(1)) + ") " + statement);
}

// switch over numbers of every size and over enumerators, with cases that fall through, several
// labels for one case, and default anywhere.
void Generator::multiway() {
    const std::uint32_t cases = 2 + below(4);
    const std::uint32_t defaultAt = below(cases + 1);
    const Kind kind = chance(40) ? anyInteger() : Kind::unsigned_;
    const std::uint32_t form = below(5);
    const std::string number =
        expression(Kind::unsigned_, 1).text + " % " + std::to_string(cases + 1) + "u";
    std::string name;
    if (form == 0) { // an enumeration
        name = fresh("Mode");
        std::string enumerators;
        for (std::uint32_t i = 0; i < cases; i++)
            enumerators += (i > 0 ? ", c" : "c") + std::to_string(i);
        line("enum class " + name + " : " + typeName(kind) + " { " + enumerators + " };");
        open("switch ((" + name + "(" + number + "))) {");
    } else if (kind != Kind::unsigned_) {
        // The brackets keep it from being taken for a declaration.
        open("switch ((" + typeName(kind) + "(" + number + ")" +
             (isSigned(kind) && form == 1 ? " - 2" : "") + ")) {");
    } else {
        open("switch ((" + number + ")) {");
    }
    const int from = isSigned(kind) && form == 1 ? -2 : 0;
    switches_++;
    for (std::uint32_t i = 0; i < cases; i++) {
        if (i == defaultAt)
            line("default:");
        const std::string label = form == 0 ? name + "::c" + std::to_string(i)
                                            : std::to_string(static_cast<int>(i) + from);
        open("case " + label + ": {");
        block(2);
        if (loops_ > 0 && chance(15))
            line("if (" + condition(1) + ") continue;");
        if (chance(60))
            line("break;");
        close();
    }
    close();
    switches_--;
}

} // namespace tarnwick::trials
