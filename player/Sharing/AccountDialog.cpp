#include "player/Sharing/AccountDialog.h"

#include "TarnwickCore/Service/APIClient.h"

#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {

AccountDialog::AccountDialog(QWidget* parent) : QDialog(parent) {
    setWindowTitle(tr("Account"));
    text_ = new QLabel;
    text_->setWordWrap(true);
    text_->setTextFormat(Qt::PlainText);
    codeText_ = new QLabel;
    codeText_->setTextFormat(Qt::PlainText);
    codeText_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    QFont large = codeText_->font();
    large.setPointSizeF(2 * large.pointSizeF());
    codeText_->setFont(large);
    handle_ = new QLineEdit;
    handle_->setAccessibleName(tr("Public name"));
    handle_->setPlaceholderText(tr("Public name: 3 to 24 of a to z, digits and hyphens"));
    layOut();
    connect(handle_, &QLineEdit::textChanged, this, &AccountDialog::showState);
    connect(chooseHandle_, &QPushButton::clicked, this, &AccountDialog::chooseHandle);
    connect(openPage_, &QPushButton::clicked, this,
            [this] { QDesktopServices::openUrl(QUrl(QString::fromStdString(code_->page))); });
    connect(signIn_, &QPushButton::clicked, this, &AccountDialog::signIn);
    connect(signOut_, &QPushButton::clicked, this, &AccountDialog::signOut);
    look();
}

void AccountDialog::layOut() {
    auto* column = new QVBoxLayout(this);
    column->addWidget(text_);
    column->addWidget(codeText_);
    auto* row = new QHBoxLayout;
    chooseHandle_ = new QPushButton(tr("&Choose name"));
    row->addWidget(handle_, 1);
    row->addWidget(chooseHandle_);
    column->addLayout(row);
    auto* buttons = new QDialogButtonBox;
    signIn_ = buttons->addButton(tr("&Sign in"), QDialogButtonBox::ActionRole);
    openPage_ = buttons->addButton(tr("&Open page"), QDialogButtonBox::ActionRole);
    signOut_ = buttons->addButton(tr("Sign o&ut"), QDialogButtonBox::ActionRole);
    buttons->addButton(QDialogButtonBox::Close); // the last one that Tab reaches
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    column->addWidget(buttons);
    setMinimumWidth(460);
}

void AccountDialog::run(Order order, const QString& sentence,
                        std::function<void(const ChildResult& result)> then) {
    text_->setText(sentence);
    run_ = std::make_unique<OrderRun>(std::move(order));
    connect(run_.get(), &OrderRun::printed, this, &AccountDialog::takeLine);
    connect(run_.get(), &OrderRun::finished, this,
            [this, then = std::move(then)](const ChildResult& result) {
                run_.release()->deleteLater(); // the sender of the present signal
                code_.reset();
                if (!result.isDone)
                    text_->setText(QString::fromStdString(result.sentence));
                then(result);
                showState();
            });
    run_->start();
    showState();
}

void AccountDialog::look() {
    run(whoAmIOrder(), tr("The account is being read..."), [this](const ChildResult& result) {
        account_ = Account::read(result.output);
        if (result.isDone && !account_)
            text_->setText(tr("You are not signed in."));
    });
}

void AccountDialog::signIn() {
    run(signInOrder(), tr("A code is requested..."), [](const ChildResult&) {});
}

// Of a sign-in: first the code, then the account.
void AccountDialog::takeLine(const QByteArray& line) {
    const std::string text = line.toStdString();
    if (const auto code = SignInCode::read(text)) {
        code_ = code;
        text_->setText(tr("Confirm this code on %1:").arg(QString::fromStdString(code->page)));
        QDesktopServices::openUrl(QUrl(QString::fromStdString(code->page)));
    } else if (const auto account = Account::read(text)) {
        account_ = account;
    }
    showState();
}

void AccountDialog::signOut() {
    account_.reset();
    run(signOutOrder(), tr("Signing out..."), [this](const ChildResult& result) {
        if (result.isDone)
            text_->setText(tr("You are signed out."));
    });
}

void AccountDialog::chooseHandle() {
    const std::string handle = handle_->text().toStdString();
    run(handleOrder(handle), tr("The name is requested..."), [this](const ChildResult& result) {
        if (result.isDone)
            look(); // the service may have changed it
    });
}

void AccountDialog::showState() {
    const bool isBusy = run_ != nullptr;
    if (account_ && !isBusy && !text_->text().contains(QString::fromStdString(account_->email)))
        text_->setText(account_->handle
                           ? tr("You are signed in as %1, %2.")
                                 .arg(QString::fromStdString(account_->email),
                                      QString::fromStdString(*account_->handle))
                           : tr("You are signed in as %1. Choose a public name before you share.")
                                 .arg(QString::fromStdString(account_->email)));
    codeText_->setVisible(code_.has_value());
    codeText_->setText(code_ ? QString::fromStdString(code_->code) : QString());
    openPage_->setVisible(code_.has_value());
    signIn_->setVisible(!account_);
    signIn_->setEnabled(!isBusy);
    signIn_->setDefault(!account_);
    if (!account_ && !isBusy)
        signIn_->setFocus();
    signOut_->setVisible(account_.has_value());
    signOut_->setEnabled(!isBusy);
    handle_->setVisible(account_.has_value());
    chooseHandle_->setVisible(account_.has_value());
    chooseHandle_->setEnabled(!isBusy && APIClient::isValidHandle(handle_->text().toStdString()));
}

} // namespace tarnwick::player
