#include "tests/TarnwickMSL/RandomPrograms/RandomProgram.h"
#include "tests/TarnwickMSL/RandomPrograms/Writing/Generator.h"

#include <algorithm>

namespace tarnwick::trials {

std::string randomProgram(std::uint64_t seed) {
    return Generator(seed).program();
}

std::string Generator::program() {
    isLarge_ = chance(20);
    const std::uint32_t form = below(100);
    const bool isGroup = form < 15;
    isWorld_ = form >= 65;
    if (isWorld_)
        samplers();
    tables();
    const Scope global = scope_;
    const std::uint32_t shapes = isLarge_ ? 1 + below(3) : below(2);
    for (std::uint32_t i = 0; i < shapes; i++) {
        shape();
        turning(i);
        scope_ = global;
    }
    const std::uint32_t helpers = isLarge_ ? 1 + below(3) : below(3);
    for (std::uint32_t i = 0; i < helpers; i++) {
        if (chance(25))
            genericHelper();
        else
            helper();
        scope_ = global;
    }
    if (isGroup)
        groupProgram();
    else
        main();
    return withPrelude(text_);
}

void Generator::tables() {
    const std::uint32_t count = below(isLarge_ ? 3 : 2);
    for (std::uint32_t i = 0; i < count; i++) {
        const Type type = anyType();
        const std::uint32_t length = 2 + below(type.isScalar() ? 9 : 3);
        const std::string name = fresh("table");
        std::string values;
        for (std::uint32_t entry = 0; entry < length; entry++)
            values += (entry > 0 ? ", " : "") +
                      (type.isScalar() ? literal(type.kind) : composite(type)).text;
        line("constant " + typeName(type) + " " + name + "[" + std::to_string(length) + "] = {" +
             values + "};");
        scope_.arrays.push_back({.name = name,
                                 .type = type,
                                 .length = length,
                                 .writable = false,
                                 .space = Space::constant});
    }
}

std::string Generator::returned() {
    if (!recordResult_.empty())
        return recordResult_;
    if (result_ == Kind::unsigned_)
        return "mixed(h, " + tamed(Kind::unsigned_, 1) + ")";
    return tamed(result_, 2);
}

static std::string numberOfHash(Kind kind) {
    switch (kind) {
    case Kind::float_:
        return "float(h & 4095u) * 0.25f";
    case Kind::signed_:
        return "int(h & 0xffffu) - 30000";
    case Kind::half_:
        return "half(float(h & 1023u) * 0.25f)";
    case Kind::unsigned_:
        return "h";
    case Kind::ushort_:
        return "ushort(h)";
    case Kind::ulong_:
        return "ulong(h) * 0x100000001ul";
    default:
        return typeName(kind) + "(h)";
    }
}

// A helper's last word, which all that its body did to h is in.
std::string Generator::carrying() {
    if (result_.isMatrix())
        return tamedText(result_, leaf(result_).text + " * " +
                                      exactly(result_.kind, "float(h & 15u) * 0.25f"));
    std::string number = numberOfHash(result_.kind);
    if (!result_.isScalar())
        number = typeName(result_) + "(" + number + ") + " + leaf(result_).text;
    return wraps(result_.kind) ? number : tamedText(result_, number);
}

// That of another helper with another first parameter: an overload.
std::string Generator::nameOfHelper(const Function& made) {
    if (functions_.empty() || chance(60))
        return fresh("helper");
    const std::string name = any(functions_).name;
    const bool isClear =
        std::all_of(functions_.begin(), functions_.end(), [&](const Function& other) {
            return other.name != name || other.values[0] != made.values[0];
        });
    return isClear ? name : fresh("helper");
}

// A function of numbers, references and perhaps an array, with a body like any other.
void Generator::helper() {
    Function function;
    function.result = anyType();
    std::string parameters;
    const std::uint32_t values = 1 + below(3), references = below(3);
    const auto parameter = [&](const std::string& type, const std::string& name) {
        parameters += (parameters.empty() ? "" : ", ") + type + name;
    };
    function.takesWorld = isWorld_ && chance(40);
    if (function.takesWorld)
        parameter("World ", "world");
    scope_.hasWorld = function.takesWorld;
    for (std::uint32_t i = 0; i < values; i++) {
        function.values.push_back(anyType());
        const std::string name = fresh("p");
        parameter(typeName(function.values.back()) + " ", name);
        scope_.variables.push_back({name, function.values.back(), true});
    }
    for (std::uint32_t i = 0; i < references; i++) {
        function.references.push_back(anyType());
        const std::string name = fresh("r");
        parameter("thread " + typeName(function.references.back()) + "& ", name);
        scope_.variables.push_back({name, function.references.back(), true});
    }
    function.name = nameOfHelper(function);
    if (references == 0 && values > 1 && chance(40) && !function.values.back().isMatrix()) {
        const Type last = function.values.back();
        parameters += " = " + exactly(last, literal(last.kind).text);
        function.defaults = 1;
    } else if (chance(35)) {
        function.arrayLength = 3 + below(4);
        const std::string name = fresh("a");
        function.takesPointer = chance(50);
        if (function.takesPointer)
            parameter("thread uint* ", name);
        else
            parameter("thread uint ",
                      "(&" + name + ")[" + std::to_string(function.arrayLength) + "]");
        scope_.arrays.push_back(
            {name, Kind::unsigned_, function.arrayLength, true, function.takesPointer});
    }
    result_ = function.result;
    budget_ = 60;
    iterations_ = 0;
    multiplier_ = 1;
    open(typeName(function.result) + " " + function.name + "(" + parameters + ") {");
    line("uint h = " + leaf(Kind::unsigned_).text + ";");
    block(isLarge_ ? 5 : 3);
    line("return " + carrying() + ";");
    close();
    function.iterations = iterations_;
    functions_.push_back(function);
}

void Generator::main() {
    result_ = Kind::unsigned_;
    budget_ = isLarge_ ? iterationLimit : iterationLimit / 10;
    iterations_ = 0;
    multiplier_ = 1;
    open(isWorld_ ? "uint trial(uint input, World world) {" : "uint trial(uint input) {");
    line("uint h = mixed(input, 0x2545F491u);");
    line("int n = int(input & 15u) - 4;");
    line("float x = float((input >> 2u) & 4095u) * 0.25f;");
    scope_.variables.push_back({"input", Kind::unsigned_, false});
    scope_.variables.push_back({"h", Kind::unsigned_, true});
    scope_.variables.push_back({"n", Kind::signed_, true});
    scope_.variables.push_back({"x", Kind::float_, true});
    if (isWorld_)
        enterWorld();
    std::vector<Type> types{anyVector()};
    if (isLarge_ || chance(50))
        types.push_back({Kind::float_, 2});
    if (isLarge_ || chance(30))
        types.push_back({Kind::float_, 2, 2});
    for (const Type type : types) {
        const std::string name = fresh("v");
        line(typeName(type) + " " + name + " = " + tamed(type, 1) + ";");
        scope_.variables.push_back({name, type, true});
    }
    const std::uint32_t statements = isLarge_ ? 5 + below(8) : 3 + below(5);
    for (std::uint32_t i = 0; i < statements; i++)
        statement();
    mixAll();
    line("return h;");
    close();
}

void Generator::mixArray(const Array& array) {
    const std::string length = std::to_string(array.length) + "u";
    const std::string at = array.rows > 0 ? "[i / " + length + "][i % " + length + "]" : "[i]";
    line("for (uint i = 0u; i < " + std::to_string(array.length * std::max(array.rows, 1u)) +
         "u; i++) h = mixed(h, " + bitsText(array.type, array.name + at + array.member) + ");");
}

// All that the program computed goes into its result.
void Generator::mixAll() {
    for (const Variable& variable : scope_.variables)
        line("h = mixed(h, " + bitsText(variable.type, variable.name) + ");");
    for (const Variable& packed : scope_.packed)
        line("h = mixed(h, " +
             bitsText(packed.type, typeName(packed.type) + "(" + packed.name + ")") + ");");
    for (const Flag& flag : scope_.flags)
        line("h = mixed(h, " +
             (flag.lanes == 1 ? flag.name + " ? 3u : 5u);"
                              : "uint(" + flag.name + ".x) + uint(" + flag.name + ".y) * 2u);"));
    for (const Array& array : scope_.arrays)
        mixArray(array);
    for (const BitField& field : scope_.fields)
        line("h = mixed(h, uint(" + field.name + "));");
    for (const Ring& ring : scope_.rings)
        line("h = mixed(h, " + bitsText(ring.type, ring.name + ".oldest()") + ");");
    for (const std::string& record : scope_.records)
        line("h = mixed(h, " + record + ".digest());");
}

} // namespace tarnwick::trials
