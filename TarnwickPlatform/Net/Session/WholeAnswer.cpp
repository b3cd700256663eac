#include "TarnwickPlatform/Net/Session/WholeAnswer.h"

namespace tarnwick {

bool WholeAnswer::begin(const URLResponse& response) {
    answer_ = Answer{.response = response, .body = {}};
    const auto announced = static_cast<std::uint64_t>(response.expectedLength.value_or(0));
    if (announced > limit_)
        return false;
    answer_->body.reserve(announced);
    return true;
}

Receiver::Taken WholeAnswer::take(std::string_view bytes) {
    if (bytes.size() > limit_ - answer_->body.size())
        return Taken::tooMuch;
    answer_->body += bytes;
    return Taken::all;
}

void WholeAnswer::end() {
    promise_.set_value(std::move(*answer_));
}

void WholeAnswer::fail(const NetError& error) {
    promise_.set_exception(std::make_exception_ptr(error));
}

} // namespace tarnwick
