// The function constants of a program of the corpus, in both ways of giving their values.
#pragma once

#include "TarnwickGPU/Pipeline.h"
#include "TarnwickMSL/Constants.h"
#include "tests/TarnwickMSL/CorpusProgram.h"

#include <memory>
#include <string>

namespace tarnwick::corpus {

// Whether the program was compiled with the values of its constants.
enum class HasValues : bool { no, yes };

// Takes functions from a library; with values for their constants, unless the library has them.
class CorpusFunctions {
  public:
    CorpusFunctions(const gpu::Library& library, const Program& program, HasValues hasValues)
        : library(library), program(program), hasValues(hasValues) {}

    std::unique_ptr<gpu::Function> take(const std::string& name) const;
    std::unique_ptr<gpu::Function> first(msl::Stage stage) const;

  private:
    const gpu::Library& library;
    const Program& program;
    HasValues hasValues;
};

// The values for a compilation.
msl::ConstantValues constantsOf(const Program& program);

} // namespace tarnwick::corpus
