#include "workbook/xlsx/xlsxsheet.h"

#include "workbook/cellname.h"
#include "workbook/columnwidth.h"
#include "workbook/sharedstrings.h"
#include "workbook/styletable.h"
#include "workbook/xlsx/zipwriter.h"

#include <algorithm>

namespace workbook
{

namespace
{

constexpr std::size_t chunkBytes = 0x10000;

bool sameLook(const ColumnData &a, const ColumnData &b)
{
    return a.widthChars == b.widthChars && a.format == b.format && a.hidden == b.hidden;
}

} // namespace

XlsxSheet::XlsxSheet(const BookData &bookData, const SheetData &sheetData,
                     const StyleTable &styleTable, const SharedStrings &sharedStrings,
                     ZipWriter &zipWriter)
    : book(bookData)
    , sheet(sheetData)
    , styles(styleTable)
    , strings(sharedStrings)
    , zip(zipWriter)
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
    zip.append(xml.view());
}

void XlsxSheet::dimension()
{
    const std::vector<Cell> &cells = sheet.cells.all();
    std::string range = "A1";
    if (!cells.empty()) {
        const auto [left, right] =
            std::minmax_element(cells.begin(), cells.end(),
                                [](const Cell &a, const Cell &b) { return a.column < b.column; });
        const std::string first = cellName(cells.front().row, left->column);
        const std::string last = cellName(cells.back().row, right->column);
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
    for (auto first = sheet.columns.begin(); first != sheet.columns.end();) {
        auto last = first;
        auto next = std::next(first);
        while (next != sheet.columns.end() && next->first == last->first + 1 &&
               sameLook(next->second, first->second))
            last = next++;
        const ColumnData &column = first->second;
        xml << "<col min=\"" << first->first + 1 << "\" max=\"" << last->first + 1 << "\" width=\""
            << storedColumnWidth(column.widthChars, digit) << "\"";
        if (column.format != 0)
            xml << " style=\"" << styles.indexOf(column.format) << "\"";
        xml << (column.hidden ? " hidden=\"1\"" : "") << " customWidth=\"1\"/>";
        first = next;
    }
    xml << "</cols>";
}

/** All that is said again in every cell, made once. */
void XlsxSheet::prepareNames()
{
    std::size_t width = 0;
    for (const Cell &cell : sheet.cells.all())
        width = std::max<std::size_t>(width, cell.column + 1U);
    for (std::size_t column = 0; column < width; ++column)
        columnTags.push_back("<c r=\"" + columnName(static_cast<int>(column)));
    for (std::uint32_t format = 0; format < book.formats.size(); ++format) {
        const std::size_t index = styles.indexOf(format);
        formatTags.push_back(index == 0 ? "\"" : "\" s=\"" + std::to_string(index) + "\"");
    }
}

void XlsxSheet::rows()
{
    prepareNames();
    auto nextCell = sheet.cells.all().begin();
    const auto endCell = sheet.cells.all().end();
    auto nextRow = sheet.rows.begin();
    while (nextCell != endCell || nextRow != sheet.rows.end()) {
        const bool ofCell =
            nextRow == sheet.rows.end() ||
            (nextCell != endCell && static_cast<int>(nextCell->row) < nextRow->first);
        const int number = ofCell ? static_cast<int>(nextCell->row) : nextRow->first;
        const auto first = nextCell;
        while (nextCell != endCell && static_cast<int>(nextCell->row) == number)
            ++nextCell;
        row(number, ofCell ? nullptr : &nextRow++->second, first, nextCell);
        if (xml.size() >= chunkBytes) {
            zip.append(xml.view());
            xml.clear();
        }
    }
}

void XlsxSheet::row(int number, const RowData *properties, CellIterator first, CellIterator last)
{
    const std::string name = std::to_string(number + 1);
    xml << "<row r=\"" << name << "\"";
    if (properties != nullptr) {
        if (properties->format != 0)
            xml << " s=\"" << styles.indexOf(properties->format) << R"(" customFormat="1")";
        xml << " ht=\"" << properties->heightPoints << "\""
            << (properties->hidden ? " hidden=\"1\"" : "") << " customHeight=\"1\"";
    }
    xml << ">";
    for (; first != last; ++first)
        cell(*first, name);
    xml << "</row>";
}

void XlsxSheet::cell(const Cell &cell, std::string_view rowName)
{
    xml << columnTags[cell.column] << rowName << formatTags[cell.format];
    switch (cell.kind()) {
    case CellKind::Number:
        xml << "><v>" << cell.number << "</v></c>";
        break;
    case CellKind::Text:
        xml << " t=\"s\"><v>" << strings.numberOf(cell.index) << "</v></c>";
        break;
    case CellKind::Formula:
        formula(cell);
        break;
    case CellKind::Blank:
    case CellKind::Erased:
        xml << "/>";
    }
}

/** No value at all where it is not known: programs then calculate it, else they show what is there.
 */
void XlsxSheet::formula(const Cell &cell)
{
    const FormulaValue value = evaluator.valueOf(cell);
    const bool isNumber = value.kind == FormulaValue::Kind::Number;
    const bool isError = value.kind == FormulaValue::Kind::DivisionByZero ||
                         value.kind == FormulaValue::Kind::Overflow;
    xml << (isError ? " t=\"e\"><f>" : "><f>") << book.formulas.at(cell.index) << "</f>";
    if (isNumber)
        xml << "<v>" << value.number << "</v>";
    if (isError)
        xml << (value.kind == FormulaValue::Kind::Overflow ? "<v>#NUM!</v>" : "<v>#DIV/0!</v>");
    xml << "</c>";
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
