#pragma once

#include <QString>

/**
 * Free helpers of the attendance product: durations as text.
 *
 * Durations are signed seconds. The functions hold no state and may be called from any thread.
 */
namespace ZAS
{

/**
 * A duration as text, every number padded to two digits at least.
 *
 * `format` 1 gives the hours alone and never a sign, 2 hours:minutes, any other value
 * hours:minutes:seconds. With `limit24` a non-negative duration of more than 86,400 seconds keeps
 * only the hours of its last day; 86,400 itself stays 24:00, and negative ones are never wrapped.
 */
QString tsToTimeString(long long seconds, unsigned int format, bool limit24);

} // namespace ZAS
