// The error of an export.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <variant>

namespace tarnwick {

// what() is the sentence for the user.
class ExportError : public std::runtime_error {
  public:
    struct Setup {
        std::string reason;
    };
    struct Render {
        std::int64_t frame; // of the movie, from 0
    };
    struct DeviceLost {
        std::int64_t frame; // of the movie, at which no device lasted
    };
    struct Writer {
        std::string reason;
    };
    struct Input {
        std::string sentence; // about a file that the episode reads
    };
    struct Cancelled {};
    using Case = std::variant<Setup, Render, DeviceLost, Writer, Input, Cancelled>;

    explicit ExportError(Case which);

    const Case& which() const { return which_; }
    bool isCancelled() const { return std::holds_alternative<Cancelled>(which_); }

  private:
    Case which_;
};

} // namespace tarnwick
