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

/// Takes the numbers of closed standard streams. Otherwise a socket or a pipe of the program would
/// get them, and whatever is printed would be written to it. Printing still fails.
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
    // If file sizes are limited, a write beyond the limit would kill the program, and with it the
    // reports of all customers. With the signal ignored, only that write fails. The plug-in cannot
    // decide this: a signal's action belongs to the whole process, hence to the host.
    std::signal(SIGXFSZ, SIG_IGN);

    const QCoreApplication application(argc, argv);
    // The workbook engine names files in UTF-8; in a C locale Qt would look for different names.
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

    // Keep serving when the reader of the log goes away.
    std::signal(SIGPIPE, SIG_IGN);
    LogSink::install(commandLine.options->debugLevel > 0);
    Language::install(commandLine.options->language);
    return ServeCommand::run(*commandLine.options);
}
