// tarnwick sign-in: an account of the sharing service, for the other commands to use.
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Browser.h"
#include "programs/Service/Service.h"
#include "programs/Service/SignInPoll.h"

#include <array>

namespace tarnwick {
namespace {

std::string accountText(const Approved& account, const std::string& place) {
    std::string text = "You are signed in as " + terminalText(account.email);
    if (account.handle)
        text += ", " + terminalText(*account.handle);
    text += ". The sign-in is kept in " + place + ".\n";
    if (!account.handle)
        text += "The account has no handle yet; tarnwick handle NAME chooses one.\n";
    return text;
}

Status signIn(const Arguments& arguments) {
    const Service service(arguments);
    HeldSignals signals;
    const LinkStart start = awaited(
        signals, [&](std::stop_token stop) { return service.client().startLink(std::move(stop)); });
    print("Your code is " + terminalText(start.code) + "\nConfirm it on " +
          terminalText(start.url.string()) + "\n");
    if (!arguments.has("--no-browser"))
        showInBrowser(start.url);
    Approved account = approvalOf(start, service.client(), signals);
    const Secret token(std::move(account.token));
    print(accountText(account, service.keep(token)));
    return Status::done;
}

constexpr auto signInOptions =
    joined(std::array<Option, 1>{{
               {.name = "--no-browser", .help = "only print the page's address"},
           }},
           serviceOptions);

} // namespace

const Command signInCommand{.name = "sign-in",
                            .operands = "",
                            .summary = "Signs in to the sharing service: shows a code, and waits "
                                       "until it is confirmed on the service's page.",
                            .options = signInOptions,
                            .run = signIn};

} // namespace tarnwick
