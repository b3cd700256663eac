#include "player/Sharing/ShareDialog.h"

#include "player/Sharing/AccountDialog.h"
#include "player/Sharing/SharePreview.h"

#include <QComboBox>
#include <QDesktopServices>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QUrl>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {
namespace {

QString textOf(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

template <class Choices> QComboBox* comboOf(const Choices& choices, const QString& name) {
    auto* box = new QComboBox;
    for (const auto choice : choices)
        box->addItem(textOf(nameOf(choice)));
    box->setAccessibleName(name);
    return box;
}

} // namespace

ShareDialog::ShareDialog(EpisodeCopy episode, const QString& title, QWidget* parent)
    : QDialog(parent), episode_(std::move(episode)) {
    setWindowTitle(tr("Share episode"));
    makeFields(title);
    layOut();
    connect(title_, &QLineEdit::textChanged, this, &ShareDialog::showState);
    connect(description_, &QPlainTextEdit::textChanged, this, &ShareDialog::showState);
    for (QComboBox* box : {licence_, visibility_})
        connect(box, &QComboBox::currentIndexChanged, this, &ShareDialog::showState);
    drawPreview();
    lookForAccount();
    showState();
}

void ShareDialog::makeFields(const QString& title) {
    title_ = new QLineEdit(title);
    description_ = new QPlainTextEdit;
    description_->setAccessibleName(tr("Description"));
    description_->setTabChangesFocus(true);
    licence_ = comboOf(allLicences, tr("Licence"));
    visibility_ = comboOf(allVisibilities, tr("Visibility"));
    accountText_ = new QLabel(tr("The account is being read..."));
    accountText_->setTextFormat(Qt::PlainText);
    accountText_->setWordWrap(true);
    preview_ = new SharePreview(QString::fromStdString(episode_.text));
    bar_ = new QProgressBar;
    bar_->setTextVisible(false);
    bar_->setAccessibleName(tr("Progress"));
    QSizePolicy policy = bar_->sizePolicy();
    policy.setRetainSizeWhenHidden(true); // the fields do not move
    bar_->setSizePolicy(policy);
    text_ = new QLabel;
    text_->setTextFormat(Qt::PlainText);
    text_->setWordWrap(true);
    text_->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
}

void ShareDialog::layOut() {
    auto* form = new QFormLayout;
    form->addRow(tr("&Title:"), title_);
    form->addRow(tr("&Description:"), description_);
    form->addRow(tr("&Licence:"), licence_);
    form->addRow(tr("&Visible to:"), visibility_);
    auto* accountButton = new QPushButton(tr("&Account..."));
    accountButton->setAutoDefault(false);
    connect(accountButton, &QPushButton::clicked, this, &ShareDialog::showAccountDialog);
    form->addRow(tr("Account:"), accountText_);
    form->addRow(QString(), accountButton);
    auto* halves = new QHBoxLayout;
    halves->addLayout(form, 1);
    halves->addWidget(preview_, 1);
    auto* buttons = new QDialogButtonBox;
    share_ = buttons->addButton(tr("&Share"), QDialogButtonBox::ActionRole);
    openPage_ = buttons->addButton(tr("&Open page"), QDialogButtonBox::ActionRole);
    buttons->addButton(QDialogButtonBox::Close); // the last one that Tab reaches
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    connect(share_, &QPushButton::clicked, this, &ShareDialog::share);
    connect(openPage_, &QPushButton::clicked, this,
            [this] { QDesktopServices::openUrl(QUrl(QString::fromStdString(page_))); });
    auto* column = new QVBoxLayout(this);
    column->addLayout(halves, 1);
    column->addWidget(bar_);
    column->addWidget(text_);
    column->addWidget(buttons);
}

ShareRequest ShareDialog::request() const {
    return {.episode = episode_,
            .title = title_->text().trimmed().toStdString(),
            .description = description_->toPlainText().trimmed().toStdString(),
            .licence = allLicences[static_cast<std::size_t>(licence_->currentIndex())],
            .visibility = allVisibilities[static_cast<std::size_t>(visibility_->currentIndex())]};
}

// Words do not change the picture and the movie, so they need not be valid yet.
void ShareDialog::drawPreview() {
    ShareRequest drawn = request();
    drawn.title = "Preview";
    drawing_ = std::make_unique<OrderRun>(previewOrder(drawn));
    connect(drawing_.get(), &OrderRun::progressed, this, &ShareDialog::showProgress);
    connect(drawing_.get(), &OrderRun::finished, this, &ShareDialog::takePreview);
    drawing_->start();
}

void ShareDialog::takePreview(const ChildResult& result) {
    OrderRun* run = drawing_.release(); // the sender of the present signal
    run->deleteLater();
    if (result.isDone) {
        drawn_ = run->files();
        preview_->showMedia(drawn_->path(previewFolder));
    } else {
        failure_ = result.sentence;
    }
    showState();
}

void ShareDialog::lookForAccount() {
    looking_ = std::make_unique<OrderRun>(whoAmIOrder());
    connect(looking_.get(), &OrderRun::finished, this, [this](const ChildResult& result) {
        looking_.release()->deleteLater(); // the sender of the present signal
        account_ = Account::read(result.output);
        if (!result.isDone)
            accountText_->setText(QString::fromStdString(result.sentence));
        else if (!account_)
            accountText_->setText(tr("You are not signed in."));
        showState();
    });
    looking_->start();
}

void ShareDialog::showAccountDialog() {
    AccountDialog dialog(this);
    dialog.exec();
    account_ = dialog.account();
    if (!account_)
        accountText_->setText(tr("You are not signed in."));
    showState();
}

void ShareDialog::share() {
    failure_.clear();
    sending_ = std::make_unique<OrderRun>(shareOrder(request(), drawn_->path(previewFolder)));
    connect(sending_.get(), &OrderRun::progressed, this, &ShareDialog::showProgress);
    connect(sending_.get(), &OrderRun::finished, this, &ShareDialog::takeShared);
    sending_->start();
    showState();
}

void ShareDialog::takeShared(const ChildResult& result) {
    sending_.release()->deleteLater(); // the sender of the present signal
    if (result.isDone)
        page_ = QString::fromStdString(result.output).trimmed().toStdString();
    else
        failure_ = result.sentence;
    showState();
}

void ShareDialog::showProgress(const Progress& progress) {
    pace_.add(progress);
    constexpr int whole = 1000;
    bar_->setRange(0, progress.isCounted() ? whole : 0);
    bar_->setValue(static_cast<int>(whole * progress.share()));
    text_->setText((sending_ ? tr("Sending: %1") : tr("Drawing: %1"))
                       .arg(QString::fromStdString(progressText(progress, pace_))));
}

void ShareDialog::showState() {
    const ShareUpload upload = request().upload();
    preview_->showWords(upload);
    const std::vector<std::string> problems = upload.problems();
    const bool isBusy = drawing_ || sending_;
    bar_->setVisible(isBusy);
    if (account_)
        accountText_->setText(QString::fromStdString(
            account_->email + (account_->handle ? ", " + *account_->handle : "")));
    if (!page_.empty())
        text_->setText(tr("The episode is shared: %1").arg(QString::fromStdString(page_)));
    else if (!failure_.empty())
        text_->setText(QString::fromStdString(failure_));
    else if (!problems.empty())
        text_->setText(QString::fromStdString(problems.front()));
    else if (account_ && !account_->handle)
        text_->setText(tr("The account needs a public name; Account... chooses one."));
    else if (!isBusy)
        text_->clear();
    openPage_->setVisible(!page_.empty());
    share_->setEnabled(!isBusy && drawn_ && page_.empty() && problems.empty() && account_ &&
                       account_->handle);
}

} // namespace tarnwick::player
