#include "support/hostprogram.h"
#include "support/reportbench.h"
#include "support/testhost.h"

#include <QXmlStreamReader>

class TestLanguage : public ReportTest
{
    Q_OBJECT

private Q_SLOTS:
    void headings_data()
    {
        addColumns<QString, QString>("report", "sheetName");
        addRow("daily", "daily", "Daily attendance 11-2023");
        addRow("monthly", "monthly", "Mes. report dochádzky"); // the one text that stays
    }

    /// Every heading is one of the translation's: one written past it would stay Slovak.
    void headings()
    {
        QFETCH(QString, report);
        QFETCH(QString, sheetName);
        addPeople(bench->schema, 1);
        bench->set("dattenInters", "1");
        const QString file = bench->temporary.filePath(report + ".xlsx");
        HostProgram program;
        program.start(QStringList{"preview", bench->schema.name(), report, "--single", "--language",
                                  "en", "--date", "2023-11-15", "--out", file} +
                      TestServer::options(bench->schema.name()));
        QVERIFY(program.succeeded());

        const QStringList known = translations();
        const QJsonObject sheet = readSheet(file);
        QCOMPARE(sheet.value("name").toString(), sheetName);
        const QJsonArray headings = sheetRow(sheet, 1);
        QVERIFY(headings.size() > 10);
        for (const QJsonValue &heading : headings)
            QVERIFY2(known.contains(heading.toString()), qPrintable(heading.toString()));
    }

private:
    static QStringList translations()
    {
        QStringList found;
        QXmlStreamReader xml(readFile(AUTOREPORT_TRANSLATION));
        while (!xml.atEnd()) {
            if (xml.readNext() == QXmlStreamReader::StartElement &&
                xml.name() == QLatin1String("translation"))
                found << xml.readElementText();
        }
        return found;
    }
};

QTEST_GUILESS_MAIN(TestLanguage)
#include "tst_language.moc"
