// A line for the name of a file or folder, with a button that opens a dialog.
#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>
#include <optional>

class QLineEdit;

namespace tarnwick::player {

class FileField : public QWidget {
    Q_OBJECT

  public:
    // `choose` opens a dialog that begins with the present name; its result is empty if the user
    // cancels.
    FileField(const QString& name, std::function<QString(const QString& present)> choose,
              QWidget* parent = nullptr);

    void setText(const QString& path);
    QString text() const;
    std::optional<std::filesystem::path> path() const; // absent without a name

  signals:
    void changed();

  private:
    QLineEdit* line_;
};

// A dialog for a new file or folder: an existing one is not asked about, because exports choose
// another name for theirs.
QString newFileName(QWidget* parent, const QString& title, const QString& present,
                    const QString& filter);

} // namespace tarnwick::player
