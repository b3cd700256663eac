// The keys of the active episode's parameters over time: a row for each parameter, and the curve of
// the chosen one.
#pragma once

#include "player/App/Player.h"

#include <QAbstractScrollArea>
#include <optional>
#include <string>
#include <vector>

namespace tarnwick::player {

// A double click adds a key; dragging moves the chosen keys; the menu sets the ease. The arrow
// keys, Insert, Delete, Ctrl+C and Ctrl+V do the same without a mouse.
class KeysPanel : public QAbstractScrollArea {
    Q_OBJECT

  public:
    explicit KeysPanel(Player& player, QWidget* parent = nullptr);

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;

  private:
    struct Chosen {
        std::string name; // of the parameter
        double time = 0;  // seconds, of the key

        bool operator==(const Chosen&) const = default;
    };

    void follow();
    void layOut();
    const std::vector<ParamDecl>& params() const;
    const KeyframeTracks& keys() const;
    double length() const; // seconds that are shown
    int xOf(double time) const;
    double timeAt(int x) const;
    int yOf(std::size_t row) const; // the middle of the row
    std::optional<std::size_t> rowAt(int y) const;
    std::optional<Chosen> keyAt(const QPoint& place) const;
    bool isChosen(const Chosen& key) const;

    void paintRuler(QPainter& painter) const;
    void paintRow(QPainter& painter, std::size_t row) const;
    void paintCurve(QPainter& painter) const;
    QRect curveArea() const;

    void change(KeyframeTracks changed, const std::string& name, const std::string& gesture = {});
    void addKey(std::size_t row, double time);
    void moveChosen(double seconds);
    void removeChosen();
    void setEase(KeyframeTracks::Ease ease);
    void copy();
    void paste();
    void seek(double time);

    Player& player_;
    OpenDocument* document_ = nullptr;
    std::size_t row_ = 0; // the parameter whose curve is shown
    std::vector<Chosen> chosen_;
    struct Drag {
        double from = 0; // seconds, where it began
        double moved = 0;
        bool isSeeking = false;
    };
    std::optional<Drag> drag_;
    struct Copied {
        std::string name;
        KeyframeTracks::Key key; // its time counts from the first copied key
    };
    std::vector<Copied> copied_;
    double zoom_ = 1;
};

} // namespace tarnwick::player
