#pragma once

/// Returns how many more files this process may open: negative if the limit was lowered below the
/// number of open files, the largest int if there is no limit.
int spareDescriptors();
