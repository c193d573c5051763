// Built only under ThreadSanitizer. Qt is not instrumented, so the order that QMutex and queued
// calls make between threads is announced here: these definitions replace Qt's own and call them.

#include <QCoreApplication>
#include <QEvent>
#include <QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace
{

template <typename Function>
Function inQt(const char *symbol)
{
    return reinterpret_cast<Function>(dlsym(RTLD_NEXT, symbol));
}

// Stands for every queue of posted calls: who takes a call has seen what its caller did before.
char postedCalls;

// A posted call of a function object. A receiver may be of a class of Qt's, whose event() Qt calls
// itself, so this is where the call is taken.
class PostedCall : public QtPrivate::QSlotObjectBase
{
public:
    explicit PostedCall(QtPrivate::QSlotObjectBase *function)
        : QSlotObjectBase(&run)
        , slot(function)
    {
    }

private:
    static void run(int which, QSlotObjectBase *self, QObject *receiver, void **arguments, bool *)
    {
        __tsan_acquire(&postedCalls);
        auto *const call = static_cast<PostedCall *>(self);
        if (which == Call) {
            call->slot->call(receiver, arguments);
            __tsan_release(&postedCalls); // either thread may be the one that deletes it
        } else if (which == Destroy) {
            call->slot->destroyIfLastRef();
            delete call;
        }
    }

    QtPrivate::QSlotObjectBase *const slot;
};

} // namespace

void QMutex::lock() noexcept
{
    static const auto lockInQt = inQt<void (*)(QMutex *)>("_ZN6QMutex4lockEv");
    lockInQt(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static const auto unlockInQt = inQt<void (*)(QMutex *)>("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockInQt(this);
}

void QMetaObject::activate(QObject *sender, const QMetaObject *type, int signal, void **arguments)
{
    using Activate = void (*)(QObject *, const QMetaObject *, int, void **);
    static const auto activateInQt = inQt<Activate>("_ZN11QMetaObject8activateEP7QObjectPKS_iPPv");
    __tsan_release(&postedCalls);
    activateInQt(sender, type, signal, arguments);
}

bool QMetaObject::invokeMethodImpl(QObject *object, QtPrivate::QSlotObjectBase *slot,
                                   Qt::ConnectionType type, void *result)
{
    using Invoke = bool (*)(QObject *, QtPrivate::QSlotObjectBase *, Qt::ConnectionType, void *);
    static const auto invokeInQt = inQt<Invoke>(
        "_ZN11QMetaObject16invokeMethodImplEP7QObjectPN9QtPrivate15QSlotObjectBaseEN2Qt14"
        "ConnectionTypeEPv");
    auto *const call = new PostedCall(slot);
    __tsan_release(&postedCalls);
    return invokeInQt(object, call, type, result);
}

// A queued connection to a signal of Qt's own, such as QTimer::timeout: Qt posts the call itself.
QMetaObject::Connection QObject::connectImpl(const QObject *sender, void **signal,
                                             const QObject *receiver, void **slotPointer,
                                             QtPrivate::QSlotObjectBase *slot,
                                             Qt::ConnectionType type, const int *types,
                                             const QMetaObject *senderType)
{
    using Connect = QMetaObject::Connection (*)(const QObject *, void **, const QObject *, void **,
                                                QtPrivate::QSlotObjectBase *, Qt::ConnectionType,
                                                const int *, const QMetaObject *);
    static const auto connectInQt = inQt<Connect>(
        "_ZN7QObject11connectImplEPKS_PPvS1_S3_PN9QtPrivate15QSlotObjectBaseEN2Qt14Connection"
        "TypeEPKiPK11QMetaObject");
    __tsan_release(&postedCalls);
    return connectInQt(sender, signal, receiver, slotPointer, slot, type, types, senderType);
}

bool QObject::event(QEvent *event)
{
    static const auto eventInQt = inQt<bool (*)(QObject *, QEvent *)>("_ZN7QObject5eventEP6QEvent");
    if (event->type() == QEvent::MetaCall)
        __tsan_acquire(&postedCalls);
    return eventInQt(this, event);
}
