#include "support/peerbook.h"

#include <QFile>

#include <xlsxwriter.h>

namespace
{

lxw_format *newFormat(lxw_workbook *book)
{
    lxw_format *format = workbook_add_format(book);
    format_set_font_name(format, "MS Shell Dlg 2");
    format_set_font_size(format, 10);
    return format;
}

struct Formats {
    explicit Formats(lxw_workbook *book)
        : heading(newFormat(book))
        , text(newFormat(book))
        , centred(newFormat(book))
        , bordered(newFormat(book))
    {
        format_set_border(heading, LXW_BORDER_MEDIUM);
        format_set_align(centred, LXW_ALIGN_CENTER);
        format_set_border(bordered, LXW_BORDER_THIN);
    }

    [[nodiscard]] lxw_format *of(SampleLook look) const
    {
        lxw_format *const formats[] = {nullptr, text, centred, bordered};
        return formats[int(look)];
    }

    lxw_format *heading;
    lxw_format *text;
    lxw_format *centred;
    lxw_format *bordered;
};

void setUpPage(lxw_worksheet *sheet)
{
    worksheet_gridlines(sheet, LXW_SHOW_ALL_GRIDLINES);
    worksheet_set_landscape(sheet);
    worksheet_set_paper(sheet, 9);
    worksheet_set_margins(sheet, 0.1968, 0.1968, 0.1968, 0.75);
    worksheet_fit_to_pages(sheet, 1, 0);
    lxw_header_footer_options options{};
    options.margin = 0.5;
    worksheet_set_footer_opt(sheet, "Strana &P/&N", &options);
    worksheet_set_column(sheet, 1, SampleRows::columns - 1, 20, nullptr);
    worksheet_freeze_panes(sheet, 1, 0);
    worksheet_repeat_rows(sheet, 0, 0);
}

void writeRow(lxw_worksheet *sheet, const Formats &formats, const SampleRows &rows, int index)
{
    const auto row = lxw_row_t(index) + 1;
    for (int place = 0; place < SampleRows::columns; ++place) {
        const auto column = lxw_col_t(place);
        const SampleCell cell = rows.cell(index, place);
        lxw_format *format = formats.of(cell.look);
        if (cell.text)
            worksheet_write_string(sheet, row, column, cell.text->utf8.c_str(), format);
        else if (cell.isNumber)
            worksheet_write_number(sheet, row, column, cell.number, format);
        else
            worksheet_write_blank(sheet, row, column, format);
    }
}

} // namespace

bool writePeerBook(const QString &path, const SampleRows &rows, PeerMode mode)
{
    lxw_workbook_options options{};
    options.constant_memory = mode == PeerMode::ConstantMemory;
    lxw_workbook *book = workbook_new_opt(QFile::encodeName(path).constData(), &options);
    lxw_worksheet *sheet = workbook_add_worksheet(book, rows.sheetName().utf8.c_str());
    const Formats formats(book);
    setUpPage(sheet);
    for (int column = 0; column < SampleRows::columns; ++column)
        worksheet_write_string(sheet, 0, lxw_col_t(column), rows.heading(column).utf8.c_str(),
                               formats.heading);
    for (int index = 0; index < rows.count(); ++index)
        writeRow(sheet, formats, rows, index);
    return workbook_close(book) == LXW_NO_ERROR;
}
