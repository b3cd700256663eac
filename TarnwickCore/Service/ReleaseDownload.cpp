#include "TarnwickCore/Service/ReleaseDownload.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Service/ServiceAddress.h"
#include "TarnwickCore/Text/SHA256.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>

namespace tarnwick {
namespace {

using Error = ReleaseDownload::Error;
using Kind = Error::Kind;

void checkAddress(const std::optional<URL>& url) {
    if (!url || !isPrivate(*url))
        throw Error(Kind::notSecure, "The address given for the release is not https, so "
                                     "nothing was downloaded.");
}

void checkStatus(const URLResponse& response) {
    if (response.status != 200)
        throw Error(Kind::status,
                    "Tarnweb answered " + std::to_string(response.status) + " for the release.");
}

// The expected digest in lower case.
std::string digestOf(const LatestRelease& release) {
    if (!release.sha256)
        throw Error(Kind::noDigest, "The release document gives no SHA-256 to check the release "
                                    "against, so nothing was downloaded.");
    std::string digest;
    for (const char digit : *release.sha256)
        digest += static_cast<char>(digit >= 'A' && digit <= 'F' ? digit - 'A' + 'a' : digit);
    if (digest.size() != 64 || digest.find_first_not_of("0123456789abcdef") != std::string::npos)
        throw Error(Kind::noDigest, "The SHA-256 in the release document is not 64 hexadecimal "
                                    "digits, so nothing was downloaded.");
    return digest;
}

[[noreturn]] void tooLarge() {
    throw Error(Kind::tooLarge, "The release is over 1 GB, so it was not kept.");
}

// A new file to which bytes are appended.
class File {
  public:
    explicit File(std::filesystem::path path)
        : path_(std::move(path)), file_(std::fopen(path_.c_str(), "wbxe")) {
        require(file_ != nullptr);
    }
    ~File() {
        if (file_ != nullptr)
            std::fclose(file_);
    }
    File(const File&) = delete;
    File& operator=(const File&) = delete;

    void add(std::string_view bytes) {
        require(std::fwrite(bytes.data(), 1, bytes.size(), file_) == bytes.size());
    }
    // A full disk may report its error only on closing.
    void close() { require(std::fclose(std::exchange(file_, nullptr)) == 0); }

  private:
    void require(bool success) const {
        if (!success)
            throw WholeFileError(path_, std::strerror(errno));
    }

    std::filesystem::path path_;
    std::FILE* file_;
};

// Writes the whole answer to `path` and returns its digest.
std::string download(ByteStream stream, const std::filesystem::path& path,
                     const ProgressReport& progress) {
    const URLResponse& response = stream.response();
    checkStatus(response);
    const std::int64_t expected = response.expectedLength.value_or(0);
    if (expected > ReleaseDownload::limit)
        tooLarge();
    SHA256 digest;
    File file(path);
    std::int64_t size = 0;
    while (const std::optional<std::string> piece = stream.next()) {
        size += static_cast<std::int64_t>(piece->size());
        if (size > ReleaseDownload::limit)
            tooLarge();
        digest.update(*piece);
        file.add(*piece);
        if (progress && expected > 0)
            progress(static_cast<double>(size) / static_cast<double>(expected));
    }
    file.close();
    return digest.finish();
}

void checkDigest(const std::string& digest, const std::string& expected) {
    if (digest != expected)
        throw Error(Kind::wrongDigest,
                    "The downloaded file is not the announced release and was deleted: its "
                    "SHA-256 is " +
                        digest + ", not " + expected + ".");
}

URLRequest requestTo(const URL& url, const std::string& userAgent, const char* accept,
                     double timeout) {
    return {
        .url = url, .headers = {{"Accept", accept}, {"User-Agent", userAgent}}, .timeout = timeout};
}

} // namespace

std::future<LatestRelease> ReleaseDownload::document(const URL& feed,
                                                     std::shared_ptr<URLSession> session,
                                                     std::string userAgent, std::stop_token stop) {
    return std::async(std::launch::async, [feed, session = std::move(session),
                                           userAgent = std::move(userAgent),
                                           stop = std::move(stop)] {
        checkAddress(feed);
        try {
            const URLRequest request = requestTo(feed, userAgent, "application/json", 60);
            const Answer answer = session->data(request, nullptr, stop).get();
            checkStatus(answer.response);
            return LatestRelease::decode(answer.body);
        } catch (const NetError& error) {
            throw Error(Kind::network, error.what());
        }
    });
}

std::future<void> ReleaseDownload::file(const LatestRelease& release, std::filesystem::path file,
                                        std::shared_ptr<URLSession> session, std::string userAgent,
                                        ProgressReport progress, std::stop_token stop) {
    const auto work = [=] {
        const std::optional<URL> url = URL::parse(release.url);
        checkAddress(url);
        const std::string expected = digestOf(release);
        try {
            UnfinishedFile unfinished(file);
            const URLRequest request = requestTo(*url, userAgent, "*/*", 3600);
            checkDigest(
                download(session->bytes(request, nullptr, stop), unfinished.path(), progress),
                expected);
            unfinished.finish();
        } catch (const NetError& error) {
            throw Error(Kind::network, error.what());
        } catch (const WholeFileError& error) {
            throw Error(Kind::notWritten, error.what());
        }
    };
    return std::async(std::launch::async, work);
}

} // namespace tarnwick
