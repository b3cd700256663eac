#include "player/Layout/WindowLayout.h"

#include "player/Layout/DarkStyle.h"
#include "player/Layout/Themes.h"

#include <QActionGroup>
#include <QApplication>
#include <QEvent>
#include <QMenu>
#include <QSplitter>
#include <QStyle>
#include <algorithm>
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
    QPalette (*palette)();
};
// Without a palette: that of the desktop.
constexpr std::array<ThemeRow, 4> themes{{
    {"desktop", "As the &desktop", nullptr},
    {"light", "&Light", lightPalette},
    {"dark", "D&ark", darkPalette},
    {"contrast", "&High contrast", highContrastPalette},
}};

} // namespace

WindowLayout::WindowLayout(UserSettings& kept, QMainWindow& window, Actions& actions,
                           std::function<QByteArray()> state)
    : QObject(&window), kept_(kept), window_(window), state_(std::move(state)),
      desktopStyle_(QApplication::style()->objectName()),
      desktopPalette_(withReadableDimText(QApplication::palette())) {
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
        QAction* action = actions.add(menu, tr(row.text), [this, name] {
            kept_.set(QLatin1String(themeKey), name);
            setTheme(name);
        });
        action->setCheckable(true);
        action->setChecked(name == chosen || &row == &themes.front());
        group->addAction(action);
    }
    setTheme(chosen);
}

// An unknown name is that of the desktop.
void WindowLayout::setTheme(const QString& theme) {
    const auto row = std::ranges::find(themes, theme,
                                       [](const ThemeRow& one) { return QLatin1String(one.name); });
    const bool isDesktop = row == themes.end() || row->palette == nullptr;
    const QPalette palette = isDesktop ? desktopPalette_ : row->palette();
    const QString style = isDesktop ? desktopStyle_ : QStringLiteral("fusion");
    if (style == QLatin1String("fusion") && isDarkPalette(palette))
        QApplication::setStyle(new DarkStyle);
    else
        QApplication::setStyle(style);
    if (palette != QApplication::palette()) // else it goes on following the desktop's
        QApplication::setPalette(palette);
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
