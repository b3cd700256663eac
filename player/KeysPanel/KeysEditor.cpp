#include "player/KeysPanel/KeysEditor.h"

#include "TarnwickPlatform/Dispatch/HostClock.h"
#include "player/KeysPanel/KeyClipboard.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tarnwick::player {
namespace {

constexpr double usualLength = 30; // seconds shown without a length of the episode
constexpr double shortestLength = 1;
constexpr const char* dragGesture = "drag keys";

// Numbers with four digits after the point name frames.
double exactTime(double seconds) {
    const double frame = onFrame(seconds);
    return std::abs(frame - seconds) < 6e-5 ? frame : seconds;
}

} // namespace

KeysEditor::KeysEditor(Player& player, KeysView& view, QObject* parent)
    : QObject(parent), player_(player), view_(view) {
    connect(&player_, &Player::activeChanged, this, &KeysEditor::follow);
    follow();
}

void KeysEditor::follow() {
    if (document_ != nullptr)
        document_->disconnect(this);
    document_ = player_.active();
    row_ = 0;
    selection_ = {};
    focus_.reset();
    pinned_.clear();
    isDragging_ = false;
    guide_.reset();
    nudge_.reset();
    if (document_ != nullptr)
        for (auto changes : {&OpenDocument::settingsChanged, &OpenDocument::textChanged,
                             &OpenDocument::transportChanged})
            connect(document_, changes, this, &KeysEditor::takeChange);
    emit replaced();
    takeChange();
    view_.showAll();
}

void KeysEditor::takeChange() {
    row_ = std::min(row_, params().empty() ? 0 : params().size() - 1);
    selection_ = existing(selection_, keys(), params());
    if (focus_ && (param(focus_->name) == nullptr || !keyAt(keys(), focus_->name, focus_->time)))
        focus_.reset();
    if (!isDragging_)
        view_.setLength(length());
    emit changed();
}

const std::vector<ParamDecl>& KeysEditor::params() const {
    static const std::vector<ParamDecl> none;
    return document_ != nullptr ? document_->document().episode()->params() : none;
}

const KeyframeTracks& KeysEditor::keys() const {
    static const KeyframeTracks none;
    return document_ != nullptr ? document_->document().settings().keys : none;
}

const ParamDecl* KeysEditor::param(std::string_view name) const {
    const auto found = std::ranges::find(params(), name, &ParamDecl::name);
    return found == params().end() ? nullptr : &*found;
}

double KeysEditor::now() const {
    return document_ != nullptr ? document_->time() : 0;
}

std::optional<LoopRange> KeysEditor::loop() const {
    return document_ != nullptr ? document_->transport().loop : std::nullopt;
}

float KeysEditor::baseValue(const ParamDecl& param) const {
    if (document_ == nullptr)
        return param.defaultValue;
    const ParamValues& values = document_->document().settings().values;
    const auto found = values.find(param.name);
    return found == values.end() ? param.defaultValue
                                 : std::clamp(found->second, param.min, param.max);
}

float KeysEditor::valueAt(const ParamDecl& param, double time) const {
    const auto value = keys().value(param.name, time);
    return value ? std::clamp(*value, param.min, param.max) : baseValue(param);
}

double KeysEditor::length() const {
    if (document_ == nullptr)
        return usualLength;
    const auto range = loop();
    return std::max({document_->document().episode()->length().value_or(usualLength),
                     keys().lastTime(), range ? range->end : 0, shortestLength});
}

const ParamDecl* KeysEditor::currentParam() const {
    return row_ < params().size() ? &params()[row_] : nullptr;
}

void KeysEditor::setRow(std::size_t row) {
    if (row >= params().size() || row == row_)
        return;
    row_ = row;
    emit changed();
}

void KeysEditor::togglePin() {
    if (const ParamDecl* current = currentParam())
        togglePin(current->name);
}

void KeysEditor::togglePin(const std::string& name) {
    if (pinned_.erase(name) == 0)
        pinned_.insert(name);
    emit changed();
}

std::vector<std::size_t> KeysEditor::shownCurves() const {
    std::vector<std::size_t> rows;
    for (std::size_t row = 0; row < params().size(); ++row) {
        const std::string& name = params()[row].name;
        if (row != row_ && (isPinned(name) || selection_.times().contains(name)))
            rows.push_back(row);
    }
    if (row_ < params().size())
        rows.push_back(row_);
    return rows;
}

void KeysEditor::select(KeySelection selection) {
    select(std::move(selection), focus_);
}

void KeysEditor::select(KeySelection selection, std::optional<KeyPlace> focus) {
    selection_ = std::move(selection);
    nudge_.reset();
    setFocus(std::move(focus));
    emit changed();
}

