#pragma once

#include "workbook/formula/evaluator.h"
#include "workbook/model/cellstore.h"
#include "workbook/model/model.h"
#include "workbook/writing/sheetlayout.h"
#include "workbook/xlsx/deflater.h"
#include "workbook/xlsx/xmltext.h"

#include <optional>
#include <string>
#include <vector>

namespace workbook
{

class SharedStrings;
class StyleTable;
class ZipWriter;

/** Writes the XML of one worksheet into the open entry of an archive, a chunk at a time. */
class XlsxSheet
{
public:
    XlsxSheet(const BookData &bookData, const SheetData &sheetData, const StyleTable &styleTable,
              const SharedStrings &sharedStrings, ZipWriter &zipWriter);

    /** `isFirst` marks the sheet that is shown when the book is opened. */
    void write(bool isFirst);

private:
    void dimension();
    void view(bool isFirst);
    void columns();
    void rows();
    void row(const RowSpan &span);
    void cell(const Cell &cell, std::string_view rowName);
    std::string_view formula(const Cell &cell);
    void endPhrase();
    void flush();
    void printing();
    void prepareTags();

    const BookData &book;
    const SheetData &sheet;
    const StyleTable &styles;
    const SharedStrings &strings;
    ZipWriter &zip;
    const std::optional<UsedRange> used;
    Evaluator evaluator;
    XmlText xml;
    std::vector<Phrase> phrases; // pieces of xml
    std::size_t phraseBegin = 0; // where the next phrase begins in xml
    std::vector<std::string> columnNames;
    std::vector<std::string> textTags;  // "<c t=\"s\" s=\"1\" r=\"", by index in BookData::formats
    std::vector<std::string> otherTags; // the same without the attribute t
};

} // namespace workbook
