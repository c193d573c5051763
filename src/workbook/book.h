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
 * Created by a factory below and owned by the caller, who frees it with release(). The book owns
 * its sheets, formats and fonts. Use a book and its objects in one thread at a time; different
 * books share no state. Nothing throws: on an error, functions return null or false. If a function
 * that writes a cell, or one that cannot report an error, runs out of memory, save() fails.
 */
template <class Char>
class IBookT
{
public:
    /**
     * Writes the book to a file with mode 0600. Writes a temporary file in the same directory and
     * renames it: on an error, an existing file is unchanged and no new file remains. A symbolic
     * link is replaced, not followed. Fails if the book has no sheets or exceeds the limits of the
     * file format. The book may be changed and saved again. The path is encoded as UTF-8 in every
     * locale. `useTemp` has no effect.
     */
    virtual bool save(const Char *filename, bool useTemp = false) = 0;

    /**
     * Appends an empty sheet or, if `copyFrom` is not null, a copy of that sheet. Returns null if
     * `copyFrom` belongs to another book, or if spreadsheet programs reject the name: if it is
     * null, empty or longer than 31 UTF-16 units, contains a tab, a line break or any of []:*?/\,
     * begins or ends with an apostrophe, or equals another sheet's name, ignoring case.
     */
    virtual ISheetT<Char> *addSheet(const Char *name, ISheetT<Char> *copyFrom = nullptr) = 0;

    /**
     * Returns an identifier for IFormatT::setNumFormat. Equal codes have equal identifiers. Returns
     * 0, the general number format, if the code is null, empty, longer than 255 UTF-16 units or
     * contains a tab or a line break, or if the book has 200 other codes already.
     */
    virtual int addCustomNumFormat(const Char *customNumFormat) = 0;

    /**
     * Adds a format: a new one or, if `copyFrom` is not null, a copy of that format. Returns null
     * if `copyFrom` belongs to another book.
     */
    virtual IFormatT<Char> *addFormat(IFormatT<Char> *copyFrom = nullptr) = 0;

    /**
     * Adds a copy of the current default font or, if `copyFrom` is not null, of that font. Returns
     * null if `copyFrom` belongs to another book.
     */
    virtual IFontT<Char> *addFont(IFontT<Char> *copyFrom = nullptr) = 0;

    /**
     * Sets the font of all formats without a font of their own. The width of its digits is the unit
     * of column widths. Has no effect if the name is null, empty or longer than 31 UTF-16 units or
     * contains a tab or a line break, or if the size is outside 1 to 409 points.
     */
    virtual void setDefaultFont(const Char *fontName, int fontSize) = 0;

    /** Accepts a licence, which this engine does not need and ignores. */
    virtual void setKey(const Char *name, const Char *key) = 0;

    /**
     * Chooses how .xlsx files store colours: as RGB values if true, as palette indexes if false.
     * Both look the same. Binary files always store palette indexes.
     */
    virtual void setRgbMode(bool rgbMode) = 0;

    /**
     * Returns whether `locale` is a UTF-8 locale ("UTF-8", "sk_SK.utf8"). Has no effect, because
     * the interface uses wide characters only.
     */
    virtual bool setLocale(const char *locale) = 0;

    /** Frees the book and all its objects; the pointer is invalid afterwards. */
    virtual void release() = 0;

protected:
    ~IBookT() = default;
};

} // namespace libxl

/** Creates an empty book of the format Office Open XML (.xlsx). Returns null if out of memory. */
libxl::IBookT<wchar_t> *xlCreateXMLBookW();

/** Creates an empty book of the binary format of Excel 97 (.xls). Returns null if out of memory. */
libxl::IBookT<wchar_t> *xlCreateBookW();
