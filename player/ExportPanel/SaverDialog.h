// Name and place of a screen saver, and whether it is installed.
#pragma once

#include <QDialog>
#include <filesystem>

class QCheckBox;
class QLabel;
class QLineEdit;

namespace tarnwick::player {

class SaverDialog : public QDialog {
    Q_OBJECT

  public:
    explicit SaverDialog(const QString& name, QWidget* parent = nullptr);

    QString name() const;
    bool isInstalled() const;             // for the desktop; otherwise only its bundle is written
    std::filesystem::path folder() const; // of the bundle, in the user's folder for savers

  private:
    QLineEdit* name_;
    QCheckBox* install_;
    QLabel* place_;
};

} // namespace tarnwick::player
