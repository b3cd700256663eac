#include "TarnwickCore/Service/ShaderDownload.h"

#include "TarnwickCore/Text/UTF8.h"

namespace tarnwick {
namespace {

using Problem = ShaderDownload::Problem;

std::string sentenceOf(Problem::Kind kind, const std::string& words, int status) {
    switch (kind) {
    case Problem::Kind::status:
        return "Tarnweb answered " + std::to_string(status) + " for that shader.";
    case Problem::Kind::network:
        return words;
    case Problem::Kind::tooLarge:
        return "That file is over 300 KB, which no shader is: it was not opened.";
    case Problem::Kind::notText:
        return "That file is not UTF-8 text: it was not opened.";
    }
    return words;
}

void check(const URLResponse& response) {
    if (response.status != 200)
        throw Problem(Problem::Kind::status, {}, response.status);
    if (response.expectedLength.value_or(0) > std::int64_t{ShaderDownload::limit})
        throw Problem(Problem::Kind::tooLarge);
}

std::string bytesOf(ByteStream& stream) {
    std::string bytes;
    while (const std::optional<std::string> piece = stream.next()) {
        if (piece->size() > ShaderDownload::limit - bytes.size())
            throw Problem(Problem::Kind::tooLarge);
        bytes += *piece;
    }
    return bytes;
}

std::string textOf(ByteStream stream) {
    try {
        check(stream.response());
        std::string bytes = bytesOf(stream);
        if (wellFormedUTF8(bytes) != bytes)
            throw Problem(Problem::Kind::notText);
        return bytes;
    } catch (const NetError& error) {
        throw Problem(Problem::Kind::network, error.what());
    }
}

} // namespace

ShaderDownload::Problem::Problem(Kind kind, const std::string& words, int status)
    : std::runtime_error(sentenceOf(kind, words, status)), kind_(kind), status_(status) {}

bool ShaderDownload::Problem::operator==(const Problem& other) const {
    return kind_ == other.kind_ && status_ == other.status_ &&
           std::string_view(what()) == other.what();
}

std::optional<URLRequest> ShaderDownload::SameOrigin::willRedirect(const URLResponse&,
                                                                   const URLRequest& next) {
    return next.url.isOfOrigin(origin_) ? std::optional(next) : std::nullopt;
}

std::future<std::string> ShaderDownload::fetch(const OpenLink& link,
                                               std::shared_ptr<URLSession> session,
                                               std::string userAgent, std::stop_token stop) {
    URLRequest request{.url = link.source, .timeout = 60};
    request.headers.set("User-Agent", userAgent);
    request.headers.set("Accept", "text/plain");
    return std::async(std::launch::async, [session = std::move(session),
                                           request = std::move(request), stop = std::move(stop)] {
        return textOf(session->bytes(request, std::make_shared<SameOrigin>(request.url), stop));
    });
}

} // namespace tarnwick
