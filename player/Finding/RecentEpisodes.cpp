#include "player/Finding/RecentEpisodes.h"

#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Text/OutsideJSON.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "player/Model/Autosave.h"

#include <algorithm>

namespace tarnwick::player {

std::filesystem::path recentEpisodesFile() {
    return stateFolder() / "recent.json";
}

RecentEpisodes::RecentEpisodes(std::filesystem::path file) : file_(std::move(file)) {
    read();
}

void RecentEpisodes::read() {
    const auto bytes = fileBytes(file_);
    const auto json = bytes ? objectOf(*bytes) : std::nullopt;
    if (!json)
        return;
    files_.clear();
    for (const nlohmann::json& one : memberOf(*json, "files"))
        if (one.is_string() && files_.size() < most)
            files_.emplace_back(one.get<std::string>());
}

void RecentEpisodes::add(const std::filesystem::path& file) {
    read();
    std::erase(files_, file);
    files_.insert(files_.begin(), file);
    if (files_.size() > most)
        files_.resize(most);
    write();
}

void RecentEpisodes::remove(const std::filesystem::path& file) {
    read();
    std::erase(files_, file);
    write();
}

void RecentEpisodes::write() const {
    nlohmann::json list = nlohmann::json::array();
    for (const auto& file : files_)
        list.push_back(file.string());
    std::error_code error;
    std::filesystem::create_directories(file_.parent_path(), error);
    try {
        writeWholeFile(file_, nlohmann::json{{"files", list}}.dump(
                                  2, ' ', false, nlohmann::json::error_handler_t::replace));
    } catch (const std::exception&) { // a full disk; the list is worth no message
    }
}

} // namespace tarnwick::player
