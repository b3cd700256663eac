// Files and folders that are removed if this process ends early.
#pragma once

#include <filesystem>

namespace tarnwick {

// A file or folder that is removed if a signal ends the process. Otherwise its owner removes it.
// May be used on any thread.
class Unfinished {
  public:
    explicit Unfinished(std::filesystem::path path); // need not exist yet
    ~Unfinished(); // the file is finished, or its owner has removed it
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

  private:
    std::filesystem::path path_;
};

// Removes all unfinished files, and folders with their content. Only for the end of the process:
// the owners may still be writing.
void removeUnfinished();

} // namespace tarnwick
