// The errors of the layer.
#pragma once

#include <stdexcept>
#include <string>

namespace tarnwick::gpu {

// The compiler rejected a program: what() is the compiler's whole text. Or a library cannot give a
// function the values of its constants: what() is one sentence.
struct LibraryError : std::runtime_error {
    explicit LibraryError(const std::string& text, bool isCompilersFault = false)
        : std::runtime_error(text), isCompilersFault(isCompilersFault) {}

    bool isCompilersFault; // the compiler crashed or ran out of time: the program may be valid
};

// The device refused a pipeline or was lost: what() is one sentence.
struct DeviceError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

} // namespace tarnwick::gpu
