#pragma once

#include "support/workbookreader.h"
#include "workbook/book.h"
#include "workbook/enums.h"
#include "workbook/font.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

#include <QCoreApplication>
#include <QDebug>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

/** Text of UTF-8 source code. */
inline QString operator""_q(const char *text, std::size_t bytes)
{
    return QString::fromUtf8(text, static_cast<int>(bytes));
}

using Sheet = libxl::ISheetT<wchar_t>;
using Format = libxl::IFormatT<wchar_t>;

/** A book that is released at the end of its scope. */
class TestBook
{
public:
    explicit TestBook(bool isBinary)
        : book(isBinary ? xlCreateBookW() : xlCreateXMLBookW())
    {
    }
    ~TestBook() { book->release(); }
    TestBook(const TestBook &) = delete;
    TestBook &operator=(const TestBook &) = delete;

    libxl::IBookT<wchar_t> *operator->() const { return book; }

    [[nodiscard]] bool save(const QString &path) const
    {
        return book->save(path.toStdWString().c_str());
    }

private:
    libxl::IBookT<wchar_t> *book;
};

/** The complaints of a program about `arguments`; empty when it ended well and in silence. */
inline QByteArray complaints(const QString &program, const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::MergedChannels);
    process.start(program, arguments);
    if (!process.waitForFinished(120000))
        return "cannot run " + program.toUtf8();
    QByteArray said = process.readAll();
    if (process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        said += " exit code " + QByteArray::number(process.exitCode());
    return said;
}

inline QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

/** What our own check says about the file: orders, indexes and counts that readers let pass. */
inline QByteArray faultsOf(const QString &path)
{
    return complaints(QStringLiteral(AUTOREPORT_CHECK_WORKBOOK), {path});
}

inline QJsonObject cellOf(const QJsonObject &sheet, const QString &reference)
{
    return sheet["cells"_q].toObject()[reference].toObject();
}

/** What the tests of one file format share. Files go into a folder that lives as long as this. */
class FormatFixture
{
public:
    explicit FormatFixture(bool binary)
        : isXls(binary)
    {
    }

    [[nodiscard]] QString file(const QString &name = "book"_q) const
    {
        return dir.filePath(name + (isXls ? ".xls"_q : ".xlsx"_q));
    }

    /** The sheet as foreign readers see it; the file has passed our own check, too. */
    [[nodiscard]] QJsonObject saved(const TestBook &book, int sheet = 0) const
    {
        const QByteArray faults = book.save(file()) ? faultsOf(file()) : "not saved";
        if (!faults.isEmpty())
            qCritical() << faults;
        return faults.isEmpty() ? readSheet(file(), sheet) : QJsonObject();
    }

    /** The lines of the first sheet of file(), values as they are; none when gnumeric complains. */
    [[nodiscard]] QList<QByteArray> byGnumeric() const
    {
        const QString csv = dir.filePath("gnumeric.csv"_q);
        for (const QByteArray &said : complaints("ssconvert"_q, {file(), csv}).split('\n')) {
            // Which fonts it knows is not our affair.
            if (!said.isEmpty() && !said.contains("unknown widths for font")) {
                qCritical() << said;
                return {};
            }
        }
        return bytesOf(csv).split('\n');
    }

    /** The same by LibreOffice, values as they are shown. */
    [[nodiscard]] QList<QByteArray> byOffice() const
    {
        // Its exit code says nothing: only its output counts. A profile of its own keeps it apart
        // from others that run at the same time.
        complaints("soffice"_q,
                   {"-env:UserInstallation=file://%1/profile"_q.arg(dir.path()), "--headless"_q,
                    "--convert-to"_q, "csv:Text - txt - csv (StarCalc):44,34,76,1,,0,false,true"_q,
                    "--outdir"_q, dir.path(), file()});
        return bytesOf(dir.filePath("book.csv"_q)).split('\n');
    }

    const bool isXls;
    const QTemporaryDir dir;
};

/** Runs a test class once for each file format; its constructor takes whether that is .xls. */
template <class Test>
int testBothFormats(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    int failures = 0;
    for (const bool isXls : {false, true}) {
        qInfo("%s", isXls ? "in .xls:" : "in .xlsx:");
        Test test(isXls);
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}
