#include "TarnwickRender/LoopFinder.h"

#include "TarnwickRender/Stills.h"

#include <algorithm>
#include <cmath>

namespace tarnwick {
namespace {

// The sum of squared differences: an integer, exact in a double.
double squaredDistance(const Picture& one, const Picture& other) {
    const std::size_t count = std::min(one.bytes.size(), other.bytes.size());
    std::uint64_t sum = 0;
    for (std::size_t at = 0; at < count; ++at) {
        const int difference = int{one.bytes[at]} - int{other.bytes[at]};
        sum += static_cast<std::uint64_t>(difference * difference);
    }
    return static_cast<double>(sum);
}

// Two consecutive frames. The second is often the first of the next pair.
class FramePair {
  public:
    FramePair(Stills& stills, const Timeline& timeline, FrameInputs* inputs)
        : stills_(stills), timeline_(timeline), inputs_(inputs) {}

    const Picture& first() const { return first_; }
    const Picture& second() const { return second_; }

    bool render(double firstTime, double secondTime) {
        if (secondIsThere_ && secondTime_ == static_cast<float>(firstTime))
            std::swap(first_, second_);
        else if (!renderOne(firstTime, first_)) {
            secondIsThere_ = false;
            return false;
        }
        secondTime_ = static_cast<float>(secondTime);
        secondIsThere_ = renderOne(secondTime, second_);
        return secondIsThere_;
    }

  private:
    bool renderOne(double time, Picture& picture) {
        ShaderInputs inputs = ShaderInputs::none();
        if (inputs_ != nullptr)
            inputs.channels = inputs_->channels(time);
        return stills_.render(static_cast<float>(time), 0, timeline_.at(time).values, picture,
                              nullptr, inputs);
    }

    Stills& stills_;
    const Timeline& timeline_;
    FrameInputs* inputs_; // null: silence and black
    Picture first_, second_;
    float secondTime_ = 0; // seconds
    bool secondIsThere_ = false;
};

// The lengths to try, in seconds: from `first` up to `limit` by `step`.
struct Lengths {
    double step, first, limit;

    static std::optional<Lengths> of(double around, double range, std::int64_t fps) {
        if (fps < 1 || !std::isfinite(around) || !std::isfinite(range))
            return std::nullopt;
        const double step = 1 / static_cast<double>(fps);
        const Lengths lengths{step, step * std::round(std::max(2 * step, around - range) / step),
                              around + range + 1e-9};
        // One more frame must change a length, else the search never ends.
        const bool canBeTried = lengths.first <= lengths.limit && lengths.limit < 9e15 * step;
        return canBeTried ? std::optional(lengths) : std::nullopt;
    }
    std::int64_t count() const { return static_cast<std::int64_t>((limit - first) / step) + 1; }
};

} // namespace

std::optional<FoundLoop> LoopFinder::best(const std::shared_ptr<const ShaderProgram>& program,
                                          gpu::Device& device, const Timeline& timeline,
                                          double start, double around, double range,
                                          std::int64_t fps, const Progress& progress,
                                          FrameInputs* inputs) {
    // Stills cannot judge a program that keeps state.
    const auto lengths = program->needsRun() ? std::nullopt : Lengths::of(around, range, fps);
    const auto stills = lengths ? Stills::make(program, device, stillWidth, stillHeight) : nullptr;
    if (!stills || !std::isfinite(start))
        return std::nullopt;
    const double step = lengths->step;
    FramePair begin(*stills, timeline, inputs), end(*stills, timeline, inputs);
    if (!begin.render(start, start + step))
        return std::nullopt;
    std::optional<double> bestScore;
    double best = 0;
    std::int64_t done = 0;
    for (double length = lengths->first; length <= lengths->limit; length += step) {
        if (progress && !progress(done++, lengths->count()))
            return std::nullopt;
        if (!end.render(start + length, start + length + step))
            continue;
        const double score = squaredDistance(begin.first(), end.first()) +
                             squaredDistance(begin.second(), end.second());
        if (!bestScore || score < *bestScore) {
            bestScore = score;
            best = length;
        }
    }
    if (!bestScore)
        return std::nullopt;
    constexpr auto values8Bit = static_cast<double>(2 * 4 * stillWidth * stillHeight);
    const auto rate = static_cast<double>(fps);
    return FoundLoop{.length = std::round(best * rate) / rate,
                     .difference = std::sqrt(*bestScore / values8Bit)};
}

std::optional<double> LoopFinder::bestLength(const std::shared_ptr<const ShaderProgram>& program,
                                             gpu::Device& device, const ParamValues& values,
                                             double start, double around, double range,
                                             std::int64_t fps, const Progress& progress) {
    const auto found =
        best(program, device, Settings{.values = values}, start, around, range, fps, progress);
    return found ? std::optional(found->length) : std::nullopt;
}

} // namespace tarnwick
