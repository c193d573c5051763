#include "testbook.h"

#include <QDir>
#include <QElapsedTimer>
#include <QTextStream>

#include <climits>
#include <cmath>
#include <map>
#include <random>
#include <vector>

// fuzz_workbook SEED SECONDS [FOLDER]
//
// Fills books with random calls, also with arguments that must be refused, and remembers what each
// cell has to hold: whatever a call answered true to, and nothing where it answered false. A script
// compares that with what foreign readers find in the files. The same seed makes the same books.

namespace
{

constexpr int booksPerBatch = 40;

struct Place {
    int sheet;
    int row;
    int column;

    bool operator<(const Place &other) const
    {
        return std::tie(sheet, row, column) < std::tie(other.sheet, other.row, other.column);
    }
};

/** One random book, made by a generator of its own. */
class RandomBook
{
public:
    RandomBook(unsigned seed, bool binary)
        : random(seed)
        , isXls(binary)
        , rows(binary ? 65536 : 1048576)
        , columns(binary ? 256 : 16384)
        , book(binary)
    {
    }

    /** Makes the book, saves it and writes beside it what it must hold. False: a wrong answer. */
    bool run(const QString &path)
    {
        book->setRgbMode(chance(2));
        const int calls = below(400);
        for (int i = 0; i < calls; ++i)
            call();
        const bool mustFail = sheets.empty() || cellLost;
        if (book.save(path) == mustFail || (chance(4) && book.save(path) == mustFail))
            return false;
        if (mustFail)
            return !QFile::exists(path);
        QFile file(path + ".cells"_q);
        if (!file.open(QIODevice::WriteOnly))
            return false;
        for (const auto &[place, content] : cells)
            file.write(QByteArray::number(place.sheet) + '\t' + QByteArray::number(place.row) +
                       '\t' + QByteArray::number(place.column) + '\t' + content + '\n');
        return good;
    }

private:
    int below(int limit) { return static_cast<int>(random() % static_cast<unsigned>(limit)); }
    bool chance(int oneIn) { return below(oneIn) == 0; }

    /** Mostly near the start, so that calls meet; at times at the limits or far outside. */
    int index(int limit)
    {
        const int wild[] = {-1, INT_MIN, INT_MAX, limit, limit + 1, limit - 1, limit - 2, 0};
        return chance(40) ? wild[below(8)] : chance(20) ? below(limit) : below(12);
    }

    double number()
    {
        const double wild[] = {0.0, -0.0, NAN, INFINITY, -INFINITY, 1e308, -5e-324, 536870911.0};
        if (chance(8))
            return wild[below(8)];
        return chance(2) ? below(100000) / 100.0
                         : std::ldexp(below(1 << 30) - (1 << 29), below(90) - 60);
    }

    struct Text {
        std::wstring text;
        bool comparable = true; // by readers that do not know how Excel escapes characters
        bool refused = false;
    };

    Text text()
    {
        static const wchar_t *const pieces[] = {L"a", L"é",    L"č",      L"\U0001F600",
                                                L" ", L"\n",   L"&<>\"'", L"_",
                                                L"x", L"0041", L"=",      L"Denný report"};
        Text result;
        for (int i = below(chance(10) ? 3000 : 8); i > 0; --i)
            result.text += pieces[below(12)];
        if (chance(30))
            result.text += std::wstring(static_cast<std::size_t>(below(40000)), L'y');
        if (chance(20)) {
            const wchar_t wild[] = {0xD800, 0xDFFF, 0x110000, L'\r', 1, 0x1F, 0xFFFE, 0xFFFF};
            const int which = below(8);
            result.text += wild[which];
            result.comparable = false;
            result.refused = which > 3;
        }
        return result;
    }

    std::wstring expression(int depth)
    {
        static const wchar_t *const leaves[] = {L"A1", L"$B$2",   L"C3",        L"1",
                                                L"0",  L"2.5E-3", L"\"č\"\"\"", L"IV65536",
                                                L"D1", L"99999"};
        static const wchar_t *const operators[] = {L"+", L"-", L"*",  L"/",
                                                   L"^", L"&", L"<=", L"<>"};
        switch (depth > 4 ? 0 : below(7)) {
        case 1:
            return expression(depth + 1) + operators[below(8)] + expression(depth + 1);
        case 2:
            return L"(" + expression(depth + 1) + L")";
        case 3:
            return L"-" + expression(depth + 1) + L"%";
        case 4:
            return L"IF(" + expression(depth + 1) + L"," + expression(depth + 1) + L")";
        case 5:
            return L"SUM(A1:C3," + expression(depth + 1) + L")";
        case 6: // often no formula at all
            return leaves[below(10)] + text().text;
        default:
            return leaves[below(10)];
        }
    }

    Sheet *anySheet()
    {
        return sheets[static_cast<std::size_t>(below(static_cast<int>(sheets.size())))];
    }

    Format *anyFormat()
    {
        if (formats.empty() || chance(3))
            return nullptr;
        return formats[static_cast<std::size_t>(below(static_cast<int>(formats.size())))];
    }

