// The last sentences to the user, over the status line until they are dismissed.
#pragma once

#include <QStringList>
#include <QWidget>

class QLabel;

namespace tarnwick::player {

class MessageBar : public QWidget {
    Q_OBJECT

  public:
    explicit MessageBar(QWidget* parent = nullptr);

    // Shows a sentence beside those that were not dismissed. Of the oldest, only the number is
    // shown. A sentence that is shown already is not added again.
    void tell(const QString& sentence);
    const QStringList& sentences() const { return sentences_; }

  public slots:
    void dismiss();

  private:
    void show();

    QStringList sentences_;
    QLabel* text_;
};

} // namespace tarnwick::player
