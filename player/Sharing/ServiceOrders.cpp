#include "player/Sharing/ServiceOrders.h"

#include "TarnwickCore/Episode/Episode.h"
#include "TarnwickCore/Text/OutsideJSON.h"

#include <utility>

namespace tarnwick::player {
namespace {

constexpr const char* settingsFile = "settings.json";

// The smallest texts that a movie and a picture begin with.
constexpr std::string_view standInLoop("\0\0\0\x08"
                                       "ftyp",
                                       8);
constexpr std::string_view standInThumb("\xff\xd8\xff");

Order sharing(const ShareRequest& request) {
    const std::string file = request.episode.fileName();
    return {.title = request.title,
            .words = {"share", OrderWord::file(file), "--settings", OrderWord::file(settingsFile),
                      "--title=" + request.title, "--description=" + request.description,
                      "--licence", std::string(rawValue(request.licence)), "--visibility",
                      std::string(rawValue(request.visibility))},
            .inputs = {{file, request.episode.text},
                       {settingsFile, settingsDocument(request.episode.settings,
                                                       request.episode.settings.name)}}};
}

} // namespace

std::optional<Account> Account::read(std::string_view json) {
    const auto object = objectOf(json);
    const auto email = object ? textOf(*object, "email") : std::nullopt;
    if (!email)
        return std::nullopt;
    return Account{.email = *email, .handle = textOf(*object, "handle")};
}

std::optional<SignInCode> SignInCode::read(std::string_view json) {
    const auto object = objectOf(json);
    const auto code = object ? textOf(*object, "code") : std::nullopt;
    const auto page = object ? textOf(*object, "page") : std::nullopt;
    return code && page ? std::optional(SignInCode{*code, *page}) : std::nullopt;
}

Order signInOrder() {
    return {.title = "Sign in", .words = {"sign-in", "--no-browser", "--json"}};
}

Order whoAmIOrder() {
    return {.title = "Account", .words = {"whoami", "--json"}};
}

Order signOutOrder() {
    return {.title = "Sign out", .words = {"sign-out"}};
}

Order handleOrder(const std::string& handle) {
    return {.title = "Public name", .words = {"handle", "--", handle}};
}

ShareUpload ShareRequest::upload() const {
    const Episode shared = Episode::of(episode.text);
    return {.title = title,
            .description = description,
            .licence = licence,
            .visibility = visibility,
            .source = episode.text,
            .params = shared.params(),
            .loop = std::string(standInLoop),
            .thumb = std::string(standInThumb)};
}

Order previewOrder(const ShareRequest& request) {
    Order order = sharing(request);
    addChannels(order, request.episode);
    addHeard(order, request.episode);
    order.words.insert(order.words.end(), {"--preview", OrderWord::file(previewFolder)});
    return order;
}

Order shareOrder(const ShareRequest& request, const std::filesystem::path& preview) {
    Order order = sharing(request);
    order.words.insert(order.words.end(), {"--loop", (preview / "loop.mp4").string(), "--thumb",
                                           (preview / "thumb.jpg").string()});
    return order;
}

Order openOrder(const std::string& link) {
    return {.title = link, .words = {"open", "--no-play", "-o", OrderWord::file("."), "--", link}};
}

} // namespace tarnwick::player
