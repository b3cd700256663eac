#include "player/Start/StartActions.h"

#include "player/App/Background.h"
#include "player/Finding/RecentEpisodes.h"
#include "player/Start/FolderBrowser.h"
#include "player/Start/StartPage.h"

#include <QDockWidget>
#include <QFileDialog>
#include <QKeyEvent>
#include <QLabel>
#include <QMenu>
#include <QStackedWidget>
#include <QTabWidget>
#include <QVBoxLayout>
#include <utility>

namespace tarnwick::player {

StartActions::StartActions(Player& player, QMainWindow& window, Actions& actions,
                           ThumbnailService& service, std::function<void()> openByDialog)
    : QObject(&window), player_(player), window_(window) {
    addMenu(actions);
    actions.add(ActionMenu::view, tr("Start pa&ge"), QKeySequence(tr("Ctrl+Shift+H")),
                [this] { toggle(); });
    whole_ = new QStackedWidget;
    whole_->addWidget(window_.takeCentralWidget());
    whole_->addWidget(start(service, std::move(openByDialog)));
    window_.setCentralWidget(whole_);
    window_.installEventFilter(this);
    connect(&player_, &Player::activeChanged, this, [this] {
        if (player_.active() != nullptr)
            showWork();
        else
            showStart();
    });
    connect(&player_, &Player::documentAdded, this, [this](OpenDocument* document) {
        showWork();
        noteRecent(document);
        connect(document, &OpenDocument::textChanged, this,
                [this, document] { noteRecent(document); }); // saved under another name
    });
}

QWidget* StartActions::start(ThumbnailService& service, std::function<void()> openByDialog) {
    page_ = new StartPage(service);
    browser_ = new FolderBrowser(service);
    pages_ = new QStackedWidget;
    pages_->addWidget(page_);
    pages_->addWidget(browser_);
    message_ = new QLabel;
    message_->setWordWrap(true);
    message_->setMargin(8);
    message_->setTextFormat(Qt::PlainText);
    message_->setAutoFillBackground(true);
    message_->setBackgroundRole(QPalette::ToolTipBase);
    message_->setForegroundRole(QPalette::ToolTipText);
    message_->hide();
    auto* made = new QWidget;
    auto* column = new QVBoxLayout(made);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(pages_, 1);
    column->addWidget(message_);
    connect(page_, &StartPage::fileChosen, this, &StartActions::openFile);
    connect(page_, &StartPage::openWanted, this, std::move(openByDialog));
    connect(page_, &StartPage::openFolderWanted, this, &StartActions::openFolderByDialog);
    connect(page_, &StartPage::textChosen, this,
            [this](const QString& text) { player_.add(Document(text.toStdString())); });
    connect(browser_, &FolderBrowser::fileChosen, this, &StartActions::openFile);
    connect(browser_, &FolderBrowser::backWanted, this, [this] {
        pages_->setCurrentWidget(page_);
        page_->setFocus();
    });
    connect(&player_, &Player::told, this, [this](const QString& sentence) {
        message_->setText(sentence);
        message_->setVisible(!sentence.isEmpty());
    });
    return made;
}

bool StartActions::isShown() const {
    return whole_->currentIndex() == 1;
}

QByteArray StartActions::windowState() const {
    return isShown() ? stateBefore_ : window_.saveState();
}

void StartActions::showStart() {
    if (isShown())
        return;
    stateBefore_ = window_.saveState();
    hidden_.clear();
    for (QDockWidget* dock : window_.findChildren<QDockWidget*>())
        if (!dock->isHidden() && !dock->isFloating()) {
            hidden_.emplace_back(dock);
            dock->hide();
        }
    message_->hide();
    whole_->setCurrentIndex(1);
    page_->refresh();
    pages_->currentWidget()->setFocus();
}

void StartActions::showWork() {
    if (!isShown())
        return;
    whole_->setCurrentIndex(0);
    for (const QPointer<QDockWidget>& dock : std::exchange(hidden_, {}))
        if (dock)
            dock->show();
    window_.restoreState(stateBefore_); // also which of the docks in one place is in front
    if (const auto* tabs = whole_->widget(0)->findChild<QTabWidget*>();
        tabs != nullptr && tabs->currentWidget() != nullptr)
        tabs->currentWidget()->setFocus();
}

void StartActions::toggle() {
    pages_->setCurrentWidget(page_);
    if (isShown() && player_.active() != nullptr)
        showWork();
    else
        showStart();
}

void StartActions::openFolderByDialog() {
    const QString folder = QFileDialog::getExistingDirectory(
        &window_, tr("Open folder"), QString::fromStdString(browser_->folder().string()));
    if (!folder.isEmpty())
        openFolder(folder.toStdString());
}

void StartActions::openFolder(const std::filesystem::path& folder) {
    pages_->setCurrentWidget(browser_);
    showStart();
    browser_->open(folder);
    browser_->setFocus();
}

void StartActions::openFile(const QString& file) {
    player_.open(file.toStdString(), this, [this](OpenDocument* document) {
        if (document != nullptr)
            showWork(); // also if it was open and active already
    });
}

void StartActions::noteRecent(OpenDocument* document) {
    const auto& file = document->document().file();
    if (!file || !noted_.insert(*file).second)
        return;
    readRecent(*file);
}

// Below "Open...".
void StartActions::addMenu(Actions& actions) {
    QAction* folder =
        actions.add(ActionMenu::file, tr("Open &folder..."), QKeySequence(tr("Ctrl+Shift+O")),
                    [this] { openFolderByDialog(); });
    recent_ = actions.submenu(ActionMenu::file, tr("Open &recent"));
    QMenu* file = actions.menu(ActionMenu::file);
    const QList<QAction*> entries = file->actions();
    for (qsizetype place = 0; place + 1 < entries.size(); ++place)
        if (entries[place]->shortcut() == QKeySequence(tr("Ctrl+O"))) {
            file->insertAction(entries[place + 1], folder);
            file->insertAction(entries[place + 1], recent_->menuAction());
        }
    readRecent({});
}

void StartActions::readRecent(std::filesystem::path added) {
    inBackground(
        this,
        [added = std::move(added), list = recentMutex_] {
            const std::lock_guard lock(*list);
            RecentEpisodes recent(recentEpisodesFile());
            if (!added.empty())
                recent.add(added);
            return existing(recent.files());
        },
        [this](const std::vector<FolderEntry>& files) { showRecent(files); });
}

void StartActions::showRecent(const std::vector<FolderEntry>& files) {
    recent_->clear();
    for (const FolderEntry& entry : files) {
        const QString file = QString::fromStdString(entry.path.string());
        QString text = file;
        recent_->addAction(text.replace(QLatin1Char('&'), QStringLiteral("&&")), this,
                           [this, file] { openFile(file); });
    }
    recent_->setEnabled(!files.empty());
}

// Escape leaves the start page. The first time the window is shown without an episode, the start
// page is.
bool StartActions::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() == QEvent::Show)
        QMetaObject::invokeMethod(
            this,
            [this] {
                if (player_.documents().empty())
                    showStart();
            },
            Qt::QueuedConnection);
    if (event->type() == QEvent::KeyPress && isShown() && player_.active() != nullptr &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape) {
        showWork();
        return true;
    }
    return QObject::eventFilter(watched, event);
}

} // namespace tarnwick::player
