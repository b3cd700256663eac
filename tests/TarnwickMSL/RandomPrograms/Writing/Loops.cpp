// Loops of every form: counted, guarded, searching, nested, with ends that no compiler proves.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

void Generator::loop() {
    const std::uint32_t trips = 2 + below(8);
    if (!affords(trips * 4) || loops_ >= 3)
        return assignment();
    switch (below(10)) {
    case 8:
        return walk();
    case 9:
        return repetition(trips);
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
    else if (wraps(kind) && kind != Kind::unsigned_)
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
