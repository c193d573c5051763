#include "options/optionreader.h"
#include "reports/attenreport.h"
#include "tool/commands.h"
#include "tool/interruption.h"
#include "tool/messages.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/reportjob.h"
#include "tool/tool.h"

#include <QFileInfo>

namespace
{

/// What is wrong with the name of the file to be written, or an empty text. Without an extension
/// that says the format, the operator would not know what was made.
QString pathFault(const QString &path)
{
    const QFileInfo file(path);
    const QString extension = file.suffix().toLower();
    if (path.isEmpty())
        return QStringLiteral("--out FILE is missing");
    if (extension != QLatin1String("xlsx") && extension != QLatin1String("xls"))
        return QStringLiteral("--out must end with .xlsx or .xls, not '%1'").arg(path);
    return {};
}

int makePreview(const Invocation &invocation, const SchemaConnection &connection)
{
    const QString path = invocation.value("out");
    const Interruption interruption;
    bool saved = false;
    { // the bar is wiped before anything is printed
        const ReportJob job(connection.database(), invocation.date());
        saved = createReport(*invocation.kind, connection.database())->saveWorkbook(path, job.run);
    }
    const bool complained = Messages::print();
    if (saved) {
        Output::print(path);
        // A query that failed leaves cells empty, which nobody would notice in the file.
        return complained ? Tool::Look : Tool::Well;
    }
    // The engine says no more than that it could not save.
    const QFileInfo folder(QFileInfo(path).absolutePath());
    if (!folder.isDir() || !folder.isWritable())
        Output::error(QStringLiteral("can not write into '%1': make the directory, or choose "
                                     "another")
                          .arg(folder.filePath()));
    Output::error(QStringLiteral("there is no preview; '%1' is as it was").arg(path));
    return Interruption::isRequested() ? Interruption::status() : Tool::Look;
}

} // namespace

void describePreview(QCommandLineParser &parser)
{
    OptionReader::describeLanguage(parser);
    parser.addOption({QStringLiteral("date"),
                      QStringLiteral("As it would be on that day, YYYY-MM-DD, instead of today."),
                      QStringLiteral("date")});
    parser.addOption({QStringLiteral("out"),
                      QStringLiteral("The file; its extension, .xlsx or .xls, says the format."),
                      QStringLiteral("file")});
}

int runPreview(const Invocation &invocation)
{
    const QString fault = pathFault(invocation.value("out"));
    if (!fault.isEmpty())
        return invocation.wrong(fault);
    if (!invocation.date().isValid())
        return invocation.wrongDate();
    return onSchema(
        invocation, SchemaConnection::Access::ReadOnly, SchemaConnection::Statements::Long,
        [&](const SchemaConnection &connection) { return makePreview(invocation, connection); });
}
