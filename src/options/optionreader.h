#pragma once

#include "options/configfile.h"
#include "options/connectionoptions.h"

#include <QString>

class QCommandLineParser;

/**
 * Reads options off a parsed command line; what is missing there comes from the configuration
 * file, where that knows it.
 *
 * The first thing found wrong stays in `error`, as one sentence. `isUsage` tells a wrong command
 * line from one that is right but cannot be followed, such as a file that cannot be read.
 */
class OptionReader
{
public:
    explicit OptionReader(const QCommandLineParser &commandLine);

    /// Adds the options of the connection to a command's own.
    static void describe(QCommandLineParser &parser);
    /// Adds the language, for the commands that make reports.
    static void describeLanguage(QCommandLineParser &parser);

    QString text(const char *name);
    int number(const char *name, int least, int most);
    /// All but the password.
    ConnectionOptions connection();
    /// From a file, the environment or the configuration, in this order; never from the command
    /// line, where everybody on the machine could read it.
    QString password();

    /// One of Language::known().
    QString language();

    void fail(const QString &reason, bool usage = true);

    QString error;
    bool isUsage = true;

private:
    void failMissing(const QString &reason, bool usage);
    bool hasOption(const QString &option) const;
    bool flag(const QString &key);

    const QCommandLineParser &parser;
    ConfigFile config;
};
