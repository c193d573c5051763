#include "reports/monthlyattensheet.h"

namespace
{

constexpr double headingHeightPoints = 16;
constexpr int headingPaddingChars = 2;

double widthOf(const QString &heading)
{
    return heading.size() + headingPaddingChars;
}

void setThinBorders(libxl::IFormatT<wchar_t> &format)
{
    format.setBorderColor(libxl::Color::Black);
    format.setBorderTop(libxl::BorderStyle::Thin);
    format.setBorderBottom(libxl::BorderStyle::Thin);
    format.setBorderLeft(libxl::BorderStyle::Thin);
    format.setBorderRight(libxl::BorderStyle::Thin);
}

} // namespace

MonthlyAttenSheet::MonthlyAttenSheet(libxl::IBookT<wchar_t> &targetBook,
                                     const MonthlyAttenOptions &options,
                                     const InterruptionCatalogue &catalogue)
    : book(targetBook)
{
    addColumns(options, catalogue);
    for (QString &formula : formulas)
        formula = resolveFormula(formula, columns);
}

/// Adds the columns from left to right. The first six columns of interruptions have fixed ids; only
/// the extra columns use the catalogue.
void MonthlyAttenSheet::addColumns(const MonthlyAttenOptions &options,
                                   const InterruptionCatalogue &catalogue)
{
    using Values = AttMonthValues;
    columns = {
        numberColumn(options.payrollNumber),
        {tr("Priezvisko a meno"), 20,
         [this](auto cell, auto &person) {
             cell.writeText(person.name, nameFormat);
         }},
        hoursColumn(tr("Plánovaný mesačný fond"), 23, &Row::plannedHours, "planned"),
        interruptionColumn(tr("Dovolenka"), 12, 3),
        interruptionColumn(tr("Lekár"), defaultWidth, 8),
        interruptionColumn(tr("PN"), defaultWidth, 15),
        interruptionColumn(tr("Paragraf"), defaultWidth, 7),
        interruptionColumn(tr("OČR"), defaultWidth, 14),
        interruptionColumn(tr("NV"), defaultWidth, 9),
        hoursColumn(tr("Nadčas"), defaultWidth, &Row::overtimeHours, "overtime"),
        {tr("Skutočne odpracované hodiny"), 28,
         [this](auto cell, auto &person) {
             if (person.workedHours)
                 cell.writeNumber(*person.workedHours, valueFormat);
         },
         "worked"},
        formulaColumn(tr("Rozdiel"), defaultWidth, "={worked}-{planned}", false),
        formulaColumn(tr("Odpracované hodiny v %"), 24, "={worked}/({planned}/100)", true),
        // Left empty, for the recipient to fill in.
        {tr("Navrhnuté prémie"), 18, [](auto, auto &) {}, "bonus"},
        formulaColumn(tr("Výsledné prémie"), 18, "={bonus}*({worked}/100)", true),
        valueColumn(tr("Sviatok"), 18, &Values::holidayFond),
        valueColumn(tr("Odpracovaný sviatok"), 24, &Values::holidaySum),
        valueColumn(tr("Príplatkový čas"), 18, &Values::bonus),
        valueColumn(tr("Sobota"), 18, &Values::day6sum),
        valueColumn(tr("Nedeľa"), 18, &Values::day7sum),
        valueColumn(tr("Nočná"), defaultWidth, &Values::night),
    };
    for (const QString &shortcut : options.extraShortcuts)
        columns.append(extraColumn(shortcut, catalogue));
    const QString vouchers = tr("Stravné j.");
    columns.append(valueColumn(vouchers, widthOf(vouchers), &Values::vouchers));
}

MonthlyAttenSheet::Column MonthlyAttenSheet::numberColumn(bool payrollNumber) const
{
    if (payrollNumber)
        return {tr("PamID"), 10, [this](const ReportCell &cell, const Row &person) {
                    cell.writeText(person.pamId, idFormat);
                }};
    return {tr("ID"), 10, [this](const ReportCell &cell, const Row &person) {
                cell.writeNumber(person.pid, idFormat);
            }};
}

MonthlyAttenSheet::Column MonthlyAttenSheet::hoursColumn(const QString &heading, double widthChars,
                                                         double Row::*hours, const char *name) const
{
    return {heading, widthChars,
            [this, hours](const ReportCell &cell, const Row &person) {
                writePositive(cell, person.*hours);
            },
            name};
}

MonthlyAttenSheet::Column MonthlyAttenSheet::valueColumn(const QString &heading, double widthChars,
                                                         double AttMonthValues::*value) const
{
    return {heading, widthChars, [this, value](const ReportCell &cell, const Row &person) {
                writePositive(cell, person.values.*value);
            }};
}

MonthlyAttenSheet::Column MonthlyAttenSheet::interruptionColumn(const QString &heading,
                                                                double widthChars,
                                                                unsigned int iid) const
{
    return {heading, widthChars, [this, iid](const ReportCell &cell, const Row &person) {
                writePositive(cell, person.interruptionHours.value(iid));
            }};
}

/// Returns the column for one of MonthlyAttenOptions::extraShortcuts. An unknown shortcut gets the
/// id 0, and its column has neither a heading nor hours.
MonthlyAttenSheet::Column
MonthlyAttenSheet::extraColumn(const QString &shortcut,
                               const InterruptionCatalogue &catalogue) const
{
    const unsigned int iid = catalogue.shortcutToIid.value(shortcut);
    const QString name = catalogue.iidToName.value(iid);
    return interruptionColumn(name, widthOf(name), iid);
}

/// Returns a column of formulas. If `needsPlanned`, the cells of people without planned time stay
/// blank.
MonthlyAttenSheet::Column MonthlyAttenSheet::formulaColumn(const QString &heading,
                                                           double widthChars, const char *pattern,
                                                           bool needsPlanned)
{
    const int index = formulas.size();
    formulas.append(QLatin1String(pattern));
    return {heading, widthChars,
            [this, index, needsPlanned](const ReportCell &cell, const Row &person) {
                if (!needsPlanned || person.plannedHours > 0)
                    cell.writeFormula(formulas.at(index).arg(cell.row + 1), valueFormat);
            }};
}

bool MonthlyAttenSheet::begin()
{
    const int decimalNumber = book.addCustomNumFormat(L"#0.00");
    sheet = book.addSheet(L"Mes. report dochádzky");
    if (!sheet)
        return false;
    sheet->setDisplayGridlines(false);
    setUpReportPage(*sheet);
    createFormats(decimalNumber);
    sheet->setRow(0, headingHeightPoints);
    writeHeadings(*sheet, columns, headingFormat);
    return true;
}

/// If the engine cannot create a format, the cells that use it are written without a format.
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

void MonthlyAttenSheet::writeRow(const MonthlyAttenRow &person)
{
    ++row;
    // Empty cells have borders too.
    for (int col = 0; col < columns.size(); ++col)
        ReportCell{*sheet, row, col}.writeBlank(valueFormat);
    ::writeRow(*sheet, row, columns, person);
}

void MonthlyAttenSheet::writePositive(const ReportCell &cell, double number) const
{
    if (number > 0)
        cell.writeNumber(number, valueFormat);
}

void MonthlyAttenSheet::finish()
{
    keepHeadingRow(*sheet);
}
