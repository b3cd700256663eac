// Opens the shaders that links of the sharing service name.
#pragma once

#include "player/App/Player.h"
#include "player/Exports/OrderRun.h"

#include <QObject>

namespace tarnwick::player {

class LinkOpener : public QObject {
    Q_OBJECT

  public:
    explicit LinkOpener(Player& player, QObject* parent = nullptr);

    // The link that `text` is: "tarnwick:...", in upper or lower case, or the https address of an
    // episode of the service or of its page. Empty if it is neither.
    static QString linkOf(const QString& text);
    static bool isLink(const QString& text) { return !linkOf(text).isEmpty(); }

    // Downloads the shader of a link in a child process and opens it as a new document that is not
    // saved; or tells the user why not.
    void open(const QString& text);

  private:
    void take(OrderRun* run, const ChildResult& result);

    Player& player_;
};

} // namespace tarnwick::player
