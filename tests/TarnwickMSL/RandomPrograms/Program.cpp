#include "tests/TarnwickMSL/RandomPrograms/Generator.h"

namespace tarnwick::trials {

namespace {

// What every program has: taming, mixing, and a record with methods.
constexpr const char* numbers = R"(int tame(int value) { return value % 1000; }
float tame(float value) {
    float quarters = floor(value * 4.0f) * 0.25f;
    return quarters - floor(quarters * 0.0009765625f) * 1024.0f;
}
uint mixed(uint h, uint value) {
    h = (h ^ value) * 0x9E3779B1u;
    return h ^ (h >> 15u);
}
uint bits(uint value) { return value; }
uint bits(int value) { return uint(value); }
uint bits(float value) { return uint(int(value * 16.0f)); }
)";

constexpr const char* records = R"(uint bump(thread uint& value, uint by) {
    value += by | 1u;
    return value;
}
struct State {
    uint count;
    int level;
    float weight;
    uint slots[3];
    float3 place;
    int2 cell;
    float2x2 turn;
    uint next(uint by) {
        slots[by % 3u] += by;
        count = count * 5u + slots[0];
        return count;
    }
    uint digest() const {
        uint h = mixed(mixed(count, bits(level)), mixed(bits(weight), slots[0] ^ slots[1] ^ slots[2]));
        return mixed(mixed(h, bits(place)), mixed(bits(cell), bits(turn)));
    }
};
State advanced(State state, uint by) {
    state.level = tame(state.level * 3 + int(by & 15u));
    state.weight = tame(state.weight * 0.5f + 1.25f);
    state.slots[by & 1u] = state.count;
    state.place.xy = tame(state.turn * state.place.zx + 0.75f);
    state.cell = tame(state.cell.yx * 3 + int2(1, -2));
    return state;
}
void advance(thread State& state, uint by) {
    state.count ^= by >> 2u;
    if ((by & 3u) == 1u) return;
    state.weight = state.weight > 512.0f ? 0.5f : tame(state.weight + 3.75f);
    state.slots[2] += state.next(by);
    state.place = tame(state.place.yzx * state.turn[0].x + state.weight);
    state.turn = tame(float2x2(little(state.place.xy), little(state.place.zz)) * state.turn);
}
)";

// Overloads for the vectors and matrices of what the numbers have.
std::string composites() {
    std::string text;
    for (std::uint32_t lanes = 2; lanes <= 4; lanes++) {
        const std::string n = std::to_string(lanes);
        text += "int" + n + " tame(int" + n + " value) { return value % 1000; }\n";
        const std::string quarters = "(float" + n + " value) {\n    float" + n +
                                     " quarters = floor(value * 4.0f) * 0.25f;\n";
        text += "float" + n + " tame" + quarters +
                "    return quarters - floor(quarters * 0.0009765625f) * 1024.0f;\n}\n";
        text += "float" + n + " little" + quarters +
                "    return quarters - floor(quarters * 0.125f) * 8.0f - 4.0f;\n}\n";
        for (const Kind kind : {Kind::unsigned_, Kind::signed_, Kind::float_}) {
            text +=
                "uint bits(" + typeName({kind, lanes}) + " v) { return mixed(bits(v.x), bits(v.y))";
            text += lanes > 2 ? " ^ bits(v.z) * 3u" : "";
            text += lanes > 3 ? " ^ bits(v.w) * 5u; }\n" : "; }\n";
        }
    }
    for (std::uint32_t columns = 2; columns <= 4; columns++)
        for (std::uint32_t lanes = 2; lanes <= 4; lanes++) {
            const std::string type = typeName({Kind::float_, lanes, columns});
            std::string tamed, bits = "0u";
            for (std::uint32_t i = 0; i < columns; i++) {
                const std::string column = "m[" + std::to_string(i) + "]";
                tamed += (i > 0 ? ", little(" : "little(") + column + ")";
                bits = "mixed(" + bits + ", bits(" + column + "))";
            }
            text += type + " tame(" + type + " m) { return " + type + "(" + tamed + "); }\n";
            text += "uint bits(" + type + " m) { return " + bits + "; }\n";
        }
    return text;
}

} // namespace

