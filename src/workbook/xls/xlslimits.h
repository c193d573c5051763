#pragma once

#include <cstddef>

/** The limits of an .xls file. */
namespace workbook
{

constexpr int xlsRows = 65536;
constexpr int xlsColumns = 256;
constexpr std::size_t xlsCellFormats = 4000; // without the default format
constexpr std::size_t xlsFonts = 506;        // counts the default font once, not its copies

} // namespace workbook
