#include "player/Layout/WindowLayout.h"

#include "player/Layout/DarkStyle.h"
#include "player/Layout/Themes.h"

#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QSplitter>
#include <QStyle>
#include <array>

namespace tarnwick::player {
namespace {

constexpr int stateVersion = 1; // of the docks; another one is ignored

constexpr const char* geometryKey = "window/geometry";
constexpr const char* stateKey = "window/docks";
constexpr const char* splitKey = "window/split";
constexpr const char* versionKey = "window/version";
constexpr const char* themeKey = "window/theme";

struct ThemeRow {
    const char* name;
    const char* text;
};
constexpr std::array<ThemeRow, 3> themes{{
    {"desktop", "As the &desktop"},
    {"light", "&Light"},
    {"dark", "D&ark"},
}};

} // namespace

WindowLayout::WindowLayout(UserSettings& kept, QMainWindow& window, Actions& actions,
                           std::function<QByteArray()> state)
    : QObject(&window), kept_(kept), window_(window), state_(std::move(state)),
      desktopStyle_(QApplication::style()->objectName()), desktopPalette_(QApplication::palette()) {
    addThemes(actions);
    initial_ = window_.saveState();
    actions.add(ActionMenu::view, tr("Reset &layout"), {},
                [this] { window_.restoreState(initial_); });
    restore();
    window_.installEventFilter(this);
}

void WindowLayout::addThemes(Actions& actions) {
    QMenu* menu = actions.submenu(ActionMenu::view, tr("&Theme"));
    auto* group = new QActionGroup(this);
    const QString chosen = kept_.value(QLatin1String(themeKey)).toString();
    for (const ThemeRow& row : themes) {
        const QString name = QLatin1String(row.name);
        QAction* action = actions.add(menu, tr(row.text), [this, name] { setTheme(name); });
        action->setCheckable(true);
        action->setChecked(name == chosen || &row == &themes.front());
        group->addAction(action);
    }
    if (chosen == QLatin1String("light") || chosen == QLatin1String("dark"))
        setTheme(chosen);
}

void WindowLayout::setTheme(const QString& theme) {
    kept_.set(QLatin1String(themeKey), theme);
    if (theme == QLatin1String("dark")) {
        QApplication::setStyle(new DarkStyle);
        QApplication::setPalette(darkPalette());
        return;
    }
    const bool isDesktop = theme == QLatin1String("desktop");
    QApplication::setStyle(isDesktop ? desktopStyle_ : QStringLiteral("fusion"));
    QApplication::setPalette(isDesktop ? desktopPalette_ : lightPalette());
}

void WindowLayout::restore() {
    if (kept_.value(QLatin1String(versionKey)).toInt() != stateVersion)
        return;
    window_.restoreGeometry(kept_.value(QLatin1String(geometryKey)).toByteArray());
    if (!window_.restoreState(kept_.value(QLatin1String(stateKey)).toByteArray()))
        window_.restoreState(initial_);
    if (auto* split = window_.centralWidget()->findChild<QSplitter*>())
        split->restoreState(kept_.value(QLatin1String(splitKey)).toByteArray());
}

void WindowLayout::keep() {
    kept_.set(QLatin1String(versionKey), stateVersion);
    kept_.set(QLatin1String(geometryKey), window_.saveGeometry());
    kept_.set(QLatin1String(stateKey), state_());
    if (const auto* split = window_.centralWidget()->findChild<QSplitter*>())
        kept_.set(QLatin1String(splitKey), split->saveState());
}

bool WindowLayout::eventFilter(QObject* watched, QEvent* event) {
    if (watched == &window_ && event->type() == QEvent::Close)
        keep();
    return QObject::eventFilter(watched, event);
}

} // namespace tarnwick::player
