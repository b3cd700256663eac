// An episode: its text and all that the host reads from it.
#pragma once

#include "TarnwickCore/Episode/ShaderKind.h"
#include "TarnwickCore/EpisodeMeta.h"
#include "TarnwickCore/ShaderAssembler.h"

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

namespace tarnwick {

// Made once from a text and passed on: the text is never read again.
struct Episode {
    std::string path; // names the episode in messages; empty without a file
    std::string text;
    ShaderKind kind = ShaderKind::fragment; // its label; see shaderKindOf
    EpisodeMeta meta;
    std::set<std::string_view> metaKeys; // the keys of `meta` that the text gives
    AssembledShader shader;              // parameters, functions, the whole program

    // Pure; accepts any bytes; never fails.
    static Episode of(std::string text, std::string path = {});

    const std::vector<ParamDecl>& params() const { return shader.params; }
    // Seconds; absent if the text gives none.
    std::optional<double> length() const {
        return metaKeys.contains("length") ? std::optional(meta.length) : std::nullopt;
    }
};

} // namespace tarnwick
