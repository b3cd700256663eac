// Requests over HTTP and HTTPS, several at once, on one thread of the session's own.
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

// A session without memory: it accepts and sends no cookies, keeps no cache and no passwords. It
// speaks HTTP/1.1, over TLS 1.2 and up; certificates are always checked. Each request has a
// connection to itself, so that nothing sent behind one answer becomes the next one's. Proxies are
// taken from the environment, but never for loopback addresses.
//
// Answers are asked for without compression and never decompressed, so that a limit counts the
// bytes that arrive. A redirect is followed when its Location is an http or https address without a
// user name, not from https to http, and the delegate agrees; else the redirect is itself the
// answer. 301 and 302 make a POST a GET, 303 makes all but HEAD one, 307 and 308 change nothing. A
// redirect to another origin goes there without "Authorization", "Cookie" and
// "Proxy-Authorization".
class URLSession {
  public:
    explicit URLSession(SessionConfiguration configuration = {});
    // Cancels all that is under way and waits for the thread. Not to be called on that thread.
    ~URLSession();
    URLSession(const URLSession&) = delete;
    URLSession& operator=(const URLSession&) = delete;

    // Both may be called from any thread and return at once. The session keeps the delegate until
    // the request has ended, and calls it no more once the answer or its error is there (once more
    // at most where a stream was cancelled). A stop requested ends the request with NetError, kind
    // cancelled.
    //
    // The future gives the answer, whatever its status, or throws NetError. Dropping it does not
    // cancel.
    std::future<Answer> data(URLRequest request, std::shared_ptr<TaskDelegate> delegate = {},
                             std::stop_token stop = {});
    ByteStream bytes(URLRequest request, std::shared_ptr<TaskDelegate> delegate = {},
                     std::stop_token stop = {});

  private:
    std::unique_ptr<SessionLoop> loop_;
};

} // namespace tarnwick
