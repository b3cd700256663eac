// The list of completions below the cursor of an editor.
#pragma once

#include "player/Writing/Completion.h"

#include <QObject>
#include <vector>

class QCompleter;
class QRect;
class QStandardItemModel;
class QTreeView;
class QWidget;

namespace tarnwick::player {

// The editor keeps the focus; Up and Down choose, Return and Tab take, Escape hides.
class CompletionPopup : public QObject {
    Q_OBJECT

  public:
    explicit CompletionPopup(QWidget& editor);

    // Shows the list below `place`, which is in the editor's coordinates. An empty list hides it.
    void show(std::vector<Completion> list, const QRect& place);
    void hide();
    bool isShown() const;

  signals:
    void chosen(const tarnwick::player::Completion& completion);

  private:
    void fill();

    std::vector<Completion> list_;
    QStandardItemModel* model_;
    QCompleter* completer_;
    QTreeView* view_;
};

} // namespace tarnwick::player
