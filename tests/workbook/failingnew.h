#pragma once

/** The heap of a test program whose allocations can be made to fail, on the calling thread. */
namespace FailingNew
{

/** Makes the allocation after that many others fail, and no other. */
void failAfter(int allocations);

/** Ends failAfter(). Returns whether an allocation failed. */
bool stop();

/** Returns how many blocks were allocated on this thread and not freed on it. */
int liveBlocks();

} // namespace FailingNew
