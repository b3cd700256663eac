#include "benchmarks/Playing.h"

#include "TarnwickCore/ShaderAssembler.h"
#include "benchmarks/Case.h"
#include "benchmarks/OurScene.h"
#include "benchmarks/byhand/HandGrid.h"
#include "benchmarks/byhand/HandParticles.h"

#include <algorithm>

namespace tarnwick::bench {

namespace {

constexpr int comparedFrame = 12; // late enough for trails

} // namespace

std::string episode(const std::filesystem::path& folder, const SceneCase& one) {
    std::string text = fileText(folder / (one.file + ".metal"));
    const std::string directive = one.stride ? "// @particles " : "// @grid ";
    const std::size_t begin = text.find(directive) + directive.size();
    return text.replace(begin, text.find('\n', begin) - begin, std::to_string(one.count));
}

HandSceneKind handKind(const gpu::Device& device, const std::filesystem::path& folder,
                       const SceneCase& one, const std::vector<ParamDecl>& params) {
    HandSceneKind kind{.deviceName = device.info().name,
                       .file = folder / (one.file + ".glsl"),
                       .filter = one.stride ? VK_FILTER_LINEAR : VK_FILTER_NEAREST,
                       .count = one.count};
    for (std::size_t index = 0; index < std::min(params.size(), kind.params.size()); index++)
        kind.params[index] = params[index].defaultValue;
    return kind;
}

std::vector<SceneCase> sceneCases() {
    return {{"dust 100,000", "dust", 100'000, 32, 1.05},
            {"dust 1,000,000", "dust", 1'000'000, 32, 0.6},
            {"sparks 100,000", "sparks", 100'000, 64, 1.05},
            {"dunes 512 x 512", "dunes", 512, 0, 1.05}};
}

PlayTime playTime(const std::shared_ptr<gpu::Device>& device, const std::filesystem::path& folder,
                  const SceneCase& one, int rounds) {
    OurScene ours(device, episode(folder, one));
    const HandSceneKind kind = handKind(*device, folder, one, ours.program().params());
    std::unique_ptr<Scene> twin;
    if (one.stride)
        twin = std::make_unique<HandParticles>(kind, one.stride);
    else
        twin = std::make_unique<HandGrid>(kind);
    for (int frame = 0; frame < comparedFrame; frame++) {
        ours.next();
        twin->next();
    }
    const PictureDifference pictures = difference(ours.picture(), twin->picture());
    return {inTurns(
                rounds, [&] { ours.next(); }, [&] { twin->next(); }),
            pictures};
}

} // namespace tarnwick::bench
