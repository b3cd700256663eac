// Files that the programs keep and other programs may damage: control settings, drafts, recent
// episodes, channels, records of installed savers, XScreenSaver's list, chapters, progress, levels.
#include "TarnwickBase/TemporaryFolder.h"
#include "TarnwickBase/WholeFile.h"
#include "TarnwickCore/Live/LevelCodes.h"
#include "TarnwickCore/Movies/VideoChapters.h"
#include "fuzz/Input.h"
#include "fuzz/Law.h"
#include "player/Channels/ChannelMemory.h"
#include "player/Control/ControlSettings.h"
#include "player/Exports/Progress.h"
#include "player/Finding/RecentEpisodes.h"
#include "player/Model/Autosave.h"
#include "saver/Installing/InstallRecord.h"
#include "saver/Installing/ProgramList.h"

#include <fstream>

using namespace tarnwick;
using namespace tarnwick::fuzz;

namespace {

void readControl(std::string_view text) {
    const auto [settings, isDamaged] = player::decoded(text);
    for (const player::Binding& binding : settings.bindings) {
        law(binding.step > 0 && binding.step <= 1, "a step is in its range");
        for (const float input : {0.0f, 0.3f, 1.0f}) {
            const float output = player::outputPosition(binding, input);
            law(output >= 0 && output <= 1, "a position is in the range of the parameter");
        }
    }
    const auto again = player::decoded(player::encoded(settings));
    law(!again.isDamaged && again.settings == settings, "written settings read back equal");
}

void readChapters(std::string_view text) {
    try {
        const VideoChapters chapters = VideoChapters::decode(text);
        law(VideoChapters::decode(chapters.json()) == chapters, "written chapters read back equal");
    } catch (const VideoChaptersError&) {
    }
}

void readLevels(std::string_view text) {
    if (const auto codes = LevelCodes::decode(text))
        law(codes->encode() == text, "levels have one text");
}

void readProgress(std::string_view line) {
    const auto progress = player::Progress::read(line);
    if (!progress)
        return;
    law(progress->share() >= 0 && progress->share() <= 1, "a share is in [0, 1]");
    player::Pace pace;
    pace.add(*progress);
    law(player::progressText(*progress, pace).find('\n') == std::string::npos,
        "progress is one line");
}

void changeProgramList(std::string_view settings) {
    static const ListedProgram added{.name = "Rose", .command = "/home/me/rose --root"};
    constexpr std::string_view program = "/home/me/rose";
    const std::string with = withProgram(settings, added);
    law(listsProgram(with, program), "an added program is in the list");
    const std::string without = withoutProgram(with, program);
    law(!listsProgram(without, program), "a removed program is not in the list");
    law(withoutProgram(without, program) == without, "a missing program is removed by no change");
}

// The readers that take the name of a file.
class Files {
  public:
    void read(std::string_view text) {
        write("install.json", text);
        if (const auto record = recordIn(folder_.path())) {
            writeRecord(*record, folder_.path());
            law(recordIn(folder_.path()) == record, "a written record reads back equal");
            for (const auto& [file, digests] : record->files)
                law(file.is_absolute(), "a recorded file has an absolute path");
        }
        write("recent.json", text);
        player::RecentEpisodes recent(place("recent.json"));
        law(recent.files().size() <= player::RecentEpisodes::most, "a list has its maximum");
        recent.add("/home/me/a.metal");
        law(player::RecentEpisodes(place("recent.json")).files() == recent.files(),
            "a written list reads back equal");
        rememberChannels(text);
        readDraft(text);
    }

  private:
    TemporaryFolder folder_;

    std::filesystem::path place(const char* name) const { return folder_.path() / name; }
    void write(const char* name, std::string_view text) const {
        std::ofstream(place(name), std::ios::binary) << text;
    }

    void rememberChannels(std::string_view text) {
        write("channels.json", text);
        const std::filesystem::path episode = "/home/me/a.metal";
        player::ChannelChoices choices =
            player::rememberedChannels(place("channels.json"), episode);
        choices[1] = player::choiceOf("/home/me/b.metal");
        player::rememberChannels(place("channels.json"), episode, choices);
        law(player::rememberedChannels(place("channels.json"), episode) == choices,
            "remembered channels read back equal");
    }

    void readDraft(std::string_view text) {
        std::filesystem::create_directories(place("drafts/one"));
        write("drafts/one/draft.json", text);
        for (const player::LeftDraft& left : player::leftDrafts(place("drafts"))) {
            const auto draft = player::Autosave::takeOver(left.folder);
            law(draft && draft->keep(left.draft), "a draft is kept");
        }
    }
};

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    static Files files;
    const std::string_view text = textOf(bytes, size);
    readControl(text);
    readChapters(text);
    readLevels(text);
    readProgress(text);
    changeProgramList(text);
    files.read(text);
    return 0;
}
