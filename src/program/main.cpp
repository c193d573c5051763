#include "host/logsink.h"
#include "host/servecommand.h"
#include "host/serveoptions.h"
#include "options/language.h"
#include "tool/output.h"
#include "tool/tool.h"

#include <QCoreApplication>
#include <QTextCodec>

#include <csignal>
#include <cstdio>

#include <fcntl.h>
#include <unistd.h>

namespace
{

/// Opens /dev/null for each closed standard stream. Otherwise a socket or pipe of the program would
/// get the stream's number, and printed text would be written to that socket or pipe. Printing to
/// such a stream still fails, because /dev/null is open for reading only.
void openStandardStreams()
{
    int descriptor = 0;
    while (descriptor >= 0 && descriptor <= STDERR_FILENO)
        descriptor = ::open("/dev/null", O_RDONLY);
    if (descriptor > STDERR_FILENO)
        ::close(descriptor);
}

} // namespace

int main(int argc, char *argv[])
{
    openStandardStreams();
    // If file sizes are limited, a write beyond the limit raises SIGXFSZ, which would kill the
    // program and thereby end the reports of all customers. With the signal ignored, only that
    // write fails. The host decides this, not the plug-in: a signal's action applies to the whole
    // process, which the host owns.
    std::signal(SIGXFSZ, SIG_IGN);

    const QCoreApplication application(argc, argv);
    // The workbook engine encodes file names in UTF-8. In a C locale, Qt would encode them
    // differently.
    QTextCodec::setCodecForLocale(QTextCodec::codecForName("UTF-8"));
    QCoreApplication::setApplicationName(QStringLiteral("autoreport"));
    QCoreApplication::setApplicationVersion(QStringLiteral(AUTOREPORT_VERSION));

    const QString command = Tool::commandIn(QCoreApplication::arguments());
    if (!command.isEmpty())
        return Tool::run(command, QCoreApplication::arguments());

    const CommandLine commandLine =
        parseCommandLine(QCoreApplication::arguments(), Tool::commandNames(), Tool::commandHelp());
    if (!commandLine.options) {
        if (commandLine.status != 0) {
            std::fputs(qUtf8Printable(commandLine.text), stderr);
            return commandLine.status;
        }
        Output::print(commandLine.text.trimmed().split(QLatin1Char('\n')));
        return Output::flush() ? Tool::Well : Tool::Look;
    }

    // Keep serving if the process that reads the log ends.
    std::signal(SIGPIPE, SIG_IGN);
    LogSink::install(commandLine.options->debugLevel > 0);
    Language::install(commandLine.options->language);
    return ServeCommand::run(*commandLine.options);
}
