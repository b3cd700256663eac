#include "player/VariationsPanel/VariationsActions.h"

#include "player/VariationsPanel/VariationsPanel.h"

#include <array>

namespace tarnwick::player {
namespace {

struct Row {
    const char* text;
    const char* keys;
    void (VariationsPanel::*run)();
};

constexpr std::array<Row, 8> rows{{
    {"Ra&ndomise parameters", "Ctrl+Alt+Shift+V", &VariationsPanel::randomise},
    {"New varia&tions", "Ctrl+Alt+V", &VariationsPanel::vary},
    {"Keep snapshot &A", "Ctrl+Alt+1", &VariationsPanel::keepA},
    {"Keep &snapshot B", "Ctrl+Alt+2", &VariationsPanel::keepB},
    {"Morph to&wards A", "Ctrl+Alt+,", &VariationsPanel::morphTowardsA},
    {"M&orph towards B", "Ctrl+Alt+.", &VariationsPanel::morphTowardsB},
    {"Reset all parameters", "Ctrl+Alt+0", &VariationsPanel::resetAll},
    {"Export variations...", "Ctrl+Alt+E", &VariationsPanel::askForExport},
}};

} // namespace

void addVariationsActions(Actions& actions, VariationsPanel& panel) {
    actions.separate(ActionMenu::play);
    for (const Row& row : rows)
        actions.add(ActionMenu::play, Actions::tr(row.text), QKeySequence(Actions::tr(row.keys)),
                    [&panel, run = row.run] { (panel.*run)(); });
}

} // namespace tarnwick::player
