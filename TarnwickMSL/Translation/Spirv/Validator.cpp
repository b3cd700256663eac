#include "TarnwickMSL/Translation/Spirv/Validator.h"

#include <spirv-tools/libspirv.hpp>

namespace tarnwick::msl {

std::string spirvFaults(const std::vector<std::uint32_t>& words) {
    spvtools::SpirvTools tools(SPV_ENV_VULKAN_1_3);
    std::string messages;
    tools.SetMessageConsumer(
        [&](spv_message_level_t, const char*, const spv_position_t& position, const char* message) {
            messages += std::to_string(position.index) + ": " + message + "\n";
        });
    spvtools::ValidatorOptions options;
    options.SetScalarBlockLayout(true);
    options.SetFriendlyNames(false);
    bool isValid = tools.Validate(words.data(), words.size(), options);
    return isValid || !messages.empty() ? messages : "The module is not valid.";
}

std::string spirvText(const std::vector<std::uint32_t>& words) {
    std::string text;
    spvtools::SpirvTools(SPV_ENV_VULKAN_1_3)
        .Disassemble(words, &text, SPV_BINARY_TO_TEXT_OPTION_NO_HEADER);
    return text;
}

} // namespace tarnwick::msl
