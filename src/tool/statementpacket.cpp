#include "tool/statementpacket.h"

#include "common/freshquery.h"

#include <QSqlRecord>

namespace
{

QVector<QVector<QVariant>> rowsOf(QSqlQuery &query)
{
    QVector<QVector<QVariant>> rows;
    const int columns = query.isSelect() ? query.record().count() : 0;
    while (columns > 0 && query.next()) {
        QVector<QVariant> row;
        for (int column = 0; column < columns; ++column)
            row.append(query.value(column));
        rows.append(row);
    }
    return rows;
}

/// Returns the error that ended the packet before all statements were executed.
QSqlError errorOfRest(const QSqlQuery &query)
{
    const QSqlError error = query.lastError();
    return error.isValid() ? error
                           : QSqlError(QString(), QStringLiteral("the server did not answer"),
                                       QSqlError::UnknownError);
}

} // namespace

QVector<Answer> answersTo(const QSqlDatabase &database, const QStringList &statements)
{
    QVector<Answer> answers;
    while (answers.size() < statements.size()) {
        QSqlQuery query = freshQuery(database);
        const QStringList rest = statements.mid(answers.size());
        for (bool isOk = query.exec(rest.join(QLatin1Char(';'))); isOk; isOk = query.nextResult())
            answers.append({rowsOf(query), {}});
        if (answers.size() < statements.size())
            answers.append({{}, errorOfRest(query)});
    }
    return answers;
}
