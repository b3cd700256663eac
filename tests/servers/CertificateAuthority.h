// Certificates for servers on loopback addresses, made by the openssl command.
#pragma once

#include "TarnwickBase/TemporaryFolder.h"
#include "tests/servers/LoopbackServer.h"

namespace tarnwick {

// Its files are in a temporary folder.
class CertificateAuthority {
  public:
    CertificateAuthority();

    std::filesystem::path file() const { return folder_ / "ca.pem"; } // its own certificate
    // `names` have the form of openssl, "IP:127.0.0.1,DNS:localhost". Valid for a day from `start`
    // ("20200101000000Z"; empty: now).
    ServerCertificate issue(const std::string& names, const std::string& start = "");

  private:
    TemporaryFolder temporary_;
    std::filesystem::path folder_ = temporary_.path();
    int issued_ = 0;
};

} // namespace tarnwick
