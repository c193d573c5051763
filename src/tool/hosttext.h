#pragma once

#include "inquiry/hostanswer.h"

#include <QJsonArray>
#include <QStringList>

struct Machine;

/// Returns a line for each of `machine.hosts`, or one line that says that there are none. Adds a
/// line for each of `machine.silentHosts`.
QStringList hostLines(const Machine &machine);

/// Returns the answers of the hosts as JSON, without their schemas.
QJsonArray hostsJson(const Machine &machine);

/// Returns Output::exactMoment() of a moment in Unix seconds; "-" for 0.
QString momentText(qint64 seconds);

/// Returns how a run ended: "2026-11-22 07:00:02 CET, 2 mails in 1.2 s", or why it failed. Returns
/// "none since the host started" if there was no run.
QString runText(const RunOutcome &run);
