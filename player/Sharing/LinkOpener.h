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

    // Whether it is a link of the service, "tarnwick:...", in upper or lower case.
    static bool isLink(const QString& text);

    // Downloads the shader in a child process and opens it as a new document that is not saved; or
    // tells the user why not.
    void open(const QString& link);

  private:
    void take(OrderRun* run, const ChildResult& result);

    Player& player_;
};

} // namespace tarnwick::player
