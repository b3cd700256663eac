#include "tests/TarnwickMSL/CorpusConstants.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tarnwick::corpus {

namespace {

// Bytes of a component's text, as the language has the type in memory.
template <class T> void put(std::vector<std::byte>& bytes, T value) {
    const auto* first = reinterpret_cast<const std::byte*>(&value);
    bytes.insert(bytes.end(), first, first + sizeof value);
}

void putComponent(std::vector<std::byte>& bytes, msl::Scalar scalar, const std::string& text) {
    using enum msl::Scalar;
    if (scalar == bool_ || scalar == int8 || scalar == uint8)
        put(bytes, static_cast<std::int8_t>(std::stoi(text)));
    else if (scalar == int16 || scalar == uint16)
        put(bytes, static_cast<std::int16_t>(std::stoi(text)));
    else if (scalar == half)
        put(bytes, _Float16(std::stof(text)));
    else if (scalar == float_)
        put(bytes, std::stof(text));
    else if (scalar == int64 || scalar == uint64)
        put(bytes, std::stoll(text));
    else
        put(bytes, static_cast<std::int32_t>(std::stoll(text)));
}

} // namespace

std::unique_ptr<gpu::Function> CorpusFunctions::take(const std::string& name) const {
    auto function = library.newFunction(name);
    if (!function || hasValues == HasValues::yes)
        return function;
    gpu::FunctionConstantValues values;
    for (const msl::FunctionConstant& constant : function->functionConstants())
        for (const ConstantText& given : program.constants) {
            if (given.name != constant.name)
                continue;
            std::vector<std::byte> bytes;
            for (const std::string& text : given.components)
                putComponent(bytes, constant.scalar, text);
            const gpu::DataType type{constant.scalar, constant.width};
            if (constant.index % 2 == 0) // both ways, in turn
                values.setConstantValue(bytes.data(), type, constant.name);
            else
                values.setConstantValue(bytes.data(), type, constant.index);
        }
    return library.newFunction(name, values);
}

std::unique_ptr<gpu::Function> CorpusFunctions::first(msl::Stage stage) const {
    for (const std::string& name : library.functionNames())
        if (library.newFunction(name)->stage() == stage)
            return take(name);
    return nullptr;
}

msl::ConstantValues constantsOf(const Program& program) {
    msl::ConstantValues constants;
    for (const ConstantText& given : program.constants) {
        constants.values.push_back({.name = given.name, .numbers = {}});
        for (const std::string& text : given.components)
            constants.values.back().numbers.push_back(
                text.find_first_of(".e") == text.npos
                    ? msl::ConstantNumber{.integer = std::stoll(text)}
                    : msl::ConstantNumber{.isReal = true, .real = std::stod(text)});
    }
    return constants;
}

} // namespace tarnwick::corpus
