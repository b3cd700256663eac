// Runs all steps of the compiler.
#pragma once

#include "TarnwickMSL/Compilation.h"
#include "TarnwickMSL/Constants.h"
#include "TarnwickMSL/IncludeFolder.h"
#include "TarnwickMSL/Target.h"
#include "TarnwickMSL/Translation/FrontEnd.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick::msl {

struct Translation;

// What a translation leaves for the next one.
class Remains {
  public:
    // Frees what the next one does not need. That takes time, so best when nobody waits.
    void tidy();

    std::shared_ptr<Translation> translation;
};

// What a request asks for, beside its source.
struct TranslationOptions {
    Target target;
    std::string moreWarningsIn; // Compile.h
    ConstantValues constants;   // Compile.h
    std::vector<IncludeFolder> includes;
    bool reflects = false, lists = false; // Compile.h
};

// Adds the time of each step to `times`. With the remains of
// the last translation, a text that differs from the last one only in numbers takes less time.
Compilation translate(std::string_view source, const StandardLibrary& library,
                      const TranslationOptions& options = {}, StepTimes* times = nullptr,
                      Remains* remains = nullptr);

} // namespace tarnwick::msl
