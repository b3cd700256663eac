#include "TarnwickRender/StillRenderer.h"

namespace tarnwick {

std::optional<Picture> StillRenderer::render(const std::shared_ptr<const ShaderProgram>& program,
                                             gpu::Device& device, std::int64_t width,
                                             std::int64_t height, float time, std::uint32_t frame,
                                             const ParamValues& values, StillNews* news,
                                             const ShaderInputs& inputs) {
    const auto stills = Stills::make(program, device, width, height);
    Picture picture;
    if (!stills || !stills->render(time, frame, values, picture, news, inputs))
        return std::nullopt;
    return picture;
}

} // namespace tarnwick
