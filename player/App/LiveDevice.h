// The device that the player draws with: opened at the start, and again after it was lost.
#pragma once

#include "TarnwickGPU/Device.h"
#include "TarnwickPlatform/Dispatch/DispatchQueue.h"

#include <QObject>
#include <QTimer>
#include <memory>
#include <string>

namespace tarnwick::player {

// On the thread of the windows.
class LiveDevice : public QObject {
    Q_OBJECT

  public:
    LiveDevice(); // opens it; blocks
    ~LiveDevice() override;

    const std::shared_ptr<gpu::Device>& device() const { return device_; } // null without one
    // Why there is no device, in one sentence; empty with one.
    const std::string& absence() const { return absence_; }

    // Drops a device that was lost and opens it again, on another thread, until that succeeds.
    void reopen();

  signals:
    void changed(); // there is another device, or none

  private:
    void openLater();
    void take(std::shared_ptr<gpu::Device> device, std::string absence);

    std::shared_ptr<gpu::Device> device_;
    std::string absence_;
    QTimer retry_;
    DispatchQueue opening_; // last: its work uses the rest
};

} // namespace tarnwick::player
