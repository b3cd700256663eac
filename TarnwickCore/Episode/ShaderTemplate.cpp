#include "TarnwickCore/Episode/ShaderTemplate.h"

#include "TarnwickCore/Episode/Templates/GridShader.h"
#include "TarnwickCore/Episode/Templates/InputsShader.h"
#include "TarnwickCore/Episode/Templates/NewShader.h"
#include "TarnwickCore/Episode/Templates/ParticlesShader.h"
#include "TarnwickCore/Episode/Templates/SoundShader.h"

namespace tarnwick {

static std::string titled(std::string_view title, std::string_view text) {
    return std::string("// ").append(title).append(text).append("\n");
}

std::string ShaderTemplate::newShader(std::string_view title) {
    return titled(title, templates::newShader);
}

std::string ShaderTemplate::inputsShader(std::string_view title) {
    return titled(title, templates::inputsShader);
}

std::string ShaderTemplate::particlesShader(std::string_view title) {
    return titled(title, templates::particlesShader);
}

std::string ShaderTemplate::gridShader(std::string_view title) {
    return titled(title, templates::gridShader);
}

std::string ShaderTemplate::soundShader(std::string_view title) {
    return titled(title, templates::soundShader);
}

} // namespace tarnwick
