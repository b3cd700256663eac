#include "player/Window/DocumentTabs.h"

#include "player/Editor/EpisodeEditor.h"
#include "player/Editor/FindBar.h"

#include <QTabWidget>
#include <QVBoxLayout>

namespace tarnwick::player {
namespace {

constexpr int mostLetters = 30; // of a title in a tab

} // namespace

DocumentTabs::DocumentTabs(Player& player, QWidget* parent) : QWidget(parent), player_(player) {
    tabs_ = new QTabWidget;
    tabs_->setDocumentMode(true);
    tabs_->setTabsClosable(true);
    tabs_->setMovable(true);
    find_ = new FindBar;
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(tabs_, 1);
    column->addWidget(find_);
    connect(&player_, &Player::documentAdded, this, &DocumentTabs::addTab);
    connect(&player_, &Player::documentClosing, this, &DocumentTabs::removeTab);
    connect(&player_, &Player::activeChanged, this, &DocumentTabs::showActive);
    connect(tabs_, &QTabWidget::currentChanged, this,
            [this](int tab) { player_.activate(documentOf(tab)); });
    connect(tabs_, &QTabWidget::tabCloseRequested, this, [this](int tab) {
        if (OpenDocument* document = documentOf(tab))
            emit closeWanted(document);
    });
}

void DocumentTabs::addTab(OpenDocument* document) {
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
    tabs_->addTab(editor, QString());
    showTitle(document);
}

void DocumentTabs::removeTab(OpenDocument* document) {
    EpisodeEditor* editor = editors_[document];
    editors_.erase(document);
    tabs_->removeTab(tabs_->indexOf(editor));
    editor->deleteLater();
}

void DocumentTabs::showActive() {
    EpisodeEditor* shown = editor();
    if (shown != nullptr)
        tabs_->setCurrentWidget(shown);
    find_->setEditor(shown);
    tellTitle();
}

void DocumentTabs::showTitle(OpenDocument* document) {
    const int tab = tabs_->indexOf(editors_[document]);
    const Document& shown = document->document();
    const QString title = QString::fromStdString(shown.title());
    QString text = tabs_->fontMetrics().elidedText(
        title, Qt::ElideMiddle, mostLetters * tabs_->fontMetrics().averageCharWidth());
    text.replace(u'&', QLatin1String("&&")); // no letter of the tab
    tabs_->setTabText(tab, shown.isModified() ? text + QStringLiteral(" \u2022") : text);
    tabs_->setTabToolTip(tab,
                         shown.file() ? QString::fromStdString(shown.file()->string()) : title);
    if (document == player_.active())
        tellTitle();
}

void DocumentTabs::tellTitle() {
    const OpenDocument* shown = player_.active();
    if (shown == nullptr)
        emit titleChanged({}, false);
    else
        emit titleChanged(QString::fromStdString(shown->document().title()),
                          shown->document().isModified());
}

EpisodeEditor* DocumentTabs::editor() const {
    return editor(player_.active());
}

EpisodeEditor* DocumentTabs::editor(OpenDocument* document) const {
    const auto found = editors_.find(document);
    return found == editors_.end() ? nullptr : found->second;
}

OpenDocument* DocumentTabs::documentOf(int tab) const {
    for (const auto& [document, editor] : editors_)
        if (tabs_->widget(tab) == editor)
            return document;
    return nullptr;
}

} // namespace tarnwick::player
