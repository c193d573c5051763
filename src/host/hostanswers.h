#pragma once

#include "inquiry/inquiryserver.h"

class HostState;
struct ServeOptions;

/**
 * Answers the operator's commands on this machine: what the host serves, and how it went. Without
 * it, for want of a folder for its socket, the host serves all the same.
 *
 * Lives in the main thread. The state must outlive it.
 */
class HostAnswers
{
public:
    HostAnswers(const ServeOptions &options, const HostState &state);

private:
    InquiryServer server;
};
