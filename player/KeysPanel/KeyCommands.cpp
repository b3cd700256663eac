#include "player/KeysPanel/KeyCommands.h"

#include "TarnwickCore/Performance/Transport.h"

#include <QKeyEvent>
#include <QKeySequence>
#include <QMenu>
#include <algorithm>
#include <array>

namespace tarnwick::player {
namespace {

using Ease = KeyframeTracks::Ease;
using Extend = KeysEditor::Extend;

constexpr double frame = 1.0 / Transport::framesPerSecond;
constexpr double closer = 1.5;
constexpr auto none = QKeyCombination(Qt::Key_unknown);

enum class Needs : std::uint8_t { nothing, selection, parameters };

struct KeyCommand {
    const char* text; // in the context menu; empty: not in it; "-": a line
    std::array<QKeyCombination, 3> keys{none, none, none};
    Needs needs = Needs::nothing;
    void (*run)(KeysEditor& editor, KeysView& view) = nullptr;
};

template <Ease ease> void setEase(KeysEditor& editor, KeysView&) {
    editor.setEase(ease);
}
template <Direction direction, Extend extend> void stepKey(KeysEditor& editor, KeysView&) {
    editor.stepKey(direction, extend);
}
template <int rows, Extend extend> void stepRow(KeysEditor& editor, KeysView&) {
    editor.stepRow(rows, extend);
}
template <Direction direction, Extend extend> void goToEnd(KeysEditor& editor, KeysView&) {
    editor.goToEnd(direction, extend);
}
template <int frames> void nudgeTime(KeysEditor& editor, KeysView&) {
    editor.nudge({.seconds = frames * frame});
}
template <int percent> void nudgeValue(KeysEditor& editor, KeysView&) {
    editor.nudge({.share = percent / 100.0});
}
template <void (KeysEditor::*run)()> void call(KeysEditor& editor, KeysView&) {
    (editor.*run)();
}

void frameSelection(KeysEditor& editor, KeysView& view) {
    const auto span = editor.selection().span();
    span ? view.show(*span) : view.showAll();
}
void copySelection(KeysEditor& editor, KeysView&) {
    editor.copy();
}

constexpr auto ctrlShift = Qt::CTRL | Qt::SHIFT;

// The first row of a key is the one that is run.
const std::array commands{
    KeyCommand{
        "&Add key at the playhead", {Qt::Key_Insert}, Needs::parameters, call<&KeysEditor::addKey>},
    KeyCommand{"Add keys of all &parameters",
               {Qt::SHIFT | Qt::Key_Insert},
               Needs::parameters,
               call<&KeysEditor::addKeysForAll>},
    KeyCommand{"-"},
    KeyCommand{"&Linear", {Qt::Key_1}, Needs::selection, setEase<Ease::linear>},
    KeyCommand{"S&mooth", {Qt::Key_2}, Needs::selection, setEase<Ease::smooth>},
    KeyCommand{"&Hold", {Qt::Key_3}, Needs::selection, setEase<Ease::hold>},
    KeyCommand{"&Exact numbers",
               {Qt::Key_Return, Qt::Key_Enter, Qt::Key_F2},
               Needs::selection,
               [](KeysEditor& editor, KeysView&) { emit editor.entryWanted(); }},
    KeyCommand{"-"},
    KeyCommand{"Cu&t",
               {Qt::CTRL | Qt::Key_X, Qt::SHIFT | Qt::Key_Delete},
               Needs::selection,
               call<&KeysEditor::cut>},
    KeyCommand{"&Copy",
               {Qt::CTRL | Qt::Key_C, Qt::CTRL | Qt::Key_Insert},
               Needs::selection,
               copySelection},
    KeyCommand{"Paste at the pla&yhead",
               {Qt::CTRL | Qt::Key_V},
               Needs::parameters,
               call<&KeysEditor::paste>},
    KeyCommand{"&Delete",
               {Qt::Key_Delete, Qt::Key_Backspace},
               Needs::selection,
               call<&KeysEditor::removeSelected>},
    KeyCommand{"-"},
    KeyCommand{
        "&Select all", {Qt::CTRL | Qt::Key_A}, Needs::parameters, call<&KeysEditor::selectAll>},
    KeyCommand{
        "Select &none", {ctrlShift | Qt::Key_A}, Needs::selection, call<&KeysEditor::selectNone>},
    KeyCommand{"Select keys of the pa&rameter",
               {Qt::Key_P},
               Needs::parameters,
               call<&KeysEditor::selectParam>},
    KeyCommand{
        "Select keys at th&is time", {Qt::Key_T}, Needs::parameters, call<&KeysEditor::selectTime>},
    KeyCommand{"-"},
    KeyCommand{"Zoom to the se&lection", {Qt::Key_F}, Needs::nothing, frameSelection},
    KeyCommand{"Show all tim&es",
               {Qt::Key_0},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.showAll(); }},
    KeyCommand{"Always sho&w this curve",
               {Qt::Key_C},
               Needs::parameters,
               [](KeysEditor& editor, KeysView&) { editor.togglePin(); }},
    KeyCommand{"",
               {Qt::Key_Plus, Qt::Key_Equal, Qt::SHIFT | Qt::Key_Plus},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.zoomInMiddle(closer); }},
    KeyCommand{"",
               {Qt::Key_Minus},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.zoomInMiddle(1 / closer); }},
    KeyCommand{"",
               {Qt::Key_S},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.setSnaps(!view.snaps()); }},
    KeyCommand{"",
               {Qt::Key_Y},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.setFollows(!view.follows()); }},
    KeyCommand{"",
               {Qt::Key_PageUp},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.pan(-view.range().length() * 0.9); }},
    KeyCommand{"",
               {Qt::Key_PageDown},
               Needs::nothing,
               [](KeysEditor&, KeysView& view) { view.pan(view.range().length() * 0.9); }},
    KeyCommand{"", {Qt::Key_Space}, Needs::nothing, call<&KeysEditor::toggleFocused>},
    KeyCommand{"", {Qt::Key_Left}, Needs::nothing, stepKey<Direction::back, Extend::no>},
    KeyCommand{"", {Qt::Key_Right}, Needs::nothing, stepKey<Direction::forward, Extend::no>},
    KeyCommand{
        "", {Qt::SHIFT | Qt::Key_Left}, Needs::nothing, stepKey<Direction::back, Extend::yes>},
    KeyCommand{
        "", {Qt::SHIFT | Qt::Key_Right}, Needs::nothing, stepKey<Direction::forward, Extend::yes>},
    KeyCommand{"", {Qt::Key_Up}, Needs::nothing, stepRow<-1, Extend::no>},
    KeyCommand{"", {Qt::Key_Down}, Needs::nothing, stepRow<1, Extend::no>},
    KeyCommand{"", {Qt::SHIFT | Qt::Key_Up}, Needs::nothing, stepRow<-1, Extend::yes>},
    KeyCommand{"", {Qt::SHIFT | Qt::Key_Down}, Needs::nothing, stepRow<1, Extend::yes>},
    KeyCommand{"", {Qt::Key_Home}, Needs::nothing, goToEnd<Direction::back, Extend::no>},
    KeyCommand{"", {Qt::Key_End}, Needs::nothing, goToEnd<Direction::forward, Extend::no>},
    KeyCommand{
        "", {Qt::SHIFT | Qt::Key_Home}, Needs::nothing, goToEnd<Direction::back, Extend::yes>},
    KeyCommand{
        "", {Qt::SHIFT | Qt::Key_End}, Needs::nothing, goToEnd<Direction::forward, Extend::yes>},
    KeyCommand{"", {Qt::CTRL | Qt::Key_Left}, Needs::nothing, nudgeTime<-1>},
    KeyCommand{"", {Qt::CTRL | Qt::Key_Right}, Needs::nothing, nudgeTime<1>},
    KeyCommand{"", {ctrlShift | Qt::Key_Left}, Needs::nothing, nudgeTime<-10>},
    KeyCommand{"", {ctrlShift | Qt::Key_Right}, Needs::nothing, nudgeTime<10>},
    KeyCommand{"", {Qt::CTRL | Qt::Key_Up}, Needs::nothing, nudgeValue<1>},
    KeyCommand{"", {Qt::CTRL | Qt::Key_Down}, Needs::nothing, nudgeValue<-1>},
    KeyCommand{"", {ctrlShift | Qt::Key_Up}, Needs::nothing, nudgeValue<10>},
    KeyCommand{"", {ctrlShift | Qt::Key_Down}, Needs::nothing, nudgeValue<-10>},
    KeyCommand{"", {Qt::CTRL | Qt::Key_Z}, Needs::nothing, call<&KeysEditor::undo>},
    KeyCommand{
        "", {ctrlShift | Qt::Key_Z, Qt::CTRL | Qt::Key_Y}, Needs::nothing, call<&KeysEditor::redo>},
};

