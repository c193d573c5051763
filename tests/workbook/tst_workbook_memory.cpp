#include "failingnew.h"
#include "testbook.h"

#include <QDir>

/** A whole book, from the factory to the release, in which one allocation fails: each in turn. */
class TestMemory : public QObject, private FormatFixture
{
    Q_OBJECT

private Q_SLOTS:
    void everyAllocationFailsOnce()
    {
        const std::wstring path = file().toStdWString();
        QVERIFY(makeBook(path));
        const QByteArray whole = readFile(file());
        QVERIFY(!readSheet(file()).isEmpty());
        const QStringList files = listing();
        const int openFiles = openFileCount();
        int failures = 0;
        for (int left = 0;; ++left) {
            writeFile(file(), "older");
            const int blocks = FailingNew::liveBlocks();
            FailingNew::failAfter(left);
            const bool made = makeBook(path);
            const bool failed = FailingNew::stop();
            const QString place = "allocation "_q + QString::number(left);
            QVERIFY2(FailingNew::liveBlocks() == blocks, qPrintable(place));
            QVERIFY2(openFileCount() == openFiles, qPrintable(place));
            QVERIFY2(listing() == files, qPrintable(place));
            // Sorting can do without memory: then nothing is missing.
            QVERIFY2(readFile(file()) == (made ? whole : "older"), qPrintable(place));
            failures += made ? 0 : 1;
            if (!failed)
                break;
        }
        QVERIFY2(failures > 100, qPrintable(QString::number(failures)));
    }

private:
    /** As the reports do it: a null ends it, the results of cells are ignored. */
    [[nodiscard]] bool makeBook(const std::wstring &path) const
    {
        auto *book = isXls ? xlCreateBookW() : xlCreateXMLBookW();
        const bool saved = book != nullptr && fill(*book) && book->save(path.c_str());
        if (book != nullptr)
            book->release();
        return saved;
    }

    static bool fill(libxl::IBookT<wchar_t> &book)
    {
        if (!book.setLocale("a locale of a name that is long: UTF-8"))
            return false;
        book.setDefaultFont(L"Courier New", 12);
        Sheet *first = book.addSheet(L"Mes. report dochádzky");
        Sheet *sheet = first != nullptr ? book.addSheet(L"Another of these", first) : nullptr;
        auto *font = book.addFont();
        Format *format = font != nullptr ? book.addFormat() : nullptr;
        if (sheet == nullptr || format == nullptr)
            return false;
        font->setBold(true);
        format->setFont(font);
        format->setNumFormat(book.addCustomNumFormat(L"#,##0.000"));
        if (!sheet->setCol(1, 3, 20) || !sheet->setRow(0, 16) ||
            !sheet->setFooter(L"Strana &P/&N", 0.5))
            return false;
        sheet->setPrintRepeatRows(0, 0);
        for (int row = 150; row > 0; --row) {
            const wchar_t unique[] = {L'č', static_cast<wchar_t>(0x1000 + row), L'\0'};
            sheet->writeStr(row, 0, unique);
            sheet->writeNum(row, 1, row, format);
        }
        sheet->writeFormula(1, 2, L"=B2-B3/(C3*2)");
        sheet->writeFormula(2, 2, L"=B2");
        return true;
    }

    [[nodiscard]] QStringList listing() const
    {
        return QDir(dir.path()).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
    }

    static int openFileCount() { return QDir("/proc/self/fd"_q).entryList().size(); }
};

int main(int argc, char **argv)
{
    return testBothFormats<TestMemory>(argc, argv);
}
#include "tst_workbook_memory.moc"
