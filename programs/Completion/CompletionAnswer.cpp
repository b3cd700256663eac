#include "programs/Completion/CompletionAnswer.h"

#include "TarnwickCore/CommandLine/Completion.h"
#include "TarnwickCore/Text/Numbers.h"
#include "TarnwickPlatform/Bundle/TextFile.h"
#include "saver/Installing/InstalledSavers.h"

#include <algorithm>
#include <filesystem>

namespace tarnwick {
namespace {

namespace fs = std::filesystem;

// A pipe would block the shell; a longer file is no episode.
constexpr std::uintmax_t longestEpisode = std::uintmax_t{1} << 20; // bytes

std::vector<ParamDecl> paramsOf(const std::string& episode) {
    std::error_code unread;
    if (!fs::is_regular_file(episode, unread) || fs::file_size(episode, unread) > longestEpisode)
        return {};
    return ParamParser::parse(fileBytes(episode).value_or(""));
}

Completion commandNames(std::span<const Command* const> commands, std::string_view text) {
    Completion found;
    for (const Command* command : commands)
        if (command->name.starts_with(text) && command->name.find(' ') == std::string_view::npos)
            found.words.push_back({std::string(command->name), std::string(command->summary)});
    return found;
}

// Adds the second words of the names that begin with `name`.
void addSecondWords(std::span<const Command* const> commands, std::string_view name,
                    std::string_view text, Completion& found) {
    const std::string start = std::string(name) + " ";
    for (const Command* command : commands)
        if (command->name.starts_with(start + std::string(text)))
            found.words.push_back(
                {std::string(command->name.substr(start.size())), std::string(command->summary)});
}

Completion firstWords(std::span<const Command* const> commands, std::string_view text) {
    Completion found = commandNames(commands, text);
    for (const auto& [word, purpose] : {std::pair{"help", "Prints the options of a command."},
                                        {"--help", "Lists the commands."},
                                        {"--version", "Prints the release."}})
        if (std::string_view(word).starts_with(text))
            found.words.push_back({word, purpose});
    return found;
}

// The savers of this user, for commands that take one.
void addSavers(const Command& command, std::string_view text, Completion& found) {
    if (&command != &saverPreviewCommand && &command != &saverUninstallCommand)
        return;
    for (const InstalledSaver& saver : installedSavers(saverPlaces()))
        if (saver.id().starts_with(text))
            found.words.push_back({saver.id(), saver.name});
}

// `words` begin with the name of the command.
Completion completed(std::span<const Command* const> commands, std::span<const char* const> words,
                     std::size_t at) {
    if (at == 0)
        return firstWords(commands, words[0]);
    const std::string_view name = words[0];
    if (name == "help")
        return at == 1 ? commandNames(commands, words[1]) : Completion();
    std::size_t wordCount = 0;
    const Command* command = commandIn(commands, words.first(at), wordCount);
    Completion found;
    if (command != nullptr) {
        found = completionOf(formOf(*command), words.subspan(wordCount), at - wordCount, paramsOf);
        addSavers(*command, words[at], found);
    }
    if (at == 1)
        addSecondWords(commands, name, words[1], found);
    return found;
}

// `words` begin with the name of a program.
Completion completedLine(std::span<const Command* const> commands,
                         std::span<const char* const> words, std::size_t at) {
    if (at == 0)
        return {};
    const std::string program = fs::path(words[0]).filename().string();
    for (const auto& [name, command] :
         {std::pair{"tarnwick-saver", &saverCommand}, {"tarnwick-player", &playCommand}})
        if (program == name)
            return completionOf(formOf(*command), words.subspan(1), at - 1, paramsOf);
    return completed(commands, words.subspan(1), at - 1);
}

// A name or a description with a line break or a tab would be two.
std::string inOneLine(std::string text) {
    std::ranges::replace_if(
        text, [](char c) { return static_cast<unsigned char>(c) < 0x20; }, ' ');
    return text;
}

std::string linesOf(const Completion& completion) {
    std::string lines;
    for (const auto& [word, purpose] : completion.words)
        lines += word + "\t" + inOneLine(purpose) + "\n";
    if (const auto& files = completion.files) {
        lines += (files->areFolders ? ":folders\t" : ":files\t") + inOneLine(files->before);
        for (std::size_t i = 0; i < files->endings.size(); ++i)
            lines += (i == 0 ? "\t" : " ") + files->endings[i];
        lines += "\n";
    }
    return lines;
}

} // namespace

std::string completionAnswer(std::span<const Command* const> commands,
                             std::span<const char* const> words) {
    const auto index = words.empty() ? std::nullopt : unsignedIntegerOf(words[0]);
    if (!index || *index >= words.size() - 1)
        return {};
    return linesOf(completedLine(commands, words.subspan(1), static_cast<std::size_t>(*index)));
}

} // namespace tarnwick
