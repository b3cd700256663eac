// The format of a movie: preset, size, frame rate, sound and watermark.
#pragma once

#include "TarnwickCore/Movies/ExportPreset.h"
#include "player/Exports/EpisodeOrders.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QSpinBox;

namespace tarnwick::player {

class MovieFormatForm : public QWidget {
    Q_OBJECT

  public:
    // `hasSound`: whether the episode has a sound.
    explicit MovieFormatForm(bool hasSound, QWidget* parent = nullptr);

    MovieFormat format() const;
    ExportPreset preset() const; // as it was chosen, with its own size and rate
    std::int64_t framesPerSecond() const;
    PixelSize size() const;

  signals:
    void changed();

  private:
    void addPresets();
    void addSize();
    void showPreset();

    QComboBox* presets_;
    QLabel* facts_;
    QSpinBox* width_;
    QSpinBox* height_;
    QSpinBox* rate_;
    QCheckBox* draft_;
    QCheckBox* sound_;
    QCheckBox* watermark_;
};

} // namespace tarnwick::player
