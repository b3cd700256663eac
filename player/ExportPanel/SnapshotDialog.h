// Size and file of a picture.
#pragma once

#include "TarnwickBase/PixelSize.h"

#include <QDialog>

class QCheckBox;
class QSpinBox;

namespace tarnwick::player {

class FileField;

class SnapshotDialog : public QDialog {
    Q_OBJECT

  public:
    // `time` is the picture's, in seconds of the episode.
    SnapshotDialog(double time, const QString& file, QWidget* parent = nullptr);

    PixelSize size() const;
    bool hasAlpha() const;
    QString file() const; // ends in .png

  private:
    QSpinBox* width_;
    QSpinBox* height_;
    QCheckBox* alpha_;
    FileField* file_;
};

} // namespace tarnwick::player