std::string randomProgram(std::uint64_t seed) {
    return Generator(seed).program();
}

std::string Generator::program() {
    text_ = numbers + composites() + records;
    tables();
    const Scope global = scope_;
    const std::uint32_t shapes = 1 + below(3);
    for (std::uint32_t i = 0; i < shapes; i++) {
        shape();
        turning(i);
        scope_ = global;
    }
    const std::uint32_t helpers = 1 + below(3);
    for (std::uint32_t i = 0; i < helpers; i++) {
        helper();
        scope_ = global;
    }
    main();
    return text_;
}

void Generator::tables() {
    const std::uint32_t count = below(3);
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
        scope_.arrays.push_back({name, type, length, false});
    }
}

std::string Generator::returned() {
    if (!recordResult_.empty())
        return recordResult_;
    if (result_ == Kind::unsigned_)
        return "mixed(h, " + tamed(Kind::unsigned_, 1) + ")";
    return tamed(result_, 2);
}

// A helper's last word, which all that its body did to h is in.
std::string Generator::carrying() {
    std::string number = result_.kind == Kind::float_    ? "float(h & 4095u) * 0.25f"
                         : result_.kind == Kind::signed_ ? "int(h & 0xffffu) - 30000"
                                                         : "h";
    if (result_.isMatrix())
        return "tame(" + leaf(result_).text + " * (float(h & 15u) * 0.25f))";
    if (!result_.isScalar())
        number = typeName(result_) + "(" + number + ") + " + leaf(result_).text;
    return result_.kind == Kind::unsigned_ ? number : "tame(" + number + ")";
}

// A function of numbers, references and perhaps an array, with a body like any other.
void Generator::helper() {
    Function function;
    function.name = fresh("helper");
    function.result = anyType();
    std::string parameters;
    const std::uint32_t values = 1 + below(3), references = below(3);
    const auto parameter = [&](const std::string& type, const std::string& name) {
        parameters += (parameters.empty() ? "" : ", ") + type + name;
    };
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
    if (chance(35)) {
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
    block(2 + static_cast<int>(below(4)));
    line("return " + carrying() + ";");
    close();
    function.iterations = iterations_;
    functions_.push_back(function);
}

void Generator::main() {
    result_ = Kind::unsigned_;
    budget_ = iterationLimit;
    iterations_ = 0;
    multiplier_ = 1;
    open("uint trial(uint input) {");
    line("uint h = mixed(input, 0x2545F491u);");
    line("int n = int(input & 15u) - 4;");
    line("float x = float((input >> 2u) & 4095u) * 0.25f;");
    scope_.variables.push_back({"input", Kind::unsigned_, false});
    scope_.variables.push_back({"h", Kind::unsigned_, true});
    scope_.variables.push_back({"n", Kind::signed_, true});
    scope_.variables.push_back({"x", Kind::float_, true});
    for (const Type type : {anyVector(), Type{Kind::float_, 2}, Type{Kind::float_, 2, 2}}) {
        const std::string name = fresh("v");
        line(typeName(type) + " " + name + " = " + tamed(type, 1) + ";");
        scope_.variables.push_back({name, type, true});
    }
    const std::uint32_t statements = 5 + below(8);
    for (std::uint32_t i = 0; i < statements; i++)
        statement();
    for (const Variable& variable : scope_.variables)
        line("h = mixed(h, bits(" + variable.name + "));");
    for (const Array& array : scope_.arrays)
        line("for (uint i = 0u; i < " + std::to_string(array.length) +
             "u; i++) h = mixed(h, bits(" + array.name + "[i]" + array.member + "));");
    for (const std::string& record : scope_.records)
        line("h = mixed(h, " + record + ".digest());");
    line("return h;");
    close();
}

} // namespace tarnwick::trials