bool isPossible(const KeyCommand& command, const KeysEditor& editor) {
    switch (command.needs) {
    case Needs::nothing:
        return true;
    case Needs::selection:
        return !editor.selection().isEmpty();
    case Needs::parameters:
        return !editor.params().empty();
    }
    return true;
}

const KeyCommand* commandOf(const QKeyEvent& event) {
    const QKeyCombination pressed(event.modifiers() & ~Qt::KeypadModifier,
                                  static_cast<Qt::Key>(event.key()));
    const auto found = std::ranges::find_if(commands, [&](const KeyCommand& command) {
        return std::ranges::find(command.keys, pressed) != command.keys.end();
    });
    return found == commands.end() || pressed == none ? nullptr : &*found;
}

} // namespace

bool isKeyCommand(const QKeyEvent& event) {
    return commandOf(event) != nullptr;
}

bool runKeyCommand(const QKeyEvent& event, KeysEditor& editor, KeysView& view) {
    const KeyCommand* command = commandOf(event);
    if (command == nullptr)
        return false;
    if (isPossible(*command, editor))
        command->run(editor, view);
    return true;
}

void fillKeysMenu(QMenu& menu, KeysEditor& editor, KeysView& view) {
    for (const KeyCommand& command : commands) {
        if (command.run == nullptr) {
            menu.addSeparator();
            continue;
        }
        if (*command.text == '\0')
            continue;
        const QString keys = QKeySequence(command.keys[0]).toString(QKeySequence::NativeText);
        QAction* action =
            menu.addAction(KeysEditor::tr(command.text) + QLatin1Char('\t') + keys, &menu,
                           [&command, &editor, &view] { command.run(editor, view); });
        action->setEnabled(isPossible(command, editor));
    }
}

} // namespace tarnwick::player
