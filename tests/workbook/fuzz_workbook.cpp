#include "failingnew.h"
#include "testbook.h"

#include <cfloat>
#include <climits>
#include <cmath>
#include <random>
#include <vector>

// fuzz_workbook SEED SECONDS
//
// Fills books with random calls, also with arguments that must be refused, and remembers what each
// cell has to hold: what a call returned true for, and nothing where it returned false. That is
// compared with what two foreign readers find in each file. While some of the books are made and
// saved, memory runs out now and then. The same seed makes the same books.

namespace
{

constexpr unsigned booksPerBatch = 40;

/** One random book, made by a generator of its own. */
class RandomBook : public FormatFixture
{
public:
    explicit RandomBook(unsigned seed)
        : random(seed)
        , book(isXls)
        , scarce(chance(4))
    {
        book->setRgbMode(chance(2));
        scarcely([&] { book->setDefaultFont(L"MS Shell Dlg 2", 10); });
        for (int calls = below(400); calls > 0; --calls) {
            const int kind = below(20);
            if (sheets.empty() || (kind == 0 && sheets.size() < 4))
                addSheet();
            else if (kind == 1)
                addFormat();
            else if (kind == 2)
                setUpPage(any(sheets));
            else
                writeCell();
        }
    }

    /** Whether saving returns what it must, and leaves a file only when it succeeds. */
    bool save()
    {
        const std::wstring path = file().toStdWString();
        for (int times = 0; times < 2; ++times) {
            bool saved = false;
            scarcely([&] { saved = book->save(path.c_str()); });
            const bool wrong = ranOut ? saved && sheets.empty() : saved == sheets.empty();
            if (wrong || QFile::exists(file()) != saved)
                return false;
            if (times == 0)
                QFile::remove(file());
        }
        return true;
    }
    QString keptFile()
    {
        dir.setAutoRemove(false);
        return file();
    }

    /** Whether the cells that were read are what was written; without formulas and blank cells if
     * only values were read. */
    [[nodiscard]] bool equals(const QJsonObject &read, bool onlyValues) const
    {
        std::vector<QJsonObject> found = cellsOf(read);
        std::vector<QJsonObject> expected = cells;
        if (found.size() != expected.size())
            return false;
        for (std::size_t number = 0; number < expected.size(); ++number) {
            for (const QString &name : cells[number].keys()) {
                const QJsonValue type = cells[number][name].toArray()[0];
                const bool isFormula = type == "formula"_q;
                if (onlyValues && isFormula)
                    found[number].remove(name);
                if (onlyValues && (isFormula || type == "blank"_q))
                    expected[number].remove(name);
            }
        }
        return found == expected;
    }

private:
    /** For each sheet, type and value by place; of formulas the type, since their text differs by
     * format. */
    static std::vector<QJsonObject> cellsOf(const QJsonObject &read)
    {
        std::vector<QJsonObject> found;
        const QJsonArray sheetsRead = read["sheets"_q].toArray();
        for (const auto &sheet : sheetsRead) {
            QJsonObject all = sheet.toObject()["cells"_q].toObject();
            for (const QString &name : all.keys()) {
                const QJsonObject cell = all[name].toObject();
                const bool isFormula = cell["type"_q] == "formula"_q;
                all[name] = QJsonArray{cell["type"_q], isFormula ? QJsonValue() : cell["value"_q]};
            }
            found.push_back(all);
        }
        return found;
    }

    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

    /** One call of the book, in which one allocation may fail. */
    template <class Call>
    void scarcely(Call call)
    {
        if (!scarce)
            return call();
        FailingNew::failAfter(below(chance(2) ? 100 : 2000));
        call();
        ranOut = FailingNew::stop() || ranOut;
    }

    template <class Item>
    Item any(const std::vector<Item> &items)
    {
        return items[static_cast<std::size_t>(below(static_cast<int>(items.size())))];
    }

