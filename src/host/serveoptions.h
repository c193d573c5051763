#pragma once

#include "options/connectionoptions.h"

#include <QStringList>

#include <optional>

/// The options of `autoreport serve`.
struct ServeOptions {
    ConnectionOptions connection;
    QString plugin; ///< file of the module
    QString language;
    QString metricsAddress;       ///< such as "127.0.0.1:9469"; empty: no metrics
    bool clearsWorkbooks = false; ///< removes workbooks of past months from the temporary directory
    quint8 debugLevel = 0;
    int runForSeconds = 0; ///< 0: until a signal requests a stop
};

/**
 * A parsed command line: either options, or a text to print and the exit status.
 *
 * Texts with status 0 (help, version) go to standard output; those with 1 (no usable password or
 * configuration) and 2 (usage error) go to standard error.
 */
struct CommandLine {
    std::optional<ServeOptions> options;
    int status = 0;
    QString text;
};

/// Parses `arguments`, which begin with the program's name. `commands` are the names of all
/// commands except `serve`; `commandHelp` lists them, one per line; the help shows this list
/// above the options.
CommandLine parseCommandLine(const QStringList &arguments, const QStringList &commands,
                             const QString &commandHelp);
