// One request and its answer on the wire: what URLSession promises, in the library's options.
#pragma once

#include "TarnwickPlatform/Net/Session/Receiver.h"
#include "TarnwickPlatform/Net/SessionConfiguration.h"

#include <curl/curl.h>

#include <memory>

namespace tarnwick {

// Whom an exchange tells of its course; calls come from within the library's.
class ExchangeEvents {
  public:
    virtual ~ExchangeEvents() = default;

    // False: the exchange ends here, with the error tooLarge.
    virtual bool didReceive(const URLResponse& response) = 0;
    virtual Receiver::Taken didReceive(std::string_view bytes) = 0;
    virtual void didSendBody(std::int64_t sent) = 0;
};

// Lives on the session's thread, not to be destroyed from within its events.
class Exchange {
  public:
    // Begins to send. `request` has all its headers and can be sent (canBeSent); it, the
    // configuration and `events` outlive this.
    Exchange(CURLM* multi, const URLRequest& request, const SessionConfiguration& configuration,
             ExchangeEvents& events);
    ~Exchange(); // ends it, wherever it stands
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    CURL* easy() const { return easy_; }
    // Goes on after bytes were taken "later".
    CURLcode resume();
    // Why it ended with `code`; absent when the answer is complete.
    std::optional<NetError> error(CURLcode code) const;
    // Reports what has been sent of the body, if that is more than was last reported.
    void reportSent();

  private:
    void setTransport();
    void setSecurity();
    void setRequest();
    void setHeaders();
    void setCallbacks();
    template <class Value> void set(CURLoption option, Value value);
    bool didReceiveHeaderLine(std::string_view line);
    std::optional<URLResponse> response() const; // absent before a final answer's headers are in
    bool canBeRead(const URLResponse& response) const;

    CURLM* multi_;
    const URLRequest& request_;
    const SessionConfiguration& configuration_;
    ExchangeEvents& events_;
    CURL* easy_;
    curl_slist* headerLines_ = nullptr;
    curl_slist* places_ = nullptr;
    std::size_t headerBytes_ = 0;
    std::int64_t sent_ = 0;
    bool hasResponse_ = false;
    std::optional<NetError::Kind> refusal_; // why this ended the exchange itself
};

// Whether address, method and header fields can be written as HTTP (RFC 9110, 5.5 and 9.1).
bool canBeSent(const URLRequest& request);

} // namespace tarnwick
