#pragma once

#include "options/connectionoptions.h"
#include "reports/reportkind.h"

#include <QCommandLineParser>
#include <QDate>

/**
 * One command as it was called: its options, the schema and the report where it takes them, and
 * the way to the database.
 *
 * The parser belongs to the caller and has parsed the command line before anything is asked here.
 */
class Invocation
{
public:
    explicit Invocation(const QCommandLineParser &commandLine)
        : parser(commandLine)
    {
    }

    /// Options by their long names without dashes, which the command must have described.
    bool has(const char *option) const { return parser.isSet(QLatin1String(option)); }
    QString value(const char *option) const { return parser.value(QLatin1String(option)); }

    /// Prints the error and the usage. Returns the exit status.
    int wrong(const QString &reason) const;

    /// The same for a "--date" that is none.
    int wrongDate() const;

    /// The day of "--date", today without it; invalid when it is none.
    QDate date() const;

    const QCommandLineParser &parser;
    ConnectionOptions connection;
    // Meaningful for the commands that take a report alone.
    QString token; ///< as it was written; that there is such a schema is not known yet
    const ReportKind *kind = nullptr;
};
