#include "reports/dailyattensheet.h"

#include "reports/duration.h"

#include <cmath>

DailyAttenSheet::DailyAttenSheet(libxl::IBookT<wchar_t> &targetBook,
                                 const DailyAttenOptions &reportOptions)
    : book(targetBook)
    , options(reportOptions)
    , columns(allColumns())
{
}

/// Returns the columns from left to right. The ids of the corrections are 1000, 1001, 1003 and
/// 1002, in this order.
QVector<DailyAttenSheet::Column> DailyAttenSheet::allColumns() const
{
    using Person = DailyAttenPerson;
    using Row = DailyAttenRow;
    QVector<Column> all{
        {tr("OSCISLO"), defaultWidth,
         [](auto cell, auto line) {
             cell.writeNumber(line.person.personalNumber);
         }},
        textColumn(tr("MENO"), 17, &Person::name),
        textColumn(tr("SKUPINA"), 20, &Person::group),
        {tr("ZMENA"), 10,
         [this](auto cell, auto line) {
             if (line.day.shift > 0)
                 cell.writeText(QString::number(line.day.shift), centredFormat);
         }},
        textColumn(tr("ZARADENIE"), 20, &Person::department),
        {tr("STREDISKO"), 20,
         [this](auto cell, auto line) {
             cell.writeText(line.day.branch, textFormat);
         }},
        {tr("DEN"), 4,
         [](auto cell, auto line) {
             cell.writeNumber(line.day.dayOfMonth);
         }},
        durationColumn(tr("ODPRACOVANY CAS"), &Row::workedSeconds),
        durationColumn(tr("NEODPRACOVANY CAS"), &Row::unworkedSeconds, options.minusSign),
        durationColumn(tr("NADCAS"), &Row::overtimeSeconds),
        durationColumn(tr("NEUZNANY CAS"), &Row::unrecognisedSeconds),
        durationColumn(tr("ZAOKRUHLENIE"), &Row::roundingSeconds),
        durationColumn(tr("POSUN"), &Row::movedSeconds),
        durationColumn(tr("PENALIZACIA"), &Row::penaltySeconds),
    };
    if (options.interruptions)
        all.append({tr("PRERUSENIA"), 26, [this](auto cell, auto line) {
                        cell.writeText(interruptionText(line.day.interruptions));
                    }});
    return all;
}

DailyAttenSheet::Column DailyAttenSheet::textColumn(const QString &heading, double widthChars,
                                                    QString DailyAttenPerson::*text) const
{
    return {heading, widthChars, [this, text](const ReportCell &cell, const Line &line) {
                cell.writeText(line.person.*text, textFormat);
            }};
}

DailyAttenSheet::Column DailyAttenSheet::durationColumn(const QString &heading,
                                                        double DailyAttenRow::*seconds,
                                                        bool negative) const
{
    return {heading, 20, [this, seconds, negative](const ReportCell &cell, const Line &line) {
                writeDuration(cell, line.day.*seconds, negative);
            }};
}

bool DailyAttenSheet::begin(const QString &name)
{
    const int decimalNumber = book.addCustomNumFormat(L"#0.00");
    sheet = book.addSheet(name.toStdWString().c_str());
    if (!sheet)
        return false;
    setUpReportPage(*sheet);
    createFormats(decimalNumber);
    writeHeadings(*sheet, columns, headingFormat);
    return true;
}

/// If the engine cannot create a format, the cells that use it are written without a format.
void DailyAttenSheet::createFormats(int decimalNumber)
{
    // No format uses the bold font, because the headings of this report have never been bold.
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

void DailyAttenSheet::writeRow(const DailyAttenPerson &person, const DailyAttenRow &day)
{
    ::writeRow(*sheet, ++row, columns, Line{person, day});
}

void DailyAttenSheet::writeDuration(const ReportCell &cell, double seconds, bool negative) const
{
    if (!(seconds > shownAboveSeconds))
        return;
    if (options.decimalTime) {
        const double hours = seconds / secondsPerHour;
        cell.writeNumber(negative ? 0 - hours : hours, decimalFormat);
        return;
    }
    const QString text = durationValue(seconds, false).toString();
    cell.writeText(negative ? QLatin1Char('-') + text : text);
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
