#include "player/Window/PictureActions.h"

#include "player/Window/DisplayOutput.h"
#include "player/Window/LiveFigures.h"
#include "player/Window/PictureView.h"

#include <QAction>
#include <QActionGroup>
#include <QMenu>
#include <QStatusBar>

namespace tarnwick::player {
namespace {

constexpr int settleTime = 150;    // milliseconds after a change of the picture's size
constexpr double noticedFrame = 1; // seconds; the status line shows longer frames

bool isWaitingForFiles(const LiveNews& news) {
    return news.warming && news.warming->done == news.warming->total;
}

void addChoice(QActionGroup& choices, QAction* action, bool isChosen) {
    action->setCheckable(true);
    action->setChecked(isChosen);
    choices.addAction(action);
}

} // namespace

PictureActions::PictureActions(Player& player, QMainWindow& window, Actions& actions,
                               PictureView& picture)
    : QObject(&window), player_(player), window_(window), picture_(picture) {
    QAction* figures =
        actions.add(ActionMenu::view, tr("Frame &figures"), QKeySequence(tr("Ctrl+I")), [] {});
    figures->setCheckable(true);
    connect(figures, &QAction::toggled, this, [this](bool isOn) {
        showsFigures_ = isOn;
        showState();
    });
    output_ = new DisplayOutput(player, window, actions);
    connect(output_, &DisplayOutput::resized, this, [this] { settle_.start(); });
    addScales(actions);
    addLongestFrames(actions);
    settle_.setSingleShot(true);
    settle_.setInterval(settleTime);
    connect(&settle_, &QTimer::timeout, this, &PictureActions::fitPicture);
    connect(&picture_, &PictureView::resized, this, [this] { settle_.start(); });
    connect(&player_, &Player::newsArrived, this, [this] {
        const LiveNews& news = player_.news();
        if (news.failure.empty() && !news.warming && !news.isInFrame && news.picture.width > 0)
            picture_.addFrame(news.frameSeconds);
        showState();
    });
    connect(&player_, &Player::activeChanged, this, &PictureActions::showState);
    connect(&player_, &Player::documentAdded, this, [this](OpenDocument* document) {
        connect(document, &OpenDocument::resultChanged, this, &PictureActions::showState);
    });
    showState();
}

void PictureActions::addScales(Actions& actions) {
    QMenu* scale = actions.submenu(ActionMenu::view, tr("Preview &scale"));
    auto* choices = new QActionGroup(scale); // exclusive
    const auto add = [&](const QString& text, std::optional<int> divisor) {
        addChoice(*choices,
                  actions.add(scale, text, [this, divisor] { player_.setDivisor(divisor); }),
                  divisor == player_.divisor());
    };
    add(tr("&Automatic"), std::nullopt);
    for (const int divisor : {1, 2, 3, 4})
        add(divisor == 1 ? tr("Full size") : tr("1/%1").arg(divisor), divisor);
}

void PictureActions::addLongestFrames(Actions& actions) {
    QMenu* longest = actions.submenu(ActionMenu::view, tr("Longest f&rame"));
    auto* choices = new QActionGroup(longest); // exclusive
    for (const double seconds : {2.0, 5.0, FrameTimes::defaultLongestFrame, 60.0, 600.0})
        addChoice(*choices,
                  actions.add(longest, tr("%1 seconds").arg(seconds),
                              [this, seconds] { player_.setLongestFrame(seconds); }),
                  seconds == player_.longestFrame());
}

// Takes over the size of the picture once it is not dragged any more.
void PictureActions::fitPicture() {
    const PictureView* whole = output_->view();
    player_.setPictureSize((whole != nullptr ? *whole : picture_).pixels());
}

void PictureActions::closeOutput() {
    output_->close();
}

QString PictureActions::message() const {
    const OpenDocument* document = player_.active();
    if (const std::string trouble = player_.trouble(); !trouble.empty())
        return QString::fromStdString(trouble);
    if (document != nullptr && !document->program() && document->result() != nullptr)
        return tr("The episode does not compile yet.");
    return document != nullptr && player_.news().document != document->id() ? waiting() : QString();
}

// Why the picture is still that of another episode, if that takes longer than a moment.
QString PictureActions::waiting() const {
    const LiveNews& news = player_.news();
    if (isWaitingForFiles(news))
        return tr("The replay waits for the files of its inputs.");
    if (news.warming)
        return tr("Computing step %1 of %2 of this episode.")
            .arg(news.warming->done)
            .arg(news.warming->total);
    return news.isInFrame ? tr("The first frame of this episode is being drawn.") : QString();
}

QString PictureActions::status() const {
    const LiveNews& news = player_.news();
    const OpenDocument* document = player_.active();
    const CompileResult* result = document != nullptr ? document->result() : nullptr;
    if (isWaitingForFiles(news))
        return tr("The replay waits for the files of its inputs");
    if (news.warming)
        return tr("Computing %1 of %2").arg(news.warming->done).arg(news.warming->total);
    if (result != nullptr && !result->program && document->program())
        return tr("The last version that compiles is playing.");
    if (document == nullptr)
        return {};
    QStringList parts;
    if (news.divisor > 1)
        parts << tr("Drawn at 1/%1 size").arg(news.divisor);
    if (news.frameSeconds >= noticedFrame && news.failure.empty())
        parts << tr("A frame takes %1 s").arg(news.frameSeconds, 0, 'f', 1);
    return parts.join(QStringLiteral(". "));
}

void PictureActions::showState() {
    picture_.setMessage(message());
    window_.statusBar()->showMessage(status());
    picture_.setFigures(showsFigures_ ? liveFigures(player_) : QString());
}

} // namespace tarnwick::player
