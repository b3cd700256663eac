#include "TarnwickGPU/Vulkan/Submissions.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cstdlib>
#include <utility>

namespace tarnwick::gpu {

namespace {

constexpr std::size_t mostSignals = 8;
// Nanoseconds between two looks whether the device was lost before all of its work was submitted.
constexpr std::uint64_t longestLook = 100'000'000;

VkSemaphoreSubmitInfo signalInfo(VkSemaphore semaphore, std::uint64_t value) {
    return {.sType = VK_STRUCTURE_TYPE_SEMAPHORE_SUBMIT_INFO,
            .semaphore = semaphore,
            .value = value,
            .stageMask = VK_PIPELINE_STAGE_2_ALL_COMMANDS_BIT};
}

// The submission at which the next device is lost; 0: never. "N", or "N:COUNT" for the first COUNT
// devices of the process.
std::uint64_t wantedLoss() {
    const char* wanted = std::getenv("TARNWICK_LOSE_DEVICE");
    if (wanted == nullptr)
        return 0;
    char* end = nullptr;
    const std::uint64_t number = std::strtoull(wanted, &end, 10);
    static std::atomic<std::uint64_t> devices = 0;
    const bool isSpared = *end == ':' && devices++ >= std::strtoull(end + 1, nullptr, 10);
    return isSpared ? 0 : number;
}

VkResult submitTo(VkQueue queue, VkCommandBuffer commands,
                  std::span<const VkSemaphoreSubmitInfo> waits,
                  std::span<const VkSemaphoreSubmitInfo> signals) {
    const VkCommandBufferSubmitInfo buffer{.sType = VK_STRUCTURE_TYPE_COMMAND_BUFFER_SUBMIT_INFO,
                                           .commandBuffer = commands};
    const VkSubmitInfo2 info{.sType = VK_STRUCTURE_TYPE_SUBMIT_INFO_2,
                             .waitSemaphoreInfoCount = static_cast<std::uint32_t>(waits.size()),
                             .pWaitSemaphoreInfos = waits.data(),
                             .commandBufferInfoCount = 1,
                             .pCommandBufferInfos = &buffer,
                             .signalSemaphoreInfoCount = static_cast<std::uint32_t>(signals.size()),
                             .pSignalSemaphoreInfos = signals.data()};
    return vkQueueSubmit2(queue, 1, &info, VK_NULL_HANDLE);
}

} // namespace

bool Submissions::start(VkDevice device, std::uint32_t queueFamily, std::uint32_t queueCount) {
    device_ = device;
    queueCount_ = queueCount;
    untilLoss_ = wantedLoss();
    const VkSemaphoreTypeCreateInfo type{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_TYPE_CREATE_INFO,
                                         .semaphoreType = VK_SEMAPHORE_TYPE_TIMELINE};
    const VkSemaphoreCreateInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_CREATE_INFO,
                                     .pNext = &type};
    for (std::uint32_t lane = 0; lane < laneCount; ++lane) {
        Track& track = tracks_[lane];
        vkGetDeviceQueue(device, queueFamily, std::min(lane, queueCount - 1), &track.queue);
        if (vkCreateSemaphore(device, &info, nullptr, &track.timeline) != VK_SUCCESS ||
            vkCreateSemaphore(device, &info, nullptr, &feeders_[lane].pieces) != VK_SUCCESS)
            return false;
    }
    return true;
}

void Submissions::finish() {
    {
        std::lock_guard lock(mutex_);
        isEnding_ = true;
    }
    changes_.notify_all();
    for (Feeder& feeder : feeders_)
        if (feeder.thread.joinable())
            feeder.thread.join();
}

void Submissions::stop() {
    for (std::size_t lane = 0; lane < laneCount; ++lane)
        for (VkSemaphore* one : {&tracks_[lane].timeline, &feeders_[lane].pieces})
            vkDestroySemaphore(device_, std::exchange(*one, VK_NULL_HANDLE), nullptr);
}

Submissions::Feeder& Submissions::feederOf(Lane lane) {
    return feeders_[std::min<std::size_t>(static_cast<std::size_t>(lane), queueCount_ - 1)];
}

// Whether the device is lost, now by the wish of the environment. Locked.
bool Submissions::takeLoss() {
    if (untilLoss_ > 0 && --untilLoss_ == 0)
        note(VK_ERROR_DEVICE_LOST);
    return isLost();
}

