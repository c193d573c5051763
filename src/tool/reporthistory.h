#pragma once

#include "tool/schemajudge.h"

#include <QDate>
#include <QHash>

/// What became of the report of one day.
enum class DayState {
    NotDue,  ///< not expected: switched off, not in use yet, or still to come
    None,    ///< expected, but there is no mail
    Waiting, ///< there are mails, and one at least is still in the queue
    Made     ///< there are mails, and the sender has taken them all
};

/// The mails of one report for one day.
struct ReportDay {
    QDate date;
    DayState state = DayState::NotDue;
    int queued = 0;          ///< all mails, wherever they are now
    int waiting = 0;         ///< of these, in the queue
    int sent = 0;            ///< of these, sent or done as the sender says
    qint64 lastQueuedAt = 0; ///< Unix seconds, 0 for never
    qint64 lastSentAt = 0;

    /// Returns how many have left the queue without having been sent.
    int unsent() const { return queued - waiting - sent; }
};

/// A report as it is today; of a schema that could not be judged, why.
struct ReportStatus {
    QString token;
    QString databaseName;
    const ReportKind *kind = nullptr; ///< null: the reports of the schema could not be judged
    StoredSettings stored;
    QString reason; ///< the state of the most urgent problem; empty without one
    QString detail; ///< that problem, and what to do
};

/// One report of one schema over the last days.
struct ReportHistory {
    ReportStatus status;
    QVector<ReportDay> days; ///< oldest first, today last; empty if the mails cannot be read

    /// Returns how many days are in that state.
    int count(DayState state) const;
    /// Returns when the last mail was queued, in Unix seconds; 0 for never.
    qint64 lastQueuedAt() const;
};

/// The days that a history covers, and how its mails are told from the product's others.
class HistoryWindow
{
public:
    static constexpr int dayCount = 31;

    /// For the days up to that of `now`.
    explicit HistoryWindow(const QDateTime &now);

    const QDateTime now;
    const QDate first;

    /// What the subject of a mail says.
    struct Subject {
        const ReportKind *kind;
        QDate day; ///< invalid if it names only a month
    };
    /// By subject, in every language that reports are made in.
    QHash<QString, Subject> subjects;

private:
    void addSubjects();
};

/// Returns the history of both reports, daily first, or one record without days that says why the
/// schema could not be read. Writes nothing; no connection is left open.
QVector<ReportHistory> readHistory(const SchemaRow &row, const SchemaJudge &judge,
                                   const HistoryWindow &window);
