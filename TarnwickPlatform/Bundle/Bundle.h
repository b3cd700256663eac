// A folder of resources that belongs to a program or a saver.
#pragma once

#include <filesystem>
#include <optional>
#include <stdexcept>
#include <string_view>

namespace tarnwick {

// A bundle cannot be made. what() is one sentence that names the file.
struct BundleError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// The episode or the settings of a new bundle cannot be read.
struct InputReadError : BundleError {
    using BundleError::BundleError;
};

class Bundle {
  public:
    explicit Bundle(std::filesystem::path folder) : folder_(std::move(folder)) {}

    const std::filesystem::path& folder() const { return folder_; }

    // The path of SUBDIRECTORY/NAME.EXTENSION in the bundle; absent unless it is a regular file or
    // a link to one.
    std::optional<std::filesystem::path> pathForResource(std::string_view name,
                                                         std::string_view extension,
                                                         std::string_view subdirectory) const;

  private:
    std::filesystem::path folder_;
};

// The settings document beside an episode: NAME.json beside NAME.metal. Absent unless it is a
// regular file or a link to one.
std::optional<std::filesystem::path> settingsBeside(const std::filesystem::path& episode);

// Makes `folder` the bundle of one episode: Shader/shader.metal is a copy of `episode`, and
// Shader/saver.json a copy of the document `settings`, or without one a document with the episode's
// name and no values. Existing files of these two names are replaced, each in one step, if this
// function made them and nobody changed them since (Shader/.tarnwick-made has their hashes). Throws
// OutputNameError if somebody changed them, otherwise BundleError or InputReadError. After an error
// no file is changed, unless writing the second file failed.
Bundle makeBundle(const std::filesystem::path& folder, const std::filesystem::path& episode,
                  const std::optional<std::filesystem::path>& settings);

} // namespace tarnwick
