// Any bytes as a file of a spreadsheet program, or as one part of a file that is whole otherwise:
// what is read is within the limits of sheets.

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "office/SheetFile.h"
#include "office/Zip.h"

namespace {

using namespace poweranalysis;

void Check(const SheetResult& result) {
  const Sheet& sheet = result.sheet;
  const bool good = sheet.cells.size() == sheet.rows * sheet.columns &&
                    sheet.rows <= SheetRowLimit && sheet.columns <= SheetColumnLimit &&
                    result.error.empty() == (sheet.rows > 0 && sheet.columns > 0);
  if (!good) {
    std::abort();
  }
}

void CheckPart(std::string part, std::string_view bytes) {
  std::vector<ZipEntry> entries = {
      {"xl/workbook.xml", R"(<workbook><sheets><sheet id="1"/></sheets></workbook>)", true},
      {"xl/_rels/workbook.xml.rels", R"(<r><Relationship Id="1" Target="sheet.xml"/></r>)", true},
      {"xl/sheet.xml", "<worksheet/>", true},
  };
  if (part == "content.xml") {
    entries = {{"mimetype", "application/vnd.oasis.opendocument.spreadsheet", true},
               {part, "", true}};
  }
  for (ZipEntry& entry : entries) {
    entry.bytes = entry.name == part ? std::string(bytes) : entry.bytes;
  }
  Check(ParseSpreadsheet(WriteZip(entries)));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size == 0) {
    return 0;
  }
  const std::string_view bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  switch (data[0] % 5) {
    case 0:
      Check(ParseSpreadsheet(bytes));
      break;
    case 1:
      CheckPart("content.xml", bytes);
      break;
    case 2:
      CheckPart("xl/sheet.xml", bytes);
      break;
    case 3:
      CheckPart("xl/workbook.xml", bytes);
      break;
    default:
      CheckPart("xl/_rels/workbook.xml.rels", bytes);
  }
  return 0;
}
