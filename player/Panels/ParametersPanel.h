// A slider for each parameter of the active episode.
#pragma once

#include "player/App/Player.h"

#include <QWidget>
#include <vector>

class QLabel;
class QMenu;
class QVBoxLayout;

namespace tarnwick::player {

class ParameterRow;

class ParametersPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ParametersPanel(Player& player, QWidget* parent = nullptr);

  signals:
    // The context menu of a parameter opens: the parts of the window add their actions.
    void menuWanted(const QString& parameter, QMenu* menu);

  private:
    void follow();  // the active document
    void rebuild(); // the rows, if the declarations changed
    void addRow(const ParamDecl& param);
    void showValues();
    void toggleKey(const ParamDecl& param);

    Player& player_;
    OpenDocument* document_ = nullptr;
    std::vector<ParameterRow*> rows_; // owned as children
    QVBoxLayout* list_;
    QLabel* empty_;
};

} // namespace tarnwick::player