    /** Mostly near the start, so that calls meet; at times at the limits or far outside. */
    int index(int limit)
    {
        if (chance(40))
            return any<int>({-1, INT_MIN, INT_MAX, limit, limit + 1, limit - 1, limit - 2, 0});
        return chance(20) ? below(limit) : below(12);
    }

    double number()
    {
        // Around the limits of the short form that an .xls has for some numbers, too.
        if (chance(8))
            return any<double>({0.0, -0.0, NAN, INFINITY, -INFINITY, DBL_MAX, DBL_MIN, -5e-324,
                                536870911, 536870912, -536870912, -536870913, 5368709.11,
                                5368709.12, -5368709.13, -0.01, 0.1, 1.0 / 3, 1e15});
        return chance(2) ? below(100000) / 100.0
                         : std::ldexp(below(1 << 30) - (1 << 29), below(90) - 60);
    }

    std::wstring text()
    {
        std::wstring text;
        for (int i = below(chance(10) ? 3000 : 8); i > 0; --i)
            text += any<std::wstring>({L"a", L"é", L"č", L"\U0001F600", L" ", L"\n", L"&<>\"'",
                                       L"_", L"x", L"0041", L"="});
        if (chance(30))
            text += std::wstring(static_cast<std::size_t>(below(40000)), L'y');
        if (chance(20))
            text += any<wchar_t>({0xD800, 0xDFFF, 0x110000, 1, 0x1F, 0xFFFE, 0xFFFF});
        return text;
    }

    std::wstring expression(int depth)
    {
        if (depth > 4 || chance(6))
            return any<std::wstring>(
                {L"A1", L"$B$2", L"1", L"0", L"2.5E-3", L"C3", L"IV65536", L"D1", L"99999"});
        const std::wstring left = expression(depth + 1);
        const std::wstring right = expression(depth + 1);
        const auto sign = any<std::wstring>({L"+", L"-", L"*", L"/", L"+", L"-", L"*", L"/", L"^"});
        return any<std::wstring>({left + sign + right, left + sign + right, L"(" + left + L")",
                                  L"-" + left, L"SUM(" + left + L")",
                                  left + text()}); // often no formula at all
    }

    Format *anyFormat() { return formats.empty() || chance(3) ? nullptr : any(formats); }

    void addSheet()
    {
        const bool copies = !sheets.empty() && chance(2);
        const std::size_t from = copies ? random() % sheets.size() : 0;
        const std::wstring name = text();
        Sheet *sheet = nullptr;
        scarcely([&] { sheet = book->addSheet(name.c_str(), copies ? sheets[from] : nullptr); });
        if (sheet == nullptr)
            return;
        sheets.push_back(sheet);
        cells.push_back(copies ? cells[from] : QJsonObject());
    }

    void addFormat()
    {
        Format *format = nullptr;
        libxl::IFontT<wchar_t> *font = nullptr;
        int numFormat = below(300);
        scarcely([&] { format = book->addFormat(anyFormat()); });
        scarcely([&] { font = book->addFont(); });
        scarcely([&] { numFormat = chance(2) ? book->addCustomNumFormat(L"#0.00") : numFormat; });
        if (format == nullptr || font == nullptr)
            return;
        font->setBold(chance(2));
        format->setFont(chance(3) ? nullptr : font);
        format->setNumFormat(numFormat);
        format->setAlignH(static_cast<libxl::AlignH>(below(10) - 1));
        format->setWrap(chance(2));
        format->setBorder(static_cast<libxl::BorderStyle>(below(16) - 1));
        format->setBorderColor(static_cast<libxl::Color>(below(70)));
        formats.push_back(format);
    }

