// A slider for each parameter of the active episode.
#pragma once

#include "player/App/Player.h"

#include <QWidget>
#include <vector>

class QDoubleSpinBox;
class QLabel;
class QSlider;
class QToolButton;
class QVBoxLayout;

namespace tarnwick::player {

class ParametersPanel : public QWidget {
    Q_OBJECT

  public:
    explicit ParametersPanel(Player& player, QWidget* parent = nullptr);

  private:
    struct Row {
        ParamDecl param;
        QSlider* slider;
        QDoubleSpinBox* entry;
        QToolButton* key;
        QToolButton* reset;
    };

    void follow();  // the active document
    void rebuild(); // the rows, if the declarations changed
    void addRow(const ParamDecl& param);
    void showValues();
    void set(const Row& row, double value);
    void toggleKey(const Row& row);

    Player& player_;
    OpenDocument* document_ = nullptr;
    std::vector<ParamDecl> params_;
    std::vector<Row> rows_;
    QVBoxLayout* list_;
    QLabel* empty_;
    bool isShowing_ = false; // the controls follow the document, not the other way round
};

} // namespace tarnwick::player
