#include "player/Window/MainWindow.h"

#include "TarnwickCore/Episode/ShaderTemplate.h"
#include "TarnwickPlatform/Pictures/PNG.h"
#include "player/Editor/EpisodeEditor.h"
#include "player/Editor/FindBar.h"
#include "player/Panels/KeysPanel.h"
#include "player/Panels/ParametersPanel.h"
#include "player/Panels/ProblemsPanel.h"
#include "player/Panels/TransportBar.h"
#include "player/Window/OutputWindow.h"
#include "player/Window/PictureView.h"

#include <QAction>
#include <QCloseEvent>
#include <QDockWidget>
#include <QFileDialog>
#include <QGuiApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QMimeData>
#include <QScreen>
#include <QSplitter>
#include <QStatusBar>
#include <QTabWidget>
#include <QVBoxLayout>
#include <chrono>
#include <functional>

namespace tarnwick::player {
namespace {

constexpr int mainTarget = 1;   // the number of the picture in this window
constexpr int outputTarget = 2; // of the one on a whole display
constexpr int settleTime = 150; // milliseconds after a change of the picture's size
constexpr std::chrono::seconds longestSnapshot{5};

QString fileFilter() {
    return QObject::tr("Episodes (*.metal);;All files (*)");
}

} // namespace

MainWindow::MainWindow(Player& player) : player_(player) {
    setWindowTitle(QStringLiteral("Tarnwick"));
    setAcceptDrops(true);
    setDockNestingEnabled(true);
    tabs_ = new QTabWidget;
    tabs_->setDocumentMode(true);
    tabs_->setTabsClosable(true);
    tabs_->setMovable(true);
    picture_ = new PictureView(player_, mainTarget);
    transport_ = new TransportBar(player_);
    auto* right = new QWidget;
    auto* column = new QVBoxLayout(right);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(picture_, 1);
    column->addWidget(transport_);
    auto* split = new QSplitter(Qt::Horizontal);
    find_ = new FindBar;
    auto* left = new QWidget;
    auto* texts = new QVBoxLayout(left);
    texts->setContentsMargins(0, 0, 0, 0);
    texts->setSpacing(0);
    texts->addWidget(tabs_, 1);
    texts->addWidget(find_);
    split->addWidget(left);
    split->addWidget(right);
    split->setStretchFactor(0, 1);
    split->setStretchFactor(1, 1);
    setCentralWidget(split);
    makeDocks();
    makeMenus();
    resize(1360, 820);
    split->setSizes({620, 740});

    settle_.setSingleShot(true);
    settle_.setInterval(settleTime);
    connect(&settle_, &QTimer::timeout, this, &MainWindow::fitPicture);
    connect(picture_, &PictureView::resized, this, [this] { settle_.start(); });
    connect(&player_, &Player::documentAdded, this, &MainWindow::addTab);
    connect(&player_, &Player::documentClosing, this, &MainWindow::removeTab);
    connect(&player_, &Player::newsArrived, this, &MainWindow::showState);
    connect(&player_, &Player::activeChanged, this, [this] {
        if (EpisodeEditor* shown = editor())
            tabs_->setCurrentWidget(shown);
        find_->setEditor(editor());
        showState();
    });
    connect(tabs_, &QTabWidget::currentChanged, this,
            [this](int tab) { player_.activate(documentOf(tab)); });
    connect(tabs_, &QTabWidget::tabCloseRequested, this, [this](int tab) {
        OpenDocument* document = documentOf(tab);
        if (document != nullptr && mayClose(document))
            player_.close(document);
    });
    showState();
}

void MainWindow::makeDocks() {
    const auto dock = [this](QWidget* content, const QString& title, const char* name,
                             Qt::DockWidgetArea area) {
        auto* made = new QDockWidget(title, this);
        made->setObjectName(QLatin1String(name));
        made->setWidget(content);
        addDockWidget(area, made);
    };
    dock(new ParametersPanel(player_), tr("Parameters"), "parameters", Qt::RightDockWidgetArea);
    auto* problems = new ProblemsPanel(player_);
    dock(problems, tr("Problems"), "problems", Qt::BottomDockWidgetArea);
    connect(problems, &ProblemsPanel::chosen, this, [this](int line, int place) {
        if (EpisodeEditor* shown = editor())
            shown->goTo(line, place);
    });
    dock(new KeysPanel(player_), tr("Keys"), "keys", Qt::BottomDockWidgetArea);
    tabifyDockWidget(findChild<QDockWidget*>(QStringLiteral("problems")),
                     findChild<QDockWidget*>(QStringLiteral("keys")));
    findChild<QDockWidget*>(QStringLiteral("problems"))->raise();
    resizeDocks({findChild<QDockWidget*>(QStringLiteral("problems"))}, {190}, Qt::Vertical);
    resizeDocks({findChild<QDockWidget*>(QStringLiteral("parameters"))}, {300}, Qt::Horizontal);
}

QAction* MainWindow::action(QMenu* menu, const QString& text, const QKeySequence& keys,
                            const std::function<void()>& run) {
    QAction* made = menu->addAction(text);
    made->setShortcut(keys);
    connect(made, &QAction::triggered, this, run);
    return made;
}

void MainWindow::makeMenus() {
    QMenu* file = menuBar()->addMenu(tr("&File"));
    action(file, tr("&New"), QKeySequence::New, [this] { newEpisode(); });
    action(file, tr("&Open..."), QKeySequence::Open, [this] { openByDialog(); });
    action(file, tr("&Save"), QKeySequence::Save, [this] { save(player_.active()); });
    action(file, tr("Save &as..."), QKeySequence::SaveAs, [this] { saveAs(player_.active()); });
    action(file, tr("Save s&napshot..."), QKeySequence(tr("Ctrl+Shift+S")),
           [this] { takeSnapshot(); });
    action(file, tr("&Close"), QKeySequence::Close, [this] {
        if (OpenDocument* document = player_.active(); document && mayClose(document))
            player_.close(document);
    });
    file->addSeparator();
    action(file, tr("&Quit"), QKeySequence::Quit, [this] { close(); });

    QMenu* edit = menuBar()->addMenu(tr("&Edit"));
    const auto onEditor = [this](void (EpisodeEditor::*run)()) {
        return [this, run] {
            if (EpisodeEditor* shown = editor())
                (shown->*run)();
        };
    };
    action(edit, tr("&Find and replace"), QKeySequence::Find, [this] { find_->find(); });
    action(edit, tr("Find &next"), QKeySequence::FindNext, [this] { find_->findNext(); });
    action(edit, tr("Find &previous"), QKeySequence::FindPrevious,
           [this] { find_->findPrevious(); });
    action(edit, tr("&Go to line"), QKeySequence(tr("Ctrl+G")), [this] { find_->goToLine(); });
    edit->addSeparator();
    action(edit, tr("&Toggle comment"), QKeySequence(tr("Ctrl+/")),
           onEditor(&EpisodeEditor::toggleComments));
    action(edit, tr("Undo &setting"), QKeySequence(tr("Ctrl+Alt+Z")), [this] {
        if (OpenDocument* document = player_.active())
            document->undoSettings();
    });
    action(edit, tr("Redo s&etting"), QKeySequence(tr("Ctrl+Alt+Shift+Z")), [this] {
        if (OpenDocument* document = player_.active())
            document->redoSettings();
    });

    QMenu* play = menuBar()->addMenu(tr("&Play"));
    action(play, tr("&Play or pause"), QKeySequence(tr("Ctrl+Space")),
           [this] { transport_->togglePlaying(); });
    action(play, tr("Step &forward"), QKeySequence(tr("Ctrl+Right")),
           [this] { transport_->stepForward(); });
    action(play, tr("Step &back"), QKeySequence(tr("Ctrl+Left")),
           [this] { transport_->stepBack(); });
    action(play, tr("&Restart"), QKeySequence(tr("Ctrl+Home")), [this] { transport_->restart(); });

    QMenu* view = menuBar()->addMenu(tr("&View"));
    QAction* figures = action(view, tr("Frame &figures"), QKeySequence(tr("Ctrl+I")), [] {});
    figures->setCheckable(true);
    connect(figures, &QAction::toggled, this, [this](bool isOn) {
        showsFigures_ = isOn;
        showState();
    });
    action(view, tr("Full screen &output"), QKeySequence(Qt::Key_F11),
           [this] { toggleOutput(screen()); });
    QMenu* displays = view->addMenu(tr("Output on &display"));
    connect(displays, &QMenu::aboutToShow, this, [this, displays] {
        displays->clear();
        for (QScreen* one : QGuiApplication::screens())
            displays->addAction(one->name(), this, [this, one] { toggleOutput(one); });
    });
    QMenu* scale = view->addMenu(tr("Preview &scale"));
    action(scale, tr("&Automatic"), {}, [this] { player_.setDivisor(std::nullopt); });
    for (const int divisor : {1, 2, 3, 4})
        action(scale, divisor == 1 ? tr("Full size") : tr("1/%1").arg(divisor), {},
               [this, divisor] { player_.setDivisor(divisor); });
    view->addSeparator();
    for (QDockWidget* dock : findChildren<QDockWidget*>())
        view->addAction(dock->toggleViewAction());
}

void MainWindow::addTab(OpenDocument* document) {
    auto* editor = new EpisodeEditor;
    editor->setEpisodeText(document->document().text());
    editors_[document] = editor;
    connect(editor, &EpisodeEditor::edited, document,
            [document, editor] { document->setText(editor->episodeText()); });
    connect(document, &OpenDocument::textReplaced, editor,
            [document, editor] { editor->setEpisodeText(document->document().text()); });
    connect(document, &OpenDocument::resultChanged, editor,
            [document, editor] { editor->setFindings(document->result()->findings); });
    for (auto change : {&OpenDocument::textChanged, &OpenDocument::settingsChanged})
        connect(document, change, this, [this, document] { showTitle(document); });
    connect(document, &OpenDocument::resultChanged, this, &MainWindow::showState);
    connect(document, &OpenDocument::changedOutside, this,
            [this, document] { answerChangeOutside(document); });
    tabs_->addTab(editor, QString());
    showTitle(document);
    if (!document->document().remark().empty())
        tell(QString::fromStdString(document->document().remark()));
}

void MainWindow::removeTab(OpenDocument* document) {
    EpisodeEditor* editor = editors_[document];
    editors_.erase(document);
    tabs_->removeTab(tabs_->indexOf(editor));
    editor->deleteLater();
}

void MainWindow::showTitle(OpenDocument* document) {
    const int tab = tabs_->indexOf(editors_[document]);
    const QString title = QString::fromStdString(document->document().title());
    tabs_->setTabText(tab, document->document().isModified() ? title + QStringLiteral(" \u2022")
                                                             : title);
}

EpisodeEditor* MainWindow::editor() const {
    const auto found = editors_.find(player_.active());
    return found == editors_.end() ? nullptr : found->second;
}

OpenDocument* MainWindow::documentOf(int tab) const {
    for (const auto& [document, editor] : editors_)
        if (tabs_->widget(tab) == editor)
            return document;
    return nullptr;
}

void MainWindow::newEpisode() {
    player_.add(Document(ShaderTemplate::newShader("Untitled")));
}

void MainWindow::open(const QString& file) {
    try {
        player_.open(file.toStdString());
    } catch (const DocumentFileError& error) {
        tell(QString::fromStdString(error.what()));
    }
}

void MainWindow::openByDialog() {
    const QStringList files =
        QFileDialog::getOpenFileNames(this, tr("Open episodes"), QString(), fileFilter());
    for (const QString& file : files)
        open(file);
}

bool MainWindow::save(OpenDocument* document) {
    if (document == nullptr)
        return false;
    if (!document->document().file())
        return saveAs(document);
    try {
        document->save();
        return true;
    } catch (const DocumentFileError& error) {
        tell(QString::fromStdString(error.what()));
        return false;
    }
}

bool MainWindow::saveAs(OpenDocument* document) {
    if (document == nullptr)
        return false;
    QString file = QFileDialog::getSaveFileName(
        this, tr("Save episode"), QString::fromStdString(document->document().title() + ".metal"),
        fileFilter());
    if (file.isEmpty())
        return false;
    if (!file.endsWith(QStringLiteral(".metal"), Qt::CaseInsensitive))
        file += QStringLiteral(".metal");
    try {
        document->saveAs(file.toStdString());
        return true;
    } catch (const DocumentFileError& error) {
        tell(QString::fromStdString(error.what()));
        return false;
    }
}

bool MainWindow::mayClose(OpenDocument* document) {
    if (!document->document().isModified())
        return true;
    player_.activate(document);
    const auto answer = QMessageBox::question(
        this, tr("Unsaved changes"),
        tr("Save the changes of %1?").arg(QString::fromStdString(document->document().title())),
        QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, QMessageBox::Save);
    if (answer == QMessageBox::Save)
        return save(document);
    return answer == QMessageBox::Discard;
}

void MainWindow::answerChangeOutside(OpenDocument* document) {
    const auto answer = QMessageBox::question(
        this, tr("File changed"),
        tr("Another program saved %1, and this text has changes too. Read the file and lose "
           "these changes?")
            .arg(QString::fromStdString(document->document().title())),
        QMessageBox::Yes | QMessageBox::No, QMessageBox::No);
    try {
        if (answer == QMessageBox::Yes)
            document->reload();
        else
            document->keepMine();
    } catch (const DocumentFileError& error) {
        tell(QString::fromStdString(error.what()));
    }
}

void MainWindow::tell(const QString& sentence) {
    QMessageBox::warning(this, QStringLiteral("Tarnwick"), sentence);
}

// Takes over the size of the picture once it is not dragged any more.
void MainWindow::fitPicture() {
    const PictureView& largest = output_ != nullptr ? output_->view() : *picture_;
    player_.setPictureSize(largest.pixels());
}

void MainWindow::toggleOutput(QScreen* screen) {
    if (output_ != nullptr) {
        output_->close();
        return;
    }
    output_ = new OutputWindow(player_, outputTarget, *screen);
    output_->setAttribute(Qt::WA_DeleteOnClose);
    connect(&output_->view(), &PictureView::resized, this, [this] { settle_.start(); });
    connect(output_, &OutputWindow::closed, this, [this] {
        output_ = nullptr;
        settle_.start();
    });
    settle_.start();
}

void MainWindow::showState() {
    const LiveNews& news = player_.news();
    const OpenDocument* document = player_.active();
    const CompileResult* result = document != nullptr ? document->result() : nullptr;
    QString message;
    if (player_.device() == nullptr)
        message = QString::fromStdString(player_.deviceAbsence());
    else if (!news.failure.empty())
        message = QString::fromStdString(news.failure);
    else if (document != nullptr && !document->program() && result != nullptr)
        message = tr("The episode does not compile yet.");
    picture_->setMessage(message);
    QString status;
    if (news.warming)
        status = tr("Computing %1 of %2").arg(news.warming->done).arg(news.warming->total);
    else if (result != nullptr && !result->program && document->program())
        status = tr("The last version that compiles is playing.");
    else if (news.divisor > 1)
        status = tr("Drawn at 1/%1 size").arg(news.divisor);
    statusBar()->showMessage(status);
    picture_->setFigures(showsFigures_ ? tr("%1 frames/s   %2 ms   %3 x %4")
                                             .arg(news.framesPerSecond, 0, 'f', 1)
                                             .arg(news.frameSeconds * 1000, 0, 'f', 1)
                                             .arg(news.picture.width)
                                             .arg(news.picture.height)
                                       : QString());
}

void MainWindow::takeSnapshot() {
    auto pending = player_.picture().snapshot();
    if (pending.wait_for(longestSnapshot) != std::future_status::ready) {
        tell(tr("The picture is still being drawn."));
        return;
    }
    const std::optional<Picture> picture = pending.get();
    if (!picture) {
        tell(tr("There is no picture yet."));
        return;
    }
    const QString file =
        QFileDialog::getSaveFileName(this, tr("Save snapshot"), QString(), tr("Pictures (*.png)"));
    if (file.isEmpty())
        return;
    try {
        writePNG(*picture, file.toStdString());
    } catch (const std::exception& error) {
        tell(QString::fromStdString(error.what()));
    }
}

void MainWindow::closeEvent(QCloseEvent* event) {
    for (const auto& document : player_.documents())
        if (!mayClose(document.get())) {
            event->ignore();
            return;
        }
    for (const auto& [document, editor] : editors_)
        document->discardDraft();
    if (output_ != nullptr)
        output_->close();
    event->accept();
}

void MainWindow::dragEnterEvent(QDragEnterEvent* event) {
    if (event->mimeData()->hasUrls())
        event->acceptProposedAction();
}

void MainWindow::dropEvent(QDropEvent* event) {
    for (const QUrl& url : event->mimeData()->urls())
        if (url.isLocalFile())
            open(url.toLocalFile());
}

} // namespace tarnwick::player
