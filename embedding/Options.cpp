// The functions of include/tarnwick/msl.h that set options.
#include "embedding/Library.h"

#include <algorithm>
#include <array>
#include <limits>

using namespace tarnwick;
using embedding::guarded;

namespace {

// Runs `set` on the options of a compilation. It returns whether it takes the argument.
template <class Set> tarnwick_msl_status change(tarnwick_msl_options* options, Set set) {
    if (!options)
        return TARNWICK_MSL_ARGUMENT_INVALID;
    return guarded([&] {
        return set(options->compiling) ? TARNWICK_MSL_DONE : TARNWICK_MSL_ARGUMENT_INVALID;
    });
}

// In the order of tarnwick_msl_feature.
constexpr std::array features{&msl::Target::hasFloat16,
                              &msl::Target::hasInt8,
                              &msl::Target::hasInt16,
                              &msl::Target::hasInt64,
                              &msl::Target::hasMeshFunctions,
                              &msl::Target::followsAddresses,
                              &msl::Target::addsFloatsInBuffers,
                              &msl::Target::ordersFragments,
                              &msl::Target::keepsLogs,
                              &msl::Target::specialisesUniforms};
static_assert(features.size() == TARNWICK_MSL_UNIFORM_SPECIALISATION + 1);

template <class Number>
tarnwick_msl_status setConstant(tarnwick_msl_options* options, const char* name,
                                const Number* numbers, size_t count,
                                msl::ConstantNumber (*made)(Number)) {
    constexpr size_t mostComponents = 4;
    return change(options, [&](msl::CompileOptions& compiling) {
        if (!name || !numbers || count == 0 || count > mostComponents)
            return false;
        msl::ConstantValue value{.name = name, .numbers = {}};
        std::transform(numbers, numbers + count, std::back_inserter(value.numbers), made);
        auto& values = compiling.constants.values;
        const auto known = std::ranges::find(values, value.name, &msl::ConstantValue::name);
        if (known == values.end())
            values.push_back(std::move(value));
        else
            *known = std::move(value);
        return true;
    });
}

} // namespace

tarnwick_msl_status tarnwick_msl_options_create(tarnwick_msl_options** options) {
    if (!options)
        return TARNWICK_MSL_ARGUMENT_INVALID;
    *options = nullptr;
    return guarded([&] {
        *options = new tarnwick_msl_options;
        return TARNWICK_MSL_DONE;
    });
}

void tarnwick_msl_options_destroy(tarnwick_msl_options* options) {
    delete options;
}

tarnwick_msl_status tarnwick_msl_options_set_name(tarnwick_msl_options* options, const char* name) {
    return change(options, [&](msl::CompileOptions& compiling) {
        if (name)
            compiling.name = name;
        return name != nullptr;
    });
}

tarnwick_msl_status tarnwick_msl_options_add_define(tarnwick_msl_options* options, const char* name,
                                                    const char* value) {
    return change(options, [&](msl::CompileOptions& compiling) {
        if (!name)
            return false;
        const msl::Define define{.name = name, .value = value ? value : "1"};
        if (!msl::isValid(define))
            return false;
        compiling.defines.push_back(define);
        return true;
    });
}

tarnwick_msl_status tarnwick_msl_options_add_include_folder(tarnwick_msl_options* options,
                                                            const char* folder) {
    return change(options, [&](msl::CompileOptions& compiling) {
        if (!folder || !*folder)
            return false;
        compiling.includes.emplace_back(folder);
        return true;
    });
}

tarnwick_msl_status tarnwick_msl_options_set_language_version(tarnwick_msl_options* options,
                                                              const char* version) {
    return change(options, [&](msl::CompileOptions& compiling) {
        const auto number = version ? msl::versionNamed(version) : std::nullopt;
        compiling.version = number.value_or(compiling.version);
        return number.has_value();
    });
}

tarnwick_msl_status tarnwick_msl_options_set_language(tarnwick_msl_options* options,
                                                      tarnwick_msl_language language) {
    return change(options, [&](msl::CompileOptions& compiling) {
        if (language != TARNWICK_MSL_SPIRV && language != TARNWICK_MSL_WGSL)
            return false;
        const bool isOptimised = compiling.target.isOptimised;
        compiling.target = language == TARNWICK_MSL_WGSL ? msl::wgslTarget() : msl::Target();
        compiling.target.followsAddresses = false;
        compiling.target.isOptimised = isOptimised;
        return true;
    });
}

tarnwick_msl_status tarnwick_msl_options_set_optimised(tarnwick_msl_options* options,
                                                       int is_optimised) {
    return change(options, [&](msl::CompileOptions& compiling) {
        compiling.target.isOptimised = is_optimised != 0;
        return true;
    });
}

tarnwick_msl_status tarnwick_msl_options_set_constant_integers(tarnwick_msl_options* options,
                                                               const char* name,
                                                               const int64_t* numbers,
                                                               size_t count) {
    return setConstant<int64_t>(options, name, numbers, count, [](int64_t number) {
        return msl::ConstantNumber{.integer = number};
    });
}

tarnwick_msl_status tarnwick_msl_options_set_constant_reals(tarnwick_msl_options* options,
                                                            const char* name, const double* numbers,
                                                            size_t count) {
    return setConstant<double>(options, name, numbers, count, [](double number) {
        return msl::ConstantNumber{.isReal = true, .real = number};
    });
}

tarnwick_msl_status tarnwick_msl_options_set_feature(tarnwick_msl_options* options,
                                                     tarnwick_msl_feature feature, int is_there) {
    return change(options, [&](msl::CompileOptions& compiling) {
        const auto index = static_cast<size_t>(feature);
        if (index >= features.size())
            return false;
        compiling.target.*features[index] = is_there != 0;
        return true;
    });
}

tarnwick_msl_status tarnwick_msl_options_add_entry_point(tarnwick_msl_options* options,
                                                         const char* name) {
    return change(options, [&](msl::CompileOptions&) {
        if (name)
            options->entryPoints.emplace_back(name);
        return name != nullptr;
    });
}

tarnwick_msl_status tarnwick_msl_options_set_time_limit(tarnwick_msl_options* options,
                                                        uint32_t milliseconds) {
    return change(options, [&](msl::CompileOptions& compiling) {
        // The worker has two seconds more, in the same number.
        constexpr uint32_t most = std::numeric_limits<uint32_t>::max() - 2000;
        if (milliseconds > 0)
            compiling.limit = std::chrono::milliseconds(std::min(milliseconds, most));
        return milliseconds > 0;
    });
}

tarnwick_msl_status tarnwick_msl_options_set_listed(tarnwick_msl_options* options, int is_listed) {
    return change(options, [&](msl::CompileOptions& compiling) {
        compiling.lists = is_listed != 0;
        return true;
    });
}
