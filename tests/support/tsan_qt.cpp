// Part of every test program in the thread sanitizer's build, and only there. Qt itself is not built with the
// sanitizer, which therefore sees none of the ordering that Qt's locks, pool and queued signals make, and would report
// every use of them. Here the calls that our code makes into Qt are told to it: what happens before what, and nothing
// more.
//
// Locks and futures are told exactly. The ends of threads and the tasks of pools are told as one each. Queued signals
// are told as one: whatever came before any emission comes before any later delivery of an event. That hides races
// between the sender of one signal and the receiver of another; races on data without its lock are still seen wherever
// no event lies between.

#include <QCoreApplication>
#include <QFutureInterface>
#include <QMutex>
#include <QReadWriteLock>
#include <QThread>
#include <QThreadPool>
#include <QWaitCondition>

#include <functional>
#include <future>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

extern "C" const char* __tsan_default_options();
extern "C" const char* __tsan_default_suppressions();

const char* __tsan_default_options()
{
    return "second_deadlock_stack=1:history_size=7";
}

const char* __tsan_default_suppressions()
{
    // Memory and threads that libraries built without the sanitizer manage among themselves.
    return "called_from_lib:libQt5Core.so\n"
           "called_from_lib:libQt5Sql.so\n"
           "called_from_lib:libQt5Concurrent.so\n"
           "called_from_lib:libQt5Network.so\n"
           "called_from_lib:libQt5Gui.so\n"
           "called_from_lib:libQt5Widgets.so\n"
           "called_from_lib:libQt5Test.so\n"
           "called_from_lib:libqsqlite.so\n"
           "called_from_lib:libsqlite3.so\n"
           "called_from_lib:libglib-2.0.so\n"
           // The engines of parallel loops order their workers inside Qt, out of reach from here.
           "race:QtConcurrent::ThreadEngine\n"
           "race:QtConcurrent::IterateKernel\n"
           "race:QtConcurrent::SequenceHolder\n"
           "race:QtConcurrent::FilteredReducedKernel\n"
           // The copies of a queued signal's arguments: Qt makes them and posts them in one go, and a receiver on
           // another thread may have them before the emission returns.
           "race:QtMetaTypePrivate::QMetaTypeFunctionHelper<*>::Construct\n"
           // The C library has a lock of its own for its time zone.
           "race:tzset_internal\n"
           // Connections that were cut during an emission are freed by whichever thread is the last to emit.
           "race:QObjectPrivate::ConnectionData::deleteOrphaned\n"
           // Asked of a sender by Qt's destructor of a receiver, under locks of its own.
           "race:*::metaObject\n";
}

namespace {

template <class Function>
Function* original(const char* symbol)
{
    return reinterpret_cast<Function*>(dlsym(RTLD_NEXT, symbol));
}

void acquire(const void* address)
{
    __tsan_acquire(const_cast<void*>(address));
}

void release(const void* address)
{
    __tsan_release(const_cast<void*>(address));
}

char anySignal;
char anyTask;
char anyThreadsEnd;

bool acquireBeforeEvent(void**)
{
    acquire(&anySignal);
    return false;
}

const bool eventsAreWatched = QInternal::registerCallback(QInternal::EventNotifyCallback, acquireBeforeEvent);

// All copies of a future share what its second word points to. Read before the order is known that makes reading right.
__attribute__((no_sanitize("thread"), noinline)) const void* sharedState(const QFutureInterfaceBase* future)
{
    return reinterpret_cast<void* const*>(future)[1];
}

// A function that is to be called on another thread. Either that thread or the one that asked for it deletes it, and Qt
// counts who is the last.
class ToldSlot : public QtPrivate::QSlotObjectBase
{
public:
    explicit ToldSlot(QtPrivate::QSlotObjectBase* slot)
        : QSlotObjectBase(&ToldSlot::act)
        , m_slot(slot)
    {
    }

private:
    static void act(int which, QSlotObjectBase* base, QObject* receiver, void** arguments, bool*)
    {
        auto* const self = static_cast<ToldSlot*>(base);
        acquire(self);
        if (which == Call)
            self->m_slot->call(receiver, arguments);
        if (which == Destroy) {
            self->m_slot->destroyIfLastRef();
            delete self;
            return;
        }
        release(self);
    }

