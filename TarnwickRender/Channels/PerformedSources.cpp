#include "TarnwickRender/Channels/PerformedSources.h"

#include <algorithm>
#include <utility>

namespace tarnwick {

PerformedSources::PerformedSources(std::shared_ptr<const ShaderProgram> program,
                                   gpu::Device& device, std::int64_t width, std::int64_t height)
    : program_(std::move(program)), device_(device), width_(width), height_(height) {}

std::shared_ptr<FrameInputs> PerformedSources::make(std::shared_ptr<const ShaderProgram> program,
                                                    gpu::Device& device, std::int64_t width,
                                                    std::int64_t height,
                                                    std::vector<PerformedSource> sets) {
    if (!program->usesInputs())
        return nullptr;
    std::shared_ptr<PerformedSources> made(
        new PerformedSources(std::move(program), device, width, height));
    for (PerformedSource& set : sets)
        made->sets_.push_back({std::move(set)});
    if (!made->sets_.empty())
        made->open(made->sets_.front());
    return made;
}

void PerformedSources::open(Set& set) {
    if (!set.open)
        set.open =
            EpisodeInputs::make(program_, device_, width_, height_, set.source.sources, channels_);
}

void PerformedSources::use(const PerformedInputs& inputs) {
    const auto set =
        std::ranges::find_if(sets_, [&](const Set& one) { return one.source.inputs == inputs; });
    used_ = nullptr;
    if (set == sets_.end())
        return;
    open(*set);
    used_ = set->open.get();
}

// The sound of another set begins with silence, also if it was heard before. Frames that only show
// the channels of a set do not count.
ShaderInputs PerformedSources::inputs(double time, const ParamValues& values) {
    if (used_ == nullptr)
        return ShaderInputs::none();
    if (std::exchange(heard_, used_) != used_)
        used_->reset();
    return used_->inputs(time, values);
}

void PerformedSources::reset() {
    heard_ = nullptr;
}

std::vector<const gpu::Texture*> PerformedSources::channels(double time) {
    return used_ != nullptr ? used_->channels(time) : std::vector<const gpu::Texture*>();
}

bool PerformedSources::prepareSound(double time) {
    return used_ == nullptr || used_->prepareSound(time);
}

bool PerformedSources::prepareChannels(double time) {
    return used_ == nullptr || used_->prepareChannels(time);
}

} // namespace tarnwick
