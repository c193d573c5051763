#pragma once

#include "inquiry/inquiryserver.h"
#include "options/temporarydirectory.h"

#include <QTimer>

class HostState;
struct ServeOptions;

/**
 * Answers inquiries from the operator's commands on this machine: which schemas the host serves,
 * and how the last runs of their reports ended. If the socket cannot be created or is lost, logs
 * that and tries again every few seconds.
 *
 * Lives in the main thread. The state must outlive the object.
 */
class HostAnswers
{
public:
    HostAnswers(const ServeOptions &options, const HostState &state);

private:
    void listen();

    TemporaryDirectoryProbe temporary;
    InquiryServer server;
    QTimer timer;
    bool isWarned = false;
};
