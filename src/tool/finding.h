#pragma once

#include <QString>
#include <QVector>

/// What a finding means for a report. A report's findings are sorted by these values, the highest
/// first.
enum class Gravity {
    Notice,   ///< worth knowing
    Waiting,  ///< a host makes the report, but only later
    Harm,     ///< the report goes out, but something is wrong
    Obstacle, ///< the report does not go out
    Alarm,    ///< the recipients get the report again and again
    Off       ///< the report is disabled or its schema is inactive, which is not a problem
};

/// Something that a check has found, and what to do about it. Neither `text` nor `remedy` ends
/// with a full stop; `remedy` is never empty.
struct Finding {
    Gravity gravity;
    QString state;   ///< one word, as `status` shows it
    QString subject; ///< "server", "host", "schemas", or a schema's token
    QString text;
    QString remedy;

    bool isProblem() const
    {
        return gravity == Gravity::Harm || gravity == Gravity::Obstacle ||
               gravity == Gravity::Alarm;
    }
    /// Returns whether this finding keeps the report from going out now.
    bool keepsBack() const
    {
        return gravity == Gravity::Waiting || gravity == Gravity::Obstacle ||
               gravity == Gravity::Off;
    }
};

/// Collects the findings about one subject.
class Findings
{
public:
    explicit Findings(const QString &about)
        : subject(about)
    {
    }

    void add(Gravity gravity, const char *state, const QString &text, const QString &remedy)
    {
        list.append({gravity, QLatin1String(state), subject, text, remedy});
    }

    const QString subject;
    QVector<Finding> list;
};
