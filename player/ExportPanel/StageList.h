// The earlier versions of an episode, in order.
#pragma once

#include <QWidget>
#include <filesystem>
#include <vector>

class QListWidget;
class QPushButton;

namespace tarnwick::player {

class StageList : public QWidget {
    Q_OBJECT

  public:
    // `folder` is the one in which the dialog for more versions begins.
    explicit StageList(QString folder, QWidget* parent = nullptr);

    void add(const QStringList& files);
    std::vector<std::filesystem::path> files() const;

  private:
    QPushButton* addButton(class QLayout& row, const QString& text);
    void move(int rows);
    void showState();

    QListWidget* list_;
    QPushButton* remove_;
    QPushButton* up_;
    QPushButton* down_;
};

} // namespace tarnwick::player
