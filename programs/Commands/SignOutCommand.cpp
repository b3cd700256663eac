// tarnwick sign-out: forgets the account of the sharing service.
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Service.h"

#include <array>

namespace tarnwick {
namespace {

// A file that others may read is forgotten too; why it cannot be used is said then.
std::optional<Secret> tokenOrForget(const Service& service) {
    try {
        return service.token();
    } catch (const TokenError&) {
        service.forgetToken();
        throw;
    }
}

// Why the service did not take the token back; empty where it did, or does not know it any more.
std::string withdraw(const Secret& token, const APIClient& client, HeldSignals& signals) {
    try {
        const Answer answer = awaited(signals, [&](std::stop_token stop) {
            return client.send(client.signOutRequest(token.text()), std::move(stop));
        });
        const int status = answer.response.status;
        if ((status >= 200 && status <= 299) || status == 401)
            return "";
        return terminalText(APIClient::failure(status, answer.body).what());
    } catch (const ServiceError& refusal) {
        return refusal.what();
    }
}

Status signOut(const Arguments& arguments) {
    if (!arguments.operands().empty())
        misuse(quoted(arguments.operands().front()) + " is not wanted here.");
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
        failure("You are signed out here, but the service may still take the sign-in: " + why);
    print("You are signed out.\n");
    return Status::done;
}

constexpr std::array<Option, 1> signOutOptions{{serverOption}};

} // namespace

const Command signOutCommand{.name = "sign-out",
                             .operands = "",
                             .summary = "Signs out of the sharing service.",
                             .options = signOutOptions,
                             .run = signOut};

} // namespace tarnwick
