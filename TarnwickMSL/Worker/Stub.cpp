// Stands where the SPIR-V writer is not built yet.
#include "TarnwickMSL/Translation/SpirvWriter.h"
#include "TarnwickMSL/Translation/TranslationError.h"

namespace tarnwick::msl {

EntryPoint writeSpirv(const ShaderModule&) {
    throw TranslationError("the SPIR-V writer is not built in");
}

} // namespace tarnwick::msl
