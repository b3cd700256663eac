// The sound of the record that is shown, prepared in the background.
#pragma once

#include "player/Drawing/LiveRecord.h"
#include "player/Sound/PerformedSound.h"

#include <QObject>
#include <memory>

namespace tarnwick::player {

// On the thread of the windows. As the picture does, the old sound goes on until that of a new
// program is ready.
class RecordSound : public QObject {
    Q_OBJECT

  public:
    void show(std::shared_ptr<const LiveRecord> record);
    // Null: silence.
    std::shared_ptr<TimedSound> sound() const;
    const Transport& transport() const { return record_->transport; } // after show()

  signals:
    void changed(); // sound() or transport()

  private:
    void prepare();
    void take(std::shared_ptr<EpisodeSound> prepared);
    void setValues();

    std::shared_ptr<const LiveRecord> record_; // the newest
    std::shared_ptr<KernelDevice> device_;
    std::shared_ptr<const ShaderProgram> program_; // the newest that is prepared or heard
    std::shared_ptr<const ShaderProgram> heard_;   // of own_
    std::shared_ptr<EpisodeSound> own_;            // null: silence
    std::shared_ptr<PerformedSound> performed_;    // of the replay of the record, or null
};

} // namespace tarnwick::player
