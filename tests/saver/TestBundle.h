// Bundles for tests, in a folder that goes with them.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickPlatform/Bundle/Bundle.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tarnwick {

class TestBundle {
  public:
    // Each file is there unless its text is empty.
    explicit TestBundle(std::string_view shader, std::string_view settings = "");

    Bundle bundle() const { return Bundle(folder_); }
    std::string folder() const { return folder_.string(); }

  private:
    TemporaryFolder temporary_;
    std::filesystem::path folder_ = temporary_.path();
};

} // namespace tarnwick
