#include "programs/Manual/ManualRows.h"

#include <array>

namespace tarnwick {
namespace {

constexpr std::string_view all = "tarnwick tarnwick-saver tarnwick-player";
constexpr std::string_view commandLine = "tarnwick";
constexpr std::string_view saver = "tarnwick-saver";
constexpr std::string_view player = "tarnwick-player";
constexpr std::string_view windows = "tarnwick-saver tarnwick-player";
constexpr std::string_view withService = "tarnwick tarnwick-player";

// clang-format off
constexpr std::array examples = std::to_array<ManualExample>({
    {"new", "Rose", "Writes rose.metal, a first episode, into the current folder."},
    {"new", "Swarm --particles", "Begins with a cloud of particles."},
    {"meta", "rose.metal", "Prints what the episode says about itself, and its parameters."},
    {"meta", "rose.metal --json", "The same for a program."},
    {"check", "rose.metal", "Prints errors and warnings with their lines."},
    {"tokens", "rose.metal", "Shows the source in colours."},
    {"assemble", "rose.metal", "Shows the whole program that is compiled."},
    {"msl", "kernel.metal", "Lists the entry points of any Metal file."},
    {"msl", "kernel.metal --entry add -o add.spv", "Writes one entry point as SPIR-V."},
    {"msl", "kernel.metal -I include -D SIZE=64 --reflect json", "Prints what a program binds, and the layout of its records."},
    {"swiftui", "rose.metal -o Rose", "Writes a Swift package into the new folder Rose."},
    {"web", "rose.metal -o page", "Writes the page page/index.html, on which browsers draw the episode."},
    {"serve", "rose.metal", "Shows the episode in a browser, with each change that is saved."},
    {"serve", "episodes --listen 0.0.0.0", "Shows those of a folder to other machines too, by a link with a secret part."},
    {"still", "rose.metal -o rose.png", "Draws the still of the episode."},
    {"still", "rose.metal -o rose.png --time 3.5 --size 3840x2160 --set speed=2", "Draws another time and size with another value."},
    {"sheet", "rose.metal lake.metal -o sheet.png", "Draws the stills of two episodes on one picture."},
    {"thumbnail", "rose.metal -o rose.png --size 256", "Draws the picture that a file manager shows."},
    {"variations", "rose.metal --seed 7 --sheet variations.png", "Draws variations of the parameters on one picture."},
    {"walkthrough", "rose.metal", "Explains the episode page by page."},
    {"sound", "rose.metal -o rose.wav --duration 30", "Writes half a minute of the sound."},
    {"spectrum", "rose.metal --time 2 -o spectrum.png", "Draws the spectrum from the second second on."},
    {"export", "rose.metal -o rose.mp4", "Writes a movie in the format for the site."},
    {"export", "rose.metal -o loop.mp4 --find-loop 8 --loop 1", "Writes a movie of about eight seconds that loops."},
    {"export", "rose.metal -o video.mp4 --audio song.flac", "Writes a music video: the episode hears the song, which is the sound of the movie."},
    {"export", "rose.metal -o part.mp4 --duration 60 --frames 0..900", "Writes the first part of a movie, for tarnwick join."},
    {"join", "part-1.mp4 part-2.mp4 -o rose.mp4", "Joins two parts."},
    {"loop", "rose.metal --around 8", "Finds the length near eight seconds that loops best."},
    {"presets", "", "Lists the formats of movies."},
    {"sign-in", "", "Shows a code and opens the page on which to confirm it."},
    {"sign-out", "", "Signs out here and at the service."},
    {"whoami", "", "Prints the account that is signed in."},
    {"handle", "rose-painter", "Chooses the public name."},
    {"share", "rose.metal --title Rose --visibility unlisted", "Publishes the episode for those who have its address."},
    {"share", "rose.metal --title Rose --preview rose-upload", "Writes what would be sent into a folder, and sends nothing."},
    {"open", "tarnwick://open?src=ADDRESS -o Downloads", "Saves the shader of a link and shows it."},
    {"release", "", "Prints whether there is a newer release."},
    {"play", "rose.metal", "Opens the episode in the player."},
    {"play", "rose.metal --channel 0=clouds.jpg --osc 9000", "Shows a picture as channel 0, and listens to OSC messages."},
    {"saver", "rose.metal", "Shows the episode in a window."},
    {"saver", "--root", "Shows the saver's own episode as a screen saver."},
    {"saver", "rose.metal --offscreen 5 -o last.png", "Draws for five seconds without a window."},
    {"saver install", "rose.metal", "Installs the episode as a screen saver of this desktop."},
    {"saver install", "rose.metal --name Dusk --set speed=0.3", "The same with another name and value."},
    {"saver list", "", "Lists the screen savers."},
    {"saver preview", "dusk", "Shows the saver."},
    {"saver uninstall", "dusk", "Removes it again."},
    {"devices", "", "Lists the graphics devices."},
    {"doctor", "", "Checks drivers, codecs and other parts of this system."},
});

constexpr std::array variables = std::to_array<ManualFact>({
    {"TARNWICK_DEVICE", "The device that draws: its number in the list of tarnwick devices, or a part of its name. Default: a GPU if there is one, else the CPU driver.", all},
    {"TARNWICK_SERVER", "The address of the sharing service. Default: the site.", withService},
    {"TARNWICK_PROGRESS", "With json, long commands write their progress to standard error as one JSON object in each line.", commandLine},
    {"TARNWICK_SHADER_LOGS", "With 1, shaders are compiled with their logs (os_log), which appear on standard error.", all},
    {"TARNWICK_VALIDATION", "With 1, the Vulkan validation layer is switched on; with abort, its first message ends the process; gpu is abort with the checks that the layer adds to shaders.", all},
    {"TARNWICK_MSL_WORKER", "Another program of the compiler.", all},
    {"TARNWICK_MSL_WORKER_TALKS", "With 1, the standard error of the compiler's program is shown.", all},
    {"TARNWICK_MSL_DUMP", "A folder, into which the compiler writes its code after each step.", all},
    {"TARNWICK_CHECK_STEPS", "With 1, the compiler checks its code after each step; with all, the SPIR-V too.", all},
    {"TARNWICK_PIECES", "A number N: all work of the GPU is submitted in pieces of about N pixels, vertices or threads. For trials.", all},
    {"TARNWICK_LOSE_DEVICE", "A number N: each device is lost at its Nth submission, as after a fault of the driver; N:COUNT: the first COUNT devices are. For trials.", all},
    {"XSCREENSAVER_WINDOW", "The number of the window to show the saver in.", saver},
    {"DISPLAY, WAYLAND_DISPLAY", "The display of the windows.", windows},
    {"XDG_CACHE_HOME, XDG_CONFIG_HOME, XDG_DATA_HOME, XDG_STATE_HOME", "The folders of caches, settings, data and state. Defaults: those of the files below.", all},
    {"SSL_CERT_FILE", "The certificates with which the sharing service is checked.", withService},
});

constexpr std::array paths = std::to_array<ManualFact>({
    {"NAME.metal", "An episode: the source of a live shader.", all},
    {"NAME.json", "The settings document beside the episode: base values of parameters, and keys that change them over time.", all},
    {"~/.cache/tarnwick", "Compiled pipelines of the device. It may be deleted.", all},
    {"~/.cache/tarnwick/thumbnails", "Small pictures of episodes, 256 MB at most. It may be deleted.", player},
    {"~/.config/tarnwick/player.ini", "The player's layout and settings.", player},
    {"~/.config/tarnwick/control.json", "Bindings of OSC and MIDI.", player},
    {"~/.local/state/tarnwick", "Drafts of unsaved work, channels of episodes, and the account's token if the desktop has no keyring.", withService},
    {"~/.local/share/tarnwick/performances", "Recorded performances.", player},
    {"~/.xscreensaver", "The settings of XScreenSaver, to whose programs tarnwick saver install adds a line.", commandLine},
    {"~/.local/share/tarnwick/savers", "Screen savers that tarnwick saver install and the player made.", all},
});
// clang-format on

} // namespace

constinit const std::span<const ManualExample> manualExamples = examples;
constinit const std::span<const ManualFact> manualVariables = variables;
constinit const std::span<const ManualFact> manualPaths = paths;

} // namespace tarnwick
