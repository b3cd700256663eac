// Requests over HTTP and HTTPS, several at once, on the session's own thread.
#pragma once

#include "TarnwickPlatform/Net/ByteStream.h"
#include "TarnwickPlatform/Net/NetError.h"
#include "TarnwickPlatform/Net/SessionConfiguration.h"
#include "TarnwickPlatform/Net/TaskDelegate.h"

#include <future>
#include <memory>
#include <stop_token>

namespace tarnwick {

class SessionLoop;

// A session has no cookies, no cache and no passwords. It uses HTTP/1.1, with TLS 1.2 or later;
// certificates are always checked. Each request has its own connection, so that bytes after one
// answer cannot become the next answer. Proxies are those of the environment, but never for
// loopback addresses.
//
// Requests ask for no compression and answers are not decompressed, so limits count the bytes that
// arrive. A redirect is followed if its Location is an http or https address without a user name,
// does not lead from https to http, and the delegate agrees; otherwise the redirect is the answer.
// 301 and 302 change POST to GET, 303 changes all methods but HEAD to GET, 307 and 308 change
// nothing. A redirect to another origin is sent without "Authorization", "Cookie" and
// "Proxy-Authorization".
class URLSession {
  public:
    explicit URLSession(SessionConfiguration configuration = {});
    // Cancels all requests under way and blocks until the thread ends. Not on that thread.
    ~URLSession();
    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;

    // Any thread may call both; they return at once. The session keeps the delegate until the
    // request has ended and does not call it after the answer or the error; after a stream is
    // cancelled, at most once more. Requesting the stop ends the request with NetError of kind
    // cancelled.
    //
    // The future gives the answer, with any status, or throws NetError. Destroying it does not
    // cancel.
    std::future<Answer> data(URLRequest request, std::shared_ptr<TaskDelegate> delegate = {},
                             std::stop_token stop = {});
    ByteStream bytes(URLRequest request, std::shared_ptr<TaskDelegate> delegate = {},
                     std::stop_token stop = {});

  private:
    std::unique_ptr<SessionLoop> loop_;
};

} // namespace tarnwick
