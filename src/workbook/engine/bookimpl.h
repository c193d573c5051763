#pragma once

#include "workbook/book.h"
#include "workbook/engine/fontimpl.h"
#include "workbook/engine/formatimpl.h"
#include "workbook/engine/sheetimpl.h"

#include <deque>

namespace workbook
{

/**
 * Implements IBookT. Owns the model, and the handles that represent its sheets, formats and fonts
 * in the interface.
 */
class BookImpl final : public libxl::IBookT<wchar_t>
{
public:
    explicit BookImpl(const FileFormat &format)
        : data(format)
    {
    }

    bool save(const wchar_t *filename, bool useTemp) override;
    libxl::ISheetT<wchar_t> *addSheet(const wchar_t *name,
                                      libxl::ISheetT<wchar_t> *copyFrom) override;
    int addCustomNumFormat(const wchar_t *customNumFormat) override;
    libxl::IFormatT<wchar_t> *addFormat(libxl::IFormatT<wchar_t> *copyFrom) override;
    libxl::IFontT<wchar_t> *addFont(libxl::IFontT<wchar_t> *copyFrom) override;
    void setDefaultFont(const wchar_t *fontName, int fontSize) override;
    void setKey(const wchar_t *name, const wchar_t *key) override;
    void setRgbMode(bool rgbMode) override;
    bool setLocale(const char *locale) override;
    void release() override;

private:
    template <class Impl, class Data>
    Impl *add(std::deque<Data> &values, std::deque<Impl> &handles, Data value);
    [[nodiscard]] bool acceptsSheetName(const std::u16string &name) const;

    BookData data;
    std::deque<SheetImpl> sheets;
    std::deque<FormatImpl> formats;
    std::deque<FontImpl> fonts;
};

} // namespace workbook
