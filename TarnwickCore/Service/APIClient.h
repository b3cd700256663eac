// The sharing service's JSON interface: signing in by a link, the account, sharing.
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

// A value; copies share the session. Holds no token: calls that need one take it, and who keeps it
// is the caller's business. May be used by several threads at once.
//
// Signing in: startLink() gives a code to show and a page to open; pollLink() is asked no faster
// than the interval, until it is approved or gone, or the date has passed. An approved account
// without a handle chooses one by setHandle().
struct APIClient {
    using Failure = ServiceError;

    URL base;              // the service's root; may have a path of its own
    std::string userAgent; // goes with every request
    std::shared_ptr<URLSession> session;

    // Makes a session when it is given none.
    APIClient(URL base, std::string userAgent, std::shared_ptr<URLSession> session = nullptr);
    static URL defaultBase(); // the service's site, over https

    // Accepts and sends no cookies, keeps no cache; 30 s for a request that does not say otherwise;
    // takes answers of up to 1 MiB, as the service's have a few hundred bytes.
    static SessionConfiguration sessionConfiguration(const std::string& userAgent);
    static std::shared_ptr<URLSession> makeSession(const std::string& userAgent);

    // Whether the service is one on this machine, for its developers: the host is "localhost" or
    // "127.0.0.1", in any case of the letters.
    bool isLocal() const;

    // Requests, of which nothing is sent. They take 60 s at most. JSON bodies are compact, with
    // sorted keys; bytes in them that are not UTF-8 become U+FFFD.
    URLRequest linkStartRequest() const;
    URLRequest linkPollRequest(const std::string& device) const;
    URLRequest meRequest(const std::string& token) const;
    URLRequest signOutRequest(const std::string& token) const;
    URLRequest handleRequest(const std::string& handle, const std::string& token) const;
    // Takes 300 s at most. Does not ask for problems(); throws what metaJSON() throws.
    URLRequest shareRequest(const ShareUpload& upload, const std::string& token,
                            const std::string& boundary) const;

    // Calls. Each goes out at once, on a thread of its own; the future throws Failure alone. Its
    // destructor waits for the answer: a stop requested ends the call soon, with the kind network.
    //
    // Tokens and codes do not go through a network in the open: unless the address is https or of
    // this machine, nothing is sent and the failure is of the kind network.
    std::future<LinkStart> startLink(std::stop_token stop = {}) const;
    std::future<LinkPoll> pollLink(const std::string& device, std::stop_token stop = {}) const;
    std::future<Me> me(const std::string& token, std::stop_token stop = {}) const;
    // Gives the handle that the account has now: as answered or, where the answer to a success
    // cannot be read, as asked for.
    std::future<std::string> setHandle(const std::string& handle, const std::string& token,
                                       std::stop_token stop = {}) const;
    // `progress` may be empty. An upload whose request cannot be built is of the kind network.
    std::future<Shared> share(ShareUpload upload, const std::string& token,
                              ProgressReport progress = {}, std::stop_token stop = {}) const;
    // The answer to one of the requests above as it is, whatever its status: for signing out.
    std::future<Answer> send(URLRequest request, std::stop_token stop = {}) const;

    // 3 to 24 of "a" to "z", "0" to "9" and "-", in any order.
    static bool isValidHandle(std::string_view handle);
    // What the answer to linkPollRequest() says; throws Failure.
    static LinkPoll readPoll(int status, std::string_view body);
    static Failure failure(int status, std::string_view body) { return Failure::of(status, body); }

  private:
    URLRequest request(std::string method, std::string_view path) const;
    URLRequest request(std::string method, std::string_view path, const std::string& token) const;
};

} // namespace tarnwick
