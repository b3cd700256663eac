#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>
#include <array>

namespace tarnwick::trials {

// A record of 2 to 5 numbers, vectors and matrices, perhaps with an array and with a record inside.
void Generator::shape() {
    Shape made{.name = fresh("Shape")};
    open("struct " + made.name + " {");
    const std::uint32_t members = 2 + below(4);
    for (std::uint32_t i = 0; i < members; i++) {
        const Type type = anyType();
        const std::string name = fresh("m");
        line(typeName(type) + " " + name + ";");
        made.members.push_back({name, type, true});
    }
    if (chance(40)) {
        const Type type = chance(60) ? Type(anyKind()) : anyVector();
        const std::uint32_t length = 2 + below(3), rows = chance(25) ? 2 : 0;
        const std::string name = fresh("m");
        line(typeName(type) + " " + name + (rows > 0 ? "[2][" : "[") + std::to_string(length) +
             "];");
        made.arrays.push_back({.name = name, .type = type, .length = length, .rows = rows});
    }
    if (chance(40) && !shapes_.empty()) {
        const Shape& inner = any(shapes_);
        const std::string name = fresh("m");
        line(inner.name + " " + name + ";");
        for (Variable member : inner.members) {
            member.name = name + "." + member.name;
            made.members.push_back(member);
        }
        for (Variable member : inner.packed) {
            member.name = name + "." + member.name;
            made.packed.push_back(member);
        }
        for (Array array : inner.arrays) {
            array.name = name + "." + array.name;
            made.arrays.push_back(array);
        }
        for (BitField field : inner.fields) {
            field.name = name + "." + field.name;
            made.fields.push_back(field);
        }
    }
    if (chance(25)) {
        const Type type{chance(50) ? Kind::float_ : Kind::half_, 2 + below(3)};
        const std::string name = fresh("m");
        line("packed_" + typeName(type) + " " + name + ";");
        made.packed.push_back({name, type, true});
    }
    if (chance(20))
        bitFields(made);
    close("};");
    shapes_.push_back(made);
}

void Generator::bitFields(Shape& shape) {
    const std::uint32_t count = 1 + below(4);
    for (std::uint32_t i = 0; i < count; i++) {
        const BitField field{fresh("m"), 1 + below(20)};
        line((chance(70) ? "uint " : "int ") + field.name + " : " + std::to_string(field.bits) +
             ";");
        shape.fields.push_back(field);
    }
}

void Generator::assignField() {
    const BitField field = any(scope_.fields);
    const std::string mask = std::to_string((1u << field.bits) - 1);
    const std::string value = "(" + expression(Kind::unsigned_, 2).text + " & " + mask + "u)";
    static constexpr std::array<const char*, 4> changes{" = ", " = ", " ^= ", " |= "};
    line(field.name + changes[below(4)] + value + ";");
}

// Names the members of a record in the scope, so that they are variables like others.
void Generator::declareMembers(const Record& record, bool isWritable) {
    const Shape& shape = shapes_[record.shape];
    for (const Variable& member : shape.members)
        scope_.variables.push_back(
            {record.name + "." + member.name, member.type, isWritable, record.space});
    for (const Variable& member : shape.packed)
        scope_.packed.push_back({record.name + "." + member.name, member.type, isWritable});
    for (Array array : shape.arrays) {
        array.name = record.name + "." + array.name;
        array.writable = isWritable;
        array.space = record.space;
        scope_.arrays.push_back(array);
    }
    if (isWritable)
        for (const BitField& field : shape.fields)
            scope_.fields.push_back({record.name + "." + field.name, field.bits});
}

// Functions that change a record: a copy that they return, and one of their caller's.
void Generator::turning(std::size_t index) {
    const std::string name = shapes_[index].name;
    const Scope before = scope_;
    budget_ = 40;
    for (const bool isCopy : {true, false}) {
        scope_ = before;
        iterations_ = 0;
        multiplier_ = 1;
        result_ = Kind::unsigned_;
        open(isCopy ? name + " turned(" + name + " r, uint h) {"
                    : "uint turn(thread " + name + "& r, uint h) {");
        recordResult_ = isCopy ? "r" : "";
        scope_.variables.push_back({"h", Kind::unsigned_, true});
        declareMembers({"r", index}, true);
        if (isCopy)
            scope_.shaped.push_back({"r", index});
        block(3);
        line(isCopy ? "return r;" : "return h;");
        close();
        shapes_[index].iterations = std::max(shapes_[index].iterations, iterations_);
    }
    recordResult_.clear();
    shapes_[index].hasFunctions = true;
}

// Values of the shape's members. Braces of records and arrays inside may be left out.
std::string Generator::initialised(const Shape& shape) {
    std::string values;
    for (const Variable& member : shape.members)
        if (member.name.find('.') == std::string::npos)
            values += (values.empty() ? "" : ", ") + tamed(member.type, 1);
    return "{" + values + "}";
}

// A record of the shape; it is declared here if no record has it yet.
Generator::Record Generator::anyRecord(std::size_t shape) {
    std::vector<Record> found;
    for (const Record& record : scope_.shaped)
        if (record.shape == shape && record.space == Space::thread)
            found.push_back(record);
    if (!found.empty() && chance(85))
        return any(found);
    const Record made{fresh("r"), shape};
    line(shapes_[shape].name + " " + made.name + " = " + initialised(shapes_[shape]) + ";");
    scope_.shaped.push_back(made);
    declareMembers(made, true);
    return made;
}

// A whole record: another one, one of two, one of a list, or what a function makes of one.
std::string Generator::recordValue(std::size_t shape) {
    const std::string other = anyRecord(shape).name;
    switch (below(4)) {
    case 0:
        return other;
    case 1: {
        const std::string second = anyRecord(shape).name, question = condition(1);
        return "(" + question + " ? " + other + " : " + second + ")";
    }
    case 2:
        for (const Record& list : scope_.lists)
            if (list.shape == shape)
                return list.name + "[" + index(list.length) + "]";
        return other;
    default:
        if (!shapes_[shape].hasFunctions || !affords(shapes_[shape].iterations))
            return other;
        iterations_ += shapes_[shape].iterations * multiplier_;
        return "turned(" + other + ", " + tamed(Kind::unsigned_, 1) + ")";
    }
}

void Generator::listOfRecords(const Record& first) {
    const Shape& shape = shapes_[first.shape];
    const Record list{fresh("list"), first.shape, chance(50) ? 3 : longArray + below(4)};
    const std::string second = anyRecord(first.shape).name;
    line(shape.name + " " + list.name + "[" + std::to_string(list.length) + "] = {" + first.name +
         ", " + second + ", " + first.name + "};");
    scope_.lists.push_back(list);
    const auto add = [&](Type type, const std::string& member) {
        scope_.arrays.push_back(
            {.name = list.name, .type = type, .length = list.length, .member = member});
    };
    for (const Variable& member : shape.members)
        add(member.type, "." + member.name);
    for (const Array& array : shape.arrays)
        add(array.type, "." + array.name + placeIn({.length = array.length, .rows = array.rows}));
}

// Two records that change places in each round.
void Generator::recordLoop(const Record& a, const Record& b) {
    const std::uint32_t trips = 2 + below(5);
    const std::string i = fresh("i"), kept = fresh("r");
    iterations_ += trips * multiplier_;
    multiplier_ *= trips;
    open("for (uint " + i + " = 0u; " + i + " < " + std::to_string(trips) + "u; " + i + "++) {");
    const Scope outer = scope_;
    scope_.variables.push_back({i, Kind::unsigned_, false});
    loops_++;
    line(shapes_[a.shape].name + " " + kept + " = " + a.name + ";");
    if (chance(40)) {
        const std::string question = condition(1);
        line("if (" + question + ") " + (chance(50) ? "continue;" : "break;"));
    }
    const std::string next = recordValue(a.shape);
    line(a.name + " = " + next + ";");
    line(b.name + " = " + kept + ";");
    block(2);
    loops_--;
    scope_ = outer;
    close();
    multiplier_ /= trips;
}

// A statement about whole records.
void Generator::record() {
    if (shapes_.empty())
        return declaration();
    const std::size_t shape = below(static_cast<std::uint32_t>(shapes_.size()));
    const Record first = anyRecord(shape);
    const std::uint32_t choice = below(10);
    if (choice < 3)
        for (const Record& other : scope_.shaped)
            if (other.shape == shape && other.space != Space::thread)
                return line(chance(50) ? other.name + " = " + first.name + ";"
                                       : first.name + " = " + other.name + ";");
    if (choice < 4) {
        const std::string value = recordValue(shape);
        return line(first.name + " = " + value + ";");
    }
    if (choice < 5)
        return listOfRecords(first);
    if (choice < 6)
        for (const Record& list : scope_.lists)
            if (list.shape == shape && list.isWritable)
                return line(list.name + "[" + index(list.length) + "] = " + first.name + ";");
    if (choice < 8 && loops_ < 3 && depth_ < 5 && affords(40))
        return recordLoop(first, anyRecord(shape));
    if (!shapes_[shape].hasFunctions || !affords(shapes_[shape].iterations))
        return stir();
    iterations_ += shapes_[shape].iterations * multiplier_;
    const std::string result = fresh("v");
    line("uint " + result + " = turn(" + first.name + ", " + leaf(Kind::unsigned_).text + ");");
    line("h = mixed(h, " + result + ");");
}

} // namespace tarnwick::trials
