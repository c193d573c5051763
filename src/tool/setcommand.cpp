#include "common/zas.h"
#include "db/varstable.h"
#include "reports/bookformat.h"
#include "tool/commands.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/tool.h"

#include <QSqlError>
#include <QTime>

namespace
{

/// The daily report shares this setting with all of the product's exports.
QString formatKey()
{
    return QStringLiteral("exportUseXLSX");
}

/// The changes that the command line asks for; keeps the first error.
class Changes
{
public:
    explicit Changes(const Invocation &commandLine)
        : invocation(commandLine)
    {
        readSwitch();
        readEmails();
        readTime();
        readFormat();
        if (values.isEmpty())
            fail(QStringLiteral("nothing to set"));
    }

    VarsTable::Values values;
    QString error;

private:
    void readSwitch()
    {
        const bool on = invocation.has("enable");
        if (on && invocation.has("disable"))
            fail(QStringLiteral("--enable and --disable exclude each other"));
        if (on || invocation.has("disable"))
            set("enabled", on ? QStringLiteral("1") : QStringLiteral("0"));
    }

    void readEmails()
    {
        if (!invocation.has("emails"))
            return;
        // An empty list is allowed: nobody gets the report any more.
        QStringList addresses;
        const QStringList parts =
            invocation.value("emails").split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const QString &part : parts) {
            if (!ZAS::validEmail(part.trimmed()))
                fail(QStringLiteral("'%1' is not a mail address").arg(part.trimmed()));
            addresses.append(part.trimmed()); // as they are mailed to
        }
        set("emails", addresses.join(QLatin1Char(',')));
    }

    /// Stricter than the report, which reads an invalid time as midnight.
    void readTime()
    {
        if (!invocation.has("time"))
            return;
        const QString text = invocation.value("time");
        if (!QTime::fromString(text, QStringLiteral("HH:mm")).isValid())
            fail(QStringLiteral("--time must be HH:MM, not '%1'").arg(text));
        set("time", text);
    }

    void readFormat()
    {
        if (!invocation.has("format"))
            return;
        const QString format = invocation.value("format");
        if (format != QLatin1String("xlsx") && format != QLatin1String("xls"))
            fail(QStringLiteral("--format must be xlsx or xls, not '%1'").arg(format));
        else if (invocation.kind->format)
            fail(
                QStringLiteral("the %1 report is always %2: leave --format out")
                    .arg(QLatin1String(invocation.kind->word), invocation.kind->format->extension));
        values.insert(formatKey(),
                      format == QLatin1String("xlsx") ? QStringLiteral("1") : QStringLiteral("0"));
    }

    /// Sets a key of this report; other keys belong to the whole schema.
    void set(const char *key, const QString &value)
    {
        values.insert(invocation.kind->key(key), value);
    }

    void fail(const QString &message)
    {
        if (error.isEmpty())
            error = message;
    }

    const Invocation &invocation;
};

/// Stores all values or, if the table has transactions, none. Returns the errors.
QStringList store(const SchemaConnection &connection, const VarsTable::Values &values)
{
    QSqlDatabase database = connection.database();
    const bool open = database.transaction();
    QStringList errors;
    for (const Error &error : VarsTable(database).store(values))
        errors.append(error.text.simplified());
    if (open && !(errors.isEmpty() ? database.commit() : database.rollback()))
        errors.append(database.lastError().text().simplified());
    return errors;
}

int applyChanges(const SchemaConnection &connection, const VarsTable::Values &values)
{
    // Read first: a table that cannot be read is not written to.
    const auto before = VarsTable(connection.database()).values(values.keys());
    const QStringList errors =
        before.isOk() ? store(connection, values) : QStringList(before.error().simplified());
    for (const QString &error : errors)
        Output::error(error);
    if (!errors.isEmpty()) {
        Output::error(QStringLiteral("nothing was set in the database '%1': see autoreport check")
                          .arg(connection.databaseName));
        return Tool::Look;
    }
    // With the previous values, a slip can be undone.
    for (auto entry = values.cbegin(); entry != values.cend(); ++entry) {
        const QString old =
            before.value().contains(entry.key())
                ? QStringLiteral("'%1'").arg(before.value().value(entry.key()).toString())
                : QStringLiteral("not set");
        Output::print(
            QStringLiteral("%1: %2 -> '%3'").arg(entry.key(), old, entry.value().toString()));
    }
    return Tool::Well;
}

} // namespace

void describeSet(QCommandLineParser &parser)
{
    const auto add = [&parser](const char *name, const char *description, const char *value) {
        parser.addOption({QLatin1String(name), QLatin1String(description), QLatin1String(value)});
    };
    parser.addOption({QStringLiteral("enable"), QStringLiteral("Switch the report on.")});
    parser.addOption({QStringLiteral("disable"), QStringLiteral("Switch it off.")});
    add("emails", "The report's recipients, separated by commas.", "list");
    add("time", "Local time of day, HH:MM, from which it is due.", "time");
    add("format",
        "xlsx or xls; for the daily report, and for the product's own exports of the schema.",
        "format");
}

int runSet(const Invocation &invocation)
{
    const Changes changes(invocation);
    if (!changes.error.isEmpty())
        return invocation.wrong(changes.error);
    return onSchema(invocation, SchemaConnection::Access::ReadWrite,
                    SchemaConnection::Statements::Short,
                    [&changes](const SchemaConnection &connection) {
                        return applyChanges(connection, changes.values);
                    });
}
