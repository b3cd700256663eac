// Downloads the release document, and the release that it names.
#pragma once

#include "TarnwickCore/Service/LatestRelease.h"
#include "TarnwickCore/Service/UploadProgress.h"
#include "TarnwickPlatform/Net/URLSession.h"

#include <cstdint>
#include <filesystem>
#include <future>
#include <memory>
#include <stdexcept>
#include <stop_token>
#include <string>

namespace tarnwick {

// Both calls send at once, on their own threads. The destructor of the future waits for the end; a
// requested stop ends the call soon, with kind `network`. Redirects are followed, also to other
// hosts, but not from https to http.
struct ReleaseDownload {
    static constexpr std::int64_t limit = 1'000'000'000; // bytes of a release

    // what() is one sentence for the user.
    class Error : public std::runtime_error {
      public:
        enum class Kind : std::uint8_t {
            status,      // the answer is not 200
            network,     // no answer; what() is the text of the system
            notSecure,   // the address is neither https nor on this machine
            noDigest,    // the SHA-256 in the document is missing or not 64 hexadecimal digits
            wrongDigest, // the downloaded file has another SHA-256
            tooLarge,    // longer than `limit`, as announced or received
            notWritten,  // the file cannot be written
        };
        Error(Kind kind, const std::string& sentence) : runtime_error(sentence), kind_(kind) {}

        Kind kind() const { return kind_; }

      private:
        Kind kind_;
    };

    // The newest release, from the document at `feed` (LatestRelease::feed()). Timeout: 60 s. The
    // future throws Error, or LatestReleaseError if the document is invalid.
    static std::future<LatestRelease> document(const URL& feed, std::shared_ptr<URLSession> session,
                                               std::string userAgent, std::stop_token stop = {});

    // Downloads `release` to `file`, which appears, or is replaced, only if the bytes have the
    // SHA-256 of the document. Until then they are in a temporary file beside it, which is deleted
    // on an error. Timeout: an hour. `progress` may be empty; it is called on the thread of the
    // call, and only if a length is announced. The future throws Error.
    static std::future<void> file(const LatestRelease& release, std::filesystem::path file,
                                  std::shared_ptr<URLSession> session, std::string userAgent,
                                  ProgressReport progress = {}, std::stop_token stop = {});
};

} // namespace tarnwick
