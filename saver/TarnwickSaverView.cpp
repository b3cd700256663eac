#include "saver/TarnwickSaverView.h"

#include "TarnwickPlatform/Bundle/TextFile.h"
#include "TarnwickPlatform/Text/Text.h"
#include "TarnwickRender/Channels/EpisodeInputs.h"
#include "saver/CompileError.h"
#include "saver/SaverChannels.h"

#include <algorithm>

namespace tarnwick {
namespace {

constexpr double longestStep = 0.1;     // seconds; no jump after the machine slept
constexpr double framesPerSecond = 30;  // of the episode's `frame` and `timeDelta`
constexpr double lossInterval = 60;     // seconds; a device that is lost again sooner stays so
constexpr int mostStepsPerFrame = 4;    // of a particle episode that lags behind
constexpr double failureBandInset = 40; // points, left and right
constexpr double failureBandHalf = 40;  // points, above and below the middle

} // namespace

TarnwickSaverView::TarnwickSaverView(const Rectangle& frame, ScreenKind kind, const Bundle& bundle,
                                     HostClock hostClock, const SaverChoices& choices)
    : ScreenSaverView(frame, kind), bundle_(bundle), choices_(choices),
      hostClock_(std::move(hostClock)) {
    setAnimationTimeInterval(1 / framesPerSecond);
    setUp();
}

void TarnwickSaverView::setUp() {
    std::shared_ptr<gpu::Device> device = gpu::Device::systemDefault();
    if (!device) {
        failure_ = "No Metal device.";
        if (!gpu::allDevices().empty())
            *failure_ += " " + gpu::Device::absence();
        return;
    }
    const auto shader = bundle_.pathForResource("shader", "metal", "Shader");
    auto source = shader ? fileText(*shader) : std::nullopt;
    if (!source) {
        failure_ = "The saver has no shader in it.";
        return;
    }
    readSettings(bundle_);
    setParams(choices_.params);
    const Episode episode = Episode::of(*std::move(source));
    try {
        program_ = ShaderProgram::compile(episode, *device, gpu::PixelFormat::bgra8Unorm);
    } catch (const ShaderError& error) {
        failure_ = "The shader didn't compile: " + compileErrorText(episode, error);
        return;
    } catch (const std::exception& error) {
        failure_ = std::string("The shader didn't compile: ") + error.what();
        return;
    }
    fitSettings();
    if (program_->usesInputs())
        channels_ = bundledChannels(bundle_, *device, settingsRemarks_);
    queue_ = device->newCommandQueue();
    addMetalView(std::move(device), choices_.longestFrame);
}

bool TarnwickSaverView::hasLostDevice() const {
    return !failure_ && metal_ && metal_->device()->isLost();
}

// What needs the device goes before it.
void TarnwickSaverView::reopen() {
    const double now = hostClock_();
    const bool isAgain = loss_ && now - *loss_ < lossInterval;
    loss_ = now;
    removeSubview();
    frames_.reset();
    inputs_.reset();
    channels_ = {};
    queue_.reset();
    program_.reset();
    metal_.reset();
    settings_ = {};
    settingsRemarks_.clear();
    if (isAgain)
        failure_ = "The device was lost twice within a minute while it drew this episode.";
    else
        setUp();
}

void TarnwickSaverView::readSettings(const Bundle& bundle) {
    const auto document = bundle.pathForResource("saver", "json", "Shader");
    if (!document)
        return;
    const std::string sentence = "The settings cannot be read, so the defaults are used";
    const auto text = fileBytes(*document);
    if (!text) {
        settingsRemarks_.push_back(sentence + ".");
        return;
    }
    try {
        settings_ = Settings::decode(*text);
    } catch (const DocumentError& error) {
        settingsRemarks_.push_back(sentence + ": " + error.what());
    }
}

void TarnwickSaverView::setParams(const ParamValues& params) {
    for (const auto& [name, value] : params) {
        settings_.values[name] = value;
        settings_.keys.clear(name);
    }
}

void TarnwickSaverView::fitSettings() {
    const std::vector<ParamDecl>& params = program_->params();
    const std::vector<std::string> misfits = settings_.misfits(params, "The episode");
    settingsRemarks_.insert(settingsRemarks_.end(), misfits.begin(), misfits.end());
    settings_ = settings_.fitted(params);
}

void TarnwickSaverView::addMetalView(std::shared_ptr<gpu::Device> device, double longestFrame) {
    metal_ = std::make_unique<MTKView>(bounds(), std::move(device));
    metal_->autoresizingMask = {.widthSizable = true, .heightSizable = true};
    metal_->colorPixelFormat = gpu::PixelFormat::bgra8Unorm;
    metal_->colorspace = ColorSpace::sRGB;
    metal_->preferredFramesPerSecond = isPreview() ? 15 : 30;
    metal_->longestFrame = longestFrame;
    metal_->delegate = this;
    addSubview(*metal_);
}

void TarnwickSaverView::judgeFrames() {
    if (failure_ || !metal_ || !metal_->framesTakeTooLong())
        return;
    failure_ = "The shader takes too long.";
    metal_->abandonFrames();
    removeSubview(); // which lives until its frames are drawn
}

void TarnwickSaverView::mtkViewDrawableSizeWillChange(MTKView&, const PixelSize&) {
    hasNewSize_ = true;
}

void TarnwickSaverView::drawInMTKView(MTKView& view) {
    if (!program_ || !queue_)
        return;
    // New pictures of channels, and particles for a picture of another size, are written only while
    // no frame reads the last ones.
    const bool isContinued = hasNewSize_ && frames_ && frames_->simulation() != nullptr;
    if ((inputs_ || isContinued) && !view.waitUntilDrawn(longestStep))
        return;
    const auto pass = view.currentRenderPassDescriptor();
    const gpu::Texture* drawable = view.currentDrawable();
    auto commands = queue_->commandBuffer();
    if (!pass || drawable == nullptr || !commands)
        return;
    advanceClock();
    fitFrames(view.device(), *drawable);
    const ParamValues values = settings_.valuesAt(clock_);
    const ShaderInputs seen = inputs();
    const ProgramFrame frame{
        .moment = moment(), .values = values, .inputs = seen, .stepLimit = mostStepsPerFrame};
    const bool isEncoded = frames_ ? frames_->encode(*commands, frame, {.descriptor = *pass})
                                   : encodeClearing(*commands, *pass);
    if (isEncoded)
        view.present(std::move(*commands));
}

void TarnwickSaverView::advanceClock() {
    const double now = hostClock_();
    clock_ += last_ ? std::min(now - *last_, longestStep) : 0;
    last_ = now;
}

// A saver hears silence.
ShaderInputs TarnwickSaverView::inputs() {
    ShaderInputs inputs = ShaderInputs::none();
    try {
        if (inputs_)
            inputs.channels = inputs_->channels(clock_);
    } catch (const InputError& error) {
        absence_ = error.what();
        inputs_.reset();
    }
    return inputs;
}

// A saver has no mouse pointer.
FrameMoment TarnwickSaverView::moment() const {
    return {.time = static_cast<float>(clock_),
            .timeDelta = static_cast<float>(1 / framesPerSecond),
            .frame = static_cast<std::uint32_t>(std::max(0.0, clock_ * framesPerSecond))};
}

// Particles go on at the new size.
void TarnwickSaverView::fitFrames(gpu::Device* device, const gpu::Texture& drawable) {
    hasNewSize_ = false;
    const std::int64_t width = drawable.width(), height = drawable.height();
    if (device == nullptr || (frames_ && frames_->width() == width && frames_->height() == height))
        return;
    auto frames = ProgramFrames::make(program_, *device, width, height, valuesOverTime(settings_));
    absence_.reset();
    if (!frames)
        absence_ = ProgramFrames::absence(*program_, *device, width, height);
    else if (frames_)
        frames->follow(*frames_, *device, *queue_); // else they start again
    frames_ = std::move(frames);
    fitInputs(*device, width, height);
}

// Channels with a state keep their size, because they would be computed from time 0 again.
void TarnwickSaverView::fitInputs(gpu::Device& device, std::int64_t width, std::int64_t height) {
    const bool hasChannels = std::ranges::any_of(channels_, [](const ChannelSource& source) {
        return source.episode || !source.file.empty();
    });
    if (!hasChannels || (inputs_ && keepState(channels_)))
        return;
    try {
        inputs_ = EpisodeInputs::make(program_, device, width, height, {.channels = channels_});
    } catch (const InputError& error) {
        absence_ = error.what();
    }
}

void TarnwickSaverView::drawRect(Picture& picture) const {
    std::ranges::fill(picture.bytes, std::uint8_t{0});
    if (!failure_)
        return;
    const Rectangle area = bounds();
    drawCenteredText(picture, *failure_, isPreview() ? 9 : 18,
                     {.x = failureBandInset,
                      .y = area.height / 2 - failureBandHalf,
                      .width = area.width - 2 * failureBandInset,
                      .height = 2 * failureBandHalf});
}

} // namespace tarnwick
