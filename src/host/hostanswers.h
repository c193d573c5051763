#pragma once

#include "inquiry/inquiryserver.h"

#include <QTimer>

class HostState;
struct ServeOptions;

/**
 * Answers the operator's commands on this machine: what the host serves, and how it went. Without
 * it, for want of a folder for its socket or of file descriptors, the host serves all the same, and
 * tries again every few seconds.
 *
 * Lives in the main thread. The state must outlive it.
 */
class HostAnswers
{
public:
    HostAnswers(const ServeOptions &options, const HostState &state);

private:
    void listen();

    InquiryServer server;
    QTimer timer;
    bool isWarned = false;
};
