#pragma once

/**
 * The licence that is passed to the workbook engine: the build options AUTOREPORT_XL_LICENCE_NAME
 * and AUTOREPORT_XL_LICENCE_KEY, which are empty by default.
 */
class LibXlHelper
{
public:
    static const wchar_t *licenceName();
    static const wchar_t *licenceKey();
};
