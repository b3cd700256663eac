// The source of an episode: its parameters, its metadata, its assembled program.
#include "TarnwickCore/Episode/FileNames.h"
#include "TarnwickCore/Episode/ShaderKind.h"
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/Params.h"
#include "TarnwickCore/ShaderAssembler.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

void checkParams(const std::vector<ParamDecl>& params) {
    for (const ParamDecl& one : params) {
        law(one.min < one.max, "a range has a width");
        law(!(one.defaultValue < one.min) && !(one.defaultValue > one.max),
            "a default is in its range");
        law(!one.name.empty(), "a parameter has a name");
    }
}

void checkMeta(const EpisodeMeta& meta) {
    law(meta.length > 0 && meta.variationLength > 0, "a length is above 0");
    law(meta.still >= 0, "the time of a still is not negative");
    for (const std::int64_t variation : meta.variations)
        law(variation > 0, "the index of a variation is above 0");
}

void checkName(const std::string& name) {
    law(name.ends_with(".metal") && name.size() > 6, "a file name has an extension and more");
    law(!name.starts_with('.') && name.find('/') == std::string::npos &&
            name.find('\0') == std::string::npos,
        "a file name has no path");
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string_view source = textOf(bytes, size);
    checkParams(ParamParser::parse(source));
    checkMeta(EpisodeMeta::parse(source));
    checkName(FileNames::safe(source));
    shaderKindOf(source);
    const AssembledShader shader = ShaderAssembler::assemble(source);
    law(shader.source.size() >= size, "a program contains its episode");
    law(shader.particles >= 0 && shader.particles <= ShaderAssembler::maxParticles &&
            shader.grid >= 0 && shader.grid <= ShaderAssembler::maxGrid,
        "a count is within its bounds");
    return 0;
}
