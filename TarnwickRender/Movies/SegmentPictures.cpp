#include "TarnwickRender/Movies/SegmentPictures.h"

#include "TarnwickRender/ExportError.h"

#include <algorithm>
#include <cmath>
#include <iterator>
#include <limits>

namespace tarnwick {
namespace {

void enter(gpu::RenderCommandEncoder& encoder, const FrameLayout::Area& area) {
    encoder.setViewport({.originX = static_cast<double>(area.x),
                         .originY = static_cast<double>(area.y),
                         .width = static_cast<double>(area.width),
                         .height = static_cast<double>(area.height)});
    encoder.setScissorRect({.x = static_cast<std::uint32_t>(area.x),
                            .y = static_cast<std::uint32_t>(area.y),
                            .width = static_cast<std::uint32_t>(area.width),
                            .height = static_cast<std::uint32_t>(area.height)});
}

FrameLayout::Area whole(const PictureSize& frame) {
    return {.width = frame.width, .height = frame.height};
}

// A pass in which nothing is drawn, for its clearing.
bool clear(gpu::CommandBuffer& commands, const gpu::Texture& target,
           const gpu::ClearColor& background) {
    auto encoder = commands.renderCommandEncoder(
        {.color = {.texture = &target, .load = gpu::LoadAction::clear, .clear = background}});
    if (encoder)
        encoder->endEncoding();
    return encoder.has_value();
}

bool copy(gpu::CommandBuffer& commands, const gpu::Texture& source, const gpu::Texture& target,
          const FrameLayout::Area& area) {
    auto encoder = commands.blitCommandEncoder();
    if (!encoder)
        return false;
    encoder->copy(source, {.width = source.width(), .height = source.height()}, target,
                  static_cast<std::uint32_t>(area.x), static_cast<std::uint32_t>(area.y));
    encoder->endEncoding();
    return true;
}

} // namespace

SegmentPictures::SegmentPictures(const ExportSegment& segment, const Stage& stage)
    : segment_(segment), stage_(stage),
      area_(segment.layout ? segment.layout->picture : whole(stage.frame)),
      background_(segment.layout ? segment.layout->background : gpu::ClearColor()) {
    const ShaderProgram& program = *segment.program;
    if (program.needsRun())
        run_ = ShaderRun::make(segment.program, stage.device, area_.width, area_.height);
    if (program.usesInputs())
        feedback_ = FeedbackFrames::make(stage.device, area_.width, area_.height,
                                         ShaderProgram::pixelFormat);
    if (run_)
        run_->setValuesAt(segment.valuesAt);
    if (program.needsRun() != (run_ != nullptr) || program.usesInputs() != (feedback_ != nullptr))
        throw ExportError(ExportError::Setup{
            ShaderRun::absence(program, stage.device, area_.width, area_.height)});
}

double SegmentPictures::time(std::int64_t frame) const {
    return segment_.start + static_cast<double>(frame) / static_cast<double>(stage_.fps);
}

// The frame's number is that of a playback from time 0 on.
TWUniforms SegmentPictures::uniforms(double time) const {
    constexpr double greatest = std::numeric_limits<std::uint32_t>::max();
    const auto width = static_cast<float>(area_.width);
    const auto height = static_cast<float>(area_.height);
    const auto fps = static_cast<double>(stage_.fps);
    return {.resolution = {width, height},
            .time = static_cast<float>(time),
            .timeDelta = static_cast<float>(1 / fps),
            .mouse = {width * 0.5f, height * 0.5f},
            .frame = static_cast<std::uint32_t>(std::clamp(std::round(time * fps), 0.0, greatest))};
}

bool SegmentPictures::warm(std::int64_t frame, const std::function<void()>& afterEach) {
    return !run_ || run_->warm(static_cast<float>(time(frame)), stage_.queue, segment_.values, {},
                               afterEach);
}

bool SegmentPictures::encode(gpu::CommandBuffer& commands, const gpu::Texture& target,
                             std::int64_t frame, const Watermark* watermark) {
    const double at = time(frame);
    const ParamValues values = segment_.valuesAt ? segment_.valuesAt(at) : segment_.values;
    const ShaderInputs inputs = segment_.inputsAt ? segment_.inputsAt(at) : ShaderInputs::none();
    const TWUniforms record = uniforms(at);
    if (run_)
        run_->prepare(record, commands, values, ParticleSimulation::noLimit);
    const gpu::Texture* overlay = overlayAt(at);
    return feedback_
               ? encodeThroughFeedback(commands, target, record, values, inputs, overlay, watermark)
               : encodeDirectly(commands, target, record, values, inputs, overlay, watermark);
}

bool SegmentPictures::encodeDirectly(gpu::CommandBuffer& commands, const gpu::Texture& target,
                                     const TWUniforms& uniforms, const ParamValues& values,
                                     const ShaderInputs& inputs, const gpu::Texture* overlay,
                                     const Watermark* watermark) const {
    auto encoder = commands.renderCommandEncoder(
        {.color = {.texture = &target, .load = gpu::LoadAction::clear, .clear = background_}});
    if (!encoder)
        return false;
    enter(*encoder, area_);
    segment_.program->draw(*encoder, uniforms, values, run_.get(), &inputs);
    drawOver(*encoder, overlay, watermark);
    encoder->endEncoding();
    return true;
}

// The program's picture is drawn apart, since the next frame is to see it bare.
bool SegmentPictures::encodeThroughFeedback(gpu::CommandBuffer& commands,
                                            const gpu::Texture& target, const TWUniforms& uniforms,
                                            const ParamValues& values, const ShaderInputs& inputs,
                                            const gpu::Texture* overlay,
                                            const Watermark* watermark) {
    ShaderInputs seen = inputs;
    if (seen.previous == nullptr)
        seen.previous = feedback_->previous();
    auto picture = commands.renderCommandEncoder(
        {.color = {.texture = &feedback_->current(), .load = gpu::LoadAction::clear}});
    if (!picture)
        return false;
    segment_.program->draw(*picture, uniforms, values, run_.get(), &seen);
    picture->endEncoding();
    if (segment_.layout && !clear(commands, target, background_))
        return false;
    if (!copy(commands, feedback_->current(), target, area_))
        return false;
    feedback_->advance();
    if (overlay == nullptr && watermark == nullptr)
        return true;
    auto over = commands.renderCommandEncoder(
        {.color = {.texture = &target, .load = gpu::LoadAction::load}});
    if (!over)
        return false;
    drawOver(*over, overlay, watermark);
    over->endEncoding();
    return true;
}

const gpu::Texture* SegmentPictures::overlayAt(double time) const {
    if (!segment_.layout)
        return nullptr;
    const FrameLayout& layout = *segment_.layout;
    const std::int64_t index =
        layout.overlayIndexAt ? layout.overlayIndexAt(time) : layout.overlayIndex;
    const bool isThere = index >= 0 && index < std::ssize(layout.overlays);
    return isThere ? layout.overlays[static_cast<std::size_t>(index)].get() : nullptr;
}

void SegmentPictures::drawOver(gpu::RenderCommandEncoder& encoder, const gpu::Texture* overlay,
                               const Watermark* watermark) const {
    enter(encoder, whole(stage_.frame));
    if (overlay != nullptr)
        stage_.overlay->draw(encoder, *overlay);
    if (watermark != nullptr)
        watermark->draw(encoder, stage_.frame.width, stage_.frame.height);
}

bool SegmentPictures::hitLoopBudget() const {
    return run_ && run_->simulation() && run_->simulation()->hitLoopBudget();
}

} // namespace tarnwick
