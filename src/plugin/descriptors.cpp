#include "plugin/descriptors.h"

#include <QDir>

#include <limits>

#include <sys/resource.h>

int spareDescriptors()
{
    constexpr int most = std::numeric_limits<int>::max();
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0 || limit.rlim_cur > rlim_t(most))
        return most;
    const QDir open(QStringLiteral("/proc/self/fd"));
    return static_cast<int>(limit.rlim_cur) -
           static_cast<int>(
               open.entryList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot).size());
}
