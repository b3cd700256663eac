// One request and its answer on the wire, with the library's options for the rules of URLSession.
#pragma once

#include "TarnwickPlatform/Net/Session/Receiver.h"
#include "TarnwickPlatform/Net/SessionConfiguration.h"

#include <curl/curl.h>

#include <memory>

namespace tarnwick {

// Receives the events of an exchange, from within the library's calls.
class ExchangeEvents {
  public:
    virtual ~ExchangeEvents() = default;

    // False: the exchange ends here, with the error tooLarge.
    virtual bool didReceive(const URLResponse& response) = 0;
    virtual Receiver::Taken didReceive(std::string_view bytes) = 0; // of the body
    virtual void didSendBody(std::int64_t sent) = 0;                // bytes in all
};

// For the session's thread. Its events must not destroy it.
class Exchange {
  public:
    // Starts sending. `request` has all its headers and can be sent (canBeSent). It, the
    // configuration and `events` outlive this.
    Exchange(CURLM* multi, const URLRequest& request, const SessionConfiguration& configuration,
             ExchangeEvents& events);
    ~Exchange(); // ends the exchange
    Exchange(const Exchange&) = delete;
    Exchange& operator=(const Exchange&) = delete;

    CURL* easy() const { return easy_; }
    // Continues after the receiver returned Taken::later.
    CURLcode resume();
    // The error of an exchange that ended with `code`; absent if the answer is complete.
    std::optional<NetError> error(CURLcode code) const;
    // Reports the sent bytes of the body, if they are more than at the last report.
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
    std::optional<NetError::Kind> refusal_; // why this object ended the exchange
};

// Whether address, method and header fields can be written as HTTP (RFC 9110, 5.5 and 9.1).
bool canBeSent(const URLRequest& request);

} // namespace tarnwick
