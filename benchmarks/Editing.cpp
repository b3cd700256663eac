#include "benchmarks/Editing.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "TarnwickRender/Targets/PictureTarget.h"
#include "benchmarks/Case.h"
#include "player/Compiling/LiveCompiler.h"
#include "player/Drawing/DrawingDevice.h"
#include "player/Drawing/LivePicture.h"

#include <algorithm>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <thread>

namespace tarnwick::bench {

namespace {

using namespace player;
using Clock = std::chrono::steady_clock;

constexpr PixelSize size{640, 360};
constexpr std::chrono::seconds longestEdit{60};
constexpr std::chrono::milliseconds typingPause{250}, playing{500}; // before an edit

double millisecondsBetween(Clock::time_point from, Clock::time_point to) {
    return std::chrono::duration<double, std::milli>(to - from).count();
}

// The text with `count` operations more on the colour that shade() returns last.
std::string edited(const std::string& text, int count) {
    const auto shade = text.find("\n}", text.find("float4 shade("));
    const auto begin = text.rfind("return ", shade);
    const auto end = text.find(';', begin);
    std::string added = text;
    for (int index = 0; index < count; index++)
        added.insert(end, index % 2 == 0 ? " * 0.9" : " + 0.1");
    return added;
}

// The player without its windows.
class Editing {
  public:
    Editing() : device_(openDrawingDevice()) {
        if (!device_)
            throw std::runtime_error(gpu::Device::absence());
        live_.show(record({}, std::nullopt));
        live_.addTarget(1, std::make_unique<PictureTarget>(*device_, size), size);
    }

    EditTime time(std::string text) {
        std::unique_lock lock(mutex_);
        revision_++;
        const auto begin = Clock::now();
        live_.show(record(result_, currentMediaTime()));
        compiler_.compile({.document = 1,
                           .revision = revision_,
                           .episode = std::make_shared<const Episode>(Episode::of(std::move(text))),
                           .device = device_});
        if (!changed_.wait_for(lock, longestEdit, [this] { return isDone(); }) || !result_.program)
            throw std::runtime_error("An edit gives no picture.");
        return {.compile = result_.compileSeconds * 1000,
                .pipelines = result_.pipelineSeconds * 1000,
                .picture = news_.firstDraw * 1000,
                .all = millisecondsBetween(begin, shown_)};
    }

    // The author types, and the old program plays; then comes a pause.
    void type() {
        live_.show(record(result_, currentMediaTime() + seconds(typingPause)));
        std::this_thread::sleep_for(typingPause);
    }

  private:
    static double seconds(std::chrono::milliseconds time) {
        return std::chrono::duration<double>(time).count();
    }
    bool isDone() const {
        return result_.revision == revision_ && (!result_.program || news_.revision == revision_);
    }
    std::shared_ptr<const LiveRecord> record(const CompileResult& result,
                                             std::optional<double> compilesAt) const {
        return std::make_shared<const LiveRecord>(
            LiveRecord{.device = device_,
                       .program = result.program,
                       .revision = result.revision,
                       .transport = Transport{}.played(begin_),
                       .settings = std::make_shared<const Settings>(),
                       .size = size,
                       .compilesAt = compilesAt});
    }
    void take(CompileResult result) {
        live_.show(record(result, std::nullopt));
        const std::lock_guard lock(mutex_);
        result_ = std::move(result);
        changed_.notify_all();
    }
    void hear(const LiveNews& news) {
        const std::lock_guard lock(mutex_);
        if (news.revision != news_.revision)
            shown_ = Clock::now();
        news_ = news;
        changed_.notify_all();
    }

    const double begin_ = currentMediaTime();
    std::shared_ptr<gpu::Device> device_;
    std::mutex mutex_; // of the next members
    std::condition_variable changed_;
    std::uint64_t revision_ = 0;
    CompileResult result_;
    LiveNews news_;
    Clock::time_point shown_;
    LivePicture live_{[this](const LiveNews& news) { hear(news); }};
    LiveCompiler compiler_{[this](CompileResult result) { take(std::move(result)); }};
};

} // namespace

std::vector<EditCase> editCases(const std::filesystem::path& episodes) {
    std::vector<EditCase> found;
    for (const auto& entry : std::filesystem::directory_iterator(episodes)) {
        if (entry.path().extension() != ".metal")
            continue;
        std::string text = fileText(entry.path());
        const auto lines = static_cast<int>(std::ranges::count(text, '\n'));
        found.push_back({"edit " + entry.path().stem().string(), std::move(text), lines});
    }
    std::ranges::sort(found, {}, &EditCase::name);
    return found;
}

std::vector<EditTime> editTimes(const EditCase& one, int rounds) {
    Editing editing;
    editing.time(one.text);
    std::vector<EditTime> times;
    for (int round = 1; round <= rounds; round++) {
        std::this_thread::sleep_for(playing);
        editing.type();
        times.push_back(editing.time(edited(one.text, round)));
    }
    return times;
}

} // namespace tarnwick::bench
