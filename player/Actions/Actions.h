// The actions of the player's window: each in a menu, with its shortcut, and in one list.
#pragma once

#include <QKeySequence>
#include <QObject>
#include <array>
#include <concepts>
#include <functional>
#include <vector>

class QAction;
class QMainWindow;
class QMenu;

namespace tarnwick::player {

// In the order of the menu bar.
enum class ActionMenu { file, edit, play, view, live, share, help };
inline constexpr std::size_t actionMenuCount = 7;

// On the thread of the windows. Each part of the window adds its own actions.
class Actions : public QObject {
    Q_OBJECT

  public:
    // Adds the menus to the window's menu bar. A menu without actions is hidden.
    explicit Actions(QMainWindow& window);

    // Adds an action to a menu. Without keys it has no shortcut.
    QAction* add(ActionMenu menu, const QString& text, const QKeySequence& keys,
                 std::function<void()> run);
    // The standard keys of a desktop may be those of another action of ours, which ends both.
    template <std::same_as<QKeySequence::StandardKey> Keys>
    QAction* add(ActionMenu menu, const QString& text, Keys keys,
                 std::function<void()> run) = delete;
    // Adds an action of another object, such as the switch of a dock.
    void add(ActionMenu menu, QAction* action);
    QMenu* submenu(ActionMenu menu, const QString& title);
    // Adds an action to a submenu of `menu`.
    QAction* add(QMenu* submenu, const QString& text, std::function<void()> run);
    void separate(ActionMenu menu);

    QMenu* menu(ActionMenu menu) const { return menus_[static_cast<std::size_t>(menu)]; }
    // In the order in which they were added; without separators and submenus.
    std::vector<QAction*> all() const;

  private:
    void keep(QAction* action);

    QMainWindow& window_;
    std::array<QMenu*, actionMenuCount> menus_{};
    std::vector<QAction*> all_;
};

} // namespace tarnwick::player
