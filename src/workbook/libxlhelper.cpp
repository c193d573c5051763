#include "workbook/libxlhelper.h"

// The build passes narrow literals. Concatenated with an empty wide literal, they become wide.
const wchar_t *LibXlHelper::licenceName()
{
    return L"" AUTOREPORT_XL_LICENCE_NAME;
}

const wchar_t *LibXlHelper::licenceKey()
{
    return L"" AUTOREPORT_XL_LICENCE_KEY;
}
