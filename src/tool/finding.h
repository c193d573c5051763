#pragma once

#include <QString>
#include <QVector>

/// What a finding means for the reports, least urgent first.
enum class Gravity {
    Notice,   ///< worth knowing
    Waiting,  ///< a host makes the report, but only later
    Harm,     ///< the report goes out, but something is wrong
    Obstacle, ///< the report does not go out
    Alarm,    ///< everybody is mailed again and again
    Off       ///< somebody has switched the report off: that is no problem
};

/// A result of a judgement, and what to do about it. Texts have no full stop; `remedy` is never
/// empty.
struct Finding {
    Gravity gravity;
    QString state;   ///< one word, as `status` shows it
    QString subject; ///< "server", "host", or a schema's token
    QString text;
    QString remedy;

    bool isProblem() const
    {
        return gravity == Gravity::Harm || gravity == Gravity::Obstacle ||
               gravity == Gravity::Alarm;
    }
    /// Returns whether the report does not go out now because of it.
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
