#pragma once

#include "options/configfile.h"
#include "options/connectionoptions.h"

#include <QString>

class QCommandLineParser;

/**
 * Reads options from a parsed command line, falling back to the configuration file.
 *
 * Keeps the first error in `error`, as one sentence. `isUsage` is true for a usage error, such as a
 * missing option, and false for other errors, such as a file that cannot be read.
 */
class OptionReader
{
public:
    explicit OptionReader(const QCommandLineParser &commandLine);

    /// Adds the connection options, --password-file and --config to `parser`.
    static void describe(QCommandLineParser &parser);
    /// Adds --language to `parser`, the parser of a command that makes reports.
    static void describeLanguage(QCommandLineParser &parser);

    /// Returns the value of an option. A missing or empty option is an error.
    QString text(const char *name);
    /// Returns whether the flag is given on the command line or true in the configuration file.
    bool flag(const char *name);
    /// Returns the value of an option. It must be a number from `least` to `most`.
    int number(const char *name, int least, int most);
    /// Returns the connection options, without the password.
    ConnectionOptions connection();
    /// Returns the password from --password-file, the environment or the configuration file, in
    /// this order. There is no option for the password itself, because every account on the machine
    /// can read command lines.
    QString password();

    /// Returns the value of an option, or an empty text if it is not set. The value must have the
    /// form "host:port".
    QString address(const char *name);

    /// Returns the language of the reports. It must be one of Language::known().
    QString language();

    /// Sets `error` and `isUsage`, unless there is an error already.
    void fail(const QString &message, bool usage = true);

    QString error;
    bool isUsage = true;

private:
    void failMissing(const QString &message, bool usage);
    bool hasOption(const QString &option) const;
    /// Returns the value of an option, or an empty text if it is not set. The value must be the
    /// path of a readable file and must not contain a semicolon.
    QString file(const char *name);

    const QCommandLineParser &parser;
    ConfigFile config;
};