// Locked.
std::uint64_t Submissions::takeNumber(Lane lane) {
    const auto index = static_cast<std::uint64_t>(lane);
    const std::uint64_t number =
        (last_.load(std::memory_order_relaxed) / laneCount + 1) * laneCount + index;
    tracks_[index].last.store(number, std::memory_order_release);
    last_.store(number, std::memory_order_release);
    return number;
}

std::optional<std::uint64_t> Submissions::submit(Lane lane, VkCommandBuffer commands,
                                                 std::span<const VkSemaphoreSubmitInfo> waits,
                                                 std::span<const VkSemaphore> signals) {
    precondition(signals.size() < mostSignals, "a submission signals at most 7 semaphores",
                 "semaphores", signals.size());
    if (isLost())
        return std::nullopt;
    std::unique_lock lock(mutex_);
    Feeder& feeder = feederOf(lane);
    if (!signals.empty())
        changes_.wait(lock, [&] { return feeder.jobs.empty(); });
    if (takeLoss())
        return std::nullopt;
    if (!feeder.jobs.empty()) {
        const std::uint64_t number = takeNumber(lane);
        enqueue(feeder, {.number = number,
                         .commands = commands,
                         .work = nullptr,
                         .waits = {waits.begin(), waits.end()}});
        return number;
    }
    const std::uint64_t before = last_.load(std::memory_order_relaxed);
    Track& track = tracks_[static_cast<std::size_t>(lane)];
    const std::uint64_t beforeOfLane = track.last.load(std::memory_order_relaxed);
    const std::uint64_t number = takeNumber(lane);
    std::array<VkSemaphoreSubmitInfo, mostSignals> signalInfos;
    std::size_t signalCount = 0;
    signalInfos[signalCount++] = signalInfo(track.timeline, number);
    for (VkSemaphore signal : signals)
        signalInfos[signalCount++] = signalInfo(signal, 0);
    const VkResult result =
        submitTo(track.queue, commands, waits, {signalInfos.data(), signalCount});
    note(result);
    if (result == VK_SUCCESS)
        return number;
    track.last.store(beforeOfLane, std::memory_order_release);
    last_.store(before, std::memory_order_release);
    return std::nullopt;
}

std::optional<std::uint64_t> Submissions::submit(Lane lane, std::shared_ptr<PiecewiseWork> work,
                                                 std::span<const VkSemaphoreSubmitInfo> waits) {
    std::lock_guard lock(mutex_);
    if (isLost() || takeLoss())
        return std::nullopt;
    const std::uint64_t number = takeNumber(lane);
    enqueue(feederOf(lane),
            {.number = number, .work = std::move(work), .waits = {waits.begin(), waits.end()}});
    return number;
}

// Locked.
void Submissions::enqueue(Feeder& feeder, Job job) {
    feeder.jobs.push_back(std::make_shared<Job>(std::move(job)));
    if (!feeder.thread.joinable())
        feeder.thread = std::thread([this, &feeder] { feed(feeder); });
    changes_.notify_all();
}

void Submissions::abandon(std::uint64_t submission) {
    std::lock_guard lock(mutex_);
    for (Feeder& feeder : feeders_)
        for (const std::shared_ptr<Job>& job : feeder.jobs)
            if (job->number == submission)
                job->isAbandoned = true;
}

// The thread of a feeder.
void Submissions::feed(Feeder& feeder) {
    while (true) {
        std::shared_ptr<Job> job;
        {
            std::unique_lock lock(mutex_);
            if (isLost()) {
                feeder.jobs.clear();
                changes_.notify_all();
            }
            changes_.wait(lock, [&] { return isEnding_ || !feeder.jobs.empty(); });
            if (feeder.jobs.empty())
                return;
            job = feeder.jobs.front();
        }
        if (!isLost())
            run(feeder, *job);
    }
}

// Submits the job, takes it out of the jobs with its last piece, and waits for that.
void Submissions::run(Feeder& feeder, Job& job) {
    using Clock = std::chrono::steady_clock;
    for (bool isLast = false; !isLast;) {
        const auto piece = nextPiece(job);
        if (!piece)
            return note(VK_ERROR_DEVICE_LOST); // without this work nothing after it is right
        isLast = piece->isLast;
        if (job.work)
            pieces_.fetch_add(1, std::memory_order_relaxed);
        const Clock::time_point begin = Clock::now();
        if (!submitPiece(feeder, job, *piece) || !waitForPiece(feeder))
            return note(VK_ERROR_DEVICE_LOST);
        const double seconds = std::chrono::duration<double>(Clock::now() - begin).count();
        longestPiece_.store(std::max(seconds, longestPiece()), std::memory_order_relaxed);
        if (job.work)
            job.work->took(seconds);
    }
}