void KeysEditor::setFocus(std::optional<KeyPlace> key) {
    focus_ = std::move(key);
    if (focus_)
        if (const ParamDecl* found = param(focus_->name))
            row_ = static_cast<std::size_t>(found - params().data());
    emit focusChanged();
    emit changed();
}

void KeysEditor::selectAll() {
    select(everyKey(keys(), params()));
}

void KeysEditor::selectNone() {
    select({}, std::nullopt);
}

void KeysEditor::selectParam() {
    if (const ParamDecl* current = currentParam())
        select(everyKey(keys(), {current, 1}));
}

void KeysEditor::selectTime() {
    const double time = focus_ ? focus_->time : now();
    KeySelection selection;
    for (const ParamDecl& param : params())
        if (const KeyframeTracks::Key* key = keyAt(keys(), param.name, time))
            selection.add({param.name, key->time});
    select(std::move(selection));
}

void KeysEditor::toggleFocused() {
    if (!focus_)
        return;
    KeySelection selection = selection_;
    selection.toggle(*focus_);
    select(std::move(selection));
}

void KeysEditor::moveTo(std::optional<KeyPlace> key, Extend extend) {
    if (!key)
        return;
    KeySelection selection = extend == Extend::yes ? selection_ : KeySelection{};
    selection.add(*key);
    const double time = key->time;
    select(std::move(selection), std::move(key));
    view_.reveal(time);
}

void KeysEditor::stepKey(Direction direction, Extend extend) {
    const ParamDecl* current = currentParam();
    if (current == nullptr)
        return;
    if (!focus_ || focus_->name != current->name) {
        moveTo(nearestKey(keys(), *current, now()), extend);
        return;
    }
    if (const auto time = nextKeyTime(keys(), {current, 1}, focus_->time, direction))
        moveTo(KeyPlace{current->name, *time}, extend);
}

void KeysEditor::stepRow(int rows, Extend extend) {
    const auto count = static_cast<int>(params().size());
    const int wanted = std::clamp(static_cast<int>(row_) + rows, 0, std::max(count - 1, 0));
    if (count == 0 || static_cast<std::size_t>(wanted) == row_)
        return;
    const double time = focus_ ? focus_->time : now();
    setRow(static_cast<std::size_t>(wanted));
    if (auto key = nearestKey(keys(), params()[row_], time))
        moveTo(std::move(key), extend);
    else
        setFocus(std::nullopt);
}

void KeysEditor::goToEnd(Direction direction, Extend extend) {
    const ParamDecl* current = currentParam();
    const auto track =
        current ? keys().keys(current->name) : std::span<const KeyframeTracks::Key>{};
    if (track.empty())
        return;
    const bool isBack = direction == Direction::back;
    moveTo(KeyPlace{current->name, isBack ? track.front().time : track.back().time}, extend);
}

double KeysEditor::placed(double time) const {
    return view_.snaps() ? onFrame(time) : std::max(time, 0.0);
}

// The selection is set first: the document answers with settingsChanged.
void KeysEditor::apply(KeyEdit edit, const std::string& change, const std::string& gesture) {
    if (document_ == nullptr)
        return;
    selection_ = std::move(edit.selection);
    Settings settings = document_->document().settings();
    settings.keys = std::move(edit.tracks);
    document_->setSettings(std::move(settings), change, gesture);
}

void KeysEditor::change(KeyframeTracks tracks, const std::string& change,
                        const std::string& gesture) {
    apply({std::move(tracks), selection_}, change, gesture);
}

void KeysEditor::addKey() {
    if (const ParamDecl* current = currentParam())
        addKey(*current, now(), document_->valueNow(*current));
}

void KeysEditor::addKey(const ParamDecl& param, double time, float value) {
    const std::string name = param.name;
    KeyEdit edit{.tracks = keys(), .selection = {}};
    edit.tracks.set(name, placed(time), std::clamp(value, param.min, param.max));
    const KeyPlace key{name, keyAt(edit.tracks, name, placed(time))->time};
    edit.selection.add(key);
    apply(std::move(edit), "Add key of " + name);
    setFocus(key);
}

void KeysEditor::addKeysForAll() {
    if (document_ == nullptr || params().empty())
        return;
    KeyEdit edit{.tracks = keys(), .selection = {}};
    const double time = placed(now());
    for (const ParamDecl& param : params()) {
        edit.tracks.set(param.name, time, document_->valueNow(param));
        edit.selection.add({param.name, keyAt(edit.tracks, param.name, time)->time});
    }
    apply(std::move(edit), "Add keys of all parameters");
}

void KeysEditor::removeSelected() {
    if (!selection_.isEmpty())
        apply({without(keys(), selection_), {}}, "Remove keys");
}

void KeysEditor::cut() {
    copy();
    if (!selection_.isEmpty())
        apply({without(keys(), selection_), {}}, "Cut keys");
}

