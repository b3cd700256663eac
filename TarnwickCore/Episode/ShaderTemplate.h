// The texts of new episodes.
#pragma once

#include <string>
#include <string_view>

namespace tarnwick {

// The title, one line of text, becomes the first line, a comment.
struct ShaderTemplate {
    // With parameters and sound.
    static std::string newShader(std::string_view title);
    // With Inputs: live sound, channels, the previous frame.
    static std::string inputsShader(std::string_view title);
    // With trails.
    static std::string particlesShader(std::string_view title);
    // With a background.
    static std::string gridShader(std::string_view title);
    // With a tune, and a picture that reads it through Inputs.
    static std::string soundShader(std::string_view title);
};

} // namespace tarnwick
