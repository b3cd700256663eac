// The table of bindings: learning, adding, editing and deleting them.
#pragma once

#include "player/ControlPanel/LiveControl.h"

#include <QWidget>

class QCheckBox;
class QLabel;
class QPushButton;
class QTreeWidget;

namespace tarnwick::player {

class BindingForm;
class TargetBox;

class BindingsView : public QWidget {
    Q_OBJECT

  public:
    BindingsView(Player& player, LiveControl& control, QWidget* parent = nullptr);

    // Learns the chosen target, or stops.
    void toggleLearning();
    // Chooses the target and learns it.
    void learn(const ControlTarget& target);

  protected:
    void keyPressEvent(QKeyEvent* event) override;

  private:
    QWidget* learningRow();
    QWidget* list();
    void followParams();
    void showBindings();
    QString hint() const; // empty: none
    void showForm();
    int chosen() const; // index of a binding; -1: none
    void choose(int index);
    void add();
    void remove();
    void edit();

    Player& player_;
    LiveControl& control_;
    TargetBox* target_;
    QCheckBox* onlyHere_;
    QPushButton *learn_, *delete_;
    QLabel* hint_;
    QTreeWidget* table_;
    BindingForm* form_;
    std::vector<ParamDecl> params_;
};

} // namespace tarnwick::player
