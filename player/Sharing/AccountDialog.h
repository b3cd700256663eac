// The account of the sharing service: sign in, choose a public name, sign out.
#pragma once

#include "player/Exports/OrderRun.h"
#include "player/Sharing/ServiceOrders.h"

#include <QDialog>
#include <functional>
#include <memory>
#include <optional>

class QLabel;
class QLineEdit;
class QPushButton;

namespace tarnwick::player {

// Each request is a child process; the dialog shows what is going on and can be closed at any time.
class AccountDialog : public QDialog {
    Q_OBJECT

  public:
    explicit AccountDialog(QWidget* parent = nullptr);

    const std::optional<Account>& account() const { return account_; }

  private:
    void layOut();
    void run(Order order, const QString& sentence,
             std::function<void(const ChildResult& result)> then);
    void look();
    void signIn();
    void takeLine(const QByteArray& line);
    void signOut();
    void chooseHandle();
    void showState();

    std::optional<Account> account_;
    std::optional<SignInCode> code_; // while it can be confirmed
    std::unique_ptr<OrderRun> run_;  // null while nothing is going on
    QLabel* text_;
    QLabel* codeText_;
    QLineEdit* handle_;
    QPushButton* chooseHandle_;
    QPushButton* openPage_;
    QPushButton* signIn_;
    QPushButton* signOut_;
};

} // namespace tarnwick::player
