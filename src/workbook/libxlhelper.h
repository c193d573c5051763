#pragma once

/**
 * The licence that is handed to the workbook engine, as the build was configured
 * (AUTOREPORT_XL_LICENCE_NAME, AUTOREPORT_XL_LICENCE_KEY); empty by default.
 */
class LibXlHelper
{
public:
    static const wchar_t *licenceName();
    static const wchar_t *licenceKey();
};
