#pragma once

#include "options/connectionoptions.h"
#include "reports/reportkind.h"

#include <QCommandLineParser>
#include <QDate>
#include <QStringList>

struct UsageError;

/// Returns the kind of report that `word` names. If it names none, sets `error` and returns null.
const ReportKind *readReport(const QString &word, UsageError &error);

/**
 * What a command line asks for: the options of the command, its schema and report, and how to reach
 * the database.
 *
 * The parser belongs to the caller and must outlive the object. It must have parsed the command
 * line before options are read.
 */
class Invocation
{
public:
    /// `usage` is how the command is called: "autoreport why TOKEN daily|monthly [options]".
    Invocation(const QCommandLineParser &commandLine, const QString &usage)
        : parser(commandLine)
        , synopsis(usage)
    {
    }

    /// `option` is the long name, without dashes, of one of the command's options.
    bool has(const char *option) const { return parser.isSet(QLatin1String(option)); }
    QString value(const char *option) const { return parser.value(QLatin1String(option)); }

    /// Prints three lines about a wrong command line: the error; the suggestion `meant` or, without
    /// one, the synopsis; and the command that shows the help. Returns the exit status.
    int wrong(const QString &error, const QString &meant = QString()) const;

    /// Calls wrong() for a "--date" that is not a date.
    int wrongDate() const;

    /// Returns the day that "--date" names, or today if the option is missing. Returns an invalid
    /// date if the option's value is not a date.
    QDate date() const;

    const QCommandLineParser &parser;
    const QString synopsis;
    ConnectionOptions connection;
    QStringList arguments;            ///< positional arguments after the command's name
    QString token;                    ///< the first argument, as given: there may be no such schema
    const ReportKind *kind = nullptr; ///< null unless the command takes one schema and one report
};
