#include "TarnwickPlatform/Net/ByteStream.h"

#include "TarnwickPlatform/Net/Session/StreamedAnswer.h"

namespace tarnwick {

ByteStream::ByteStream(std::shared_ptr<StreamedAnswer> answer) : answer_(std::move(answer)) {}

ByteStream::~ByteStream() {
    if (answer_)
        answer_->cancel();
}

ByteStream::ByteStream(ByteStream&&) noexcept = default;

ByteStream& ByteStream::operator=(ByteStream&& other) noexcept {
    std::swap(answer_, other.answer_); // the other's destructor cancels this one's request
    return *this;
}

const URLResponse& ByteStream::response() {
    return answer_->response();
}

std::optional<std::string> ByteStream::next() {
    return answer_->next();
}

void ByteStream::cancel() {
    answer_->cancel();
}

} // namespace tarnwick
