#include "embedding/Place.h"

#include "embedding/include/tarnwick/msl.h"

#include <dlfcn.h>
#include <system_error>

namespace tarnwick::embedding {

std::filesystem::path installedWorker() {
    Dl_info library{};
    if (dladdr(reinterpret_cast<const void*>(&tarnwick_msl_version), &library) == 0 ||
        !library.dli_fname)
        return {};
    // The real path: a link to the library may be in another tree.
    std::error_code error;
    const std::filesystem::path folder =
        std::filesystem::canonical(library.dli_fname, error).parent_path();
    if (error)
        return {};
    // The build sets the paths: of an installed tree, and of the tree of the build.
    for (const char* place : {TARNWICK_LIBRARY_TO_WORKER, TARNWICK_BUILT_LIBRARY_TO_WORKER})
        if (const std::filesystem::path worker = (folder / place).lexically_normal();
            std::filesystem::exists(worker, error))
            return worker;
    return (folder / TARNWICK_LIBRARY_TO_WORKER).lexically_normal();
}

} // namespace tarnwick::embedding
