// The keys of the active episode's parameters over time: rows of keys, and their curves.
#pragma once

#include "player/KeysPanel/KeysEditor.h"

#include <QWidget>

class QScrollBar;

namespace tarnwick::player {

class CurveView;
class DopeSheet;
class KeyFields;
class KeyRuler;

class KeysPanel : public QWidget {
    Q_OBJECT

  public:
    explicit KeysPanel(Player& player, QWidget* parent = nullptr);

    KeysEditor& editor() { return *editor_; }
    KeysView& view() { return *view_; }
    void takeFocus(); // of the keyboard, for the keys

  protected:
    void resizeEvent(QResizeEvent* event) override;

  private:
    void layOut();
    void showTimes();
    void movePlayhead();

    KeysView* view_;
    KeysEditor* editor_;
    KeyFields* fields_;
    KeyRuler* ruler_;
    DopeSheet* sheet_;
    CurveView* curves_;
    QScrollBar* times_;   // milliseconds
    double playhead_ = 0; // seconds, as drawn
};

} // namespace tarnwick::player
