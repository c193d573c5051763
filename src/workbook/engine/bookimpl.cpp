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

constexpr std::size_t maxPathUnits = 4096;
constexpr std::size_t maxSheetNameUnits = 31;
constexpr std::size_t maxFontNameUnits = 31;
constexpr std::size_t maxNumFormatUnits = 255;
constexpr std::size_t maxNumFormats = 200;
constexpr int maxFontPoints = 409;

/** `ending` is in lower case. */
bool endsInAnyCase(std::string text, std::string_view ending)
{
    for (char &c : text)
        c = c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
    return text.size() >= ending.size() && text.substr(text.size() - ending.size()) == ending;
}

} // namespace

bool BookImpl::save(const wchar_t *filename, bool /*useTemp*/)
{
    return guarded(false, [&] {
        std::u16string name;
        if (!readText(filename, maxPathUnits, name) || name.empty() || data.sheets.empty() ||
            data.incomplete)
            return false;
        for (SheetData &sheet : data.sheets)
            sheet.cells.sort();
        std::string path;
        appendUtf8(path, name);
        ByteSink sink(path);
        if (sink.ok())
            fileFormat.write(data, sink);
        return sink.commit();
    });
}

bool BookImpl::isFreeSheetName(const std::u16string &name) const
{
    if (name.empty() || !isPlainLine(name) ||
        name.find_first_of(u"[]:*?/\\") != std::u16string::npos || name.front() == u'\'' ||
        name.back() == u'\'')
        return false;
    return std::none_of(data.sheets.begin(), data.sheets.end(), [&](const SheetData &sheet) {
        return foldCase(sheet.name) == foldCase(name);
    });
}

libxl::ISheetT<wchar_t> *BookImpl::addSheet(const wchar_t *name, libxl::ISheetT<wchar_t> *copyFrom)
{
    return guarded<libxl::ISheetT<wchar_t> *>(nullptr, [&]() -> libxl::ISheetT<wchar_t> * {
        const auto *source = static_cast<SheetImpl *>(copyFrom);
        SheetData sheet;
        if (source != nullptr && &source->book != &data)
            return nullptr;
        if (source != nullptr)
            sheet = source->sheet;
        if (!readText(name, maxSheetNameUnits, sheet.name) || !isFreeSheetName(sheet.name))
            return nullptr;
        data.sheets.push_back(std::move(sheet));
        try {
            return &sheets.emplace_back(data, data.sheets.back(), fileFormat);
        } catch (...) {
            data.sheets.pop_back(); // no sheet without the one who asked knowing it
            throw;
        }
    });
}

int BookImpl::addCustomNumFormat(const wchar_t *customNumFormat)
{
    return guarded(0, [&] {
        std::u16string code;
        if (!readText(customNumFormat, maxNumFormatUnits, code) || code.empty() ||
            !isPlainLine(code))
            return 0;
        auto &codes = data.numFormats;
        const auto place = std::find(codes.begin(), codes.end(), code);
        const auto index = static_cast<int>(place - codes.begin());
        if (place == codes.end()) {
            if (codes.size() == maxNumFormats)
                return 0;
            codes.push_back(std::move(code));
        }
        return firstOwnNumFormat + index;
    });
}

libxl::IFormatT<wchar_t> *BookImpl::addFormat(libxl::IFormatT<wchar_t> *copyFrom)
{
    return guarded<libxl::IFormatT<wchar_t> *>(nullptr, [&]() -> libxl::IFormatT<wchar_t> * {
        const auto *source = static_cast<FormatImpl *>(copyFrom);
        if (source != nullptr && &source->book != &data)
            return nullptr;
        data.formats.push_back(source == nullptr ? FormatData{} : data.formats[source->index]);
        return &formats.emplace_back(data, static_cast<std::uint32_t>(data.formats.size() - 1));
    });
}

libxl::IFontT<wchar_t> *BookImpl::addFont(libxl::IFontT<wchar_t> *copyFrom)
{
    return guarded<libxl::IFontT<wchar_t> *>(nullptr, [&]() -> libxl::IFontT<wchar_t> * {
        const auto *source = static_cast<FontImpl *>(copyFrom);
        if (source != nullptr && &source->book != &data)
            return nullptr;
        FontData font = data.fonts[source == nullptr ? 0 : source->index];
        data.fonts.push_back(std::move(font));
        return &fonts.emplace_back(data, static_cast<std::uint32_t>(data.fonts.size() - 1));
    });
}

void BookImpl::setDefaultFont(const wchar_t *fontName, int fontSize)
{
    guarded(false, [&] {
        std::u16string name;
        if (!readText(fontName, maxFontNameUnits, name) || name.empty() || !isPlainLine(name) ||
            fontSize < 1 || fontSize > maxFontPoints)
            return false;
        data.fonts.front().name = std::move(name);
        data.fonts.front().points = fontSize;
        return true;
    });
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
               (endsInAnyCase(locale, "utf-8") || endsInAnyCase(locale, "utf8"));
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
