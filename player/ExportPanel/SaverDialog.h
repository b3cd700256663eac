// Name and place of a screen saver.
#pragma once

#include <QDialog>
#include <filesystem>

class QLabel;
class QLineEdit;

namespace tarnwick::player {

class SaverDialog : public QDialog {
    Q_OBJECT

  public:
    explicit SaverDialog(const QString& name, QWidget* parent = nullptr);

    QString name() const;
    std::filesystem::path folder() const; // of the bundle, in the user's folder for savers

  private:
    QLineEdit* name_;
    QLabel* place_;
};

} // namespace tarnwick::player
