// The JSON interface of the sharing service: signing in by a link, the account, sharing.
#pragma once

#include "TarnwickCore/Service/ServiceError.h"
#include "TarnwickCore/Service/ServiceRecords.h"
#include "TarnwickCore/Service/ShareUpload.h"
#include "TarnwickCore/Service/UploadProgress.h"
#include "TarnwickPlatform/Net/URLSession.h"

#include <future>
#include <memory>
#include <stop_token>
#include <string>
#include <string_view>

namespace tarnwick {

// A value; copies share the session. It stores no token: calls that need a token have a parameter
// for it. May be used by several threads at once.
//
// Signing in: startLink() gives a code to show and a page to open. Call pollLink() no faster than
// the interval, until it is approved or gone, or the date has passed. An approved account without a
// handle chooses one with setHandle().
struct APIClient {
    using Failure = ServiceError;

    URL base;              // the root of the service; may have a path
    std::string userAgent; // sent with every request
    std::shared_ptr<URLSession> session;

    // Makes a session if `session` is null.
    APIClient(URL base, std::string userAgent, std::shared_ptr<URLSession> session = nullptr);
    static URL defaultBase(); // the site of the service, over https

    // Accepts and sends no cookies and keeps no cache. Timeout: 30 s, unless a request has its own.
    // Accepts answers of up to 1 MiB; those of the service have a few hundred bytes.
    static SessionConfiguration sessionConfiguration(const std::string& userAgent);
    static std::shared_ptr<URLSession> makeSession(const std::string& userAgent);

    // Whether the service runs on this machine, for its developers: the host is "localhost" or
    // "127.0.0.1", in upper or lower case.
    bool isLocal() const;

    // Make requests without sending them. Timeout: 60 s. JSON bodies are compact, with sorted keys;
    // invalid UTF-8 in them becomes U+FFFD.
    URLRequest linkStartRequest() const;
    URLRequest linkPollRequest(const std::string& device) const;
    URLRequest meRequest(const std::string& token) const;
    URLRequest signOutRequest(const std::string& token) const;
    URLRequest handleRequest(const std::string& handle, const std::string& token) const;
    // Timeout: 300 s. Does not check problems(); throws as metaJSON() does.
    URLRequest shareRequest(const ShareUpload& upload, const std::string& token,
                            const std::string& boundary) const;

    // Each call sends at once, on its own thread; the future throws Failure only. The destructor of
    // the future waits for the answer; a requested stop ends it soon (`network`).
    //
    // Tokens and codes are never sent unencrypted: unless the address is https or on this machine,
    // nothing is sent and the error has kind `network`.
    std::future<LinkStart> startLink(std::stop_token stop = {}) const;
    std::future<LinkPoll> pollLink(const std::string& device, std::stop_token stop = {}) const;
    std::future<Me> me(const std::string& token, std::stop_token stop = {}) const;
    // Returns the handle that the account has now: from the answer, or the requested handle if the
    // answer to a success cannot be read.
    std::future<std::string> setHandle(const std::string& handle, const std::string& token,
                                       std::stop_token stop = {}) const;
    // `progress` may be empty. If the request cannot be built, the error has kind `network`.
    std::future<Shared> share(ShareUpload upload, const std::string& token,
                              ProgressReport progress = {}, std::stop_token stop = {}) const;
    // The answer to one of the requests above, with any status: for signing out.
    std::future<Answer> send(URLRequest request, std::stop_token stop = {}) const;

    // Whether `handle` is 3 to 24 of "a" to "z", "0" to "9" and "-", in any order.
    static bool isValidHandle(std::string_view handle);
    // Reads the answer to linkPollRequest(). Throws Failure.
    static LinkPoll readPoll(int status, std::string_view body);
    static Failure failure(int status, std::string_view body) { return Failure::of(status, body); }

  private:
    URLRequest request(std::string method, std::string_view path) const;
    URLRequest request(std::string method, std::string_view path, const std::string& token) const;
};

} // namespace tarnwick
