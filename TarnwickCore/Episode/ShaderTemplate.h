// The texts that a new episode begins with.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// The title becomes the first line, a comment; it is one line of text.
struct ShaderTemplate {
    // With parameters and sound.
    static std::string newShader(std::string_view title);
    // With Inputs: sound that is heard, channels, the last frame.
    static std::string inputsShader(std::string_view title);
    // With trails.
    static std::string particlesShader(std::string_view title);
    // With a background.
    static std::string gridShader(std::string_view title);
    // A tune, and a picture that hears it through Inputs.
    static std::string soundShader(std::string_view title);
};

} // namespace tarnwick
