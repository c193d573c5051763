#pragma once

#include "options/connectionoptions.h"
#include "reports/reportkind.h"

#include <QCommandLineParser>
#include <QDate>

/**
 * A command as it was called: its options, the schema and the report if it takes them, and how to
 * reach the database.
 *
 * The parser belongs to the caller and must have parsed the command line.
 */
class Invocation
{
public:
    explicit Invocation(const QCommandLineParser &commandLine)
        : parser(commandLine)
    {
    }

    /// Options by their long names, without dashes. The command must have described them.
    bool has(const char *option) const { return parser.isSet(QLatin1String(option)); }
    QString value(const char *option) const { return parser.value(QLatin1String(option)); }

    /// Prints the error and the usage. Returns the exit status.
    int wrong(const QString &error) const;

    /// The same for a "--date" that is not a date.
    int wrongDate() const;

    /// Returns the day of "--date", or today without the option; invalid if it is not a date.
    QDate date() const;

    const QCommandLineParser &parser;
    ConnectionOptions connection;
    // For commands that take a report.
    QString token; ///< as given; there may be no such schema
    const ReportKind *kind = nullptr;
};
