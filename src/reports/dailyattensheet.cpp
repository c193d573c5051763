#include "reports/dailyattensheet.h"

#include "reports/duration.h"
#include "reports/reportbook.h"

#include <cmath>

namespace
{

constexpr double defaultWidth = 0;

using Person = DailyAttenPerson;
using Row = DailyAttenRow;

enum class Content {
    PersonalNumber,
    PersonText,
    Shift,
    Centre,
    DayOfMonth,
    Duration,
    Unworked,
    Interruptions
};

} // namespace

struct DailyAttenSheet::Column {
    QString heading;
    double widthChars;
    Content content;
    QString Person::*text = nullptr;
    double Row::*seconds = nullptr;
};

/// The sheet, column by column. The corrections stand in the order 1000, 1001, 1003, 1002.
QVector<DailyAttenSheet::Column> DailyAttenSheet::allColumns()
{
    return {
        {tr("OSCISLO"), defaultWidth, Content::PersonalNumber},
        {tr("MENO"), 17, Content::PersonText, &Person::name},
        {tr("SKUPINA"), 20, Content::PersonText, &Person::group},
        {tr("ZMENA"), 10, Content::Shift},
        {tr("ZARADENIE"), 20, Content::PersonText, &Person::department},
        {tr("STREDISKO"), 20, Content::Centre},
        {tr("DEN"), 4, Content::DayOfMonth},
        {tr("ODPRACOVANY CAS"), 20, Content::Duration, nullptr, &Row::worked},
        {tr("NEODPRACOVANY CAS"), 20, Content::Unworked, nullptr, &Row::unworked},
        {tr("NADCAS"), 20, Content::Duration, nullptr, &Row::overtime},
        {tr("NEUZNANY CAS"), 20, Content::Duration, nullptr, &Row::unrecognised},
        {tr("ZAOKRUHLENIE"), 20, Content::Duration, nullptr, &Row::rounding},
        {tr("POSUN"), 20, Content::Duration, nullptr, &Row::moved},
        {tr("PENALIZACIA"), 20, Content::Duration, nullptr, &Row::penalty},
        {tr("PRERUSENIA"), 26, Content::Interruptions},
    };
}

DailyAttenSheet::DailyAttenSheet(libxl::IBookT<wchar_t> &targetBook,
                                 const DailyAttenOptions &reportOptions)
    : book(targetBook)
    , options(reportOptions)
    , columns(allColumns())
{
    if (!options.interruptions)
        columns.removeLast();
}

DailyAttenSheet::~DailyAttenSheet() = default;

bool DailyAttenSheet::begin(const QString &name)
{
    const int decimalNumber = book.addCustomNumFormat(L"#0.00");
    sheet = book.addSheet(name.toStdWString().c_str());
    if (!sheet)
        return false;
    setUpReportPage(*sheet);
    createFormats(decimalNumber);
    writeHeadings();
    return true;
}

/// A format that the engine cannot give stays null: its cells are then written without one.
void DailyAttenSheet::createFormats(int decimalNumber)
{
    // No format uses it, so the headings are not bold: what readers of this report are used to.
    if (libxl::IFontT<wchar_t> *bold = book.addFont())
        bold->setBold(true);

    headingFormat = book.addFormat();
    if (headingFormat)
        headingFormat->setBorder(libxl::BorderStyle::Medium);
    textFormat = book.addFormat();
    centredFormat = book.addFormat(textFormat);
    if (centredFormat)
        centredFormat->setAlignH(libxl::AlignH::Centre);
    decimalFormat = book.addFormat();
    if (decimalFormat) {
        decimalFormat->setNumFormat(decimalNumber);
        decimalFormat->setAlignH(libxl::AlignH::Right);
    }
}

void DailyAttenSheet::writeHeadings()
{
    for (int col = 0; col < columns.size(); ++col) {
        const Column &column = columns.at(col);
        if (column.widthChars > defaultWidth)
            sheet->setCol(col, col, column.widthChars);
        writeText(*sheet, 0, col, column.heading, headingFormat);
    }
}

void DailyAttenSheet::writeRow(const DailyAttenPerson &person, const DailyAttenRow &values)
{
    ++row;
    for (int col = 0; col < columns.size(); ++col)
        writeCell(col, columns.at(col), person, values);
}

void DailyAttenSheet::writeCell(int col, const Column &column, const DailyAttenPerson &person,
                                const DailyAttenRow &values)
{
    switch (column.content) {
    case Content::PersonalNumber:
        sheet->writeNum(row, col, person.personalNumber);
        break;
    case Content::PersonText:
        writeText(*sheet, row, col, person.*column.text, textFormat);
        break;
    case Content::Shift:
        if (values.shift > 0)
            writeText(*sheet, row, col, QString::number(values.shift), centredFormat);
        break;
    case Content::Centre:
        writeText(*sheet, row, col, values.centre, textFormat);
        break;
    case Content::DayOfMonth:
        sheet->writeNum(row, col, values.dayOfMonth);
        break;
    case Content::Duration:
        writeDuration(col, values.*column.seconds, false);
        break;
    case Content::Unworked:
        writeDuration(col, values.*column.seconds, options.minusSign);
        break;
    case Content::Interruptions:
        writeText(*sheet, row, col, interruptionText(values.interruptions));
        break;
    }
}

void DailyAttenSheet::writeDuration(int col, double seconds, bool negative)
{
    if (!(seconds > shownAboveSeconds))
        return;
    if (options.decimalTime) {
        const double hours = seconds / secondsPerHour;
        sheet->writeNum(row, col, negative ? 0 - hours : hours, decimalFormat);
        return;
    }
    const QString text = durationValue(seconds, false).toString();
    writeText(*sheet, row, col, negative ? QLatin1Char('-') + text : text);
}

QString
DailyAttenSheet::interruptionText(const QMap<QString, InterruptionTotal> &interruptions) const
{
    QString text;
    for (auto it = interruptions.cbegin(); it != interruptions.cend(); ++it) {
        const QVariant time = durationValue(it->seconds, options.decimalTime);
        const QString amount =
            options.decimalTime
                ? QString::number(std::floor(time.toDouble() * 10000 + 0.5) / 10000, 'g', 6)
                : time.toString();
        text += QLatin1Char('[') + it.key() + QLatin1Char(' ') + amount;
        if (it->count > 1)
            text += QLatin1Char('-') + QString::number(it->count) + QLatin1Char('x');
        text += QLatin1Char(']');
    }
    return text;
}

void DailyAttenSheet::finish()
{
    keepHeadingRow(*sheet);
}
