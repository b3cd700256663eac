#include "TarnwickRender/Performing/PerformedFrames.h"

#include "TarnwickRender/SoundTap.h"

#include <algorithm>
#include <array>
#include <utility>

namespace tarnwick {
namespace {

constexpr std::int64_t partOfWork = 60;   // frames of 1/60 s that prepare() computes at once
constexpr std::int64_t framesHeard = 120; // older levels of the sound have decayed
constexpr double frameSeconds = 1.0 / Transport::framesPerSecond;

double timeOf(std::int64_t frame) {
    return static_cast<double>(frame) * frameSeconds;
}

} // namespace

PerformedFrames::PerformedFrames(std::shared_ptr<const ShaderProgram> program,
                                 std::shared_ptr<const Performance> performance)
    : program_(std::move(program)), walk_(std::move(performance)) {}

std::unique_ptr<PerformedFrames> PerformedFrames::make(std::shared_ptr<const ShaderProgram> program,
                                                       gpu::Device& device, std::int64_t width,
                                                       std::int64_t height,
                                                       const Timeline& timeline,
                                                       std::shared_ptr<FrameInputs> inputs) {
    std::unique_ptr<PerformedFrames> made(
        new PerformedFrames(std::move(program), timeline.performed()));
    made->frames_ = ProgramFrames::make(
        made->program_, device, width, height,
        [frames = made.get()](double time) { return frames->settings_->valuesAt(time); });
    if (made->program_->readsPrevious())
        made->feedback_ = FeedbackFrames::make(device, width, height, ShaderProgram::pixelFormat);
    if (!made->frames_ || made->program_->readsPrevious() != (made->feedback_ != nullptr))
        return nullptr;
    if (made->program_->usesInputs()) {
        made->heard_ = inputs ? std::move(inputs) : SoundTap::make(made->program_, device);
        made->levels_ = LevelInputs::make(device);
        if (!made->levels_)
            return nullptr;
    }
    return made;
}

std::optional<PerformedFrames::Progress> PerformedFrames::prepare(double seconds,
                                                                  gpu::CommandQueue& queue) {
    if (seconds != std::exchange(seconds_, seconds))
        for (FramePassage& passage : walk_.advance(seconds)) {
            if (!passage.from) // what was ahead is computed again
                ahead_.clear();
            ahead_.push_back(std::move(passage));
        }
    std::int64_t limit = partOfWork;
    while (!ahead_.empty() && limit > 0 && !hasFailed_) {
        FramePassage& next = ahead_.front();
        const std::int64_t gone = go(next, limit, queue);
        limit -= gone;
        if (frame_ == next.to) {
            ahead_.pop_front();
            continue;
        }
        if (gone == 0 && !hasFailed_)
            break; // its inputs are not ready
        next.from = frame_;
        next.left = next.reached;
    }
    if (hasFailed_)
        return std::nullopt;
    if (!ahead_.empty())
        return Progress{frame_, ahead_.back().to};
    if (heard_) {
        use(walk_.controls());
        if (!heard_->prepareChannels(time()))
            return Progress{frame_, frame_};
    }
    return std::nullopt;
}

void PerformedFrames::start() {
    frames_->restart();
    if (feedback_)
        feedback_->reset();
    if (heard_)
        heard_->reset();
    frame_ = -1;
}

// Goes at most `limit` frames of the passage. Returns how many: 0 only if the inputs of the next
// one are not ready.
std::int64_t PerformedFrames::go(const FramePassage& passage, std::int64_t limit,
                                 gpu::CommandQueue& queue) {
    if (!passage.from)
        start();
    const std::int64_t first = frame_;
    const std::int64_t end = std::min(passage.to, first + limit);
    if (!program_->usesInputs()) {
        reach(end, passage.reached, queue);
        return end - first;
    }
    while (frame_ < end && !hasFailed_ && areReady(passage)) {
        if (frame_ >= 0)
            leave(controlsToLeave(passage), queue);
        reach(frame_ + 1, passage.reached, queue);
        hear(frame_, passage);
    }
    return frame_ - first;
}

const FrameControls& PerformedFrames::controlsToLeave(const FramePassage& passage) const {
    return frame_ == passage.from ? passage.left : passage.reached;
}

// Whether the inputs are there with which the present frame is left and the next one is heard.
bool PerformedFrames::areReady(const FramePassage& passage) {
    if (!heard_)
        return true;
    if (feedback_ && frame_ >= 0) {
        use(controlsToLeave(passage));
        if (!heard_->prepareChannels(timeOf(frame_)))
            return false;
    }
    if (!isHeard(frame_ + 1, passage))
        return true;
    use(passage.reached);
    return heard_->prepareSound(timeOf(frame_ + 1));
}

// Draws the frame for the next one to read.
void PerformedFrames::leave(const FrameControls& controls, gpu::CommandQueue& queue) {
    if (!feedback_)
        return;
    auto commands = queue.commandBuffer();
    const gpu::RenderPassDescriptor pass{
        .color = {.texture = &feedback_->current(), .load = gpu::LoadAction::clear}};
    hasFailed_ |= !commands || !encode(*commands, timeOf(frame_), controls, {.descriptor = pass});
    if (hasFailed_)
        return;
    commands->commit();
    commands->waitUntilCompleted();
    hasFailed_ |= commands->status() != gpu::CommandBufferStatus::completed;
    hitLoopBudget_ |= commands->hitLoopBudget();
    feedback_->advance();
}

// Does the steps up to the one of `frame`.
void PerformedFrames::reach(std::int64_t frame, const FrameControls& controls,
                            gpu::CommandQueue& queue) {
    settings_ = controls.settings;
    if (frames_->simulation() != nullptr)
        hasFailed_ |=
            !frames_->warm(static_cast<float>(timeOf(frame + 1)), queue, // the step before
                           settings_->valuesAt(timeOf(frame)), {}, mouse(controls));
    frame_ = frame;
}

void PerformedFrames::use(const FrameControls& controls) {
    if (std::exchange(used_, controls.inputs) != controls.inputs)
        heard_->use(*controls.inputs);
}

// Frames that only lead to the end of a jump are not heard unless they are drawn.
bool PerformedFrames::isHeard(std::int64_t frame, const FramePassage& passage) const {
    const bool isNear = feedback_ || !passage.isJump || passage.to - frame <= framesHeard;
    return heard_ && isNear && !passage.reached.heard.codes;
}

void PerformedFrames::hear(std::int64_t frame, const FramePassage& passage) {
    if (!isHeard(frame, passage))
        return;
    use(passage.reached);
    inputs_ = heard_->inputs(timeOf(frame), passage.reached.settings->values);
}

ShaderInputs PerformedFrames::seen(double time, const FrameControls& controls) {
    ShaderInputs inputs = inputs_;
    if (const LevelCodes* codes = controls.heard.codes.get(); codes != nullptr && levels_)
        inputs = levels_->inputs(codes->bandValues(), codes->spectrumValues());
    if (heard_) {
        use(controls);
        inputs.channels = heard_->channels(time);
    }
    inputs.previous = feedback_ ? feedback_->previous() : nullptr;
    return inputs;
}

double PerformedFrames::time() const {
    const double time = walk_.state().transport.timeAt(seconds_);
    const double nearest = timeOf(Transport::frameOf(time));
    // Single precision may round to another step than the one that the simulation is at.
    const bool isOther = frames_->simulation() != nullptr &&
                         ParticleSimulation::steps(static_cast<float>(time)) != frame_;
    return feedback_ || isOther ? nearest : time;
}

bool PerformedFrames::encode(gpu::CommandBuffer& commands, const FramePass& pass) {
    return !hasFailed_ && encode(commands, time(), walk_.controls(), pass);
}

bool PerformedFrames::encode(gpu::CommandBuffer& commands, double time,
                             const FrameControls& controls, const FramePass& pass) {
    settings_ = controls.settings;
    const ParamValues values = settings_->valuesAt(time);
    const ShaderInputs inputs = seen(time, controls);
    return frames_->encode(
        commands,
        {.moment = {.time = static_cast<float>(time),
                    .timeDelta = static_cast<float>(frameSeconds),
                    .frame = static_cast<std::uint32_t>(Transport::frameOf(time)),
                    .mouse = mouse(controls)},
         .values = values,
         .inputs = inputs,
         .stepLimit = 0}, // they are done
        pass);
}

FrameMoment::Mouse PerformedFrames::mouse(const FrameControls& controls) const {
    if (!controls.pointer)
        return std::nullopt;
    return std::array{(*controls.pointer)[0] * static_cast<float>(frames_->width()),
                      (*controls.pointer)[1] * static_cast<float>(frames_->height())};
}

} // namespace tarnwick
