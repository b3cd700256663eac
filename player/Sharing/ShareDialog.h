// Shares an episode, after a look at all that will be sent.
#pragma once

#include "player/Exports/OrderRun.h"
#include "player/Sharing/ServiceOrders.h"

#include <QDialog>
#include <memory>
#include <optional>

class QComboBox;
class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QProgressBar;
class QPushButton;

namespace tarnwick::player {

class SharePreview;

// The preview is drawn when the dialog opens. What it shows is sent, byte for byte.
class ShareDialog : public QDialog {
    Q_OBJECT

  public:
    // `title` is the proposed one.
    ShareDialog(EpisodeCopy episode, const QString& title, QWidget* parent = nullptr);

  private:
    void makeFields(const QString& title);
    void layOut();
    void drawPreview();
    void takePreview(const ChildResult& result);
    void lookForAccount();
    void showAccountDialog();
    void share();
    void takeShared(const ChildResult& result);
    void showProgress(const Progress& progress);
    void showState();
    ShareRequest request() const;

    EpisodeCopy episode_;
    std::optional<Account> account_;
    std::string failure_; // of the last preview or upload; empty without one
    std::string page_;    // of the shared episode; empty before
    Pace pace_;
    QLineEdit* title_;
    QPlainTextEdit* description_;
    QComboBox* licence_;
    QComboBox* visibility_;
    QLabel* accountText_;
    SharePreview* preview_;
    QProgressBar* bar_;
    QLabel* text_;
    QPushButton* openPage_ = nullptr;
    QPushButton* share_ = nullptr;
    std::shared_ptr<OrderFiles> drawn_;                     // of the preview; null before
    std::unique_ptr<OrderRun> drawing_, sending_, looking_; // each null while it does not run
};

} // namespace tarnwick::player
