#pragma once

#include <string_view>

#include "host/Sheet.h"

namespace poweranalysis {

// What a spreadsheet file may unpack to.
inline constexpr std::size_t UnpackedSheetLimit = std::size_t{16} << 20;

// Whether the bytes begin as those of a spreadsheet program's file do: such a file is an archive.
bool IsSpreadsheet(std::string_view bytes);

// The numbers of the first sheet of an XLSX or ODS file, formulas by the value that was kept with
// them; what is not a number is missing, and a text counts as a cell. Refused are damaged archives,
// encrypted files, XML with a document type (which could define entities without end), and sheets
// beyond the limits of host/Sheet.
//
// Source: ECMA-376, Office Open XML File Formats, part 1, 18.3.1; OASIS, Open Document Format for
// Office Applications 1.2, part 1, 9.1. XML is read by expat.
SheetResult ParseSpreadsheet(std::string_view bytes);

// As ReadSheet of host/Sheet, for files of spreadsheet programs too.
SheetResult ReadAnySheet(const std::string& path);

}  // namespace poweranalysis
