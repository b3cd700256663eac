// Runs all steps of the compiler.
#pragma once

#include "TarnwickMSL/Compile.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

#include <memory>

namespace tarnwick::msl {

struct Translation;

// What a translation leaves for the next one.
class Remains {
  public:
    // Frees what the next one does not need. That takes time, so best when nobody waits.
    void tidy();

    std::shared_ptr<Translation> translation;
};

// Ignores the time limit of the options. Adds the time of each step to `times`. With the remains of
// the last translation, a text that differs from the last one only in numbers takes less time.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const CompileOptions& options = {}, StepTimes* times = nullptr,
                      Remains* remains = nullptr);

} // namespace tarnwick::msl
