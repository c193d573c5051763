#pragma once

#include "options/configfile.h"
#include "options/connectionoptions.h"

#include <QString>

class QCommandLineParser;

/**
 * Reads options from a parsed command line, falling back to the configuration file.
 *
 * The first error is kept in `error`, as one sentence. `isUsage` distinguishes a wrong command line
 * from one that cannot be carried out, for example because a file cannot be read.
 */
class OptionReader
{
public:
    explicit OptionReader(const QCommandLineParser &commandLine);

    /// Adds the connection options to `parser`.
    static void describe(QCommandLineParser &parser);
    /// Adds the language option, for commands that make reports.
    static void describeLanguage(QCommandLineParser &parser);

    QString text(const char *name);
    /// Set on the command line, or to true in the configuration.
    bool flag(const char *name);
    int number(const char *name, int least, int most);
    /// Returns all but the password.
    ConnectionOptions connection();
    /// Reads it from a file, the environment or the configuration, in this order; never from the
    /// command line, which every account of the machine can read.
    QString password();

    /// Returns "host:port", or an empty text if the option is not set.
    QString address(const char *name);

    /// Returns one of Language::known().
    QString language();

    void fail(const QString &message, bool usage = true);

    QString error;
    bool isUsage = true;

private:
    void failMissing(const QString &message, bool usage);
    bool hasOption(const QString &option) const;
    /// Returns the path of a file that can be read, or an empty one if the option is not set.
    QString file(const char *name);

    const QCommandLineParser &parser;
    ConfigFile config;
};
