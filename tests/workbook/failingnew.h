#pragma once

/** The heap of a test program whose allocations can be made to fail, on the calling thread. */
namespace FailingNew
{

/** The allocation after so many others fails, and that one alone. */
void failAfter(int allocations);

/** Ends that; true if an allocation failed. */
bool stop();

/** Blocks that were allocated on this thread and not freed on it. */
int liveBlocks();

} // namespace FailingNew
