#pragma once

#include "support/testdata.h"
#include "support/workbookreader.h"
#include "workbook/book.h"
#include "workbook/enums.h"
#include "workbook/font.h"
#include "workbook/format.h"
#include "workbook/sheet.h"

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
    Q_DISABLE_COPY(TestBook)

    libxl::IBookT<wchar_t> *operator->() const { return book; }
    libxl::IBookT<wchar_t> &operator*() const { return *book; }

    [[nodiscard]] bool save(const QString &path) const
    {
        return book->save(path.toStdWString().c_str());
    }

private:
    libxl::IBookT<wchar_t> *book;
};

/** What the tests of one file format share. Files go into a folder that lives as long as this. */
class FormatFixture
{
public:
    [[nodiscard]] QString file(const QString &name = "book"_q) const
    {
        return dir.filePath(name + (isXls ? ".xls"_q : ".xlsx"_q));
    }

    /** The sheet as foreign readers see it; empty when there is no file or they complain. */
    [[nodiscard]] QJsonObject saved(const TestBook &book) const
    {
        return book.save(file()) ? readSheet(file()) : QJsonObject();
    }

    inline static bool nextIsXls = false;
    const bool isXls = nextIsXls;
    const int rows = isXls ? 65536 : 1048576;
    const int columns = isXls ? 256 : 16384;
    QTemporaryDir dir;
};

/** Runs a test class, which is a FormatFixture, once for each file format. */
template <class Test>
int testBothFormats(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    int failures = 0;
    for (const bool isXls : {false, true}) {
        qInfo("%s", isXls ? "in .xls:" : "in .xlsx:");
        FormatFixture::nextIsXls = isXls;
        Test test;
        failures += QTest::qExec(&test, argc, argv);
    }
    return failures;
}
