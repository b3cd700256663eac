// Part of the executables with Qt in a build with the sanitizer for threads, and not instrumented
// itself. Qt is not built with the sanitizer, which therefore sees that one thread writes what
// another reads, but not that Qt orders the two. These replacements of Qt's functions tell the
// order, for each piece of work alone: what the sender did before it handed the work over happens
// before the work.
#include <sanitizer/tsan_interface.h>

#include <QFutureInterface>
#include <QMetaObject>
#include <QRunnable>
#include <QThreadPool>
#include <cstdarg>
#include <dlfcn.h>
#include <functional>
#include <utility>

namespace {

// A slot that is called on another thread.
class HandedSlot final : public QtPrivate::QSlotObjectBase {
  public:
    explicit HandedSlot(QSlotObjectBase* slot) : QSlotObjectBase(&HandedSlot::act), slot_(slot) {}

  private:
    static void act(int which, QSlotObjectBase* base, QObject* receiver, void** arguments,
                    bool* isEqual) {
        auto* handed = static_cast<HandedSlot*>(base);
        __tsan_acquire(handed);
        if (which == Call) {
            handed->slot_->call(receiver, arguments);
            __tsan_release(handed); // the sender may be the one that destroys the slot
            return;
        }
        if (which == Compare) {
            *isEqual = handed->slot_->compare(arguments);
            return;
        }
        handed->slot_->destroyIfLastRef();
        delete handed;
    }

    QSlotObjectBase* slot_;
};

class HandedWork final : public QRunnable {
  public:
    explicit HandedWork(std::function<void()> work) : work_(std::move(work)) {}

    void run() override {
        __tsan_acquire(this);
        work_();
    }

  private:
    std::function<void()> work_;
};

} // namespace

bool QMetaObject::invokeMethodImpl(QObject* receiver, QtPrivate::QSlotObjectBase* slot,
                                   Qt::ConnectionType type, void* result) {
    using Invoke = bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*);
    static auto* const invoke = reinterpret_cast<Invoke*>(
        dlsym(RTLD_NEXT, "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBase"
                         "EN2Qt14ConnectionTypeEPv"));
    auto* handed = new HandedSlot(slot);
    __tsan_release(handed);
    return invoke(receiver, handed, type, result);
}

void QThreadPool::start(std::function<void()> work, int priority) {
    auto* handed = new HandedWork(std::move(work));
    __tsan_release(handed);
    start(handed, priority);
}

// The last of the threads that share a result destroys it.
bool QFutureInterfaceBase::derefT() const noexcept {
    using Drop = bool(const QFutureInterfaceBase*);
    static auto* const drop =
        reinterpret_cast<Drop*>(dlsym(RTLD_NEXT, "_ZNK20QFutureInterfaceBase6derefTEv"));
    void* const shared = d;
    __tsan_release(shared);
    const bool isShared = drop(this);
    if (!isShared)
        __tsan_acquire(shared);
    return isShared;
}

// QProcess lets a child use the memory of its parent until it runs a program. The sanitizer
// prepares the child for its life after a fork, there in the state of the parent's thread, whose
// locks it then ignores. With memory of its own the child changes nothing.
extern "C" int clone(int (*work)(void*), void* stack, int flags, void* argument, ...) {
    using Clone = int(int (*)(void*), void*, int, void*, ...);
    static auto* const system = reinterpret_cast<Clone*>(dlsym(RTLD_NEXT, "clone"));
    va_list rest;
    va_start(rest, argument);
    auto* parent = va_arg(rest, pid_t*);
    auto* storage = va_arg(rest, void*);
    auto* child = va_arg(rest, pid_t*);
    va_end(rest);
    return system(work, stack, flags & ~(CLONE_VM | CLONE_VFORK), argument, parent, storage, child);
}
