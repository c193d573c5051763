#pragma once

#include <sys/resource.h>

/// Raises this process's limit of open files to the hard limit. Each schema that is served takes
/// about four: the usual soft limit ends at 250 schemas.
inline void raiseFileLimit()
{
    rlimit limit = {};
    if (getrlimit(RLIMIT_NOFILE, &limit) != 0)
        return;
    limit.rlim_cur = limit.rlim_max;
    setrlimit(RLIMIT_NOFILE, &limit);
}
