// The inputs of an episode whose channels and sound change during a performance.
#pragma once

#include "TarnwickRender/Channels/EpisodeInputs.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace tarnwick {

// What to open for a set of inputs.
struct PerformedSource {
    PerformedInputs inputs;
    InputSources sources;
};

// Shows those that use() names; nothing before its first call, and for a set that is not among
// them. One thread at a time.
class PerformedSources : public FrameInputs {
  public:
    // Opens the first set; the others are opened when they are used, and their channels remain
    // open. Null if the program does not read Inputs. `width` and `height` are those of the
    // picture. The device outlives this. Throws InputError. Blocks.
    static std::shared_ptr<FrameInputs> make(std::shared_ptr<const ShaderProgram> program,
                                             gpu::Device& device, std::int64_t width,
                                             std::int64_t height,
                                             std::vector<PerformedSource> sets);

    ShaderInputs inputs(double time, const ParamValues& values) override;
    void reset() override;
    void use(const PerformedInputs& inputs) override;
    std::vector<const gpu::Texture*> channels(double time) override;
    bool prepareSound(double time) override;
    bool prepareChannels(double time) override;

  private:
    PerformedSources(std::shared_ptr<const ShaderProgram> program, gpu::Device& device,
                     std::int64_t width, std::int64_t height);
    struct Set {
        PerformedSource source;
        std::shared_ptr<FrameInputs> open{}; // null before its first use
    };
    void open(Set& set);

    std::shared_ptr<const ShaderProgram> program_;
    gpu::Device& device_;
    std::int64_t width_, height_;
    OpenChannels channels_;
    std::vector<Set> sets_;
    FrameInputs* used_ = nullptr;  // of sets_; null: none
    FrameInputs* heard_ = nullptr; // of the last inputs(); null: its sound begins
};

} // namespace tarnwick
