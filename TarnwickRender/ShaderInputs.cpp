#include "TarnwickRender/ShaderInputs.h"

namespace tarnwick {

const ShaderInputs& ShaderInputs::none() {
    static const ShaderInputs silence;
    return silence;
}

} // namespace tarnwick
