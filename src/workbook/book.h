#pragma once

namespace libxl
{

template <class Char>
class IFontT;
template <class Char>
class IFormatT;
template <class Char>
class ISheetT;

/**
 * A workbook in memory that `save` writes to a file.
 *
 * Created by xlCreateXMLBookW() or xlCreateBookW(). Owned by the caller, who frees it with
 * release(). The book owns its sheets, formats and fonts. Use a book and its objects in one thread
 * at a time; different books share no state.
 *
 * No function throws. On an error, functions return null, false or 0. If memory runs out while a
 * cell is written, or in addCustomNumFormat() or setDefaultFont(), every later call of save()
 * fails.
 */
template <class Char>
class IBookT
{
public:
    /**
     * Writes the book to a temporary file with mode 0600 in the directory of `filename`, then
     * renames it to `filename`. On an error, an existing file is unchanged and no new file remains.
     * A symbolic link is replaced, not followed. Returns false if the file cannot be written, if
     * the book has no sheets, or if it exceeds the limits of the file format. If a system call
     * fails, `errno` is set to its error. The book may be changed and saved again. The path is
     * encoded as UTF-8 in every locale. `useTemp` has no effect.
     */
    virtual bool save(const Char *filename, bool useTemp = false) = 0;

    /**
     * Appends an empty sheet or, if `copyFrom` is not null, a copy of that sheet. Returns null if
     * `copyFrom` belongs to another book or if `name` is invalid. A name is invalid if it is null,
     * empty or longer than 31 UTF-16 units, contains a tab, a line break or any of `[]:*?/\`,
     * begins or ends with an apostrophe, or equals the name of another sheet, ignoring case.
     */
    virtual ISheetT<Char> *addSheet(const Char *name, ISheetT<Char> *copyFrom = nullptr) = 0;

    /**
     * Returns the identifier of a number format code. Pass it to IFormatT::setNumFormat. Equal
     * codes have equal identifiers. Returns 0, the general number format, if the code is null,
     * empty or longer than 255 UTF-16 units, if it contains a tab or a line break, or if the book
     * already has 200 other codes.
     */
    virtual int addCustomNumFormat(const Char *customNumFormat) = 0;

    /**
     * Adds a format: a new one or, if `copyFrom` is not null, a copy of that format. Returns null
     * if `copyFrom` belongs to another book.
     */
    virtual IFormatT<Char> *addFormat(IFormatT<Char> *copyFrom = nullptr) = 0;

    /**
     * Adds a font: a copy of the current default font or, if `copyFrom` is not null, a copy of that
     * font. Returns null if `copyFrom` belongs to another book.
     */
    virtual IFontT<Char> *addFont(IFontT<Char> *copyFrom = nullptr) = 0;

    /**
     * Sets the default font, used by cells without a format and by formats without a font. The
     * width of a digit in this font is the unit of column widths. `fontSize` is in points. Has no
     * effect if the name is null, empty or longer than 31 UTF-16 units, if it contains a tab or a
     * line break, or if the size is not between 1 and 409.
     */
    virtual void setDefaultFont(const Char *fontName, int fontSize) = 0;

    /** Has no effect, because this engine needs no licence. */
    virtual void setKey(const Char *name, const Char *key) = 0;

    /**
     * Chooses how .xlsx files store colours: as RGB values if true, as palette indexes if false.
     * Programs show the same colours in both cases. Binary files always store palette indexes.
     */
    virtual void setRgbMode(bool rgbMode) = 0;

    /**
     * Returns whether `locale` is a UTF-8 locale, such as "sk_SK.utf8". Has no other effect,
     * because the interface uses only wide characters.
     */
    virtual bool setLocale(const char *locale) = 0;

    /** Frees the book and all its objects. All pointers to them become invalid. */
    virtual void release() = 0;

protected:
    ~IBookT() = default;
};

} // namespace libxl

/** Creates an empty book in Office Open XML format (.xlsx). Returns null if out of memory. */
libxl::IBookT<wchar_t> *xlCreateXMLBookW();

/** Creates an empty book in the binary format of Excel 97 (.xls). Returns null if out of memory. */
libxl::IBookT<wchar_t> *xlCreateBookW();
