// Part of every test program in the thread sanitizer's build, and only there. Qt itself is not built with the
// sanitizer, which therefore sees none of the ordering that Qt's locks, pool and queued signals make, and would report
// every use of them. Here the calls that our code makes into Qt are told to it: what happens before what, and nothing
// more.
//
// Locks and futures are told exactly. Queued signals are told as one: whatever came before any emission comes before
// any later delivery of an event. That hides races between the sender of one signal and the receiver of another; races
// on data without its lock are still seen wherever no event lies between.

#include <QCoreApplication>
#include <QFutureInterface>
#include <QMutex>
#include <QReadWriteLock>
#include <QThread>
#include <QWaitCondition>

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
           "race:QtConcurrent::FilteredReducedKernel\n";
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
    function(this);
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
