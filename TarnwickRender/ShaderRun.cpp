#include "TarnwickRender/ShaderRun.h"

namespace tarnwick {

// Neither of the two kinds of episode that need a run is drawn yet.
std::unique_ptr<ShaderRun> ShaderRun::make(std::shared_ptr<const ShaderProgram>, gpu::Device&,
                                           std::int64_t, std::int64_t) {
    return nullptr;
}

void ShaderRun::prepare(const TWUniforms&, gpu::CommandBuffer&, const ParamValues&, std::int64_t) {}

} // namespace tarnwick
