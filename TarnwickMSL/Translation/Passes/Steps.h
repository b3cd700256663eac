// The table of the compiler's steps, from the front end's module to SPIR-V or WGSL.
#pragma once

#include "TarnwickMSL/Translation/Passes/Forms/Form.h"
#include "TarnwickMSL/Translation/Passes/Forms/Work.h"

#include <optional>
#include <span>
#include <string_view>

namespace tarnwick::msl {

enum class Scope : std::uint8_t { program, entryPoint }; // a step runs once for each
// Whether code of every form needs the step, or it only makes code faster (Target::isOptimised).
enum class Use : std::uint8_t { needed, faster };

struct Step {
    std::string_view name;
    Scope scope = Scope::entryPoint;
    std::string_view header; // of the function that `run` calls, below TarnwickMSL/Translation/
    void (*run)(Work& work) = nullptr;
    std::string_view reason; // what it does, and why before or after another step
    Form form = Form::any;   // the rule that holds from here on, if a new one does
    Use use = Use::needed;
    std::optional<Language> language = std::nullopt; // of the target, if the step is for one alone
};

// In the order in which they run.
std::span<const Step> steps();

// Null if there is no step of this name.
const Step* stepNamed(std::string_view name);

} // namespace tarnwick::msl
