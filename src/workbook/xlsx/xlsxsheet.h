#pragma once

#include "workbook/formula/evaluator.h"
#include "workbook/model/cellstore.h"
#include "workbook/model/model.h"
#include "workbook/xlsx/xmltext.h"

#include <string>
#include <vector>

namespace workbook
{

class SharedStrings;
class StyleTable;
struct RowSpan;
class ZipWriter;

/** Writes the part of one worksheet into the open entry of an archive, piece by piece. */
class XlsxSheet
{
public:
    XlsxSheet(const BookData &book, const SheetData &sheet, const StyleTable &styles,
              const SharedStrings &strings, ZipWriter &zip);

    /** `isFirst`: this is the sheet that is shown when the file is opened. */
    void write(bool isFirst);

private:
    void dimension();
    void view(bool isFirst);
    void columns();
    void rows();
    void row(const RowSpan &span);
    void cell(const Cell &cell, std::string_view rowName);
    void formula(const Cell &cell);
    void printing();
    void prepareNames();

    const BookData &book;
    const SheetData &sheet;
    const StyleTable &styles;
    const SharedStrings &strings;
    ZipWriter &zip;
    Evaluator evaluator;
    XmlText xml;
    std::vector<std::string> columnTags; // "<c r=\"A", by column
    std::vector<std::string> formatTags; // " s=\"1\"", by format of the model
};

} // namespace workbook
