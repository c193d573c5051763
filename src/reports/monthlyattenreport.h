#pragma once

#include "reports/attenreport.h"
#include "reports/monthlyattenoptions.h"

#include <QHash>

struct ReportNeeds;

/// The monthly attendance report: one row per person with the hours of the current month.
class MonthlyAttenReport : public AttenReport
{
    Q_OBJECT

public:
    MonthlyAttenReport(const QSqlDatabase &db, QObject *parent);

    /// See ReportKind::needs.
    static ReportNeeds needs(const QMap<QString, QVariant> &values, const QDate &today);

    /// Adds the schema's kinds of interruption to both maps. Returns false if the query failed.
    bool loadInterruptionMaps(QHash<unsigned, QString> &iidToName,
                              QHash<QString, unsigned> &shortcutToIid);

protected:
    void loadOptions() override;
    QString fileNameByOptions(const QDate &today) const override;
    std::unique_ptr<ReportContent> createContent(const ReportRun &run) override;
    const char *bookFactoryName() const override { return "xlCreateXMLBook()"; }
    MailTexts mailTexts(const QDate &today) const override;

private:
    class Content;

    MonthlyAttenOptions options;
};
