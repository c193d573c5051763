#include "workbook/xlsx/xlsxsheet.h"

#include "workbook/writing/cellname.h"
#include "workbook/writing/columnwidth.h"
#include "workbook/writing/sharedstrings.h"
#include "workbook/writing/styletable.h"
#include "workbook/xlsx/zipwriter.h"

namespace workbook
{

namespace
{

constexpr std::string_view valueTag = "\"><v>";

} // namespace

XlsxSheet::XlsxSheet(const BookData &bookData, const SheetData &sheetData,
                     const StyleTable &styleTable, const SharedStrings &sharedStrings,
                     ZipWriter &zipWriter)
    : book(bookData)
    , sheet(sheetData)
    , styles(styleTable)
    , strings(sharedStrings)
    , zip(zipWriter)
    , used(usedRange(sheetData))
    , evaluator(bookData, sheetData)
{
}

void XlsxSheet::write(bool isFirst)
{
    xml << xmlDeclaration << "<worksheet xmlns=\"" << sheetNamespace << "\">";
    if (sheet.fit)
        xml << "<sheetPr><pageSetUpPr fitToPage=\"1\"/></sheetPr>";
    dimension();
    view(isFirst);
    xml << "<sheetFormatPr defaultRowHeight=\"" << defaultRowPoints(book.fonts.front()) << "\"/>";
    columns();
    xml << "<sheetData>";
    rows();
    xml << "</sheetData>";
    printing();
    xml << "</worksheet>";
    flush();
}

void XlsxSheet::dimension()
{
    std::string range = "A1";
    if (used) {
        const std::string first = cellName(used->firstRow, used->firstColumn);
        const std::string last = cellName(used->lastRow, used->lastColumn);
        range = first == last ? first : first + ":" + last;
    }
    xml << "<dimension ref=\"" << range << "\"/>";
}

void XlsxSheet::view(bool isFirst)
{
    xml << "<sheetViews><sheetView" << (sheet.showGridlines ? "" : " showGridLines=\"0\"")
        << (isFirst ? " tabSelected=\"1\"" : "") << " workbookViewId=\"0\"";
    if (sheet.frozenRows == 0 && sheet.frozenColumns == 0) {
        xml << "/></sheetViews>";
        return;
    }
    xml << "><pane";
    if (sheet.frozenColumns > 0)
        xml << " xSplit=\"" << sheet.frozenColumns << "\"";
    if (sheet.frozenRows > 0)
        xml << " ySplit=\"" << sheet.frozenRows << "\"";
    const bool both = sheet.frozenRows > 0 && sheet.frozenColumns > 0;
    const char *active = both ? "bottomRight" : sheet.frozenRows > 0 ? "bottomLeft" : "topRight";
    xml << " topLeftCell=\"" << cellName(sheet.frozenRows, sheet.frozenColumns)
        << "\" activePane=\"" << active << R"(" state="frozen"/>)";
    if (both)
        xml << R"(<selection pane="topRight"/><selection pane="bottomLeft"/>)";
    xml << "<selection pane=\"" << active << "\"/></sheetView></sheetViews>";
}

void XlsxSheet::columns()
{
    if (sheet.columns.empty())
        return;
    const int digit = digitPixels(book.fonts.front());
    xml << "<cols>";
    for (const ColumnRun &run : columnRuns(sheet)) {
        xml << "<col min=\"" << run.first + 1 << "\" max=\"" << run.last + 1 << "\" width=\""
            << storedColumnWidth(run.data.widthChars, digit) << "\"";
        if (run.data.format != 0)
            xml << " style=\"" << styles.indexOf(run.data.format) << "\"";
        xml << (run.data.hidden ? " hidden=\"1\"" : "") << " customWidth=\"1\"/>";
    }
    xml << "</cols>";
}

/** Composes the tags that many cells share. */
void XlsxSheet::prepareTags()
{
    for (int column = 0; used && column <= used->lastColumn; ++column)
        columnNames.push_back(columnName(column));
    for (std::uint32_t format = 0; format < book.formats.size(); ++format) {
        const std::size_t index = styles.indexOf(format);
        const std::string style = index == 0 ? "" : " s=\"" + std::to_string(index) + "\"";
        textTags.push_back("<c t=\"s\"" + style + " r=\"");
        otherTags.push_back("<c" + style + " r=\"");
    }
}

