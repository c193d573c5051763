#pragma once

#include "tool/schemajudge.h"

#include <QDate>
#include <QHash>

/// What became of the report of one day.
enum class DayState {
    NotDue,  ///< not expected: disabled, not in use yet, or still to come
    None,    ///< expected, but there is no mail
    Waiting, ///< there are mails, and at least one is still in the queue
    Made     ///< there are mails, and none is left in the queue
};

/// The mails of one report for one day.
struct ReportDay {
    QDate date;
    DayState state = DayState::NotDue;
    int queued = 0;          ///< all mails, still in the queue or not
    int waiting = 0;         ///< mails that are still in the queue
    int sent = 0;            ///< mails that have left the queue marked as sent or done
    qint64 lastQueuedAt = 0; ///< Unix seconds, 0 for never
    qint64 lastSentAt = 0;

    /// Returns how many mails have left the queue without being marked as sent or done.
    int unsent() const { return queued - waiting - sent; }
};

/// The state of a report today, or why its schema could not be judged.
struct ReportStatus {
    QString token;
    QString databaseName;
    const ReportKind *kind = nullptr; ///< null if the schema could not be judged
    StoredSettings stored;
    QString reason; ///< the state of the most urgent problem; empty without a problem
    QString detail; ///< that problem, and what to do
};

/// One report of one schema over the last days.
struct ReportHistory {
    ReportStatus status;
    /// Oldest first, today last. Empty if the schema could not be judged or its mails could not
    /// be read.
    QVector<ReportDay> days;

    /// Returns how many days are in `state`.
    int count(DayState state) const;
    /// Returns when the last mail was queued, in Unix seconds; 0 for never.
    qint64 lastQueuedAt() const;
};

/// The days that a history covers, and the subjects by which it recognises the reports' mails.
class HistoryWindow
{
public:
    static constexpr int dayCount = 31;

    /// Covers dayCount days. The last one is the day of `moment`. Construct the object on the main
    /// thread, because the constructor switches languages temporarily.
    explicit HistoryWindow(const QDateTime &moment);

    const QDateTime now;
    const QDate first;

    /// The report and the day that a mail's subject names.
    struct Subject {
        const ReportKind *kind;
        QDate day; ///< invalid if the subject names only a month
    };
    /// The keys are the texts of the subjects, in all languages of the reports.
    QHash<QString, Subject> subjects;

private:
    void addSubjects();
};

/// Returns the history of both reports, daily first. If the schema could not be judged, returns a
/// single record, which has no days and says why. Changes nothing in the database, and leaves no
/// connection open.
QVector<ReportHistory> readHistory(const SchemaRow &row, const SchemaJudge &judge,
                                   const HistoryWindow &window);
