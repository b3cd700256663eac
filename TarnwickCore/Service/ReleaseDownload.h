// Fetching the release document, and the release that it names.
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

// Both go out at once, on a thread of their own; the future's destructor waits for the end, which a
// stop requested brings about soon, with the kind network. Redirects are followed, to other hosts
// too, but not from https to http.
struct ReleaseDownload {
    static constexpr std::int64_t limit = 1'000'000'000; // bytes of a release

    // what() is the user's sentence.
    class Problem : public std::runtime_error {
      public:
        enum class Kind : std::uint8_t {
            status,      // an answer that is not 200
            network,     // no answer: the system's words
            notSecure,   // the address is neither https nor of this machine
            noDigest,    // the document has no SHA-256, or one that is not 64 hexadecimal digits
            wrongDigest, // what was downloaded has another
            tooLarge,    // over `limit`, announced or arrived
            notWritten,  // the file could not be
        };
        Problem(Kind kind, const std::string& sentence) : runtime_error(sentence), kind_(kind) {}

        Kind kind() const { return kind_; }

      private:
        Kind kind_;
    };

    // The newest release as the document at `feed` (LatestRelease::feed()) says; 60 s at most. The
    // future throws Problem or, for what is no release document, LatestReleaseError.
    static std::future<LatestRelease> document(const URL& feed, std::shared_ptr<URLSession> session,
                                               std::string userAgent, std::stop_token stop = {});

    // Downloads `release` to `file`, which appears, in place of one of that name, only when the
    // bytes have the document's SHA-256: until then they stand beside it under another name, and
    // are deleted on failure. An hour at most. `progress` may be empty; it is called on the call's
    // own thread, and not where no length is announced. The future throws Problem.
    static std::future<void> file(const LatestRelease& release, std::filesystem::path file,
                                  std::shared_ptr<URLSession> session, std::string userAgent,
                                  ProgressReport progress = {}, std::stop_token stop = {});
};

} // namespace tarnwick
