#include "TarnwickPlatform/Net/Session/SessionLoop.h"

#include "TarnwickBase/Precondition.h"

#include <algorithm>
#include <signal.h>

namespace tarnwick {

namespace {

CURLM* newMulti() {
    static const CURLcode ready = curl_global_init(CURL_GLOBAL_DEFAULT);
    CURLM* multi = ready == CURLE_OK ? curl_multi_init() : nullptr;
    precondition(multi != nullptr, "the transfer library starts", "code", static_cast<int>(ready));
    return multi;
}

// Blocks all signals: the program's own threads handle them, and SIGPIPE of a lost TLS connection
// is ignored.
void holdSignals() {
    sigset_t all;
    sigfillset(&all);
    pthread_sigmask(SIG_SETMASK, &all, nullptr);
}

} // namespace

SessionLoop::SessionLoop(SessionConfiguration configuration)
    : configuration_(std::move(configuration)), multi_(newMulti()),
      waker_(std::make_shared<Waker>(multi_)), thread_([this] { run(); }) {}

SessionLoop::~SessionLoop() {
    precondition(std::this_thread::get_id() != thread_.get_id(),
                 "a session is not destroyed on its own thread, by a call of its delegate");
    {
        const std::scoped_lock lock(mutex_);
        isEnding_ = true;
    }
    waker_->wake();
    thread_.join();
    waker_->retire();
    curl_multi_cleanup(multi_);
}

void SessionLoop::add(std::unique_ptr<Transfer> transfer, std::stop_token stop) {
    {
        const std::scoped_lock lock(mutex_);
        arrivals_.push_back({std::move(transfer), std::move(stop)});
    }
    waker_->wake();
}

void SessionLoop::run() {
    holdSignals();
    while (takeArrivals()) {
        int running = 0;
        curl_multi_perform(multi_, &running);
        takeEnds();
        attend();
        std::erase_if(transfers_, [](const auto& transfer) { return transfer->isOver(); });
        curl_multi_poll(multi_, nullptr, 0, millisecondsToNextLook(), nullptr);
    }
    for (const auto& transfer : transfers_)
        transfer->fail(NetError(NetError::Kind::cancelled));
    transfers_.clear();
}

bool SessionLoop::takeArrivals() {
    std::vector<Arrival> arrivals;
    bool isEnding = false;
    {
        const std::scoped_lock lock(mutex_);
        arrivals.swap(arrivals_);
        isEnding = isEnding_;
    }
    for (Arrival& arrival : arrivals) {
        if (!isEnding)
            arrival.transfer->start(multi_, std::move(arrival.stop), waker_);
        transfers_.push_back(std::move(arrival.transfer));
    }
    return !isEnding;
}

void SessionLoop::takeEnds() {
    int waiting = 0;
    while (const CURLMsg* message = curl_multi_info_read(multi_, &waiting)) {
        const CURLcode code = message->data.result; // didEnd() frees the message
        const auto ended = std::ranges::find_if(
            transfers_, [&](const auto& each) { return each->owns(message->easy_handle); });
        if (message->msg == CURLMSG_DONE && ended != transfers_.end())
            (*ended)->didEnd(code);
    }
}

void SessionLoop::attend() {
    const auto now = Transfer::Clock::now();
    for (const auto& transfer : transfers_)
        transfer->attend(now);
}

int SessionLoop::millisecondsToNextLook() const {
    const auto now = Transfer::Clock::now();
    Transfer::Clock::duration rest =
        transfers_.empty() ? std::chrono::minutes(1) : WaitedTime::longestStep;
    for (const auto& transfer : transfers_)
        rest = std::min(rest, transfer->timeLeft(now));
    return std::max(0,
                    static_cast<int>(std::chrono::ceil<std::chrono::milliseconds>(rest).count()));
}

} // namespace tarnwick
