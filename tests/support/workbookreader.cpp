#include "support/workbookreader.h"

namespace
{

constexpr int programPatienceMs = 180000;

/// Runs the program to its end, in a locale with a decimal point. Returns whether it succeeded.
bool run(QProcess &process, const QString &program, const QStringList &arguments)
{
    process.setEnvironment(QProcess::systemEnvironment() << "LC_ALL=C.UTF-8");
    process.start(program, arguments);
    return process.waitForFinished(programPatienceMs) &&
           process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0;
}

/// Returns what the program prints; empty if it fails or prints to standard error.
QByteArray outputOf(const QString &program, const QStringList &arguments)
{
    QProcess process;
    bool good = run(process, program, arguments);
    const QByteArray said = process.readAllStandardError();
    // Warnings about fonts that gnumeric lacks do not matter.
    for (const QByteArray &line : said.split('\n'))
        good = good && (line.isEmpty() || line.contains("unknown widths for font"));
    if (good)
        return process.readAllStandardOutput();
    qCritical().noquote() << program << arguments << process.errorString() << said;
    return {};
}

} // namespace

QByteArray readRaw(const QString &option, const QString &path)
{
    return outputOf(AUTOREPORT_READ_WORKBOOK, {option, path});
}

QVector<QJsonObject> readWorkbooks(const QStringList &paths, const QStringList &options)
{
    QVector<QJsonObject> books;
    const QByteArray lines = outputOf(AUTOREPORT_READ_WORKBOOK, options + paths);
    for (const QByteArray &line : lines.split('\n'))
        books.append(QJsonDocument::fromJson(line).object());
    books.resize(paths.size());
    return books;
}

QJsonObject readSheet(const QString &path)
{
    const QJsonObject book = readWorkbooks({path}).first();
    return book.value("sheets").toArray().first().toObject();
}

QJsonValue cellValue(const QJsonObject &sheet, const QString &reference, const char *key)
{
    const QJsonValue value = sheet["cells"].toObject()[reference].toObject().value(key);
    return value.isUndefined() ? QJsonValue() : value;
}

QString savedBy(Program program, const QString &path, const QString &suffix)
{
    const QFileInfo file(path);
    const bool gnumeric = program == Program::Gnumeric;
    const QString folder = file.path() + (gnumeric ? "/gnumeric" : "/office");
    const QString saved = folder + '/' + file.completeBaseName() + '.' + suffix;
    QDir().mkpath(folder);
    QFile::remove(saved);
    if (gnumeric) {
        outputOf("ssconvert", {path, saved});
        return saved;
    }
    // Its output and exit code are meaningless: only the file counts. With its own profile it can
    // run at the same time as others.
    const QString csv = "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true";
    QProcess office;
    run(office, "soffice",
        {QString("-env:UserInstallation=file://%1/profile").arg(folder), "--headless",
         "--convert-to", suffix == "csv" ? csv : suffix, "--outdir", folder, path});
    return saved;
}

QByteArrayList linesBy(Program program, const QString &path)
{
    QFile csv(savedBy(program, path, "csv"));
    return csv.open(QIODevice::ReadOnly) ? csv.readAll().split('\n') : QByteArrayList();
}

QString cellName(int row, int column)
{
    QString name;
    for (qint64 rest = qint64(column) + 1; rest > 0; rest = (rest - 1) / 26)
        name.prepend(QChar('A' + int((rest - 1) % 26)));
    return name + QString::number(qint64(row) + 1);
}