    QtPrivate::QSlotObjectBase* const m_slot;
};

} // namespace

#define KERVAL_ORIGINAL(symbol, signature) static auto* const function = original<signature>(symbol)

void QMutex::lock()
{
    KERVAL_ORIGINAL("_ZN6QMutex4lockEv", void(QMutex*));
    function(this);
    acquire(this);
}

bool QMutex::tryLock(int timeout)
{
    KERVAL_ORIGINAL("_ZN6QMutex7tryLockEi", bool(QMutex*, int));
    const bool locked = function(this, timeout);
    if (locked)
        acquire(this);
    return locked;
}

void QMutex::unlock() noexcept
{
    KERVAL_ORIGINAL("_ZN6QMutex6unlockEv", void(QMutex*));
    release(this);
    function(this);
}

void QReadWriteLock::lockForRead()
{
    KERVAL_ORIGINAL("_ZN14QReadWriteLock11lockForReadEv", void(QReadWriteLock*));
    function(this);
    acquire(this);
}

void QReadWriteLock::lockForWrite()
{
    KERVAL_ORIGINAL("_ZN14QReadWriteLock12lockForWriteEv", void(QReadWriteLock*));
    function(this);
    acquire(this);
}

bool QReadWriteLock::tryLockForRead()
{
    return tryLockForRead(0);
}

bool QReadWriteLock::tryLockForRead(int timeout)
{
    KERVAL_ORIGINAL("_ZN14QReadWriteLock14tryLockForReadEi", bool(QReadWriteLock*, int));
    const bool locked = function(this, timeout);
    if (locked)
        acquire(this);
    return locked;
}

bool QReadWriteLock::tryLockForWrite()
{
    return tryLockForWrite(0);
}

bool QReadWriteLock::tryLockForWrite(int timeout)
{
    KERVAL_ORIGINAL("_ZN14QReadWriteLock15tryLockForWriteEi", bool(QReadWriteLock*, int));
    const bool locked = function(this, timeout);
    if (locked)
        acquire(this);
    return locked;
}

void QReadWriteLock::unlock()
{
    KERVAL_ORIGINAL("_ZN14QReadWriteLock6unlockEv", void(QReadWriteLock*));
    release(this);
    function(this);
}

bool QWaitCondition::wait(QMutex* mutex, unsigned long time)
{
    KERVAL_ORIGINAL("_ZN14QWaitCondition4waitEP6QMutexm", bool(QWaitCondition*, QMutex*, unsigned long));
    release(mutex);
    const bool woken = function(this, mutex, time);
    acquire(mutex);
    return woken;
}

bool QWaitCondition::wait(QMutex* mutex, QDeadlineTimer deadline)
{
    KERVAL_ORIGINAL("_ZN14QWaitCondition4waitEP6QMutex14QDeadlineTimer",
                    bool(QWaitCondition*, QMutex*, QDeadlineTimer));
    release(mutex);
    const bool woken = function(this, mutex, deadline);
    acquire(mutex);
    return woken;
}

void QFutureInterfaceBase::reportStarted()
{
    KERVAL_ORIGINAL("_ZN20QFutureInterfaceBase13reportStartedEv", void(QFutureInterfaceBase*));
    function(this);
    release(sharedState(this));
}

// The first that a task does on its thread.
bool QFutureInterfaceBase::isCanceled() const
{
    KERVAL_ORIGINAL("_ZNK20QFutureInterfaceBase10isCanceledEv", bool(const QFutureInterfaceBase*));
    acquire(sharedState(this));
    return function(this);
}

void QFutureInterfaceBase::reportFinished()
{
    KERVAL_ORIGINAL("_ZN20QFutureInterfaceBase14reportFinishedEv", void(QFutureInterfaceBase*));
    release(sharedState(this));
    release(&anyTask);
    release(&anySignal);
    function(this);
}

