#include "TarnwickPlatform/Net/URLSession.h"

#include "TarnwickPlatform/Net/Session/SessionLoop.h"
#include "TarnwickPlatform/Net/Session/StreamedAnswer.h"
#include "TarnwickPlatform/Net/Session/WholeAnswer.h"

namespace tarnwick {

URLSession::URLSession(SessionConfiguration configuration)
    : loop_(std::make_unique<SessionLoop>(std::move(configuration))) {}

URLSession::~URLSession() = default;

std::future<Answer> URLSession::data(URLRequest request, std::shared_ptr<TaskDelegate> delegate,
                                     std::stop_token stop) {
    const auto answer = std::make_shared<WholeAnswer>(loop_->configuration().bodyLimit);
    auto future = answer->future();
    loop_->add(std::make_unique<Transfer>(std::move(request), std::move(delegate), answer,
                                          loop_->configuration()),
               std::move(stop));
    return future;
}

ByteStream URLSession::bytes(URLRequest request, std::shared_ptr<TaskDelegate> delegate,
                             std::stop_token stop) {
    const auto answer = std::make_shared<StreamedAnswer>(loop_->waker());
    loop_->add(std::make_unique<Transfer>(std::move(request), std::move(delegate), answer,
                                          loop_->configuration()),
               std::move(stop));
    return ByteStream(answer);
}

} // namespace tarnwick
