// A slider for each parameter of the active episode.
#pragma once

#include "player/App/Player.h"

#include <QWidget>
#include <vector>

class QLabel;
class QVBoxLayout;

namespace tarnwick::player {

class ParameterRow;

class ParametersPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ParametersPanel(Player& player, QWidget* parent = nullptr);

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
