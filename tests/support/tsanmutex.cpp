// Built under ThreadSanitizer alone. Qt is not instrumented, so the locks of a QMutex are told
// here: these definitions stand in front of Qt's own, which they call.

#include <QMutex>

#include <dlfcn.h>
#include <sanitizer/tsan_interface.h>

namespace
{

using Operation = void (*)(QMutex *);

Operation qtOperation(const char *symbol)
{
    return reinterpret_cast<Operation>(dlsym(RTLD_NEXT, symbol));
}

} // namespace

void QMutex::lock() noexcept
{
    static const Operation lockInQt = qtOperation("_ZN6QMutex4lockEv");
    lockInQt(this);
    __tsan_acquire(this);
}

void QMutex::unlock() noexcept
{
    static const Operation unlockInQt = qtOperation("_ZN6QMutex6unlockEv");
    __tsan_release(this);
    unlockInQt(this);
}
