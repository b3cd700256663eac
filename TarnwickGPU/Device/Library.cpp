#include "TarnwickGPU/Errors.h"
#include "TarnwickGPU/Pipeline.h"
#include "TarnwickMSL/Compile.h"
#include "TarnwickSpirv/Specialising.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <utility>

namespace tarnwick::gpu {

struct Library::Source {
    std::string text;
    msl::CompileOptions options;
};

namespace {

using Value = FunctionConstantValues::Value;
using SharedEntryPoint = std::shared_ptr<const msl::EntryPoint>;

msl::Compilation compiled(std::string_view source, const msl::CompileOptions& options) {
    msl::Compilation compilation = msl::compile(source, options);
    if (compilation.failed)
        throw LibraryError(compilation.messages, compilation.isCompilersFault);
    return compilation;
}

// Throws LibraryError for a value of another type than the constant's and for a missing value.
void check(const msl::EntryPoint& function, const FunctionConstantValues& values) {
    for (const msl::FunctionConstant& constant : function.constants) {
        const Value* value = values.valueOf(constant);
        const std::string name = "'" + constant.name + "'";
        const DataType type{constant.scalar, constant.width};
        if (value && value->type != type)
            throw LibraryError("The function constant " + name + " has the type " + nameOf(type) +
                               ", and its value has the type " + nameOf(value->type) + ".");
        if (!value && constant.isRequired)
            throw LibraryError(missingValue(function, constant));
    }
}

spirv::SpecialisationValues specialisation(const msl::EntryPoint& function,
                                           const FunctionConstantValues& values) {
    spirv::SpecialisationValues numbers;
    for (const msl::FunctionConstant& constant : function.constants) {
        const Value* value = values.valueOf(constant);
        if (!value)
            continue;
        numbers[msl::functionConstantPresence(constant.index)] = {1};
        for (std::uint32_t n = 0; n < constant.width; ++n) {
            // The integers of the modules are unsigned, so narrow ones have zeros above.
            const bool isNarrow = constant.scalar <= msl::Scalar::uint16;
            const bool isByte = constant.scalar <= msl::Scalar::uint8;
            const bool isWide = constant.scalar >= msl::Scalar::int64;
            const std::uint64_t bits = value->bitsOf(n);
            const auto low = static_cast<std::uint32_t>(bits);
            spirv::Words words{isByte ? low & 0xff : isNarrow ? low & 0xffff : low};
            if (isWide)
                words.push_back(static_cast<std::uint32_t>(bits >> 32));
            numbers[msl::functionConstantComponent(constant.index, n)] = std::move(words);
        }
    }
    return numbers;
}

SharedEntryPoint specialised(const msl::EntryPoint& function,
                             const FunctionConstantValues& values) {
    auto made = std::make_shared<msl::EntryPoint>(function);
    made->words = spirv::specialised(function.words, specialisation(function, values));
    std::erase_if(made->constants,
                  [&](const auto& constant) { return values.valueOf(constant) != nullptr; });
    return made;
}

float fromHalf(std::uint16_t bits) {
    const int exponent = bits >> 10 & 31;
    const auto fraction = static_cast<float>(bits & 1023);
    const float size = exponent == 31  ? (fraction == 0 ? INFINITY : NAN)
                       : exponent == 0 ? std::ldexp(fraction, -24)
                                       : std::ldexp(1024 + fraction, exponent - 25);
    return bits & 0x8000 ? -size : size;
}

msl::ConstantNumber numberOf(const Value& value, std::uint32_t component) {
    const std::uint64_t bits = value.bitsOf(component);
    if (value.type.scalar == msl::Scalar::float_)
        return {.isReal = true, .real = std::bit_cast<float>(static_cast<std::uint32_t>(bits))};
    if (value.type.scalar == msl::Scalar::half)
        return {.isReal = true, .real = fromHalf(static_cast<std::uint16_t>(bits))};
    return {.integer = static_cast<std::int64_t>(bits)};
}

msl::ConstantValues fixedValues(const msl::EntryPoint& function,
                                const FunctionConstantValues& values) {
    msl::ConstantValues fixed{.values = {}, .othersAreUndefined = true};
    for (const msl::FunctionConstant& constant : function.constants)
        if (const Value* value = values.valueOf(constant)) {
            fixed.values.push_back({.name = constant.name, .numbers = {}});
            for (std::uint32_t n = 0; n < constant.width; ++n)
                fixed.values.back().numbers.push_back(numberOf(*value, n));
        }
    return fixed;
}

} // namespace

std::string missingValue(const msl::EntryPoint& function, const msl::FunctionConstant& constant) {
    return "The function '" + function.name + "' requires a value for the function constant '" +
           constant.name + "' (index " + std::to_string(constant.index) + ").";
}

Function::Function(SharedEntryPoint entryPoint) : entryPoint_(std::move(entryPoint)) {}

const std::string& Function::name() const {
    return entryPoint_->name;
}
msl::Stage Function::stage() const {
    return entryPoint_->stage;
}

Library::Library(std::vector<msl::EntryPoint> entryPoints, std::string warnings)
    : warnings_(std::move(warnings)) {
    for (msl::EntryPoint& entryPoint : entryPoints)
        entryPoints_.push_back(std::make_shared<const msl::EntryPoint>(std::move(entryPoint)));
}

Library::~Library() = default;

SharedEntryPoint Library::find(std::string_view name) const {
    for (const auto& entryPoint : entryPoints_)
        if (entryPoint->name == name)
            return entryPoint;
    return nullptr;
}

std::unique_ptr<Function> Library::newFunction(std::string_view name) const {
    auto found = find(name);
    return found ? std::make_unique<Function>(std::move(found)) : nullptr;
}

std::unique_ptr<Function> Library::newFunction(std::string_view name,
                                               const FunctionConstantValues& values) const {
    const SharedEntryPoint found = find(name);
    if (!found)
        return nullptr;
    check(*found, values);
    if (!found->isShapedByConstants || !source_)
        return std::make_unique<Function>(specialised(*found, values));
    msl::CompileOptions options = source_->options;
    options.constants = fixedValues(*found, values);
    msl::Compilation compilation = compiled(source_->text, options);
    return Library(std::move(compilation.entryPoints), {}).newFunction(name);
}

std::vector<std::string> Library::functionNames() const {
    std::vector<std::string> names;
    for (const auto& entryPoint : entryPoints_)
        names.push_back(entryPoint->name);
    return names;
}

std::unique_ptr<Library> newLibrary(std::string_view source, const msl::CompileOptions& options) {
    msl::Compilation compilation = compiled(source, options);
    auto library = std::make_unique<Library>(std::move(compilation.entryPoints),
                                             std::move(compilation.messages));
    if (std::ranges::any_of(library->entryPoints_,
                            [](const auto& each) { return each->isShapedByConstants; }))
        library->source_ = std::make_unique<const Library::Source>(std::string(source), options);
    return library;
}

} // namespace tarnwick::gpu
