// tarnwick whoami, tarnwick handle: the account that is signed in, and the name that others see.
#include "TarnwickCore/Text/TerminalText.h"
#include "programs/Commands/Command.h"
#include "programs/Service/Awaited.h"
#include "programs/Service/Service.h"
#include "programs/Terminal/JSONText.h"

#include <array>

namespace tarnwick {
namespace {

Status whoAmI(const Arguments& arguments) {
    const Service service(arguments);
    const bool asJSON = arguments.has("--json");
    if (asJSON && !service.token()) {
        print("null\n");
        return Status::done;
    }
    const Secret token = service.wantedToken();
    HeldSignals signals;
    const Me me = awaited(signals, [&](std::stop_token stop) {
        return service.client().me(token.text(), std::move(stop));
    });
    if (asJSON) {
        print(jsonText(accountJSON(me.email, me.handle)) + "\n");
        return Status::done;
    }
    print("Email:  " + terminalText(me.email) + "\nHandle: " +
          (me.handle ? terminalText(*me.handle) : "none; tarnwick handle NAME chooses one") + "\n");
    return Status::done;
}

Status handle(const Arguments& arguments) {
    const std::string wanted(arguments.operand());
    if (!APIClient::isValidHandle(wanted))
        misuse("A handle has 3 to 24 characters, each a letter from a to z, a digit or a hyphen.");
    const Service service(arguments);
    const Secret token = service.wantedToken();
    HeldSignals signals;
    const std::string held = awaited(signals, [&](std::stop_token stop) {
        return service.client().setHandle(wanted, token.text(), std::move(stop));
    });
    print("Your handle is " + terminalText(held) + ".\n");
    return Status::done;
}

constexpr auto whoAmIOptions =
    joined(std::array<Option, 1>{{{.name = "--json",
                                   .help = "print JSON; null if no account is signed in"}}},
           serviceOptions);

} // namespace

const Command whoAmICommand{.name = "whoami",
                            .operands = "",
                            .summary =
                                "Prints the account that is signed in to the sharing service.",
                            .options = whoAmIOptions,
                            .run = whoAmI};

const Command handleCommand{.name = "handle",
                            .operands = "NAME",
                            .summary = "Chooses the public name of your account.",
                            .options = serviceOptions,
                            .run = handle};

} // namespace tarnwick
