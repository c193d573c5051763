#pragma once

#include <QStringList>

#include <optional>

/// What `autoreport serve` was asked to do.
struct ServeOptions {
    bool single = false; ///< serve one schema instead of all that an information database lists
    QString plugin;      ///< file of the module
    QString host;
    int port = 0;
    QString user;
    QString password;
    QString databaseName;
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

/// `arguments` with the program's name first. The password comes from the environment or a file,
/// never from the command line, where everybody on the machine could read it.
CommandLine parseCommandLine(const QStringList &arguments);
