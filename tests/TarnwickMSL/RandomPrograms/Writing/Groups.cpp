// Programs of groups: functions of a thread with threadgroup memory and atomic numbers, and the
// order in which a group runs them with a barrier after each, with functions of SIMD-groups
// between.
//
// In each function a thread writes its own element of one array of the threadgroup, and reads all
// of the others; atomic numbers are either loaded, or changed by one operation. So the result does
// not depend on the order of the threads.
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <array>

namespace tarnwick::trials {

namespace {

constexpr std::uint32_t groupSize = 64;
constexpr const char* atomicNumbers = "s.numbers"; // of atomic_uint
constexpr const char* atomicLevels = "s.levels";   // of atomic_int
constexpr std::uint32_t atomics = 4;               // of each, and of counters

} // namespace

// The records of a thread and of a group.
void Generator::groupRecords() {
    open("struct Locals {");
    line("uint h;");
    const std::array<Type, 3> always{Kind::unsigned_, Kind::float_, Kind::signed_};
    for (std::uint32_t i = 0; i < 6; i++) {
        const Type type = i < always.size() ? always[i] : anyType();
        const std::string name = fresh("m");
        line(typeName(type) + " " + name + ";");
        locals_.push_back({name, type, true});
    }
    close("};");
    open("struct Shared {");
    for (std::uint32_t i = 0; i < 2 + below(2); i++) {
        const Type type = anyType();
        const std::string name = fresh("a");
        line(typeName(type) + " " + name + "[" + std::to_string(groupSize) + "];");
        shared_.push_back(
            {.name = "s." + name, .type = type, .length = groupSize, .space = Space::threadgroup});
    }
    if (!shapes_.empty())
        line(shapes_.back().name + " records[" + std::to_string(groupSize) + "];");
    line("atomic_uint numbers[4];");
    line("atomic_int levels[4];");
    close("};");
}

// What a function of a thread may name: it writes to one of the arrays and reads the others.
void Generator::enterPhase(std::size_t written) {
    for (const char* name : {"lane", "group"})
        scope_.variables.push_back({name, Kind::unsigned_, false});
    scope_.variables.push_back({"h", Kind::unsigned_, true});
    for (const Variable& local : locals_)
        scope_.variables.push_back({"l." + local.name, local.type, true});
    const std::string own = chance(60) ? "[lane]" : "[(lane * 5u + 3u) & 63u]";
    for (std::size_t i = 0; i < shared_.size(); i++) {
        Array array = shared_[i];
        array.writable = false;
        if (i == written)
            scope_.variables.push_back({array.name + own, array.type, true, Space::threadgroup});
        else
            scope_.arrays.push_back(array);
    }
    if (shapes_.empty())
        return;
    const std::size_t shape = shapes_.size() - 1;
    if (written == shared_.size()) {
        const Record record{.name = "s.records" + own, .shape = shape, .space = Space::threadgroup};
        scope_.shaped.push_back(record);
        declareMembers(record, true);
    } else {
        scope_.lists.push_back({.name = "s.records",
                                .shape = shape,
                                .length = groupSize,
                                .space = Space::threadgroup,
                                .isWritable = false});
    }
}

// A function of a thread. The first one gives all memory a value.
std::string Generator::phase(bool isFirst) {
    static constexpr std::array<const char*, 6> operations{"add", "and", "or", "xor", "min", "max"};
    const Scope outer = scope_;
    const std::string name = fresh("phase");
    open("uint " + name +
         "(uint lane, uint group, thread Locals& l, threadgroup Shared& s, "
         "device atomic_uint* counters) {");
    line(isFirst ? "uint h = mixed(group * 64u + lane, 0x2545F491u);" : "uint h = l.h;");
    budget_ = 60;
    iterations_ = 0;
    multiplier_ = 1;
    result_ = Kind::unsigned_;
    if (isFirst) {
        scope_.variables = {{"h", Kind::unsigned_, true}, {"lane", Kind::unsigned_, false}};
        for (const Variable& local : locals_)
            line("l." + local.name + " = " + tamed(local.type, 1) + ";");
        for (const Array& array : shared_)
            line(array.name + "[lane] = " + tamed(array.type, 1) + ";");
        if (!shapes_.empty())
            line("s.records[lane] = " + shapes_.back().name + initialised(shapes_.back()) + ";");
        line("if (lane < 4u) atomic_store_explicit(&s.numbers[lane], lane * 7u, "
             "memory_order_relaxed);");
        line("if (lane < 4u) atomic_store_explicit(&s.levels[lane], int(lane), "
             "memory_order_relaxed);");
    } else {
        enterPhase(below(static_cast<std::uint32_t>(shared_.size() + (shapes_.empty() ? 0 : 1))));
        for (const char* place : {atomicNumbers, atomicLevels, "counters"})
            scope_.atomics.push_back({place, chance(50) ? operations[below(6)] : ""});
        block(isLarge_ ? 6 : 4);
    }
    line("return h;");
    close();
    scope_ = outer;
    return name;
}

// Changes an atomic number, or mixes one in.
void Generator::atomic() {
    if (scope_.atomics.empty())
        return stir();
    const Atomic atomic = any(scope_.atomics);
    const std::string at = "(&" + atomic.name + "[" + index(atomics) + "], ";
    if (atomic.operation.empty())
        return line("h = mixed(h, uint(atomic_load_explicit" + at + "memory_order_relaxed)));");
    const Kind kind = atomic.name == atomicLevels ? Kind::signed_ : Kind::unsigned_;
    line("atomic_fetch_" + atomic.operation + "_explicit" + at + tamed(kind, 2) +
         ", memory_order_relaxed);");
}

// The last function: all that is left goes into the result.
std::string Generator::lastPhase() {
    const Scope outer = scope_;
    const std::string name = fresh("phase");
    open("uint " + name +
         "(uint lane, uint group, thread Locals& l, threadgroup Shared& s, "
         "device atomic_uint* counters) {");
    line("uint h = l.h;");
    enterPhase(shared_.size() + 1);
    mixAll();
    for (const char* place : {atomicNumbers, atomicLevels, "counters"})
        line("for (uint i = 0u; i < 4u; i++) h = mixed(h, uint(atomic_load_explicit(&" +
             std::string(place) + "[i], memory_order_relaxed)));");
    line("return h;");
    close();
    scope_ = outer;
    return name;
}

// A function of SIMD-groups or of quads, from one member of the threads to another.
void Generator::simdGroup() {
    static constexpr std::array<const char*, 3> ofNumbers{"simd_min", "simd_max", "simd_sum"};
    static constexpr std::array<const char*, 6> ofBits{"simd_and",
                                                       "simd_or",
                                                       "simd_xor",
                                                       "simd_sum",
                                                       "simd_prefix_inclusive_sum",
                                                       "simd_prefix_exclusive_sum"};
    static constexpr std::array<const char*, 5> shuffles{
        "simd_broadcast", "simd_shuffle", "simd_shuffle_xor", "simd_shuffle_rotate_up",
        "simd_shuffle_rotate_down"};
    static constexpr std::array<const char*, 3> quads{"quad_broadcast", "quad_shuffle",
                                                      "quad_shuffle_xor"};
    const Variable in = any(locals_);
    std::vector<std::string> same;
    for (const Variable& other : locals_)
        if (other.type == in.type)
            same.push_back(other.name);
    const std::string out = any(same), from = ", " + in.name;
    const std::string somewhere = "(lane * 3u + 1u) & 3u", fixed = std::to_string(below(4)) + "u";
    if (in.type.isMatrix() || bitsOf(in.type.kind) == 64)
        return;
    const std::uint32_t choice = below(10);
    if (choice < 3) {
        const std::string function = shuffles[below(5)];
        line("SIMD_AT(" + out + ", " + function + from + ", " +
             (function == "simd_shuffle" ? somewhere : fixed) + ")");
    } else if (choice < 5) {
        const std::string function = quads[below(3)];
        line("QUAD_AT(" + out + ", " + function + from + ", " +
             (function == "quad_shuffle" ? somewhere : fixed) + ")");
    } else if (in.type == Kind::unsigned_ && choice == 5) {
        line("SIMD_VOTE(" + out + (chance(50) ? ", simd_any" : ", simd_all") + from + ")");
    } else if (in.type.kind != Kind::half_) {
        const bool isBits = !isReal(in.type.kind) && in.type.isScalar();
        const std::string function = isBits && chance(60) ? ofBits[below(6)]
                                     : in.type.isScalar() ? ofNumbers[below(3)]
                                                          : "simd_sum";
        if (chance(50))
            line("SIMD(" + out + ", " + function + from + ")");
        else
            line("SIMD_IF(((l.h >> " + std::to_string(below(9)) + "u) & 3u) != 0u, " + out + ", " +
                 function + from + ")");
    }
    if (!wraps(in.type.kind))
        line("EACH(l." + out + " = " + tamedText(in.type, "l." + out) + ";)");
}

void Generator::groupProgram() {
    groupRecords();
    const std::string first = phase(true);
    std::vector<std::string> phases;
    for (std::uint32_t i = 0; i < 2 + below(isLarge_ ? 4 : 2); i++)
        phases.push_back(phase(false));
    const std::string last = lastPhase();
    const auto step = [&] {
        line("PHASE(" + any(phases) + ")");
        if (chance(60))
            simdGroup();
    };
    open("GROUP_PROGRAM {");
    line("GROUP_BEGIN");
    line("PHASE(" + first + ")");
    for (std::uint32_t i = 0; i < 2 + below(3); i++) {
        const std::uint32_t form = below(4);
        if (form == 0)
            open("for (uint round = 0u; round < " + std::to_string(2 + below(3)) + "u; round++) {");
        else if (form == 1)
            open("if ((group & " + std::to_string(1 + below(2)) + "u) == 0u) {");
        step();
        if (form < 2) {
            step();
            close();
        }
    }
    line("PHASE(" + last + ")");
    line("GROUP_END");
    close();
}

} // namespace tarnwick::trials
