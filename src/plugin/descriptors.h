#pragma once

/// How many more files this process may open; negative when the limit was lowered below what is
/// open, and the largest number without a limit.
int spareDescriptors();
