#include "support/recording.h"

#include "support/measure.h"

#include <QDataStream>
#include <QFile>

namespace
{

QByteArray unescaped(const QByteArray &text)
{
    QByteArray plain;
    plain.reserve(text.size());
    for (int i = 0; i < text.size(); ++i) {
        if (text[i] != '\\' || i + 1 == text.size()) {
            plain += text[i];
            continue;
        }
        const char escaped = text[++i];
        plain += escaped == 'n' ? '\n' : escaped == 'r' ? '\r' : escaped == '0' ? '\0' : escaped;
    }
    return plain;
}

/// Returns the value at `place` of an executed statement, and moves `place` behind the value.
QByteArray takeValue(const QByteArray &text, int &place)
{
    const int begin = place;
    if (text.at(place) != '\'') {
        while (place < text.size() && QByteArray(",) \n").indexOf(text.at(place)) < 0)
            ++place;
        return text.mid(begin, place - begin);
    }
    for (++place; place < text.size() && text.at(place) != '\''; ++place) {
        if (text.at(place) == '\\')
            ++place;
    }
    ++place;
    return unescaped(text.mid(begin + 1, place - begin - 2));
}

/// Returns the values of an executed statement, which are in the places of the "?" in `prepared`.
QVector<QByteArray> valuesOf(const QByteArray &prepared, const QByteArray &executed)
{
    QVector<QByteArray> values;
    const QList<QByteArray> pieces = prepared.split('?');
    int place = pieces.first().size();
    for (int piece = 1; piece < pieces.size(); ++piece) {
        values.append(takeValue(executed, place));
        Bench::require(executed.mid(place, pieces[piece].size()) == pieces[piece],
                       QStringLiteral("cannot read a recorded statement"));
        place += pieces[piece].size();
    }
    return values;
}

} // namespace

Recording recordStatements(const TestDatabase &database, const std::function<void()> &work)
{
    database.exec(QStringLiteral("SET GLOBAL log_output = 'TABLE'"));
    database.exec(QStringLiteral("TRUNCATE mysql.general_log"));
    database.exec(QStringLiteral("SET GLOBAL general_log = 1"));
    work();
    database.exec(QStringLiteral("SET GLOBAL general_log = 0"));

    Recording recording;
    QByteArray prepared;
    const auto rows = database.rows(
        QStringLiteral("SELECT command_type, argument FROM mysql.general_log WHERE thread_id <> "
                       "CONNECTION_ID() AND command_type IN ('Query', 'Prepare', 'Execute')"));
    for (const QVariantList &row : rows) {
        const QByteArray command = row[0].toByteArray();
        const QByteArray text = row[1].toByteArray();
        if (command == "Prepare")
            prepared = text;
        else if (command == "Execute")
            recording.append({prepared, true, valuesOf(prepared, text)});
        else if (!text.startsWith("SET NAMES"))
            recording.append({text, false, {}});
    }
    Bench::require(!recording.isEmpty(), QStringLiteral("nothing was recorded"));
    return recording;
}

void saveRecording(const QString &path, const Recording &recording)
{
    QFile file(path);
    Bench::require(file.open(QIODevice::WriteOnly), path);
    QDataStream stream(&file);
    for (const RecordedStatement &statement : recording)
        stream << statement.text << statement.prepared << statement.values;
}

Recording loadRecording(const QString &path)
{
    QFile file(path);
    Bench::require(file.open(QIODevice::ReadOnly), path);
    QDataStream stream(&file);
    Recording recording;
    while (!stream.atEnd()) {
        RecordedStatement statement;
        stream >> statement.text >> statement.prepared >> statement.values;
        recording.append(statement);
    }
    return recording;
}
