#include "workbook/xls/xlscells.h"

#include "workbook/writing/sharedstrings.h"
#include "workbook/writing/styletable.h"
#include "workbook/xls/records.h"
#include "workbook/xls/recordwriter.h"
#include "workbook/xls/xlsformula.h"
#include "workbook/xls/xlsstyles.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <optional>
#include <utility>

namespace workbook
{

namespace
{

/** Returns the 4-byte form of `number` (RK). Returns nothing if this form would lose precision. */
std::optional<std::uint32_t> compressed(double number)
{
    constexpr double limit = 1U << 29U;
    constexpr std::uint32_t hundredths = 1;
    constexpr std::uint32_t integer = 2;
    const auto asInteger = [](double value) {
        return static_cast<std::uint32_t>(static_cast<std::int32_t>(value)) << 2U;
    };
    if (number >= -limit && number < limit && std::trunc(number) == number)
        return asInteger(number) | integer;
    const double hundredfold = std::round(number * 100);
    if (hundredfold >= -limit && hundredfold < limit && hundredfold / 100 == number)
        return asInteger(hundredfold) | integer | hundredths;
    std::uint64_t bits = 0;
    std::memcpy(&bits, &number, sizeof bits);
    constexpr unsigned droppedBits = 34;
    if ((bits & ((std::uint64_t{1} << droppedBits) - 1)) == 0)
        return static_cast<std::uint32_t>(bits >> 32U);
    return std::nullopt;
}

} // namespace

XlsCells::XlsCells(const BookData &bookData, const SheetData &sheetData,
                   const StyleTable &styleTable, const SharedStrings &sharedStrings,
                   RecordWriter &writer)
    : book(bookData)
    , sheet(sheetData)
    , styles(styleTable)
    , strings(sharedStrings)
    , out(writer)
    , evaluator(bookData, sheetData)
{
}

std::vector<std::uint32_t> XlsCells::write(unsigned defaultRowTwips)
{
    std::optional<int> blockBegin;
    forEachRow(sheet, [&](const RowSpan &span) {
        // Also write blocks without rows, because INDEX refers to the DBCELL of every block.
        for (; blockBegin && span.number >= *blockBegin + xlsBlockRows; *blockBegin += xlsBlockRows)
            writeBlock(defaultRowTwips);
        if (!blockBegin)
            blockBegin = span.number;
        block.push_back(span);
    });
    if (!block.empty())
        writeBlock(defaultRowTwips);
    return blockEnds;
}

// DBCELL: u32 distance back to the first ROW of the block, then for each row u16 distance to the
//         cells of the row. For the first row, the distance is counted from the second ROW. For
//         every other row, the distance is counted from the cells of the previous row.
void XlsCells::writeBlock(unsigned defaultRowTwips)
{
    const std::uint32_t begin = out.position();
    std::uint32_t before = begin;
    for (const RowSpan &span : block) {
        row(span, defaultRowTwips);
        if (&span == &block.front())
            before = out.position();
    }
    std::vector<unsigned> distances;
    for (const RowSpan &span : block) {
        // The distance exceeds a u16 only after a row with very many long formulas. Readers do not
        // rely on the distances.
        constexpr std::uint32_t longest = 0xFFFF;
        distances.push_back(std::min(out.position() - before, longest));
        before = out.position();
        cells(span);
    }
    blockEnds.push_back(out.position());
    out.begin(record::DbCell).u32(blockEnds.back() - begin);
    for (const unsigned distance : distances)
        out.u16(distance);
    out.end();
    block.clear();
}

// ROW: u16 row, u16 first column, u16 last column + 1, u16 height in twips, u16 0, u16 0,
//      u32 flags and format
void XlsCells::row(const RowSpan &span, unsigned defaultRowTwips)
{
    constexpr std::uint32_t always = 0x0100;
    constexpr std::uint32_t hidden = 0x20;
    constexpr std::uint32_t ownHeight = 0x40;
    constexpr std::uint32_t ownFormat = 0x80;
    unsigned twips = defaultRowTwips;
    std::uint32_t flags = always;
    std::uint32_t format = 0;
    if (span.properties != nullptr) {
        twips = static_cast<unsigned>(std::lround(span.properties->heightPoints * twipsPerPoint));
        format = span.properties->format;
        flags |= ownHeight | (span.properties->hidden ? hidden : 0) | (format != 0 ? ownFormat : 0);
    }
    const bool empty = span.begin == span.end;
    out.begin(record::Row)
        .u16(static_cast<unsigned>(span.number))
        .u16(empty ? 0 : static_cast<unsigned>(span.begin->column))
        .u16(empty ? 0 : static_cast<unsigned>((span.end - 1)->column + 1))
        .u16(twips)
        .u32(0)
        .u32(flags | formatOf(format) << 16U)
        .end();
}

unsigned XlsCells::formatOf(std::uint32_t modelFormat) const
{
    return xlsFormatIndex(styles.indexOf(modelFormat));
}

bool XlsCells::isBlank(const Cell &cell) const
{
    return cell.kind() == CellKind::Blank ||
           (cell.kind() == CellKind::Text && book.strings.at(cell.index).empty());
}

void XlsCells::cells(const RowSpan &span)
{
    for (const Cell *next = span.begin; next != span.end;) {
        const Cell *end = next;
        while (end != span.end && isBlank(*end) &&
               end->column == next->column + static_cast<unsigned>(end - next))
            ++end;
        if (end != next) {
            blanks(next, end);
            next = end;
        } else {
            cell(*next++);
        }
    }
}

// The record of every cell begins with u16 row, u16 column, u16 format.
RecordWriter &XlsCells::beginCell(unsigned id, const Cell &cell)
{
    return out.begin(id)
        .u16(static_cast<unsigned>(cell.row))
        .u16(static_cast<unsigned>(cell.column))
        .u16(formatOf(static_cast<std::uint32_t>(cell.format)));
}

// MULBLANK: u16 row, u16 first column, u16 format of each cell, u16 last column
void XlsCells::blanks(const Cell *begin, const Cell *end)
{
    if (end - begin == 1) {
        beginCell(record::Blank, *begin).end();
        return;
    }
    beginCell(record::MulBlank, *begin);
    for (const Cell *next = begin + 1; next != end; ++next)
        out.u16(formatOf(static_cast<std::uint32_t>(next->format)));
    out.u16(static_cast<unsigned>((end - 1)->column)).end();
}

void XlsCells::cell(const Cell &cell)
{
    switch (cell.kind()) {
    case CellKind::Number:
        number(cell);
        break;
    case CellKind::Text:
        beginCell(record::LabelSst, cell).u32(strings.numberOf(cell.index)).end();
        break;
    case CellKind::Formula:
        formula(cell);
        break;
    case CellKind::Blank:
    case CellKind::Erased:
        break;
    }
}

void XlsCells::number(const Cell &cell)
{
    if (const std::optional<std::uint32_t> rk = compressed(cell.number))
        beginCell(record::Rk, cell).u32(*rk).end();
    else
        beginCell(record::Number, cell).f64(cell.number).end();
}

// FORMULA: result (a number as f64; otherwise u16 kind, u16 error code, u16 0, u16 FFFF),
//          u16 flags, u32 0, u16 size of the tokens, tokens
void XlsCells::formula(const Cell &cell)
{
    constexpr unsigned alwaysCalculate = 1;
    constexpr unsigned errorResult = 2;
    constexpr unsigned emptyResult = 3;
    constexpr unsigned divisionByZero = 0x07;
    constexpr unsigned overflow = 0x24;
    // Parsing and compiling succeed, because writeFormula() rejects formulas for which they fail.
    FormulaTokens parsed = parseFormula(book.formulas.at(cell.index)).value();
    const std::string tokens = compileXlsFormula(parsed).value();
    const FormulaValue value = evaluator.valueOf(cell, std::move(parsed));
    beginCell(record::Formula, cell);
    if (value.kind == FormulaValue::Kind::Number)
        out.f64(value.number);
    else if (value.kind == FormulaValue::Kind::Unknown)
        out.u16(emptyResult).u32(0).u16(0xFFFF);
    else
        out.u16(errorResult)
            .u16(value.kind == FormulaValue::Kind::Overflow ? overflow : divisionByZero)
            .u16(0)
            .u16(0xFFFF);
    out.u16(alwaysCalculate).u32(0).u16(static_cast<unsigned>(tokens.size())).bytes(tokens).end();
}

} // namespace workbook
