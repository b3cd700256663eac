// What the handles of include/tarnwick/msl.h are. Library.cpp has the functions that compile,
// Options.cpp those that set options, Result.cpp those that read results.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "embedding/include/tarnwick/msl.h"

#include <cstdint>
#include <new>
#include <string>
#include <vector>

struct tarnwick_msl_compiler {
    tarnwick::msl::Compilers compilers;
};

struct tarnwick_msl_options {
    tarnwick_msl_options() {
        compiling.reflects = true;
        compiling.target.followsAddresses = false;
    }
    tarnwick::msl::CompileOptions compiling;
    std::vector<std::string> entryPoints; // that are wanted; empty: all
};

struct tarnwick_msl_result {
    explicit tarnwick_msl_result(tarnwick::msl::Compilation made);
    // Removes the other entry points, unless the list is empty. A name that no entry point has
    // becomes an error.
    void keepOnly(const std::vector<std::string>& names);

    tarnwick::msl::Compilation compilation;
    std::vector<std::vector<std::uint32_t>> capabilities; // of each entry point
};

namespace tarnwick::embedding {

// The status that the function returns; its exceptions as a status.
template <class Function> tarnwick_msl_status guarded(Function function) noexcept {
    try {
        return function();
    } catch (const std::bad_alloc&) {
        return TARNWICK_MSL_OUT_OF_MEMORY;
    } catch (...) {
        return TARNWICK_MSL_COMPILER_FAILED;
    }
}

} // namespace tarnwick::embedding
