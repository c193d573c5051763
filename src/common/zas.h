#pragma once

#include "common/zasadmin.h"
#include "common/zascalendar.h"
#include "common/zasrules.h"
#include "common/zastime.h"

// The product's free helpers in one include, for the host and its other plug-ins. Code of this
// project includes the one part that it needs.
