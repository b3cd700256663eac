#include "TarnwickCore/ShaderTemplate.h"

#include "TarnwickCore/Templates/GridShader.h"
#include "TarnwickCore/Templates/InputsShader.h"
#include "TarnwickCore/Templates/NewShader.h"
#include "TarnwickCore/Templates/ParticlesShader.h"
#include "TarnwickCore/Templates/SoundShader.h"

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
