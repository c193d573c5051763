#include "workbook/libxlhelper.h"

// The build passes narrow literals; an empty wide one in front makes the whole wide.
const wchar_t *LibXlHelper::licenceName()
{
    return L"" AUTOREPORT_XL_LICENCE_NAME;
}

const wchar_t *LibXlHelper::licenceKey()
{
    return L"" AUTOREPORT_XL_LICENCE_KEY;
}