    void setUpPage(Sheet *sheet)
    {
        const int row = index(rows);
        const int column = index(columns);
        const int otherColumn = index(columns);
        const double size = number();
        const std::wstring footer = text();
        scarcely([&] { sheet->setCol(column, otherColumn, size, anyFormat(), chance(5)); });
        scarcely([&] { sheet->setRow(row, size, anyFormat(), chance(5)); });
        scarcely([&] { sheet->setFooter(footer.c_str(), size); });
        sheet->split(index(rows), index(columns));
        sheet->setPrintFit(below(4) - 1, below(4) - 1);
        sheet->setMarginTop(number());
        sheet->setPrintRepeatRows(index(rows), index(rows));
        sheet->setLandscape(chance(2));
    }

    void writeCell()
    {
        const std::size_t number = random() % sheets.size();
        const int row = index(rows);
        const int column = index(columns);
        const QJsonArray content = written(sheets[number], row, column);
        if (content.isEmpty())
            cells[number].remove(cellName(row, column));
        else
            cells[number][cellName(row, column)] = content;
    }

    /** Type and value that the cell holds from now on. Empty: refused. */
    QJsonArray written(Sheet *sheet, int row, int column)
    {
        QJsonArray content{"blank"_q, QJsonValue()};
        bool taken = false;
        const int kind = below(10);
        if (kind < 4) {
            std::wstring value = text();
            scarcely([&] { taken = sheet->writeStr(row, column, value.c_str(), anyFormat()); });
            const wchar_t last = value.empty() ? L' ' : value.back();
            if ((last < 0x20 && last != L'\n') || (last >= 0xD800 && last <= 0xDFFF) ||
                last == 0xFFFE || last == 0xFFFF || last > 0x10FFFF)
                value.pop_back(); // the one character that XML cannot hold
            if (!isXls || !value.empty())
                content = {"text"_q, QString::fromStdWString(value)};
        } else if (kind < 8) {
            const double value = number();
            scarcely([&] { taken = sheet->writeNum(row, column, value, anyFormat()); });
            content = {"number"_q, value};
        } else if (kind == 8) {
            scarcely([&] { taken = sheet->writeBlank(row, column, anyFormat()); });
        } else {
            const std::wstring value = L"=" + expression(0);
            scarcely([&] { taken = sheet->writeFormula(row, column, value.c_str(), anyFormat()); });
            content[0] = "formula"_q;
        }
        return taken ? content : QJsonArray();
    }

    std::mt19937 random;
    const TestBook book;
    std::vector<Sheet *> sheets;
    std::vector<Format *> formats;
    std::vector<QJsonObject> cells; // for each sheet, by place
    const bool scarce;              // memory runs out now and then
    bool ranOut = false;            // it did
};

/** Makes some books and compares them; returns the file of the first that is wrong. */
QString wrongBook(unsigned seed)
{
    std::vector<std::unique_ptr<RandomBook>> books;
    QStringList paths;
    for (unsigned i = 0; i < booksPerBatch; ++i) {
        FormatFixture::nextIsXls = i % 2 != 0;
        auto book = std::make_unique<RandomBook>(seed + i);
        if (!book->save())
            return book->keptFile();
        if (!QFile::exists(book->file()))
            continue;
        paths.append(book->file());
        books.push_back(std::move(book));
    }
    const QVector<QJsonObject> read = readWorkbooks(paths);
    const QVector<QJsonObject> readAgain = readWorkbooks(paths, {"--gnumeric"_q});
    for (std::size_t i = 0; i < books.size(); ++i) {
        const auto number = static_cast<int>(i);
        if (!books[i]->equals(read[number], false) || !books[i]->equals(readAgain[number], true))
            return books[i]->keptFile();
    }
    return {};
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    QElapsedTimer clock;
    clock.start();
    const unsigned seed = arguments[1].toUInt() * 1000003U;
    unsigned books = 0;
    QString wrong;
    for (; wrong.isEmpty() && clock.elapsed() < arguments[2].toLongLong() * 1000;
         books += booksPerBatch)
        wrong = wrongBook(seed + books);
    qInfo("%u books, %s", books, wrong.isEmpty() ? "all well" : qPrintable(wrong + " is wrong"_q));
    return wrong.isEmpty() ? 0 : 1;
}
