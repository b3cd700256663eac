// The orders that talk to the sharing service. They run in child processes: no token and no network
// is in the player's own process.
#pragma once

#include "TarnwickCore/Service/ShareUpload.h"
#include "player/Exports/EpisodeOrders.h"
#include "player/Exports/Order.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace tarnwick::player {

// The account that is signed in.
struct Account {
    std::string email;
    std::optional<std::string> handle{}; // the public name; none until one is chosen

    bool operator==(const Account&) const = default;

    // Of a line of `tarnwick sign-in --json` or the text of `tarnwick whoami --json`. Absent for
    // any other text.
    static std::optional<Account> read(std::string_view json);
};

// A sign-in that the user confirms on `page`.
struct SignInCode {
    std::string code, page;

    bool operator==(const SignInCode&) const = default;
    static std::optional<SignInCode> read(std::string_view json);
};

Order signInOrder(); // prints a SignInCode, later an Account
Order whoAmIOrder(); // prints an Account; null if none is signed in
Order signOutOrder();
Order handleOrder(const std::string& handle);

// What is shared.
struct ShareRequest {
    EpisodeCopy episode;
    std::string title, description{};
    Licence licence = Licence::ccByNcSa;
    Visibility visibility = Visibility::public_;

    // As it would be sent, without the movie and the picture, for which stand-ins are there.
    ShareUpload upload() const;
};
// Draws all that would be sent into the folder `previewFolder` of the order.
inline constexpr const char* previewFolder = "preview";
Order previewOrder(const ShareRequest& request);
// Sends the movie and the picture of a preview. Prints the address of the page.
Order shareOrder(const ShareRequest& request, const std::filesystem::path& preview);

// Downloads the shader that a link names into the folder of the order, and prints the file.
Order openOrder(const std::string& link);

} // namespace tarnwick::player
