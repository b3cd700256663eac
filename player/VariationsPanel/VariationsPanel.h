// Variations of the active episode as pictures, and the mix of two snapshots.
#pragma once

#include "player/Grid/CellGrid.h"
#include "player/Model/DocumentVariations.h"
#include "player/Model/ShownVariations.h"

#include <QTimer>
#include <QWidget>

class QPushButton;
class QSlider;

namespace tarnwick::player {

class VariationsPanel : public QWidget {
    Q_OBJECT

  public:
    static constexpr int count = 12; // of variations

    VariationsPanel(Player& player, ThumbnailService& service, QWidget* parent = nullptr);

    ShownVariations shown() const;

  signals:
    void exportWanted();

  public slots:
    // Random values for all parameters without keys.
    void randomise();
    // Another series of variations near the present values.
    void vary();
    void resetAll();
    // Asks for an export of shown().
    void askForExport();
    void keepA();
    void keepB();
    // One step of the mix, a twentieth.
    void morphTowardsA();
    void morphTowardsB();

  protected:
    void showEvent(QShowEvent* event) override;

  private:
    QWidget* head();
    QWidget* snapshots();
    void follow(); // the active document
    void showState();
    void showVariations();
    void take(int row);
    void set(const Settings& settings, const char* change);

    Player& player_;
    OpenDocument* document_ = nullptr;
    Settings center_; // of the series shown
    std::uint64_t seed_ = 1;
    std::int64_t taken_ = 1; // number of the variation that was taken last
    std::vector<Variation> series_;
    bool isStale_ = true;
    QTimer settle_; // after the program changed
    CellGrid* grid_;
    QSlider* spread_;
    QSlider* mix_;
    QPushButton* keepA_;
    QPushButton* keepB_;
};

} // namespace tarnwick::player
