// Built only under ThreadSanitizer. Qt is not instrumented, so QMutex's locks are announced here:
// these definitions replace Qt's own and call them.

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
