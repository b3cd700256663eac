#include "player/CommandList/CommandRows.h"

#include "player/Finding/WordSearch.h"

#include <QAction>
#include <QMenu>
#include <algorithm>
#include <set>
#include <utility>

namespace tarnwick::player {
namespace {

// Without the marks of mnemonics: "&Save && close..." is "Save & close".
QString plain(QString text) {
    text.replace(QStringLiteral("&&"), QStringLiteral("\x01"));
    text.remove(QLatin1Char('&'));
    text.replace(QLatin1Char('\x01'), QLatin1Char('&'));
    if (text.endsWith(QStringLiteral("...")))
        text.chop(3);
    return text;
}

struct Collected {
    std::vector<CommandRow> rows;
    std::set<const QAction*> seen;

    void add(QAction* action, const QString& menu) {
        if (action->isSeparator() || action->text().isEmpty() || !seen.insert(action).second)
            return;
        rows.push_back({action, plain(action->text()), menu,
                        action->shortcut().toString(QKeySequence::NativeText)});
    }
    void addMenu(const QMenu& menu, const QString& name) {
        for (QAction* action : menu.actions())
            if (const QMenu* below = action->menu())
                addMenu(*below, name + QStringLiteral(" \u203A ") + plain(below->title()));
            else
                add(action, name);
    }
};

} // namespace

std::vector<CommandRow> commandRows(const Actions& actions) {
    Collected collected;
    for (std::size_t index = 0; index < actionMenuCount; ++index) {
        const QMenu* menu = actions.menu(static_cast<ActionMenu>(index));
        collected.addMenu(*menu, plain(menu->title()));
    }
    for (QAction* action : actions.all())
        collected.add(action, {});
    return std::move(collected.rows);
}

std::vector<CommandRow> fitting(std::vector<CommandRow> rows, const QString& query) {
    std::vector<std::pair<int, CommandRow>> rated;
    const std::string letters = query.toStdString();
    for (CommandRow& row : rows) {
        auto fit = fitOf(letters, row.text.toStdString());
        if (!fit) // "file save"
            if (const auto inMenu = fitOf(letters, (row.menu + ' ' + row.text).toStdString()))
                fit = *inMenu / 2;
        if (fit)
            rated.emplace_back(*fit, std::move(row));
    }
    std::ranges::stable_sort(rated, std::ranges::greater{}, &std::pair<int, CommandRow>::first);
    std::vector<CommandRow> found;
    for (auto& [fit, row] : rated)
        found.push_back(std::move(row));
    return found;
}

} // namespace tarnwick::player
