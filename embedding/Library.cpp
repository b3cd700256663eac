// The functions of include/tarnwick/msl.h that make compilers and compile. No exception passes
// them.
#include "embedding/Library.h"

#include "embedding/Place.h"

#include <algorithm>
#include <cstring>

using namespace tarnwick;
using embedding::guarded;

uint32_t tarnwick_msl_version(void) {
    return TARNWICK_MSL_VERSION;
}

tarnwick_msl_status tarnwick_msl_compiler_create(const tarnwick_msl_compiler_settings* settings,
                                                 tarnwick_msl_compiler** compiler) {
    if (!compiler)
        return TARNWICK_MSL_ARGUMENT_INVALID;
    *compiler = nullptr;
    tarnwick_msl_compiler_settings given{};
    if (settings) {
        if (settings->struct_size < sizeof settings->struct_size)
            return TARNWICK_MSL_ARGUMENT_INVALID;
        std::memcpy(&given, settings, std::min(settings->struct_size, sizeof given));
    }
    return guarded([&] {
        constexpr unsigned usualWorkers = 4;
        *compiler = new tarnwick_msl_compiler{.compilers{
            given.worker ? std::filesystem::path(given.worker) : embedding::installedWorker(),
            given.most_workers == 0 ? usualWorkers : given.most_workers}};
        return TARNWICK_MSL_DONE;
    });
}

void tarnwick_msl_compiler_destroy(tarnwick_msl_compiler* compiler) {
    delete compiler;
}

tarnwick_msl_status tarnwick_msl_compile(tarnwick_msl_compiler* compiler,
                                         const tarnwick_msl_options* options, const char* source,
                                         size_t length, tarnwick_msl_result** result) {
    if (!result)
        return TARNWICK_MSL_ARGUMENT_INVALID;
    *result = nullptr;
    if (!compiler || (!source && length > 0))
        return TARNWICK_MSL_ARGUMENT_INVALID;
    return guarded([&] {
        const tarnwick_msl_options usual;
        const tarnwick_msl_options& asked = options ? *options : usual;
        auto made = std::make_unique<tarnwick_msl_result>(
            compiler->compilers.compile({source, length}, asked.compiling));
        made->keepOnly(asked.entryPoints);
        const msl::Compilation& compilation = made->compilation;
        const tarnwick_msl_status status = compilation.isCompilersFault
                                               ? TARNWICK_MSL_COMPILER_FAILED
                                           : compilation.failed ? TARNWICK_MSL_PROGRAM_INVALID
                                                                : TARNWICK_MSL_DONE;
        *result = made.release();
        return status;
    });
}

void tarnwick_msl_result_destroy(tarnwick_msl_result* result) {
    delete result;
}
