#include "TarnwickPlatform/Net/Session/Transfer.h"

#include "TarnwickBase/Precondition.h"
#include "TarnwickPlatform/Net/Session/Redirect.h"

#include <algorithm>

namespace tarnwick {

namespace {

URLRequest withHeaders(URLRequest request, const Headers& additional) {
    for (const Header& field : additional)
        if (!request.headers.find(field.name))
            request.headers.add(field.name, field.value);
    return request;
}

Transfer::Clock::duration timeOut(double seconds) {
    precondition(seconds > 0, "a timeout is above 0 s", "timeout", seconds);
    const std::chrono::duration<double> time(std::min(seconds, 1e9));
    return std::chrono::duration_cast<Transfer::Clock::duration>(time);
}

} // namespace

Transfer::Transfer(URLRequest request, std::shared_ptr<TaskDelegate> delegate,
                   std::shared_ptr<Receiver> receiver, const SessionConfiguration& configuration)
    : request_(withHeaders(std::move(request), configuration.additionalHeaders)),
      delegate_(std::move(delegate)), receiver_(std::move(receiver)), configuration_(configuration),
      timeout_(timeOut(request_.timeout.value_or(configuration.timeout))) {}

void Transfer::start(CURLM* multi, std::stop_token stop, std::shared_ptr<Waker> waker) {
    multi_ = multi;
    stop_ = std::move(stop);
    wakingAtStop_.emplace(stop_, [waker = std::move(waker)] { waker->wake(); });
    send();
}

void Transfer::send() {
    if (!canBeSent(request_))
        return fail(NetError(NetError::Kind::badRequest));
    exchange_ = std::make_unique<Exchange>(multi_, request_, configuration_, *this);
}

void Transfer::attend(Clock::time_point now) {
    if (isOver_)
        return;
    if (stop_.stop_requested() || receiver_->isCancelled())
        return fail(NetError(NetError::Kind::cancelled));
    if (timeLeft(now) <= Clock::duration::zero())
        return fail(NetError(NetError::Kind::timedOut));
    if (isHeldUp_ && receiver_->hasRoom()) {
        isHeldUp_ = false;
        if (const CURLcode code = exchange_->resume(); code != CURLE_OK)
            didEnd(code);
    }
}

void Transfer::didEnd(CURLcode code) {
    if (next_)
        return followRedirect();
    if (const auto error = exchange_->error(code))
        return fail(*error);
    exchange_->reportSent();
    exchange_.reset();
    isOver_ = true;
    receiver_->end();
}

void Transfer::followRedirect() {
    exchange_.reset();
    if (++redirects_ > configuration_.redirectLimit)
        return fail(NetError(NetError::Kind::tooManyRedirects));
    request_ = std::move(*next_);
    next_.reset();
    send();
}

void Transfer::fail(const NetError& error) {
    exchange_.reset();
    isOver_ = true;
    receiver_->fail(error);
}

// The body of a followed redirect is not read: its exchange ends here.
bool Transfer::didReceive(const URLResponse& response) {
    next_ = redirected(request_, response);
    if (next_ && delegate_)
        next_ = delegate_->willRedirect(response, *next_);
    if (next_)
        return false;
    return receiver_->begin(response) || request_.method == "HEAD"; // HEAD has no body
}

Receiver::Taken Transfer::didReceive(std::string_view bytes) {
    const auto taken = receiver_->take(bytes);
    isHeldUp_ = taken == Receiver::Taken::later;
    return taken;
}

void Transfer::didSendBody(std::int64_t sent) {
    if (delegate_)
        delegate_->didSendBody(sent, static_cast<std::int64_t>(request_.body.size()));
}

} // namespace tarnwick
