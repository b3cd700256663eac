// tarnwick sign-out: forgets the account of the sharing service.
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Service.h"

#include <array>

namespace tarnwick {
namespace {

// A file that others can read is removed too; the error is reported then.
std::optional<Secret> tokenOrForget(const Service& service) {
    try {
        return service.token();
    } catch (const TokenError&) {
        service.forgetToken();
        throw;
    }
}

// The reason why the service did not revoke the token; empty if it did, or does not know it.
std::string withdraw(const Secret& token, const APIClient& client, HeldSignals& signals) {
    try {
        const Answer answer = awaited(signals, [&](std::stop_token stop) {
            return client.send(client.signOutRequest(token.text()), std::move(stop));
        });
        const int status = answer.response.status;
        if ((status >= 200 && status <= 299) || status == 401)
            return "";
        return APIClient::failure(status, answer.body).what();
    } catch (const ServiceError& refusal) {
        return refusal.what();
    }
}

Status signOut(const Arguments& arguments) {
    const Service service(arguments);
    const auto token = tokenOrForget(service);
    if (!token) {
        print("You are not signed in.\n");
        return Status::done;
    }
    HeldSignals signals;
    const std::string why = withdraw(*token, service.client(), signals);
    service.forgetToken();
    if (!why.empty())
        failure("You are signed out here, but the service may still accept the sign-in: " + why);
    print("You are signed out.\n");
    return Status::done;
}

} // namespace

const Command signOutCommand{.name = "sign-out",
                             .operands = "",
                             .summary = "Signs out of the sharing service.",
                             .options = serviceOptions,
                             .run = signOut};

} // namespace tarnwick
