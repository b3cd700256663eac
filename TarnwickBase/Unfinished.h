// What must not outlive this process in the state that it is in.
#pragma once

#include <filesystem>

namespace tarnwick {

// A file or folder that goes when the process ends early. Its owner removes it itself otherwise.
// Any thread.
class Unfinished {
  public:
    explicit Unfinished(std::filesystem::path path);
    ~Unfinished(); // it is finished, or removed
    Unfinished(const Unfinished&) = delete;
    Unfinished& operator=(const Unfinished&) = delete;

  private:
    std::filesystem::path path_;
};

// Removes all that is unfinished now, folders with what is in them. For the end of the process:
// their owners may still be at work.
void removeUnfinished();

} // namespace tarnwick
