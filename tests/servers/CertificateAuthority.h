// Certificates for servers on loopback addresses, made by the openssl command.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"
#include "tests/servers/LoopbackServer.h"

namespace tarnwick {

// In a temporary folder that ends with it.
class CertificateAuthority {
  public:
    CertificateAuthority();

    std::filesystem::path file() const { return folder_ / "ca.pem"; } // its own certificate
    // For `names` as openssl writes them, "IP:127.0.0.1,DNS:localhost"; valid for a day from
    // `start` ("20200101000000Z"), which is now when empty.
    ServerCertificate issue(const std::string& names, const std::string& start = "");

  private:
    TemporaryFolder temporary_;
    std::filesystem::path folder_ = temporary_.path();
    int issued_ = 0;
};

} // namespace tarnwick
