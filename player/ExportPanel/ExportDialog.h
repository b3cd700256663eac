// What to export as a movie.
#pragma once

#include "player/App/OpenDocument.h"
#include "player/Exports/EpisodeOrders.h"

#include <QDialog>
#include <filesystem>

class QLabel;
class QPlainTextEdit;
class QPushButton;

namespace tarnwick::player {

class FileField;
class InputsBox;
class LastFolders;
class LoopFinderBox;
class MovieFormatForm;
class RangeForm;

class ExportDialog : public QDialog {
    Q_OBJECT

  public:
    ExportDialog(LastFolders& folders, const OpenDocument& document, EpisodeCopy copy,
                 QWidget* parent = nullptr);

    // Empty: none.
    void setPerformance(const std::filesystem::path& file);

    // Of the dialog as it was accepted.
    MovieRequest request() const;

  private:
    void makeParts(const OpenDocument& document);
    void layOut();
    QWidget* range();
    QWidget* extras();
    QWidget* files();
    QString chooseMovie(const QString& present);
    QString choosePerformance(const QString& present);
    void showState();
    void showEnding();       // of the movie's name, as the preset has it
    QString problem() const; // one sentence why this cannot be exported; else empty
    double movieLength() const;

    LastFolders& folders_;
    EpisodeCopy episode_;
    MovieFormatForm* format_;
    RangeForm* range_;
    LoopFinderBox* loop_;
    QPlainTextEdit* chapters_;
    FileField* performance_;
    FileField* output_;
    InputsBox* inputs_;
    QLabel* frames_;
    QLabel* problem_;
    QPushButton* accept_ = nullptr;
};

} // namespace tarnwick::player
