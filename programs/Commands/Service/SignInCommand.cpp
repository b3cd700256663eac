// tarnwick sign-in: an account of the sharing service, for the other commands to use.
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Browser.h"
#include "programs/Service/Service.h"
#include "programs/Service/SignInPoll.h"
#include "programs/Terminal/JSONText.h"

#include <nlohmann/json.hpp>

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

// One object a line, as soon as it is known.
void printLine(const nlohmann::ordered_json& object) {
    print(jsonText(object, JSONForm::oneLine) + "\n");
}

void sayCode(const LinkStart& start, bool asJSON) {
    if (asJSON)
        return printLine({{"code", start.code}, {"page", start.url.string()}});
    print("Your code is " + terminalText(start.code) + "\nConfirm it on " +
          terminalText(start.url.string()) + "\n");
}

void sayAccount(const Approved& account, const std::string& place, bool asJSON) {
    if (asJSON)
        return printLine(accountJSON(account.email, account.handle));
    print(accountText(account, place));
}

Status signIn(const Arguments& arguments) {
    const Service service(arguments);
    HeldSignals signals;
    const LinkStart start = awaited(
        signals, [&](std::stop_token stop) { return service.client().startLink(std::move(stop)); });
    const bool asJSON = arguments.has("--json");
    sayCode(start, asJSON);
    if (!arguments.has("--no-browser"))
        showInBrowser(start.url);
    Approved account = approvalOf(start, service.client(), signals);
    const Secret token(std::move(account.token));
    sayAccount(account, service.keep(token), asJSON);
    return Status::done;
}

constexpr auto signInOptions = joined(
    std::array<Option, 2>{{
        {.name = "--no-browser", .help = "only print the page's address"},
        {.name = "--json", .help = "print two lines of JSON: code and page, then the account"},
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
