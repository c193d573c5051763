#include "workbook/engine/bookimpl.h"

#include "workbook/engine/guarded.h"
#include "workbook/model/text.h"
#include "workbook/writing/bytesink.h"

#include <algorithm>
#include <new>
#include <string_view>

namespace workbook
{

namespace
{

constexpr std::size_t maxSheetNameUnits = 31;
constexpr std::size_t maxFontNameUnits = 31;
constexpr std::size_t maxNumFormatUnits = 255;
constexpr std::size_t maxNumFormats = 200;
constexpr int maxFontPoints = 409;

/** `ending` must be in lower case. */
bool endsWithIgnoringCase(std::string text, std::string_view ending)
{
    for (char &c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

} // namespace

bool BookImpl::save(const wchar_t *filename, bool /*useTemp*/)
{
    return guarded(false, [&] {
        const std::string path = utf8Path(filename);
        if (path.empty() || data.sheets.empty() || data.ranOut)
            return false;
        for (SheetData &sheet : data.sheets)
            sheet.cells.sort();
        ByteSink sink(path);
        if (sink.ok())
            data.format.write(data, sink);
        return sink.commit();
    });
}

bool BookImpl::acceptsSheetName(const std::u16string &name) const
{
    if (name.empty() || !isPlainLine(name) ||
        name.find_first_of(u"[]:*?/\\") != std::u16string::npos || name.front() == u'\'' ||
        name.back() == u'\'')
        return false;
    return std::none_of(data.sheets.begin(), data.sheets.end(), [&](const SheetData &sheet) {
        return foldCase(sheet.name) == foldCase(name);
    });
}

/** Adds `value` to the model. Returns the handle that represents it in the interface. */
template <class Impl, class Data>
Impl *BookImpl::add(std::deque<Data> &values, std::deque<Impl> &handles, Data value)
{
    // Add the handle first: if push_back() throws, the unused handle does no harm. In the opposite
    // order, a sheet without a handle could remain in the model, and save() would write it.
    Impl &handle = handles.emplace_back(data, values.size());
    values.push_back(std::move(value));
    return &handle;
}

libxl::ISheetT<wchar_t> *BookImpl::addSheet(const wchar_t *name, libxl::ISheetT<wchar_t> *copyFrom)
{
    return guarded<SheetImpl *>(nullptr, [&]() -> SheetImpl * {
        const auto *source = static_cast<SheetImpl *>(copyFrom);
        if (!isUsableIn(source, data))
            return nullptr;
        SheetData sheet = source == nullptr ? SheetData{} : data.sheets[source->index];
        if (!readText(name, maxSheetNameUnits, sheet.name) || !acceptsSheetName(sheet.name))
            return nullptr;
        return add(data.sheets, sheets, std::move(sheet));
    });
}

int BookImpl::addCustomNumFormat(const wchar_t *customNumFormat)
{
    int id = 0;
    const bool survived = guarded([&] {
        std::u16string code;
        if (!readText(customNumFormat, maxNumFormatUnits, code) || code.empty() ||
            !isPlainLine(code))
            return;
        auto &codes = data.numFormats;
        const auto place = std::find(codes.begin(), codes.end(), code);
        const auto index = static_cast<int>(place - codes.begin());
        if (place == codes.end()) {
            if (codes.size() == maxNumFormats)
                return;
            codes.push_back(std::move(code));
        }
        id = firstOwnNumFormat + index;
    });
    data.ranOut = data.ranOut || !survived;
    return id;
}

libxl::IFormatT<wchar_t> *BookImpl::addFormat(libxl::IFormatT<wchar_t> *copyFrom)
{
    return guarded<FormatImpl *>(nullptr, [&]() -> FormatImpl * {
        const auto *source = static_cast<FormatImpl *>(copyFrom);
        if (!isUsableIn(source, data))
            return nullptr;
        return add(data.formats, formats,
                   source == nullptr ? FormatData{} : data.formats[source->index]);
    });
}

libxl::IFontT<wchar_t> *BookImpl::addFont(libxl::IFontT<wchar_t> *copyFrom)
{
    return guarded<FontImpl *>(nullptr, [&]() -> FontImpl * {
        const auto *source = static_cast<FontImpl *>(copyFrom);
        if (!isUsableIn(source, data))
            return nullptr;
        return add(data.fonts, fonts, data.fonts[source == nullptr ? 0 : source->index]);
    });
}

void BookImpl::setDefaultFont(const wchar_t *fontName, int fontSize)
{
    const bool survived = guarded([&] {
        std::u16string name;
        if (!readText(fontName, maxFontNameUnits, name) || name.empty() || !isPlainLine(name) ||
            fontSize < 1 || fontSize > maxFontPoints)
            return;
        data.fonts.front().name = std::move(name);
        data.fonts.front().points = fontSize;
    });
    data.ranOut = data.ranOut || !survived;
}

void BookImpl::setKey(const wchar_t * /*name*/, const wchar_t * /*key*/) {}

void BookImpl::setRgbMode(bool rgbMode)
{
    data.rgbColours = rgbMode;
}

bool BookImpl::setLocale(const char *locale)
{
    return guarded(false, [&] {
        return locale != nullptr &&
               (endsWithIgnoringCase(locale, "utf-8") || endsWithIgnoringCase(locale, "utf8"));
    });
}

void BookImpl::release()
{
    delete this;
}

} // namespace workbook

static libxl::IBookT<wchar_t> *newBook(const workbook::FileFormat &format)
{
    return workbook::guarded<libxl::IBookT<wchar_t> *>(
        nullptr, [&] { return new workbook::BookImpl(format); });
}

libxl::IBookT<wchar_t> *xlCreateXMLBookW()
{
    return newBook(workbook::xlsxFormat);
}

libxl::IBookT<wchar_t> *xlCreateBookW()
{
    return newBook(workbook::xlsFormat);
}
