// What to export of the variations: a movie of all or one, the morph of the snapshots, a picture.
#pragma once

#include "player/Exports/EpisodeOrders.h"
#include "player/Model/ShownVariations.h"

#include <QDialog>

class QDoubleSpinBox;
class QPushButton;
class QRadioButton;
class QSpinBox;

namespace tarnwick::player {

class FileField;
class InputsBox;
class LastFolders;
class MovieFormatForm;

class VariationsDialog : public QDialog {
    Q_OBJECT

  public:
    // `seconds`: of each variation.
    VariationsDialog(LastFolders& folders, EpisodeCopy episode, ShownVariations shown,
                     bool hasSound, double seconds, QWidget* parent = nullptr);

    Order order() const; // of the dialog as it was accepted

  private:
    void makeParts(bool hasSound, double seconds);
    void layOut();
    void showOutput(); // with the ending of the result
    void showState();

    LastFolders& folders_;
    EpisodeCopy episode_;
    ShownVariations shown_;
    QRadioButton* all_;
    QRadioButton* one_;
    QRadioButton* morph_;
    QRadioButton* sheet_;
    QSpinBox* number_;
    QDoubleSpinBox* seconds_;
    MovieFormatForm* format_;
    FileField* output_;
    InputsBox* inputs_;
    QPushButton* accept_ = nullptr;
};

} // namespace tarnwick::player