std::optional<PiecewiseWork::Piece> Submissions::nextPiece(const Job& job) {
    if (!job.work)
        return PiecewiseWork::Piece{.commands = job.commands, .isLast = true};
    bool isAbandoned;
    {
        std::lock_guard lock(mutex_);
        isAbandoned = job.isAbandoned || isEnding_;
    }
    return job.work->next(isAbandoned ? WorkLeft::omitted : WorkLeft::done);
}

bool Submissions::submitPiece(Feeder& feeder, Job& job, const PiecewiseWork::Piece& piece) {
    std::lock_guard lock(mutex_);
    if (isLost())
        return false;
    Track& track = trackOf(job.number);
    const std::array signals{signalInfo(feeder.pieces, ++feeder.pieceCount),
                             signalInfo(track.timeline, job.number)};
    feeder.inSubmission = piece.isLast ? job.number : 0;
    const VkResult result = submitTo(track.queue, piece.commands, std::exchange(job.waits, {}),
                                     std::span(signals).first(piece.isLast ? signals.size() : 1));
    feeder.inSubmission = 0;
    if (result != VK_SUCCESS)
        return false;
    if (piece.isLast) {
        feeder.jobs.pop_front();
        changes_.notify_all();
    }
    return true;
}

bool Submissions::waitForPiece(const Feeder& feeder) {
    const VkSemaphoreWaitInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_WAIT_INFO,
                                   .semaphoreCount = 1,
                                   .pSemaphores = &feeder.pieces,
                                   .pValues = &feeder.pieceCount};
    return vkWaitSemaphores(device_, &info, UINT64_MAX) == VK_SUCCESS;
}

VkResult Submissions::present(const VkPresentInfoKHR& info) {
    std::lock_guard lock(mutex_);
    const VkResult result = vkQueuePresentKHR(trackOf(0).queue, &info);
    note(result);
    return result;
}

std::uint64_t Submissions::valueOf(const Track& track) {
    std::uint64_t value = 0;
    note(vkGetSemaphoreCounterValue(device_, track.timeline, &value));
    return value;
}

// Reads the number of the last submission first: a lane that is idle after that has finished its
// part of all submissions up to that number.
std::uint64_t Submissions::completed() {
    std::uint64_t done = last();
    for (const Track& track : tracks_) {
        const std::uint64_t submitted = track.last.load(std::memory_order_acquire);
        const std::uint64_t value = valueOf(track);
        if (value < submitted)
            done = std::min(done, value);
    }
    for (const Feeder& feeder : feeders_)
        if (const std::uint64_t number = feeder.inSubmission; number != 0)
            done = std::min(done, number - 1);
    return done;
}

bool Submissions::isDone(std::uint64_t submission) {
    return valueOf(trackOf(submission)) >= submission &&
           std::ranges::none_of(feeders_, [submission](const Feeder& one) {
               return one.inSubmission == submission;
           });
}

// A device that is lost before all pieces were submitted never reaches the number.
bool Submissions::wait(std::uint64_t submission, std::uint64_t nanoseconds) {
    const VkSemaphoreWaitInfo info{.sType = VK_STRUCTURE_TYPE_SEMAPHORE_WAIT_INFO,
                                   .semaphoreCount = 1,
                                   .pSemaphores = &trackOf(submission).timeline,
                                   .pValues = &submission};
    VkResult result = VK_TIMEOUT;
    while (result == VK_TIMEOUT && !isLost()) {
        const std::uint64_t step = std::min(nanoseconds, longestLook);
        result = vkWaitSemaphores(device_, &info, step);
        note(result);
        nanoseconds -= step;
        if (nanoseconds == 0)
            break;
    }
    if (result == VK_SUCCESS)
        std::lock_guard<std::mutex>{mutex_}; // until vkQueueSubmit2 has returned
    return result == VK_SUCCESS && !isLost();
}

void Submissions::waitIdle() {
    std::unique_lock lock(mutex_);
    changes_.wait(lock, [&] {
        return std::ranges::all_of(feeders_, [](const Feeder& one) { return one.jobs.empty(); });
    });
    note(vkQueueWaitIdle(trackOf(0).queue));
}

void Submissions::note(VkResult result) {
    if (result == VK_ERROR_DEVICE_LOST)
        lost_.store(true, std::memory_order_relaxed);
}

} // namespace tarnwick::gpu
