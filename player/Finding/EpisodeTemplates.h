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
    {"Sound", "A tune, and a picture that hears it", &ShaderTemplate::soundShader},
    {"Inputs", "Live sound, channels, the previous frame", &ShaderTemplate::inputsShader},
}};

} // namespace tarnwick::player