void XlsxSheet::rows()
{
    prepareTags();
    phraseBegin = xml.size();
    forEachRow(sheet, [this](const RowSpan &span) {
        row(span);
        if (xml.size() >= chunkBytes)
            flush();
    });
}

void XlsxSheet::flush()
{
    zip.append(xml.view(), phrases);
    xml.clear();
    phrases.clear();
    phraseBegin = 0;
}

/**
 * Ends the phrase that began at phraseBegin. A phrase contains no row number and no value of a
 * cell, so the row above probably has the same phrase.
 */
void XlsxSheet::endPhrase()
{
    phrases.push_back({phraseBegin, xml.size()});
}

void XlsxSheet::row(const RowSpan &span)
{
    const std::string name = std::to_string(span.number + 1);
    xml << "<row r=\"";
    endPhrase();
    xml << name;
    phraseBegin = xml.size();
    xml << "\"";
    if (const RowData *properties = span.properties) {
        if (properties->format != 0)
            xml << " s=\"" << styles.indexOf(properties->format) << R"(" customFormat="1")";
        xml << " ht=\"" << properties->heightPoints << "\""
            << (properties->hidden ? " hidden=\"1\"" : "") << " customHeight=\"1\"";
    }
    xml << ">";
    for (const Cell *next = span.begin; next != span.end; ++next)
        cell(*next, name);
    xml << "</row>";
}

// The attributes that neighbouring cells share come first. This order makes files smaller.
void XlsxSheet::cell(const Cell &cell, std::string_view rowName)
{
    const bool isText = cell.kind() == CellKind::Text;
    xml << (isText ? textTags : otherTags)[cell.format] << columnNames[cell.column];
    endPhrase();
    xml << rowName;
    std::string_view closing = "</v></c>";
    switch (cell.kind()) {
    case CellKind::Number:
        xml << valueTag << cell.number;
        break;
    case CellKind::Text:
        xml << valueTag << strings.numberOf(cell.index);
        break;
    case CellKind::Formula:
        closing = formula(cell);
        break;
    case CellKind::Blank:
    case CellKind::Erased:
        closing = "\"/>";
    }
    phraseBegin = xml.size();
    xml << closing;
}

/**
 * Writes a formula and its value. Leaves out an unknown value, so that programs compute it
 * instead of showing a wrong value. Returns the closing tags.
 */
std::string_view XlsxSheet::formula(const Cell &cell)
{
    const std::u16string_view text = book.formulas.at(cell.index);
    auto parsed = parseFormula(text);
    const FormulaValue value =
        parsed ? evaluator.valueOf(cell, std::move(*parsed)) : FormulaValue{};
    const bool isError = value.kind == FormulaValue::Kind::DivisionByZero ||
                         value.kind == FormulaValue::Kind::Overflow;
    xml << (isError ? R"(" t="e"><f>)" : "\"><f>") << text;
    if (isError)
        xml << "</f><v>" << (value.kind == FormulaValue::Kind::Overflow ? "#NUM!" : "#DIV/0!");
    else if (value.kind == FormulaValue::Kind::Number)
        xml << "</f><v>" << value.number;
    else
        return "</f></c>";
    return "</v></c>";
}

void XlsxSheet::printing()
{
    if (sheet.printGridlines)
        xml << "<printOptions gridLines=\"1\"/>";
    const Margins &margins = sheet.margins;
    xml << "<pageMargins left=\"" << margins.left << "\" right=\"" << margins.right << "\" top=\""
        << margins.top << "\" bottom=\"" << margins.bottom << "\" header=\"" << margins.header
        << "\" footer=\"" << margins.footer << "\"/>";
    xml << "<pageSetup paperSize=\"9\"";
    if (sheet.fit)
        xml << " fitToWidth=\"" << sheet.fit->width << "\" fitToHeight=\"" << sheet.fit->height
            << "\"";
    xml << " orientation=\"" << (sheet.landscape ? "landscape" : "portrait") << "\"/>";
    if (!sheet.footer.empty())
        xml << "<headerFooter><oddFooter>" << sheet.footer << "</oddFooter></headerFooter>";
}

} // namespace workbook
