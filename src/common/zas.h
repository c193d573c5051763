#pragma once

#include "common/zasadmin.h"
#include "common/zascalendar.h"
#include "common/zasrules.h"
#include "common/zastime.h"

// All of the product's free helpers in one include.
