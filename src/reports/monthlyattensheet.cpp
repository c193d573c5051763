#include "reports/monthlyattensheet.h"

#include "reports/reportbook.h"

namespace
{

constexpr double defaultWidth = 0;
constexpr double headingHeightPoints = 16;
constexpr int widthBesideHeading = 2;

using Row = MonthlyAttenRow;
using Values = AttMonthValues;

enum class Content {
    Number,
    Name,
    Fond,
    Interruption,
    Overtime,
    Worked,
    Formula,
    FormulaOverFond, ///< left blank without a fund, which it divides by or rests on
    Blank,           ///< for the reader to fill in
    MonthValue
};

void setThinBorders(libxl::IFormatT<wchar_t> &format)
{
    format.setBorderColor(libxl::Color::Black);
    format.setBorderTop(libxl::BorderStyle::Thin);
    format.setBorderBottom(libxl::BorderStyle::Thin);
    format.setBorderLeft(libxl::BorderStyle::Thin);
    format.setBorderRight(libxl::BorderStyle::Thin);
}

} // namespace

struct MonthlyAttenSheet::Column {
    QString heading;
    double widthChars;
    Content content;
    unsigned int iid = 0;
    double Values::*value = nullptr;
    QString formula = QString(); ///< "%1" stands for the row as people count it
};

/// The sheet, column by column, up to the ones that the settings add. The six ids of interruptions
/// are the product's own and do not depend on the catalogue.
QVector<MonthlyAttenSheet::Column> MonthlyAttenSheet::fixedColumns(bool payrollNumber)
{
    const auto interruption = [](const QString &heading, double width, unsigned int iid) {
        return Column{heading, width, Content::Interruption, iid};
    };
    const auto formula = [](const QString &heading, double width, Content content,
                            const char *pattern) {
        return Column{heading, width, content, 0, nullptr, QLatin1String(pattern)};
    };
    const auto value = [](const QString &heading, double width, double Values::*member) {
        return Column{heading, width, Content::MonthValue, 0, member};
    };
    return {
        {payrollNumber ? tr("PamID") : tr("ID"), 10, Content::Number},
        {tr("Priezvisko a meno"), 20, Content::Name},
        {tr("Plánovaný mesačný fond"), 23, Content::Fond},
        interruption(tr("Dovolenka"), 12, 3),
        interruption(tr("Lekár"), defaultWidth, 8),
        interruption(tr("PN"), defaultWidth, 15),
        interruption(tr("Paragraf"), defaultWidth, 7),
        interruption(tr("OČR"), defaultWidth, 14),
        interruption(tr("NV"), defaultWidth, 9),
        {tr("Nadčas"), defaultWidth, Content::Overtime},
        {tr("Skutočne odpracované hodiny"), 28, Content::Worked},
        formula(tr("Rozdiel"), defaultWidth, Content::Formula, "=K%1-C%1"),
        formula(tr("Odpracované hodiny v %"), 24, Content::FormulaOverFond, "=K%1/(C%1/100)"),
        {tr("Navrhnuté prémie"), 18, Content::Blank},
        formula(tr("Výsledné prémie"), 18, Content::FormulaOverFond, "=N%1*(K%1/100)"),
        value(tr("Sviatok"), 18, &Values::holidayFond),
        value(tr("Odpracovaný sviatok"), 24, &Values::holidaySum),
        value(tr("Príplatkový čas"), 18, &Values::bonus),
        value(tr("Sobota"), 18, &Values::day6sum),
        value(tr("Nedeľa"), 18, &Values::day7sum),
        value(tr("Nočná"), defaultWidth, &Values::night),
    };
}

/// A shortcut that the catalogue does not know gives an empty heading and the id 0 without hours.
MonthlyAttenSheet::Column MonthlyAttenSheet::extraColumn(const QString &shortcut,
                                                         const InterruptionCatalogue &catalogue)
{
    const unsigned int iid = catalogue.shortcutToIid.value(shortcut);
    const QString name = catalogue.iidToName.value(iid);
    return {name, double(name.size() + widthBesideHeading), Content::Interruption, iid};
}

MonthlyAttenSheet::Column MonthlyAttenSheet::vouchersColumn()
{
    const QString heading = tr("Stravné j.");
    return {heading, double(heading.size() + widthBesideHeading), Content::MonthValue, 0,
            &Values::vouchers};
}

