#include "tool/setrequest.h"

#include "common/zas.h"
#include "reports/bookformat.h"
#include "reports/storedoption.h"

#include <QFile>
#include <QProcess>
#include <QTime>

#include <cstdio>

namespace
{

/// The daily report shares this setting with all of the product's exports.
QString formatKey()
{
    return QStringLiteral("exportUseXLSX");
}

/// Reads one request, and keeps the first error.
class Reader
{
public:
    explicit Reader(const Invocation &commandLine)
        : invocation(commandLine)
    {
        readArguments();
        if (!request.kind) // without a report there are no keys
            return;
        readSwitch();
        readEmails();
        readTime();
        readFormat();
        if (request.values.isEmpty())
            fail(QStringLiteral("nothing to set"));
    }

    SetRequest request;
    UsageError error;

private:
    void readArguments()
    {
        request.isForAll = invocation.has("all");
        QStringList given = invocation.arguments;
        if (given.isEmpty() || (given.size() == 1 && !request.isForAll)) {
            fail(QStringLiteral("name the schema and the report"));
            return;
        }
        request.kind = readReport(given.takeLast(), error);
        given.removeDuplicates();
        request.tokens = given;
        if (request.isForAll && !given.isEmpty())
            fail(QStringLiteral("--all and the schema '%1' exclude each other").arg(given.first()));
    }

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
        // An empty list is allowed: then nobody gets the report.
        QStringList addresses;
        const QStringList parts =
            invocation.value("emails").split(QLatin1Char(','), Qt::SkipEmptyParts);
        for (const QString &part : parts) {
            if (!ZAS::validEmail(part.trimmed()))
                fail(QStringLiteral("'%1' is not a mail address").arg(part.trimmed()));
            addresses.append(part.trimmed()); // the report trims them, too
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
        const QString name = invocation.value("format");
        const BookFormat *format = bookFormatNamed(name);
        if (!format)
            fail(QStringLiteral("--format must be %1, not '%2'")
                     .arg(bookFormatNames().join(QStringLiteral(" or ")), name),
                 Usage::nearest(name, bookFormatNames()));
        else if (request.kind->format)
            fail(QStringLiteral("the %1 report is always %2: leave --format out")
                     .arg(QLatin1String(request.kind->word), request.kind->format->extension));
        else
            request.values.insert(formatKey(), storedText(*format));
    }

    /// Sets a key with the prefix of this report. Keys without a prefix belong to the whole schema.
    void set(const char *key, const QString &value)
    {
        request.values.insert(request.kind->key(key), value);
    }

    void fail(const QString &text, const QString &meant = QString())
    {
        if (error.text.isEmpty())
            error = {text, meant};
    }

    const Invocation &invocation;
};

} // namespace

void describeSetRequests(QCommandLineParser &parser)
{
    const auto add = [&parser](const char *name, const QString &description, const char *value) {
        parser.addOption({QLatin1String(name), description, QLatin1String(value)});
    };
    parser.addOption(
        {QStringLiteral("all"), QStringLiteral("Apply the settings to all active schemas.")});
    parser.addOption({QStringLiteral("enable"), QStringLiteral("Enable the report.")});
    parser.addOption({QStringLiteral("disable"), QStringLiteral("Disable the report.")});
    add("emails", QStringLiteral("The report's recipients, separated by commas."), "list");
    add("time", QStringLiteral("Local time of day, HH:MM, from which the report is due."), "time");
    add("format",
        QStringLiteral("%1: format of the daily report and of the product's own exports.")
            .arg(bookFormatNames().join(QStringLiteral(" or "))),
        "format");
}

SetRequests::SetRequests(const Invocation &invocation)
{
    if (invocation.has("file")) {
        readFile(invocation);
        return;
    }
    const Reader reader(invocation);
    list.append(reader.request);
    error = reader.error;
}

void SetRequests::readFile(const Invocation &invocation)
{
    const QString path = invocation.value("file");
    QFile file(path);
    const bool opened = path == QLatin1String("-") ? file.open(stdin, QIODevice::ReadOnly)
                                                   : file.open(QIODevice::ReadOnly);
    if (!opened)
        error.text = QStringLiteral("cannot read '%1': %2").arg(path, file.errorString());
    else if (!invocation.arguments.isEmpty())
        error.text =
            QStringLiteral("'%1' cannot be combined with --file").arg(invocation.arguments.first());
    for (const char *option : {"all", "enable", "disable", "emails", "time", "format"}) {
        if (error.text.isEmpty() && invocation.has(option))
            error.text =
                QStringLiteral("'--%1' cannot be combined with --file").arg(QLatin1String(option));
    }
    // Reads until readLine() returns nothing, because atEnd() does not work for a pipe.
    for (int number = 1; error.text.isEmpty(); ++number) {
        const QByteArray read = file.readLine();
        if (read.isEmpty())
            break;
        const QString line = QString::fromUtf8(read).trimmed();
        if (line.isEmpty() || line.startsWith(QLatin1Char('#')))
            continue;
        readLine(line, invocation.synopsis);
        if (!error.text.isEmpty())
            error.text.prepend(QStringLiteral("line %1 of '%2': ").arg(number).arg(path));
    }
    if (error.text.isEmpty() && file.error() != QFileDevice::NoError)
        error.text = QStringLiteral("cannot read '%1': %2").arg(path, file.errorString());
    if (error.text.isEmpty() && list.isEmpty())
        error.text = QStringLiteral("'%1' contains no requests").arg(path);
}

/// A line has the same form as the arguments of `set`.
void SetRequests::readLine(const QString &line, const QString &synopsis)
{
    QCommandLineParser parser;
    describeSetRequests(parser);
    // The parser expects the program's name as the first argument.
    if (!parser.parse(QStringList(QStringLiteral("set")) + QProcess::splitCommand(line))) {
        error = Usage::parserError(parser);
        return;
    }
    Invocation invocation(parser, synopsis);
    invocation.arguments = parser.positionalArguments();
    const Reader reader(invocation);
    list.append(reader.request);
    error = reader.error;
}
