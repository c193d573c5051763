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
 * The caller of a factory owns the book until release(); sheets, formats and fonts belong
 * to the book and are never deleted by the caller. A book and its objects are used by one thread at
 * a time; different books share nothing. No exception leaves this interface: failure shows as null
 * or false. Where a lack of memory cannot show so, save() fails later.
 */
template <class Char>
class IBookT
{
public:
    /**
     * Writes the file, readable by its owner alone. It is written beside its place and renamed
     * into it (a symbolic link there is replaced, not followed), so that on failure an older file
     * of that name is untouched and nothing new is left behind. The book may go on being used and
     * be saved again. False also for a book without a sheet. The path is passed to the system
     * as UTF-8 in every locale. `useTemp` has no effect: no temporary files are needed to save
     * memory.
     */
    virtual bool save(const Char *filename, bool useTemp = false) = 0;

    /**
     * Appends a sheet, a copy of `copyFrom` unless that is null. Returns null for a name that
     * spreadsheet programs refuse: empty, above 31 UTF-16 units, with any of []:*?/\, a tab or a
     * line break, with an apostrophe first or last, or equal to another sheet's name but for case.
     */
    virtual ISheetT<Char> *addSheet(const Char *name, ISheetT<Char> *copyFrom = nullptr) = 0;

    /**
     * Returns an identifier for IFormatT::setNumFormat, the same for the same code. For a code that
     * is null, empty, above 255 UTF-16 units or holds a tab or a line break, and past 200 different
     * codes, 0: the general number format.
     */
    virtual int addCustomNumFormat(const Char *customNumFormat) = 0;

    /** Adds a format, or an independent copy of one of the same book. */
    virtual IFormatT<Char> *addFormat(IFormatT<Char> *copyFrom = nullptr) = 0;

    /** Adds a font like the default font as it is now, or a copy of one of the same book. */
    virtual IFontT<Char> *addFont(IFontT<Char> *copyFrom = nullptr) = 0;

    /**
     * Sets the font of every format without one of its own; column widths are in its characters.
     * Names that are empty or longer than 31 UTF-16 units, and sizes outside 1 to 409 points, are
     * ignored.
     */
    virtual void setDefaultFont(const Char *fontName, int fontSize) = 0;

    /** For callers that have a licence; this engine needs none and ignores it. */
    virtual void setKey(const Char *name, const Char *key) = 0;

    /**
     * True: XML files store colours as red, green and blue; false: as palette indexes, as binary
     * files always do. The look is the same.
     */
    virtual void setRgbMode(bool rgbMode) = 0;

    /**
     * Accepts any name of UTF-8 ("UTF-8", "sk_SK.utf8") and returns false for all others. All text
     * crosses the interface as wide characters, so nothing else changes.
     */
    virtual bool setLocale(const char *locale) = 0;

    /** Frees the book and all its objects; the pointer is invalid afterwards. */
    virtual void release() = 0;

protected:
    ~IBookT() = default;
};

} // namespace libxl

/** A new, empty book that is saved as Office Open XML (.xlsx); null when memory is short. */
libxl::IBookT<wchar_t> *xlCreateXMLBookW();

/** The same for a binary book (.xls, as of Excel 97). */
libxl::IBookT<wchar_t> *xlCreateBookW();
