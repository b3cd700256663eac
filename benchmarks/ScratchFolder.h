// A folder for what is written while measuring.
#pragma once

#include <cstdlib>
#include <filesystem>
#include <stdexcept>
#include <string>
#include <system_error>

namespace tarnwick::bench {

// Empty, of a name of its own, and removed with all that it holds. Throws std::runtime_error.
class ScratchFolder {
  public:
    ScratchFolder() {
        std::string name = (std::filesystem::temp_directory_path() / "tarnwick-bench-XXXXXX");
        if (mkdtemp(name.data()) == nullptr)
            throw std::runtime_error("No temporary folder could be made.");
        path_ = name;
    }
    ~ScratchFolder() {
        std::error_code ignored; // a temporary folder that stays does no harm
        std::filesystem::remove_all(path_, ignored);
    }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    const std::filesystem::path& path() const { return path_; }

  private:
    std::filesystem::path path_;
};

} // namespace tarnwick::bench
