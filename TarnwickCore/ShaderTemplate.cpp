#include "TarnwickCore/ShaderTemplate.h"

#include "TarnwickCore/Templates/InputsShader.h"
#include "TarnwickCore/Templates/NewShader.h"

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

} // namespace tarnwick
