// A row of exact numbers for the selected keys, and of switches of the keys panel.
#pragma once

#include "player/KeysPanel/KeysEditor.h"

#include <QWidget>

class QComboBox;
class QDoubleSpinBox;
class QHBoxLayout;
class QLabel;
class QToolButton;

namespace tarnwick::player {

// With several keys: the time of the first, the value and the ease of the focused or first one.
// A number that is entered is for all of them.
class KeyFields : public QWidget {
    Q_OBJECT

  public:
    KeyFields(KeysEditor& editor, KeysView& view);

    void enterTime(); // gives the field of the time the focus

    QToolButton* sheetSwitch() const { return sheet_; }
    QToolButton* curvesSwitch() const { return curves_; }

  protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

  signals:
    void left();          // Escape: back to the keys
    void showAllWanted(); // also of the values
    void frameWanted();

  private:
    QDoubleSpinBox* number(QHBoxLayout* row, const QString& label, const QString& name,
                           const QString& tip);
    QToolButton* button(QHBoxLayout* row, const QString& text, const QString& tip);
    QToolButton* toggle(QHBoxLayout* row, const QString& text, const QString& tip);
    void makeEase(QHBoxLayout* row);
    void makeButtons(QHBoxLayout* row);
    void showState();
    void showView();

    KeysEditor& editor_;
    KeysView& view_;
    QDoubleSpinBox* time_;
    QDoubleSpinBox* value_;
    QDoubleSpinBox* length_;
    QComboBox* ease_ = nullptr;
    QLabel* count_;
    QToolButton* snap_ = nullptr;
    QToolButton* follow_ = nullptr;
    QToolButton* sheet_ = nullptr;
    QToolButton* curves_ = nullptr;
};

} // namespace tarnwick::player
