#pragma once

#include "common/zasadmin.h"
#include "common/zascalendar.h"
#include "common/zasrules.h"
#include "common/zastime.h"

// The product's free helpers in one include, for the host and its other plug-ins. This project's
// own code includes only the parts that it needs.
