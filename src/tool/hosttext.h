#pragma once

#include "inquiry/hostanswer.h"

#include <QJsonArray>
#include <QStringList>

struct Machine;

/// Returns a line about each host of this machine that serves the database, or that there is none,
/// and one about each that could not be asked.
QStringList hostLines(const Machine &machine);

/// Returns the same for monitors, without the schemas.
QJsonArray hostsJson(const Machine &machine);

/// Returns the moment of those Unix seconds, "-" for 0.
QString momentText(qint64 seconds);

/// Returns how a run ended: "2026-11-22 07:00:02 CET, 2 mails in 1.2 s", or why it failed; "none
/// since the host started" without one.
QString runText(const RunOutcome &run);
