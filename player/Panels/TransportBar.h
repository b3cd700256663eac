// Play, pause, seek, step, speed and loop of the active episode.
#pragma once

#include "player/App/Player.h"

#include <QIcon>
#include <QStyle>
#include <QWidget>
#include <optional>
#include <utility>
#include <vector>

class QDoubleSpinBox;
class QGridLayout;
class QLabel;
class QToolButton;

namespace tarnwick::player {

class Scrubber;

class TransportBar : public QWidget {
    Q_OBJECT

  public:
    explicit TransportBar(Player& player, QWidget* parent = nullptr);

  public slots:
    void togglePlaying();
    void stepForward();
    void stepBack();
    void restart();
    // The loop range begins or ends at the present time. Without a range: it ends or begins with
    // the episode.
    void setLoopStart();
    void setLoopEnd();
    // Repeats the last range, at first the whole episode, or ends repeating.
    void toggleLoop();
    void clearLoop(); // the next range is the whole episode

  protected:
    void changeEvent(QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

  private:
    void follow();
    void showState();
    double length() const; // seconds that the slider covers
    QToolButton* button(QStyle::StandardPixmap icon, const QString& name,
                        void (TransportBar::*slot)());
    QIcon icon(QStyle::StandardPixmap shape) const;
    void showIcons();
    void change(const Transport& transport);
    void setLoop(const std::optional<LoopRange>& range);
    LoopRange loopOrWhole() const;

    Player& player_;
    OpenDocument* document_ = nullptr;
    QGridLayout* rows_;
    bool isNarrow_ = false;
    std::vector<std::pair<QToolButton*, QStyle::StandardPixmap>> icons_;
    bool showsPause_ = false;
    QToolButton* play_ = nullptr;
    QToolButton* loop_;
    Scrubber* position_;
    std::optional<LoopRange> lastLoop_; // of the active episode
    QLabel* time_;
    QDoubleSpinBox* speed_;
};

} // namespace tarnwick::player
