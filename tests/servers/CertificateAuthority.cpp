#include "tests/servers/CertificateAuthority.h"

#include "TarnwickBase/Precondition.h"

#include <cstdlib>
#include <fstream>

namespace tarnwick {

namespace {

const std::string newKey = "-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes ";

void run(const std::string& command) {
    precondition(std::system(("openssl " + command + " 2>/dev/null").c_str()) == 0,
                 "The openssl command makes the certificates of tests.");
}

} // namespace

CertificateAuthority::CertificateAuthority() {
    const std::string folder = folder_.string();
    std::ofstream(folder_ / "index.txt");
    std::ofstream(folder_ / "ca.conf")
        << "[ca]\ndefault_ca=c\n[c]\ndatabase=" << folder << "/index.txt\nnew_certs_dir=" << folder
        << "\ndefault_md=sha256\nunique_subject=no\npolicy=p\nrand_serial=yes\n"
           "[p]\ncommonName=supplied\n";
    run("req -x509 " + newKey + "-subj /CN=authority -days 2 -keyout " + folder + "/ca.key -out " +
        file().string());
}

ServerCertificate CertificateAuthority::issue(const std::string& names, const std::string& start) {
    const std::string base = folder_ / std::to_string(issued_++);
    std::ofstream(base + ".ext") << "subjectAltName=" << names << "\n";
    run("req " + newKey + "-subj /CN=server -keyout " + base + ".key -out " + base + ".csr");
    const std::string end = std::to_string(std::atoll(start.c_str()) + 1'000'000) + "Z";
    run("ca -batch -notext -config " + (folder_ / "ca.conf").string() + " -cert " +
        file().string() + " -keyfile " + (folder_ / "ca.key").string() + " -in " + base +
        ".csr -out " + base + ".pem -extfile " + base + ".ext " +
        (start.empty() ? "-days 1" : "-startdate " + start + " -enddate " + end));
    return {.certificate = base + ".pem", .key = base + ".key"};
}

} // namespace tarnwick
