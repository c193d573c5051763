#include "options/optionreader.h"
#include "reports/attenreport.h"
#include "reports/bookformat.h"
#include "tool/commands.h"
#include "tool/interruption.h"
#include "tool/messages.h"
#include "tool/onschema.h"
#include "tool/output.h"
#include "tool/reportjob.h"
#include "tool/targetfile.h"
#include "tool/tool.h"

#include <QFileInfo>

namespace
{

/// Returns an error or an empty text. The extension is required because it selects the format.
QString pathError(const QString &path)
{
    if (path.isEmpty())
        return QStringLiteral("--out FILE is missing");
    if (!bookFormatNamed(QFileInfo(path).suffix()))
        return QStringLiteral("--out must end with .%1, not '%2'")
            .arg(bookFormatNames().join(QStringLiteral(" or .")), path);
    return {};
}

int makePreview(const Invocation &invocation, const SchemaConnection &connection)
{
    const QString path = invocation.value("out");
    const Interruption interruption;
    bool saved = false;
    { // a block, so that the bar is erased before anything is printed
        const ReportJob job(connection.database(), invocation.date());
        saved = createReport(*invocation.kind, connection.database())->saveWorkbook(path, job.run);
    }
    const bool complained = Messages::print();
    if (saved) {
        Output::print(path);
        // A failed query leaves cells empty, which is easily missed in the file.
        return complained ? Tool::Look : Tool::Well;
    }
    // The logged errors do not say what to do about the directory.
    const QFileInfo folder(QFileInfo(path).absolutePath());
    if (!folder.isDir() || !folder.isWritable())
        Output::error(
            QStringLiteral(
                "cannot write to '%1': create the directory or make it writable, or choose "
                "another")
                .arg(folder.filePath()));
    Output::error(QStringLiteral("no preview written; '%1' unchanged").arg(path));
    return Interruption::isRequested() ? Interruption::status() : Tool::Look;
}

} // namespace

void describePreview(QCommandLineParser &parser)
{
    OptionReader::describeLanguage(parser);
    parser.addOption(
        {QStringLiteral("date"),
         QStringLiteral("Make the report of this day, YYYY-MM-DD, instead of today's."),
         QStringLiteral("date")});
    parser.addOption({QStringLiteral("out"),
                      QStringLiteral("File to write; its extension, .%1, selects the format.")
                          .arg(bookFormatNames().join(QStringLiteral(" or ."))),
                      QStringLiteral("file")});
}

int runPreview(const Invocation &invocation)
{
    const QString error = pathError(invocation.value("out"));
    if (!error.isEmpty())
        return invocation.wrong(error);
    if (!invocation.date().isValid())
        return invocation.wrongDate();
    if (!isUsableTarget(invocation.value("out")))
        return Tool::Look;
    return onSchema(
        invocation, SchemaConnection::Access::ReadOnly, SchemaConnection::Statements::Long,
        [&](const SchemaConnection &connection) { return makePreview(invocation, connection); });
}
