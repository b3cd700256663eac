// The texts that a new episode may begin with.
#pragma once

#include "TarnwickCore/Episode/ShaderTemplate.h"

#include <array>
#include <string>
#include <string_view>

namespace tarnwick::player {

struct EpisodeTemplate {
    const char* name;
    const char* detail;
    std::string (*text)(std::string_view title);
};

inline constexpr std::array<EpisodeTemplate, 5> episodeTemplates{{
    {"Picture", "A colour for each pixel", &ShaderTemplate::newShader},
    {"Particles", "A cloud of moving points", &ShaderTemplate::particlesShader},
    {"Grid", "A surface that bends", &ShaderTemplate::gridShader},
    {"Sound", "A tune and its picture", &ShaderTemplate::soundShader},
    {"Inputs", "Sound, channels, feedback", &ShaderTemplate::inputsShader},
}};

} // namespace tarnwick::player
