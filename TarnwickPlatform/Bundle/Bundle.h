// A folder of resources that belongs to a program or a saver.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace tarnwick {

// A bundle could not be made: what() is one sentence that names the file.
struct BundleError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The episode or the settings that a bundle was to be made of cannot be read.
struct InputReadError : BundleError {
    using BundleError::BundleError;
};

class Bundle {
  public:
    explicit Bundle(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& folder() const { return folder_; }

    // Where SUBDIRECTORY/NAME.EXTENSION lies in the bundle; nothing unless a regular file (or a
    // link to one) is there.
    std::optional<std::filesystem::path> pathForResource(std::string_view name,
                                                         std::string_view extension,
                                                         std::string_view subdirectory) const;

  private:
    std::filesystem::path folder_;
};

// The settings document beside an episode: NAME.json beside NAME.metal. Nothing unless a regular
// file (or a link to one) is there.
std::optional<std::filesystem::path> settingsBeside(const std::filesystem::path& episode);

// Makes `folder` the bundle of one episode: Shader/shader.metal is a copy of `episode`, and
// Shader/saver.json a copy of the document `settings` or, without one, settings that bear the
// episode's name and change nothing. What the folder holds under these two names is replaced, each
// in one step, where it is as this function made it: Shader/.tarnwick-made remembers. Throws
// OutputNameError where it is not, and BundleError, InputReadError among them; then no file was
// changed, but for a disk that fails in between.
Bundle makeBundle(const std::filesystem::path& folder, const std::filesystem::path& episode,
                  const std::optional<std::filesystem::path>& settings);

} // namespace tarnwick
