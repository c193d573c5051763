#pragma once

#include "options/connectionoptions.h"
#include "reports/reportkind.h"

#include <QCommandLineParser>
#include <QDate>
#include <QStringList>

struct UsageError;

/// Returns the kind of report that `word` names; null, with the error set, if there is none.
const ReportKind *readReport(const QString &word, UsageError &error);

/**
 * A command as it was called: its options, the schema and the report if it takes them, and how to
 * reach the database.
 *
 * The parser belongs to the caller and must have parsed the command line.
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

    /// `option` is the long name of an option that the command has described, without dashes.
    bool has(const char *option) const { return parser.isSet(QLatin1String(option)); }
    QString value(const char *option) const { return parser.value(QLatin1String(option)); }

    /// Prints three lines about a wrong command line: the error; the suggestion `meant` or, without
    /// one, the synopsis; and the command that shows the help. Returns the exit status.
    int wrong(const QString &error, const QString &meant = QString()) const;

    /// Calls wrong() for a "--date" that is not a date.
    int wrongDate() const;

    /// Returns the day of "--date", or today without the option; invalid if it is not a date.
    QDate date() const;

    const QCommandLineParser &parser;
    const QString synopsis;
    ConnectionOptions connection;
    QStringList arguments;            ///< after the command's name
    QString token;                    ///< the first argument, as given: there may be no such schema
    const ReportKind *kind = nullptr; ///< for commands that take one
};
