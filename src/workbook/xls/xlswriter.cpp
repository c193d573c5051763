#include "workbook/model/fileformat.h"
#include "workbook/model/model.h"
#include "workbook/writing/bytesink.h"
#include "workbook/writing/sharedstrings.h"
#include "workbook/writing/styletable.h"
#include "workbook/xls/compoundfile.h"
#include "workbook/xls/recordwriter.h"
#include "workbook/xls/xlsformula.h"
#include "workbook/xls/xlsglobals.h"
#include "workbook/xls/xlslimits.h"
#include "workbook/xls/xlssheet.h"

namespace workbook
{

namespace
{

void writeXls(const BookData &book, ByteSink &sink)
{
    const StyleTable styles(book);
    if (styles.formats().size() > xlsCellFormats + 1 || styles.fonts().size() > xlsFonts) {
        sink.fail();
        return;
    }
    // Empty texts are left out, because they are written as blank cells.
    const SharedStrings strings(book, SharedStrings::Empty::LeftOut);
    CompoundFile container(sink);
    RecordWriter records(sink);
    const std::vector<std::uint32_t> places = writeXlsGlobals(book, styles, strings, records);
    for (std::size_t i = 0; i < book.sheets.size(); ++i) {
        Buffer position;
        position.u32(records.position());
        writeXlsSheet(book, book.sheets[i], styles, strings, i == 0, records);
        records.patch(places[i], position.view());
    }
    records.flush();
    container.finish();
}

bool isXlsFormula(std::u16string_view text)
{
    const std::optional<FormulaTokens> formula = parseFormula(text);
    return formula && compileXlsFormula(*formula);
}

} // namespace

const FileFormat xlsFormat = {xlsRows, xlsColumns, isXlsFormula, writeXls};

} // namespace workbook
