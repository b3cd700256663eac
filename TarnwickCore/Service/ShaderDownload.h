// Fetching the shader that an open link names.
#pragma once

#include "TarnwickCore/Service/OpenLink.h"
#include "TarnwickPlatform/Net/URLSession.h"

#include <cstddef>
#include <cstdint>
#include <future>
#include <memory>
#include <stdexcept>
#include <stop_token>
#include <string>

namespace tarnwick {

struct ShaderDownload {
    static constexpr std::size_t limit = std::size_t{300} * 1024; // bytes

    // what() is the user's sentence.
    class Problem : public std::runtime_error {
      public:
        enum class Kind : std::uint8_t {
            status,   // the site's answer is not 200
            network,  // no answer: the system's words
            tooLarge, // over `limit`, announced or arrived
            notText,  // not UTF-8
        };
        // Only `status` has a status other than 0, and says words of its own.
        explicit Problem(Kind kind, const std::string& words = {}, int status = 0);

        Kind kind() const { return kind_; }
        int status() const { return status_; }
        bool operator==(const Problem& other) const;

      private:
        Kind kind_;
        int status_;
    };

    // Follows redirects to where the first request went, by scheme, host and port as written: what
    // a link was checked for holds for what is read. Other redirects are the answer themselves.
    class SameOrigin : public TaskDelegate {
      public:
        explicit SameOrigin(URL origin) : origin_(std::move(origin)) {}

        std::optional<URLRequest> willRedirect(const URLResponse& response,
                                               const URLRequest& next) override;

      private:
        URL origin_;
    };

    // The text of `link.source`; any text, a NUL or a byte order mark included. Goes out at once,
    // on a thread of its own, and takes 60 s at most; the future throws Problem alone. Its
    // destructor waits: a stop requested ends it soon, with the kind network. No more than `limit`
    // bytes are kept, and an answer that announces more is not read.
    static std::future<std::string> fetch(const OpenLink& link, std::shared_ptr<URLSession> session,
                                          std::string userAgent, std::stop_token stop = {});
};

} // namespace tarnwick
