// Where the library's files are.
#pragma once

#include <filesystem>

namespace tarnwick::embedding {

// The compiler's worker that was installed with the library, or built with it. It is found from the
// file of the library, so that an installed tree can be moved. Empty if that file is not known.
std::filesystem::path installedWorker();

} // namespace tarnwick::embedding