    void call()
    {
        const int kind = below(20);
        if (sheets.empty() || kind == 0)
            addSheet();
        else if (kind == 1)
            addFormat();
        else if (kind == 2)
            page(anySheet());
        else
            writeCell();
    }

    void addSheet()
    {
        if (sheets.size() == 4)
            return;
        const int from = sheets.empty() || chance(2) ? -1 : below(static_cast<int>(sheets.size()));
        Sheet *source = from < 0 ? nullptr : sheets[static_cast<std::size_t>(from)];
        Sheet *sheet = book->addSheet(text().text.c_str(), source);
        if (sheet == nullptr)
            return;
        const int number = static_cast<int>(sheets.size());
        sheets.push_back(sheet);
        const std::map<Place, QByteArray> before = cells;
        for (const auto &[place, content] : before) {
            if (place.sheet == from)
                cells[{number, place.row, place.column}] = content;
        }
    }

    void addFormat()
    {
        Format *format = book->addFormat(anyFormat());
        auto *font = book->addFont();
        font->setBold(chance(2));
        format->setFont(chance(3) ? nullptr : font);
        format->setNumFormat(chance(2) ? book->addCustomNumFormat(L"#0.00") : below(300));
        format->setAlignH(static_cast<libxl::AlignH>(below(10) - 1));
        format->setAlignV(static_cast<libxl::AlignV>(below(7) - 1));
        format->setWrap(chance(2));
        format->setBorder(static_cast<libxl::BorderStyle>(below(16) - 1));
        format->setBorderTop(static_cast<libxl::BorderStyle>(below(16) - 1));
        format->setBorderColor(static_cast<libxl::Color>(below(70)));
        formats.push_back(format);
    }

    void page(Sheet *sheet)
    {
        sheet->setCol(index(columns), index(columns), number(), anyFormat(), chance(5));
        sheet->setRow(index(rows), number(), anyFormat(), chance(5));
        sheet->split(index(rows), index(columns));
        sheet->setPrintFit(below(4) - 1, below(4) - 1);
        sheet->setFooter(text().text.c_str(), number());
        sheet->setMarginLeft(number());
        sheet->setMarginTop(number());
        sheet->setPrintRepeatRows(index(rows), index(rows));
        sheet->setLandscape(chance(2));
        sheet->setDisplayGridlines(chance(2));
        sheet->setPrintGridlines(chance(2));
    }

    void writeCell()
    {
        const int sheetNumber = below(static_cast<int>(sheets.size()));
        Sheet *sheet = sheets[static_cast<std::size_t>(sheetNumber)];
        const Place place{sheetNumber, index(rows), index(columns)};
        cellLost = cellLost || place.row >= rows || place.column >= columns;
        bool written = false;
        QByteArray content;
        const int kind = below(10);
        if (kind < 4) {
            const Text value = text();
            written = sheet->writeStr(place.row, place.column, value.text.c_str(), anyFormat());
            good = good && !(written && value.refused);
            content = value.comparable ? 't' + QString::fromStdWString(value.text).toUtf8().toHex()
                                       : QByteArray("?");
        } else if (kind < 8) {
            const double value = number();
            written = sheet->writeNum(place.row, place.column, value, anyFormat());
            content = 'n' + QByteArray::number(value, 'g', 17);
        } else if (kind == 8) {
            written = sheet->writeBlank(place.row, place.column, anyFormat());
            content = "b";
        } else {
            const std::wstring formula = L"=" + expression(0);
            written = sheet->writeFormula(place.row, place.column, formula.c_str(), anyFormat());
            content = "f";
        }
        if (written)
            cells[place] = content;
        else
            cells.erase(place);
    }

    std::mt19937 random;
    const bool isXls;
    const int rows;
    const int columns;
    const TestBook book;
    std::vector<Sheet *> sheets;
    std::vector<Format *> formats;
    std::map<Place, QByteArray> cells;
    bool cellLost = false;
    bool good = true;
};

/** Books with the numbers from `first` on; false when one of them or a reader complains. */
bool runBatch(unsigned seed, int first, const QDir &folder)
{
    QTextStream out(stdout);
    for (int i = first; i < first + booksPerBatch; ++i) {
        const bool isXls = i % 2 != 0;
        const QString name = QString::number(i) + (isXls ? ".xls"_q : ".xlsx"_q);
        const auto bookSeed = seed * 1000003U + static_cast<unsigned>(i);
        if (!RandomBook(bookSeed, isXls).run(folder.filePath(name))) {
            out << "book " << i << " of seed " << seed << " gave a wrong answer\n";
            return false;
        }
    }
    const QByteArray faults = complaints(QStringLiteral(AUTOREPORT_CHECK_FUZZ), {folder.path()});
    out << faults;
    return faults.isEmpty();
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    if (arguments.size() < 3)
        return 2;
    const QTemporaryDir temporary;
    const QDir folder(arguments.value(3, temporary.path()));
    QElapsedTimer clock;
    clock.start();
    int books = 0;
    while (clock.elapsed() < arguments[2].toLongLong() * 1000) {
        if (!runBatch(arguments[1].toUInt(), books, folder))
            return 1;
        books += booksPerBatch;
    }
    QTextStream(stdout) << books << " books, all well\n";
    return 0;
}
