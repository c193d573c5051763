#pragma once

#include <sys/resource.h>

/// Lets this process open as many files as the system grants it. Each schema that is served takes
/// about four: what a shell allows at first ends at 250 schemas.
inline void raiseFileLimit()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}
