#include "tests/TarnwickMSL/RandomPrograms/Generator.h"

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

std::string Generator::writableVariable(Type type) {
    std::vector<std::string> found;
    for (const Variable& variable : scope_.variables)
        if (variable.type == type && variable.writable)
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
    if (choice < 7)
        record();
    else if (choice < 18)
        declaration();
    else if (choice < 44)
        assignment();
    else if (choice < 54)
        stir();
    else if (choice < 62)
        effect();
    else if (choice < 70 && (loops_ > 0 || chance(6)))
        jump();
    else if (depth_ > (isLarge_ ? 4 : 3))
        assignment();
    else if (choice < 80)
        conditional();
    else if (choice < 87)
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
    const std::string name = fresh("v");
    if (chance(75)) {
        line(typeName(type) + " " + name + " = " + tamed(type, 2) + ";");
        scope_.variables.push_back({name, type, true});
        return;
    }
    const std::uint32_t length = 2 + below(type.isScalar() ? longArray : 3);
    std::string values;
    const std::uint32_t given = 1 + below(length);
    for (std::uint32_t i = 0; i < given; i++)
        values += (i > 0 ? ", " : "") + tamed(type, 1);
    line(typeName(type) + " " + name + "[" + std::to_string(length) + "] = {" + values + "};");
    scope_.arrays.push_back({name, type, length, true});
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
    const Type type = anyType();
    const std::string target = writableVariable(type);
    if (target.empty())
        return declaration();
    static constexpr std::array<const char*, 5> compound{" += ", " -= ", " ^= ", " *= ", " |= "};
    if (!type.isScalar() && chance(45))
        return type.isMatrix() ? assignElements({target, type}) : assignLanes({target, type});
    // The product of two ushorts is an int, which may overflow.
    static constexpr std::array<const char*, 4> sums{" += ", " -= ", " ^= ", " |= "};
    if (wraps(type.kind) && chance(35))
        line(target + (type.kind == Kind::ushort_ ? sums[below(4)] : compound[below(5)]) +
             tamed(type, 2) + ";");
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
    if (functions_.empty())
        return stir();
    const Function function = any(functions_);
    if (!affords(function.iterations))
        return stir();
    std::string arguments;
    for (const Type type : function.values)
        arguments += (arguments.empty() ? "" : ", ") + tamed(type, 1);
    for (const Type type : function.references) {
        const std::string variable = writableVariable(type);
        if (variable.empty())
            return stir();
        arguments += (arguments.empty() ? "" : ", ") + variable;
    }
    if (function.arrayLength > 0) {
        const auto fits =
            std::find_if(scope_.arrays.begin(), scope_.arrays.end(), [&](const Array& array) {
                return array.writable && array.member.empty() && array.type == Kind::unsigned_ &&
                       array.length == function.arrayLength &&
                       (function.takesPointer || !array.isPointer);
            });
        if (fits == scope_.arrays.end()) {
            const std::string name = fresh("v");
            line("uint " + name + "[" + std::to_string(function.arrayLength) + "] = {h, " +
                 leaf(Kind::unsigned_).text + "};");
            scope_.arrays.push_back({name, Kind::unsigned_, function.arrayLength, true});
            arguments += (arguments.empty() ? "" : ", ") + name;
        } else {
            arguments += (arguments.empty() ? "" : ", ") + fits->name;
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

// switch with cases that fall through, several labels for one case, and default anywhere.
void Generator::multiway() {
    const std::uint32_t cases = 2 + below(4);
    const std::uint32_t defaultAt = below(cases + 1);
    open("switch (" + expression(Kind::unsigned_, 1).text + " % " + std::to_string(cases + 1) +
         "u) {");
    switches_++;
    for (std::uint32_t i = 0; i < cases; i++) {
        if (i == defaultAt)
            line("default:");
        open("case " + std::to_string(i) + ": {");
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

void Generator::loop() {
    const std::uint32_t trips = 2 + below(8);
    if (!affords(trips * 4) || loops_ >= 3)
        return assignment();
    switch (below(8)) {
    case 0:
    case 1:
        return countedLoop(trips);
    case 2:
        return guardedLoop(trips);
    case 3:
        return searchLoop(trips);
    case 4:
        return twoLevelLoop();
    case 5:
    case 6:
        return openLoop();
    default:
        return stateLoop(trips);
    }
}

void Generator::countedLoop(std::uint32_t trips) {
    const std::string i = fresh("i");
    const std::string bound = std::to_string(trips);
    const Kind kind = anyKind();
    std::string head;
    if (kind == Kind::float_)
        head = "for (float " + i + " = 0.0f; " + i + " < " + bound + ".0f; " + i + " += 1.0f) {";
    else if (kind == Kind::half_)
        head = "for (half " + i + " = half(0); " + i + " < half(" + bound + "); " + i +
               " += half(1)) {";
    else if (kind == Kind::ushort_ || kind == Kind::ulong_)
        head = "for (" + typeName(kind) + " " + i + " = 0u; " + i + " < " + bound + "u; " + i +
               "++) {";
    else if (kind == Kind::signed_)
        head = "for (int " + i + " = " + bound + "; " + i + " > 0; " + i + "--) {";
    else if (chance(50))
        head = "for (uint " + i + " = 0u; " + i + " < " + bound + "u; " + i + "++) {";
    else
        head = "for (uint " + i + " = 0u; " + i + " < " + leaf(Kind::unsigned_).text + " % " +
               bound + "u; " + i + "++) {";
    iterations_ += trips * multiplier_;
    multiplier_ *= trips;
    open(head);
    const Scope outer = scope_;
    scope_.variables.push_back({i, kind, false});
    loops_++;
    block(3);
    loops_--;
    scope_ = outer;
    close();
    multiplier_ /= trips;
}

// while and do loops whose condition depends on what the body does.
void Generator::guardedLoop(std::uint32_t trips) {
    const std::string guard = fresh("g");
    line("uint " + guard + " = 0u;");
    const std::string more = guard + "++ < " + std::to_string(trips) + "u";
    const std::string also = chance(30) ? effectfulCondition() : condition(1);
    const std::uint32_t form = below(3);
    iterations_ += (trips + 1) * multiplier_;
    multiplier_ *= trips + 1;
    open(form == 0 ? "while (" + also + " && " + more + ") {" : form == 1 ? "do {" : "for (;;) {");
    const Scope outer = scope_;
    scope_.variables.push_back({guard, Kind::unsigned_, false});
    loops_++;
    if (form == 2)
        line("if (!(" + more + ")) break;");
    block(3);
    if (form == 2)
        line("if (" + condition(1) + ") break;");
    loops_--;
    scope_ = outer;
    close(form == 1 ? "} while (" + more + " && " + also + ");" : "}");
    multiplier_ /= trips + 1;
}

// Values leave the loop through break and are used afterwards.
void Generator::searchLoop(std::uint32_t trips) {
    const std::string found = fresh("v");
    const std::string best = fresh("v");
    const std::string i = fresh("i");
    line("uint " + found + " = 99u;");
    line("float " + best + " = -1.0f;");
    iterations_ += trips * multiplier_;
    multiplier_ *= trips;
    open("for (uint " + i + " = 0u; " + i + " < " + std::to_string(trips) + "u; " + i + "++) {");
    const Scope outer = scope_;
    scope_.variables.push_back({i, Kind::unsigned_, false});
    loops_++;
    const std::string score = fresh("v");
    line("float " + score + " = " + tamed(Kind::float_, 2) + ";");
    scope_.variables.push_back({score, Kind::float_, false});
    block(2);
    line("if (" + score + " > " + best + ") " + best + " = " + score + ";");
    open("if (" + condition(1) + ") {");
    line(found + " = " + i + " * 3u;");
    line("break;");
    close();
    loops_--;
    scope_ = outer;
    close();
    multiplier_ /= trips;
    line("h = mixed(h, " + found + " ^ " + bitsText(Kind::float_, best) + ");");
    scope_.variables.push_back({found, Kind::unsigned_, true});
    scope_.variables.push_back({best, Kind::float_, true});
}

// A break out of two loops, through a flag.
void Generator::twoLevelLoop() {
    const std::uint32_t outerTrips = 2 + below(5), innerTrips = 2 + below(5);
    if (!affords(outerTrips * (innerTrips + 2) * 2))
        return assignment();
    const std::string stop = fresh("stop"), i = fresh("i"), j = fresh("j"), at = fresh("v");
    line("bool " + stop + " = false;");
    line("uint " + at + " = 7u;");
    const Scope before = scope_;
    iterations_ += outerTrips * multiplier_;
    multiplier_ *= outerTrips;
    open("for (uint " + i + " = 0u; " + i + " < " + std::to_string(outerTrips) + "u && !" + stop +
         "; " + i + "++) {");
    loops_++;
    scope_.variables.push_back({i, Kind::unsigned_, false});
    block(1);
    iterations_ += innerTrips * multiplier_;
    multiplier_ *= innerTrips;
    open("for (uint " + j + " = 0u; " + j + " < " + std::to_string(innerTrips) + "u; " + j +
         "++) {");
    loops_++;
    scope_.variables.push_back({j, Kind::unsigned_, false});
    block(2);
    open("if (" + condition(1) + ") {");
    line(stop + " = true;");
    line(at + " = " + i + " * 10u + " + j + ";");
    line("break;");
    close();
    loops_--;
    close();
    multiplier_ /= innerTrips;
    if (chance(50))
        line("if (" + stop + ") break;");
    scope_ = before;
    block(1);
    loops_--;
    close();
    multiplier_ /= outerTrips;
    scope_ = before;
    line("h = mixed(h, " + at + " + (" + stop + " ? 100u : 0u));");
    scope_.variables.push_back({at, Kind::unsigned_, true});
}

// Loops that end for a reason no compiler proves, most of them with long rounds.
void Generator::openLoop() {
    if (!affords(64))
        return assignment();
    const std::string a = fresh("v"), b = fresh("v");
    constexpr std::uint32_t most = 33;
    iterations_ += most * multiplier_;
    const auto longRound = [&] {
        multiplier_ *= most;
        loops_++;
        block(3);
        loops_--;
        multiplier_ /= most;
    };
    const std::string start = tamed(Kind::unsigned_, 2);
    switch (below(5)) {
    case 0: // Euclid
        line("uint " + a + " = " + start + " & 1023u;");
        line("uint " + b + " = " + leaf(Kind::unsigned_).text + " & 255u;");
        open("while (" + b + " != 0u) {");
        line("uint rest = " + a + " % " + b + ";");
        line(a + " = " + b + ";");
        line(b + " = rest;");
        longRound();
        close();
        break;
    case 1: // one bit after the other
        line("uint " + a + " = " + start + ";");
        line("uint " + b + " = 0u;");
        open("while (" + a + " != 0u) {");
        line(a + " &= " + a + " - 1u;");
        longRound();
        line(b + " += " + a + " >> 3u;");
        line("if ((" + b + " & 63u) == 5u) continue;");
        line("h = mixed(h, " + a + ");");
        close();
        break;
    case 2:
    case 3: // the last five bits take every value
        line("uint " + a + " = " + start + ";");
        line("uint " + b + " = h;");
        open("while ((h & 3u) != 2u && (bump(" + b + ", " + a + ") & 7u) != 0u && ((" + a + " = " +
             a + " * 5u + 1u) & 31u) != 7u) {");
        line("h = mixed(h, " + b + ");");
        longRound();
        close();
        break;
    default: // Collatz
        line("uint " + a + " = " + start + " & 4095u;");
        line("uint " + b + " = 0u;");
        open("while (" + a + " > 1u) {");
        line("if (++" + b + " > 30u) break;");
        line(a + " = (" + a + " & 1u) != 0u ? 3u * " + a + " + 1u : " + a + " / 2u;");
        close();
        break;
    }
    scope_.variables.push_back({a, Kind::unsigned_, true});
    scope_.variables.push_back({b, Kind::unsigned_, true});
    line("h = mixed(h, " + a + " * 31u + " + b + ");");
}

// A record carried around a loop, by value or by reference.
void Generator::stateLoop(std::uint32_t trips) {
    const std::string state = fresh("s"), i = fresh("i");
    line("State " + state + " = {" + tamed(Kind::unsigned_, 1) + ", " + tamed(Kind::signed_, 1) +
         ", " + tamed(Kind::float_, 1) + ", {1u, " + leaf(Kind::unsigned_).text + "}, " +
         tamed({Kind::float_, 3}, 1) + "};");
    const Scope before = scope_;
    iterations_ += trips * multiplier_;
    multiplier_ *= trips;
    open("for (int " + i + " = 0; " + i + " < " + std::to_string(trips) + "; ++" + i + ") {");
    loops_++;
    scope_.records.push_back(state);
    scope_.variables.push_back({i, Kind::signed_, false});
    switch (below(3)) {
    case 0:
        line(state + " = advanced(" + state + ", " + tamed(Kind::unsigned_, 1) + ");");
        break;
    case 1:
        line("advance(" + state + ", " + tamed(Kind::unsigned_, 1) + ");");
        break;
    default:
        line("if (" + state + ".next(" + tamed(Kind::unsigned_, 1) + ") > 0x40000000u) " + state +
             ".count += 5u;");
    }
    block(3);
    loops_--;
    scope_ = before;
    close();
    multiplier_ /= trips;
    scope_.records.push_back(state);
    line("h = mixed(h, " + state + ".digest());");
}

} // namespace tarnwick::trials
