#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

/// A result of a check, and what to do about it. Texts have no full stop; `remedy` is never empty.
struct Finding {
    bool isProblem;  ///< otherwise a notice, which does not change the exit status
    QString subject; ///< "server", "host", or a schema's token
    QString text;
    QString remedy;
};

/// Collects the findings about one subject.
class Findings
{
public:
    explicit Findings(const QString &about)
        : subject(about)
    {
    }

    void problem(const QString &text, const QString &remedy)
    {
        list.append({true, subject, text, remedy});
    }
    void notice(const QString &text, const QString &remedy)
    {
        list.append({false, subject, text, remedy});
    }

    QVector<Finding> list;

private:
    QString subject;
};
