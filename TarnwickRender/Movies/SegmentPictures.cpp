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

FrameLayout::Area whole(const PixelSize& frame) {
    return {.width = frame.width, .height = frame.height};
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
    if (segment.timeline.performance())
        performed_ = PerformedFrames::make(segment.program, stage.device, area_.width, area_.height,
                                           segment.timeline, segment.inputs);
    else
        frames_ = ProgramFrames::make(segment.program, stage.device, area_.width, area_.height,
                                      valuesOverTime(segment.timeline.settings()));
    if (frames_ && program.usesInputs())
        feedback_ = FeedbackFrames::make(stage.device, area_.width, area_.height,
                                         ShaderProgram::pixelFormat);
    const bool isWhole = frames_ && program.usesInputs() == (feedback_ != nullptr);
    if (!performed_ && !isWhole)
        throw ExportError(ExportError::Setup{
            ProgramFrames::absence(program, stage.device, area_.width, area_.height)});
}

double SegmentPictures::time(std::int64_t frame) const {
    return segment_.start + static_cast<double>(frame) / static_cast<double>(stage_.fps);
}

// The frame's number counts from time 0.
FrameMoment SegmentPictures::moment(double time) const {
    constexpr double greatest = std::numeric_limits<std::uint32_t>::max();
    const auto fps = static_cast<double>(stage_.fps);
    return {.time = static_cast<float>(time),
            .timeDelta = static_cast<float>(1 / fps),
            .frame = static_cast<std::uint32_t>(std::clamp(std::round(time * fps), 0.0, greatest))};
}

bool SegmentPictures::warm(std::int64_t frame, const std::function<void()>& afterEach) {
    return performed_ || frames_->warm(static_cast<float>(time(frame)), stage_.queue,
                                       segment_.timeline.settings().values, afterEach);
}

void SegmentPictures::prepare(std::int64_t frame, const std::function<void()>& afterEach) {
    while (performed_ && performed_->prepare(time(frame), stage_.queue))
        afterEach();
}

bool SegmentPictures::encode(gpu::CommandBuffer& commands, const gpu::Texture& target,
                             std::int64_t frame, const Watermark* watermark) {
    if (performed_)
        return performed_->encode(commands,
                                  passOver(target, overlayAt(performed_->time()), watermark));
    const double at = time(frame);
    const ParamValues values = segment_.timeline.at(at).values;
    const ShaderInputs inputs = inputsAt(at);
    const ProgramFrame drawn{.moment = moment(at), .values = values, .inputs = inputs};
    const gpu::Texture* overlay = overlayAt(at);
    return feedback_ ? encodeThroughFeedback(commands, target, drawn, overlay, watermark)
                     : encodeDirectly(commands, target, drawn, overlay, watermark);
}

// Levels are of the sound with the base values throughout.
ShaderInputs SegmentPictures::inputsAt(double time) const {
    if (!segment_.inputs || !segment_.program->usesInputs())
        return ShaderInputs::none();
    ShaderInputs inputs = segment_.inputs->inputs(
        time, segment_.soundValues ? *segment_.soundValues : segment_.timeline.settings().values);
    inputs.channels = segment_.inputs->channels(time);
    return inputs;
}

// The pass that draws the program's picture into its area.
FramePass SegmentPictures::passOver(const gpu::Texture& target, const gpu::Texture* overlay,
                                    const Watermark* watermark) const {
    using Encoder = gpu::RenderCommandEncoder;
    return {.descriptor = {.color = {.texture = &target,
                                     .load = gpu::LoadAction::clear,
                                     .clear = background_}},
            .before = [this](Encoder& encoder) { enter(encoder, area_); },
            .after = [this, overlay,
                      watermark](Encoder& encoder) { drawOver(encoder, overlay, watermark); }};
}

bool SegmentPictures::encodeDirectly(gpu::CommandBuffer& commands, const gpu::Texture& target,
                                     const ProgramFrame& frame, const gpu::Texture* overlay,
                                     const Watermark* watermark) const {
    return frames_->encode(commands, frame, passOver(target, overlay, watermark));
}

// The program's picture has a texture of its own, which the next frame reads without overlays.
bool SegmentPictures::encodeThroughFeedback(gpu::CommandBuffer& commands,
                                            const gpu::Texture& target, const ProgramFrame& frame,
                                            const gpu::Texture* overlay,
                                            const Watermark* watermark) {
    ShaderInputs seen = frame.inputs;
    seen.previous = feedback_->previous();
    const gpu::RenderPassDescriptor apart{
        .color = {.texture = &feedback_->current(), .load = gpu::LoadAction::clear}};
    if (!frames_->encode(commands, {.moment = frame.moment, .values = frame.values, .inputs = seen},
                         {.descriptor = apart}))
        return false;
    const gpu::RenderPassDescriptor clearing{
        .color = {.texture = &target, .load = gpu::LoadAction::clear, .clear = background_}};
    if (segment_.layout && !encodeClearing(commands, clearing))
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

} // namespace tarnwick
