// Asks for one of two texts of an episode, with their differences: the author's and the file's.
#pragma once

#include <QDialog>
#include <string>
#include <vector>

class QLabel;
class QPlainTextEdit;

namespace tarnwick::player {

// Closing it decides nothing.
class DifferenceDialog : public QDialog {
    Q_OBJECT

  public:
    // `title` names the episode.
    DifferenceDialog(const QString& title, std::string mine, std::string file,
                     QWidget* parent = nullptr);

    const std::string& fileText() const { return file_; }
    // The file was changed again.
    void setFileText(std::string file);

  signals:
    void fileTaken();
    void mineKept();

  private:
    void compare();
    void colour();
    void goToDifference(int step);

    std::string mine_, file_;
    QLabel* summary_;
    QPlainTextEdit* lines_;
    std::vector<int> added_, removed_; // lines of the view
    std::vector<int> starts_;          // the first line of each difference
};

} // namespace tarnwick::player
