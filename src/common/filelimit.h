#pragma once

#include <sys/resource.h>

/// Raises this process's limit on open files to the hard limit. Each served schema keeps about five
/// files open, so the usual soft limit of 1,024 suffices for only about 200 schemas.
inline void raiseFileLimit()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}
