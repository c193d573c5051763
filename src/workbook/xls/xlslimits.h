#pragma once

#include <cstddef>

/** The limits of an .xls file. */
namespace workbook
{

constexpr int xlsRows = 65536;
constexpr int xlsColumns = 256;
constexpr std::size_t xlsCellFormats = 4000; // excluding the default format
constexpr std::size_t xlsFonts = 506;        // including the default font, excluding its copies

} // namespace workbook
