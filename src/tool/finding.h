#pragma once

#include <QJsonObject>
#include <QString>
#include <QVector>

/// Something that a check came upon, and what to do about it. Texts are half sentences without a
/// full stop, as they come from here or from the server; `remedy` is never empty.
struct Finding {
    bool isProblem;  ///< else worth knowing, but no reason for an exit status
    QString subject; ///< "server", "host", or a schema's token
    QString text;
    QString remedy;
};

/// Collects findings of one subject, in the order in which they are made.
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