void KeysEditor::copy() const {
    if (!selection_.isEmpty())
        putOnClipboard(copied(keys(), selection_));
}

void KeysEditor::paste() {
    if (document_ == nullptr)
        return;
    const auto found = keysOfClipboard();
    if (!found) {
        player_.tell(tr("The clipboard has no keys."));
        return;
    }
    KeyEdit edit = pasted(keys(), *found, params(), placed(now()), currentParam());
    if (edit.selection.isEmpty())
        player_.tell(tr("The episode has no parameters of the copied keys."));
    else
        apply(std::move(edit), "Paste keys");
}

void KeysEditor::setEase(KeyframeTracks::Ease ease) {
    if (!selection_.isEmpty())
        change(withEase(keys(), selection_, ease), "Change ease");
}

void KeysEditor::setTime(double seconds) {
    if (selection_.isEmpty())
        return;
    const double moved = exactTime(seconds) - selection_.span()->from;
    KeyEdit edit = startingAt(keys(), selection_, params(), exactTime(seconds));
    if (focus_)
        focus_->time += moved;
    apply(std::move(edit), "Set time of keys", "time of keys");
}

void KeysEditor::setLengthOfSelection(double seconds) {
    const auto span = selection_.span();
    if (!span || span->length() <= 0 || !(seconds > 0)) {
        emit changed(); // the field shows the length again
        return;
    }
    const double factor = exactTime(seconds) / span->length();
    if (focus_)
        focus_->time = span->from + (focus_->time - span->from) * factor;
    apply(scaled(keys(), selection_, span->from, factor), "Scale keys", "length of keys");
}

void KeysEditor::setValue(float value) {
    if (!selection_.isEmpty())
        change(withValue(keys(), selection_, params(), value), "Set value of keys",
               "value of keys");
}

void KeysEditor::nudge(const KeyMove& move) {
    if (selection_.isEmpty())
        return;
    if (!nudge_ || nudge_->result.tracks != keys() || nudge_->result.selection != selection_)
        nudge_ = Nudge{keys(), selection_, {}, {}};
    KeyMove total{nudge_->total.seconds + move.seconds, nudge_->total.share + move.share};
    total = clamped(total, nudge_->selection);
    if (focus_)
        focus_->time += total.seconds - nudge_->total.seconds;
    nudge_->total = total;
    nudge_->result = moved(nudge_->before, nudge_->selection, params(), total);
    apply(nudge_->result, "Move keys", "nudge keys");
    if (const auto span = selection_.span())
        view_.reveal(focus_ ? focus_->time : span->from);
}

void KeysEditor::undo() {
    if (document_ != nullptr)
        document_->undoSettings();
}

void KeysEditor::redo() {
    if (document_ != nullptr)
        document_->redoSettings();
}

KeyDrag KeysEditor::beginDrag() {
    endGesture();
    isDragging_ = true;
    draggedFocus_ = focus_;
    std::vector<double> others{now()};
    if (const auto range = loop())
        others.insert(others.end(), {range->start, range->end});
    return {keys(), params(), selection_, std::move(others)};
}

void KeysEditor::preview(KeyDrag::Result result, const char* change) {
    guide_ = result.guide;
    if (draggedFocus_)
        focus_ = KeyPlace{draggedFocus_->name, draggedFocus_->time + result.seconds};
    apply(std::move(result.edit), change, dragGesture);
}

void KeysEditor::endDrag() {
    if (!std::exchange(isDragging_, false))
        return;
    guide_.reset();
    endGesture();
    takeChange();
    emit focusChanged();
}

void KeysEditor::cancelDrag(KeySelection selection) {
    if (!std::exchange(isDragging_, false) || document_ == nullptr)
        return;
    guide_.reset();
    focus_ = draggedFocus_;
    selection_ = std::move(selection);
    document_->cancelGesture(dragGesture);
}

void KeysEditor::seek(double time) {
    if (document_ != nullptr)
        document_->setTransport(document_->transport().sought(placed(time), currentMediaTime()));
}

void KeysEditor::setLoopEnd(LoopEnd which, double time, Snap snap, double reach) {
    const auto range = loop();
    if (!range)
        return;
    if (snap == Snap::on)
        time = snapped(time, SnapTargets::of(keys(), params(), {}, {now()}), reach).time;
    document_->setTransport(
        document_->transport().withLoop(withEndAt(*range, which, time), currentMediaTime()));
    emit changed();
}

void KeysEditor::jump(Direction direction) {
    if (document_ == nullptr)
        return;
    const auto time = nextKeyTime(keys(), params(), now(), direction);
    if (!time)
        return;
    document_->setTransport(document_->transport().sought(*time, currentMediaTime()));
    view_.reveal(*time);
}

void KeysEditor::endGesture() {
    if (document_ != nullptr)
        document_->endGesture();
}

} // namespace tarnwick::player
