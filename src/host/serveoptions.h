#pragma once

#include "options/connectionoptions.h"

#include <QStringList>

#include <optional>

/// What `autoreport serve` was asked to do.
struct ServeOptions {
    ConnectionOptions connection;
    QString plugin; ///< file of the module
    QString language;
    quint8 debugLevel = 0;
    int runForSeconds = 0; ///< 0: until a signal asks to stop
};

/**
 * The command line as understood: either options, or a text to print and the exit status.
 *
 * Status 0 belongs on standard output (help, version), 1 (no password to be had) and 2 (a wrong
 * option, with the usage) on standard error.
 */
struct CommandLine {
    std::optional<ServeOptions> options;
    int status = 0;
    QString text;
};

/// Parses `arguments`, the program's name first. `commandHelp` lists the program's other commands,
/// one a line; the help ends its description with it.
CommandLine parseCommandLine(const QStringList &arguments, const QString &commandHelp);