// The last to let go of a future deletes its results.
bool QFutureInterfaceBase::derefT() const
{
    KERVAL_ORIGINAL("_ZNK20QFutureInterfaceBase6derefTEv", bool(const QFutureInterfaceBase*));
    const void* const state = sharedState(this);
    release(state);
    const bool isUsed = function(this);
    acquire(state);
    return isUsed;
}

void QFutureInterfaceBase::waitForFinished()
{
    KERVAL_ORIGINAL("_ZN20QFutureInterfaceBase15waitForFinishedEv", void(QFutureInterfaceBase*));
    function(this);
    acquire(sharedState(this));
}

QThread* QThread::createThreadImpl(std::future<void>&& work)
{
    KERVAL_ORIGINAL("_ZN7QThread16createThreadImplEOSt6futureIvE", QThread * (std::future<void> &&));
    return function(std::async(
        std::launch::deferred,
        [](std::future<void>&& inner) {
            inner.get();
            release(&anyThreadsEnd);
        },
        std::move(work)));
}

void QThread::start(Priority priority)
{
    KERVAL_ORIGINAL("_ZN7QThread5startENS_8PriorityE", void(QThread*, Priority));
    release(&anySignal);
    connect(
        this, &QThread::finished, this, [] { release(&anyThreadsEnd); }, Qt::DirectConnection);
    function(this, priority);
}

void QThreadPool::start(std::function<void()> work, int priority)
{
    KERVAL_ORIGINAL("_ZN11QThreadPool5startESt8functionIFvvEEi", void(QThreadPool*, std::function<void()>, int));
    std::function<void()> told = [work = std::move(work)] {
        acquire(&anyTask);
        work();
        release(&anyTask);
    };
    release(&anyTask);
    function(this, std::move(told), priority);
}

bool QThreadPool::waitForDone(int milliseconds)
{
    KERVAL_ORIGINAL("_ZN11QThreadPool11waitForDoneEi", bool(QThreadPool*, int));
    const bool done = function(this, milliseconds);
    acquire(&anyTask);
    return done;
}

bool QThread::wait(unsigned long time)
{
    KERVAL_ORIGINAL("_ZN7QThread4waitEm", bool(QThread*, unsigned long));
    const bool ended = function(this, time);
    acquire(&anyThreadsEnd);
    return ended;
}

bool QThread::wait(QDeadlineTimer deadline)
{
    KERVAL_ORIGINAL("_ZN7QThread4waitE14QDeadlineTimer", bool(QThread*, QDeadlineTimer));
    const bool ended = function(this, deadline);
    acquire(&anyThreadsEnd);
    return ended;
}

void QMetaObject::activate(QObject* sender, const QMetaObject* metaObject, int signal, void** arguments)
{
    KERVAL_ORIGINAL("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv", void(QObject*, const QMetaObject*, int, void**));
    release(&anySignal);
    function(sender, metaObject, signal, arguments);
    // The arguments of queued receivers are copied meanwhile.
    release(&anySignal);
}

void QCoreApplication::postEvent(QObject* receiver, QEvent* event, int priority)
{
    KERVAL_ORIGINAL("_ZN16QCoreApplication9postEventEP7QObjectP6QEventi", void(QObject*, QEvent*, int));
    release(&anySignal);
    function(receiver, event, priority);
}

bool QMetaObject::invokeMethodImpl(QObject* object, QtPrivate::QSlotObjectBase* slot, Qt::ConnectionType type,
                                   void* result)
{
    KERVAL_ORIGINAL("_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14ConnectionTypeEPv",
                    bool(QObject*, QtPrivate::QSlotObjectBase*, Qt::ConnectionType, void*));
    auto* const told = new ToldSlot(slot);
    release(&anySignal);
    return function(object, told, type, result);
}

void QObject::deleteLater()
{
    KERVAL_ORIGINAL("_ZN7QObject11deleteLaterEv", void(QObject*));
    release(&anySignal);
    function(this);
}
