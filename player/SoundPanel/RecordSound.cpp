#include "player/SoundPanel/RecordSound.h"

#include "player/App/Background.h"

#include <utility>

namespace tarnwick::player {

void RecordSound::show(std::shared_ptr<const LiveRecord> record) {
    record_ = std::move(record);
    if (record_->program != program_)
        prepare();
    setValues();
    emit changed();
}

std::shared_ptr<TimedSound> RecordSound::sound() const {
    if (performed_)
        return performed_;
    return own_;
}

void RecordSound::prepare() {
    program_ = record_->program;
    if (!program_ || !program_->hasSound()) {
        own_.reset();
        heard_.reset();
        return;
    }
    if (!device_ || device_->pictures() != record_->device)
        device_ = std::make_shared<KernelDevice>(record_->device);
    const auto next = std::make_shared<EpisodeSound>(program_, device_, record_->settings->values);
    inBackground(
        this,
        [next] {
            next->prepare();
            return next;
        },
        [this, program = program_](std::shared_ptr<EpisodeSound> prepared) {
            if (program == program_)
                take(std::move(prepared));
        });
}

void RecordSound::take(std::shared_ptr<EpisodeSound> prepared) {
    own_ = std::move(prepared);
    heard_ = program_;
    setValues();
    emit changed();
}

// A sound that waits for its successor keeps its values: they are of another program.
void RecordSound::setValues() {
    const bool isOf = own_ && heard_ == record_->program;
    if (isOf && !record_->replay && own_->values() != record_->settings->values)
        own_ = own_->with(record_->settings->values);
    if (!isOf || !record_->replay)
        performed_.reset();
    else if (!performed_ || performed_->own() != own_ ||
             performed_->performance() != record_->replay)
        performed_ = std::make_shared<PerformedSound>(own_, record_->replay);
}

} // namespace tarnwick::player
