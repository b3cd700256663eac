// Downloads the shader that an open link names.
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

    // what() is one sentence for the user.
    class Problem : public std::runtime_error {
      public:
        enum class Kind : std::uint8_t {
            status,   // the answer is not 200
            network,  // no answer; what() is the text of the system
            tooLarge, // longer than `limit`, as announced or received
            notText,  // not UTF-8
        };
        // `words` is the sentence for `network`; `status` is 0 except for kind `status`.
        explicit Problem(Kind kind, const std::string& words = {}, int status = 0);

        Kind kind() const { return kind_; }
        int status() const { return status_; }
        bool operator==(const Problem& other) const;

      private:
        Kind kind_;
        int status_;
    };

    // Follows redirects within the origin of the first request (scheme, host and port as written),
    // for which the link was checked. Any other redirect is the answer itself.
    class SameOrigin : public TaskDelegate {
      public:
        explicit SameOrigin(URL origin) : origin_(std::move(origin)) {}

        std::optional<URLRequest> willRedirect(const URLResponse& response,
                                               const URLRequest& next) override;

      private:
        URL origin_;
    };

    // Downloads the text of `link.source`, which may hold NULs and a byte order mark. Sends at
    // once, on its own thread. Timeout: 60 s. The future throws Problem only. Its destructor waits;
    // a requested stop ends the call soon, with kind `network`. At most `limit` bytes are kept, and
    // an answer that announces more is not read.
    static std::future<std::string> fetch(const OpenLink& link, std::shared_ptr<URLSession> session,
                                          std::string userAgent, std::stop_token stop = {});
};

} // namespace tarnwick
