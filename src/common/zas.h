#pragma once

#include "common/zasadmin.h"
#include "common/zascalendar.h"
#include "common/zasrules.h"
#include "common/zastime.h"

// Includes all of the namespace ZAS.