MonthlyAttenSheet::MonthlyAttenSheet(libxl::IBookT<wchar_t> &targetBook,
                                     const MonthlyAttenOptions &options,
                                     const InterruptionCatalogue &catalogue)
    : book(targetBook)
    , payrollNumber(options.payrollNumber)
    , columns(fixedColumns(payrollNumber))
{
    for (const QString &shortcut : options.extraShortcuts)
        columns.append(extraColumn(shortcut, catalogue));
    columns.append(vouchersColumn());
}

MonthlyAttenSheet::~MonthlyAttenSheet() = default;

bool MonthlyAttenSheet::begin()
{
    const int decimalNumber = book.addCustomNumFormat(L"#0.00");
    sheet = book.addSheet(L"Mes. report dochádzky");
    if (!sheet)
        return false;
    sheet->setDisplayGridlines(false);
    setUpReportPage(*sheet);
    createFormats(decimalNumber);
    writeHeadings();
    return true;
}

/// A format that the engine cannot give stays null: its cells are then written without one.
void MonthlyAttenSheet::createFormats(int decimalNumber)
{
    libxl::IFontT<wchar_t> *boldFont = book.addFont();
    if (boldFont)
        boldFont->setBold(true);

    headingFormat = book.addFormat();
    if (headingFormat) {
        headingFormat->setAlignH(libxl::AlignH::Centre);
        headingFormat->setBorder(libxl::BorderStyle::Medium);
        headingFormat->setFont(boldFont);
    }
    idFormat = book.addFormat();
    if (idFormat) {
        setThinBorders(*idFormat);
        idFormat->setAlignV(libxl::AlignV::Centre);
        idFormat->setAlignH(libxl::AlignH::Right);
    }
    valueFormat = book.addFormat();
    if (valueFormat) {
        setThinBorders(*valueFormat);
        valueFormat->setAlignV(libxl::AlignV::Top);
        valueFormat->setAlignH(libxl::AlignH::Centre);
        valueFormat->setNumFormat(decimalNumber);
        valueFormat->setWrap(true);
    }
    nameFormat = book.addFormat(valueFormat);
    if (nameFormat)
        nameFormat->setAlignH(libxl::AlignH::Left);
}

void MonthlyAttenSheet::writeHeadings()
{
    sheet->setRow(0, headingHeightPoints);
    for (int col = 0; col < columns.size(); ++col) {
        const Column &column = columns.at(col);
        if (column.widthChars > defaultWidth)
            sheet->setCol(col, col, column.widthChars);
        writeText(*sheet, 0, col, column.heading, headingFormat);
    }
}

void MonthlyAttenSheet::writeRow(const MonthlyAttenRow &values)
{
    ++row;
    // Every cell is bordered, also where there is nothing to show.
    for (int col = 0; col < columns.size(); ++col)
        sheet->writeBlank(row, col, valueFormat);
    for (int col = 0; col < columns.size(); ++col)
        writeCell(col, columns.at(col), values);
}

void MonthlyAttenSheet::writeCell(int col, const Column &column, const MonthlyAttenRow &values)
{
    switch (column.content) {
    case Content::Number:
        if (payrollNumber)
            writeText(*sheet, row, col, values.pamId, idFormat);
        else
            sheet->writeNum(row, col, values.pid, idFormat);
        break;
    case Content::Name:
        writeText(*sheet, row, col, values.name, nameFormat);
        break;
    case Content::Fond:
        writePositive(col, values.fond);
        break;
    case Content::Interruption:
        writePositive(col, values.interruptions.value(column.iid));
        break;
    case Content::Overtime:
        writePositive(col, values.overtime);
        break;
    case Content::Worked:
        if (values.work)
            sheet->writeNum(row, col, *values.work, valueFormat);
        break;
    case Content::Formula:
        writeFormula(col, column.formula);
        break;
    case Content::FormulaOverFond:
        if (values.fond > 0)
            writeFormula(col, column.formula);
        break;
    case Content::Blank:
        break;
    case Content::MonthValue:
        writePositive(col, values.values.*column.value);
        break;
    }
}

void MonthlyAttenSheet::writePositive(int col, double number)
{
    if (number > 0)
        sheet->writeNum(row, col, number, valueFormat);
}

void MonthlyAttenSheet::writeFormula(int col, const QString &pattern)
{
    const QString formula = pattern.arg(row + 1);
    sheet->writeFormula(row, col, formula.toStdWString().c_str(), valueFormat);
}

void MonthlyAttenSheet::finish()
{
    keepHeadingRow(*sheet);
}
