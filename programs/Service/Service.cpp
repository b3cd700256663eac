#include "programs/Service/Service.h"

#include "TarnwickBase/Version.h"
#include "TarnwickPlatform/Secrets/ProcessSecrecy.h"
#include "programs/CommandLine/CommandError.h"

#include <cstdlib>

namespace tarnwick {
namespace {

std::string_view fromEnvironment(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string_view givenServer(const Arguments& arguments) {
    return arguments.value("--server").value_or(fromEnvironment("TARNWICK_SERVER"));
}

// The message does not repeat the address, which may contain a password.
URL baseOf(std::string_view given) {
    if (given.empty())
        return APIClient::defaultBase();
    const auto base = URL::parse(given);
    if (!base || (base->scheme() != "https" && base->scheme() != "http") || *base != base->plain())
        misuse("The service's address is not one like https://HOST or http://127.0.0.1:PORT.");
    return *base;
}

APIClient clientOf(const URL& base) {
    const std::string userAgent = programName();
    SessionConfiguration configuration = APIClient::sessionConfiguration(userAgent);
    // As in other programs, for services with a company's own certificates.
    configuration.certificateFile = fromEnvironment("SSL_CERT_FILE");
    APIClient client(base, userAgent, std::make_shared<URLSession>(configuration));
    if (base.scheme() != "https" && !client.isLocal())
        misuse("The service's address is not https, and the service is not on this machine.");
    return client;
}

// Made on demand: not every command needs a home folder.
TokenStore tokenStore() {
    return TokenStore(TokenFiles(TokenFiles::usualFolder()));
}

} // namespace

Service::Service(const Arguments& arguments)
    : isGiven_(!givenServer(arguments).empty()), client_(clientOf(baseOf(givenServer(arguments)))) {
    hideProcessMemory();
}

std::optional<Secret> Service::token() const {
    return tokenStore().find(client_.base.string());
}

Secret Service::wantedToken() const {
    auto found = token();
    if (!found)
        failure("You are not signed in; tarnwick sign-in does that.");
    return *std::move(found);
}

std::string Service::keep(const Secret& token) const {
    return tokenStore().keep(client_.base.string(), token);
}

void Service::forgetToken() const {
    tokenStore().forget(client_.base.string());
}

nlohmann::ordered_json accountJSON(const std::string& email,
                                   const std::optional<std::string>& handle) {
    nlohmann::ordered_json account{{"email", email}, {"handle", nullptr}};
    if (handle)
        account["handle"] = *handle;
    return account;
}

} // namespace tarnwick
