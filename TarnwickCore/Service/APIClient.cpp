#include "TarnwickCore/Service/APIClient.h"

#include "TarnwickCore/Service/Multipart.h"
#include "TarnwickCore/Service/ServiceAddress.h"
#include "TarnwickCore/Service/ServiceHosts.h"
#include "TarnwickCore/Text/OutsideJSON.h"

#include <algorithm>
#include <utility>

namespace tarnwick {
namespace {

using nlohmann::json;
using Failure = ServiceError;

void setBody(URLRequest& request, const json& body) {
    request.headers.set("Content-Type", "application/json");
    request.body = body.dump(-1, ' ', false, json::error_handler_t::replace);
}

bool isSuccess(int status) {
    return status >= 200 && status <= 299;
}

constexpr std::string_view bearer = "Bearer ";
constexpr std::size_t shortestSecret = 8; // bytes; a shorter text is part of many words

// The token in the request; empty without one.
std::string tokenOf(const URLRequest& request) {
    const std::string* field = request.headers.find("Authorization");
    return field && field->starts_with(bearer) ? field->substr(bearer.size()) : std::string();
}

// Hides the token in a refusal, because the text is shown and a service may repeat what it
// received.
void hide(const std::string& token, std::string& text) {
    if (token.size() < shortestSecret)
        return;
    for (std::size_t at = 0; (at = text.find(token, at)) != std::string::npos; ++at)
        text.replace(at, token.size(), "*");
}

// Sends the request and waits for the answer.
Answer exchange(URLSession& session, URLRequest request,
                const std::shared_ptr<TaskDelegate>& delegate, std::stop_token stop) {
    if (!isPrivate(request.url))
        throw Failure(Failure::Kind::network,
                      "Tarnweb is only talked to over https, and the address given is not https.");
    const std::string token = tokenOf(request);
    try {
        Answer answer = session.data(std::move(request), delegate, std::move(stop)).get();
        if (!isSuccess(answer.response.status))
            hide(token, answer.body);
        return answer;
    } catch (const NetError& error) {
        if (error.kind() == NetError::Kind::notHTTP)
            throw Failure::badAnswer();
        throw Failure(Failure::Kind::network, error.what());
    }
}

// Sends `request` and returns read(status, body) of the answer.
template <typename Read>
auto call(const APIClient& client, URLRequest request, std::stop_token stop, Read read) {
    return std::async(std::launch::async, [session = client.session, request = std::move(request),
                                           read, stop = std::move(stop)]() mutable {
        const Answer answer = exchange(*session, std::move(request), nullptr, std::move(stop));
        return read(answer.response.status, answer.body);
    });
}

// The record of a success. Throws Failure for other answers.
template <typename Record>
Record decoded(std::optional<Record> record, bool success, int status, std::string_view body) {
    if (!success)
        throw Failure::of(status, body);
    if (!record)
        throw Failure::badAnswer();
    return std::move(*record);
}

Shared readShared(int status, std::string_view body) {
    return decoded(Shared::decode(body), status == 200 || status == 201, status, body);
}

} // namespace

APIClient::APIClient(URL base, std::string userAgent, std::shared_ptr<URLSession> session)
    : base(std::move(base)), userAgent(std::move(userAgent)),
      session(session ? std::move(session) : makeSession(this->userAgent)) {}

URL APIClient::defaultBase() {
    return URL::parse("https://" + std::string(siteHost)).value();
}

SessionConfiguration APIClient::sessionConfiguration(const std::string& userAgent) {
    SessionConfiguration configuration;
    configuration.additionalHeaders.set("User-Agent", userAgent);
    configuration.timeout = 30;
    configuration.bodyLimit = std::size_t{1} << 20;
    return configuration;
}

std::shared_ptr<URLSession> APIClient::makeSession(const std::string& userAgent) {
    return std::make_shared<URLSession>(sessionConfiguration(userAgent));
}

bool APIClient::isLocal() const {
    return isOnThisMachine(base);
}

URLRequest APIClient::request(std::string method, std::string_view path) const {
    URLRequest request{.url = base.appending(path), .method = std::move(method)};
    request.headers.set("Accept", "application/json");
    request.headers.set("User-Agent", userAgent);
    request.timeout = 60;
    return request;
}

URLRequest APIClient::request(std::string method, std::string_view path,
                              const std::string& token) const {
    URLRequest signedIn = request(std::move(method), path);
    signedIn.headers.set("Authorization", std::string(bearer) + token);
    return signedIn;
}

URLRequest APIClient::linkStartRequest() const {
    URLRequest start = request("POST", "/api/app/link");
    setBody(start, json::object());
    return start;
}

URLRequest APIClient::linkPollRequest(const std::string& device) const {
    URLRequest poll = request("POST", "/api/app/link/poll");
    setBody(poll, {{"device", device}});
    return poll;
}

URLRequest APIClient::meRequest(const std::string& token) const {
    return request("GET", "/api/me", token);
}

URLRequest APIClient::signOutRequest(const std::string& token) const {
    URLRequest signOut = request("POST", "/api/auth/signout", token);
    setBody(signOut, json::object());
    return signOut;
}

URLRequest APIClient::handleRequest(const std::string& handle, const std::string& token) const {
    URLRequest choice = request("POST", "/api/account/handle", token);
    setBody(choice, {{"handle", handle}});
    return choice;
}

URLRequest APIClient::shareRequest(const ShareUpload& upload, const std::string& token,
                                   const std::string& boundary) const {
    Multipart form{.boundary = boundary};
    form.add("meta", std::nullopt, "application/json", upload.metaJSON());
    form.add("source", "source.metal", "text/plain; charset=utf-8", upload.source);
    form.add("loop", "loop.mp4", "video/mp4", upload.loop);
    form.add("thumb", "thumb.jpg", "image/jpeg", upload.thumb);
    URLRequest share = request("POST", "/api/shaders", token);
    share.headers.set("Content-Type", form.contentType());
    share.body = form.body();
    share.timeout = 300;
    return share;
}

std::future<LinkStart> APIClient::startLink(std::stop_token stop) const {
    return call(
        *this, linkStartRequest(), std::move(stop), [](int status, const std::string& body) {
            return decoded(LinkStart::decode(body, currentDate()), isSuccess(status), status, body);
        });
}

std::future<LinkPoll> APIClient::pollLink(const std::string& device, std::stop_token stop) const {
    return call(*this, linkPollRequest(device), std::move(stop), readPoll);
}

std::future<Me> APIClient::me(const std::string& token, std::stop_token stop) const {
    return call(*this, meRequest(token), std::move(stop), [](int status, const std::string& body) {
        return decoded(Me::decode(body), status == 200, status, body);
    });
}

std::future<std::string> APIClient::setHandle(const std::string& handle, const std::string& token,
                                              std::stop_token stop) const {
    return call(*this, handleRequest(handle, token), std::move(stop),
                [handle](int status, const std::string& body) {
                    const auto object = objectOf(body);
                    const auto held = object ? textOf(*object, "handle") : std::nullopt;
                    return decoded(std::optional(held.value_or(handle)), isSuccess(status), status,
                                   body);
                });
}

std::future<Shared> APIClient::share(ShareUpload upload, const std::string& token,
                                     ProgressReport progress, std::stop_token stop) const {
    auto work = [client = *this, upload = std::move(upload), token,
                 delegate = std::make_shared<UploadProgress>(std::move(progress)),
                 stop = std::move(stop)] {
        try {
            URLRequest request = client.shareRequest(upload, token, Multipart::makeBoundary());
            const Answer answer = exchange(*client.session, std::move(request), delegate, stop);
            return readShared(answer.response.status, answer.body);
        } catch (const ShareUploadError& error) {
            throw Failure(Failure::Kind::network, error.what());
        }
    };
    return std::async(std::launch::async, std::move(work));
}

std::future<Answer> APIClient::send(URLRequest request, std::stop_token stop) const {
    return std::async(std::launch::async,
                      [session = session, request = std::move(request), stop = std::move(stop)] {
                          return exchange(*session, request, nullptr, stop);
                      });
}

bool APIClient::isValidHandle(std::string_view handle) {
    const auto isAllowed = [](char byte) {
        return (byte >= 'a' && byte <= 'z') || (byte >= '0' && byte <= '9') || byte == '-';
    };
    return handle.size() >= 3 && handle.size() <= 24 &&
           std::all_of(handle.begin(), handle.end(), isAllowed);
}

LinkPoll APIClient::readPoll(int status, std::string_view body) {
    if (status == 410)
        return LinkGone();
    if (status == 202)
        return LinkPending();
    return decoded(Approved::decode(body), status == 200, status, body);
}

} // namespace tarnwick
