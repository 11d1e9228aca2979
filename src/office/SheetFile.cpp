#include "office/SheetFile.h"

#include <expat.h>

#include <algorithm>
#include <charconv>
#include <functional>
#include <map>
#include <memory>
#include <optional>

#include "host/AtomicFile.h"
#include "host/KeywordFile.h"
#include "host/Workbook.h"
#include "office/Zip.h"

namespace poweranalysis {

namespace {

SheetResult Refusal(std::string error) { return {{}, std::move(error)}; }

// --- Cells as they come, row by row.

class CellCollector {
 public:
  // Puts a number, or nothing but the knowledge that something stands there.
  void Put(std::size_t row, std::size_t column, double value) {
    if (row >= SheetRowLimit || column >= SheetColumnLimit) {
      tooLarge_ = true;
      return;
    }
    sheet_.rows = std::max(sheet_.rows, row + 1);
    sheet_.columns = std::max(sheet_.columns, column + 1);
    cells_[{row, column}] = value;
  }
  bool tooLarge() const { return tooLarge_; }

  SheetResult Result() {
    if (tooLarge_) {
      return Refusal("it is too large for a sheet of cell means");
    }
    if (cells_.empty()) {
      return Refusal("its first sheet is empty");
    }
    sheet_.cells.assign(sheet_.rows * sheet_.columns, MissingValue());
    for (const auto& [place, value] : cells_) {
      sheet_.cells[place.first * sheet_.columns + place.second] = value;
    }
    return {std::move(sheet_), {}};
  }

 private:
  Sheet sheet_;
  std::map<std::pair<std::size_t, std::size_t>, double> cells_;
  bool tooLarge_ = false;
};

// --- XML, by the local names of its elements and attributes.

using Attributes = std::map<std::string, std::string, std::less<>>;

std::string_view LocalName(std::string_view name) { return name.substr(name.rfind(':') + 1); }

std::string Attribute(const Attributes& attributes, std::string_view name) {
  const auto found = attributes.find(name);
  return found == attributes.end() ? std::string() : found->second;
}

// Reads an XML text; what it does with the elements is said by the functions of a reader.
class XmlReader {
 public:
  std::function<void(std::string_view, const Attributes&)> begin;
  std::function<void(std::string_view)> end;
  std::function<void(std::string_view)> text;

  // False for what is not well-formed, has a document type, or was stopped.
  bool Read(std::string_view xml) {
    const std::unique_ptr<XML_ParserStruct, void (*)(XML_Parser)> parser(XML_ParserCreate(nullptr),
                                                                         XML_ParserFree);
    if (parser == nullptr) {
      return false;
    }
    parser_ = parser.get();
    XML_SetUserData(parser_, this);
    XML_SetElementHandler(parser_, Begin, End);
    XML_SetCharacterDataHandler(parser_, Text);
    XML_SetStartDoctypeDeclHandler(parser_, RefuseDocumentType);
    const XML_Status status =
        XML_Parse(parser_, xml.data(), static_cast<int>(xml.size()), XML_TRUE);
    parser_ = nullptr;
    return status == XML_STATUS_OK;
  }
  void Stop() { XML_StopParser(parser_, XML_FALSE); }

 private:
  static XmlReader& Self(void* user) { return *static_cast<XmlReader*>(user); }
  static void XMLCALL Begin(void* user, const XML_Char* name, const XML_Char** given) {
    Attributes attributes;
    for (; *given != nullptr; given += 2) {
      attributes.emplace(LocalName(given[0]), given[1]);
    }
    if (Self(user).begin) {
      Self(user).begin(LocalName(name), attributes);
    }
  }
  static void XMLCALL End(void* user, const XML_Char* name) {
    if (Self(user).end) {
      Self(user).end(LocalName(name));
    }
  }
  static void XMLCALL Text(void* user, const XML_Char* text, int length) {
    if (Self(user).text) {
      Self(user).text({text, static_cast<std::size_t>(length)});
    }
  }
  static void XMLCALL
  RefuseDocumentType(void* user, const XML_Char*, const XML_Char*, const XML_Char*, int) {
    Self(user).Stop();
  }

  XML_Parser parser_ = nullptr;
};

const std::string* FindEntry(const std::vector<ZipEntry>& entries, std::string_view name) {
  const auto found = std::find_if(entries.begin(), entries.end(),
                                  [name](const ZipEntry& entry) { return entry.name == name; });
  return found == entries.end() ? nullptr : &found->bytes;
}

constexpr const char* kNotXml = "its contents are damaged";

// --- XLSX.

// Where a cell stands: "B3" is row 2, column 1.
std::optional<std::pair<std::size_t, std::size_t>> PlaceOf(std::string_view reference) {
  constexpr std::size_t kLetters = 26;
  std::size_t column = 0;
  std::size_t i = 0;
  for (; i < reference.size() && reference[i] >= 'A' && reference[i] <= 'Z'; ++i) {
    column = column * kLetters + static_cast<std::size_t>(reference[i] - 'A') + 1;
    if (column > SheetColumnLimit) {
      column = SheetColumnLimit + 1;  // beyond it, and far from an overflow
    }
  }
  std::size_t row = 0;
  const char* last = reference.data() + reference.size();
  const auto [stop, error] = std::from_chars(reference.data() + i, last, row);
  if (column == 0 || stop != last || error != std::errc{} || row == 0) {
    return std::nullopt;
  }
  return {{row - 1, column - 1}};
}

// The value of the first `element` whose attribute `key` is `wanted`, or of the first at all.
std::string FirstAttribute(const std::string& xml,
                           std::string_view element,
                           std::string_view value,
                           std::string_view key = {},
                           std::string_view wanted = {}) {
  std::string found;
  XmlReader reader;
  reader.begin = [&](std::string_view name, const Attributes& attributes) {
    if (found.empty() && name == element && (key.empty() || Attribute(attributes, key) == wanted)) {
      found = Attribute(attributes, value);
    }
  };
  return reader.Read(xml) ? found : std::string();
}

// The part that holds the first sheet; empty when the workbook does not name one.
std::string FirstSheetOfXlsx(const std::vector<ZipEntry>& entries) {
  const std::string* workbook = FindEntry(entries, "xl/workbook.xml");
  const std::string* relations = FindEntry(entries, "xl/_rels/workbook.xml.rels");
  if (workbook == nullptr || relations == nullptr) {
    return {};
  }
  const std::string id = FirstAttribute(*workbook, "sheet", "id");
  const std::string target = FirstAttribute(*relations, "Relationship", "Target", "Id", id);
  if (id.empty() || target.empty()) {
    return {};
  }
  return target.front() == '/' ? target.substr(1) : "xl/" + target;
}

// Collects the cells of a worksheet: "<c r="B3" t="n"><v>1.5</v></c>". Without a reference a cell
// stands behind the one before it.
class XlsxCells {
 public:
  SheetResult Read(const std::string& xml) {
    reader_.begin = [this](std::string_view name, const Attributes& given) { Begin(name, given); };
    reader_.end = [this](std::string_view name) { End(name); };
    reader_.text = [this](std::string_view text) { value_ += inValue_ ? text : ""; };
    const bool whole = reader_.Read(xml);
    return whole || cells_.tooLarge() ? cells_.Result() : Refusal(kNotXml);
  }

 private:
  void Begin(std::string_view name, const Attributes& given) {
    if (name == "row") {
      const std::optional<std::int32_t> number = ParseLong(Attribute(given, "r"));
      row_ = number && *number > 0 ? static_cast<std::size_t>(*number) - 1 : nextRow_;
      nextRow_ = row_ + 1;
      column_ = 0;
    } else if (name == "c") {
      const auto place = PlaceOf(Attribute(given, "r"));
      row_ = place ? place->first : row_;
      column_ = place ? place->second : column_;
      const std::string type = Attribute(given, "t");
      number_ = type.empty() || type == "n";
      filled_ = false;
      value_.clear();
    } else if (name == "v" || name == "t") {
      inValue_ = true;
      filled_ = true;
    }
  }
  void End(std::string_view name) {
    if (name == "v" || name == "t") {
      inValue_ = false;
    } else if (name == "c") {
      if (filled_) {
        cells_.Put(row_, column_,
                   number_ ? ParseReal(value_).value_or(MissingValue()) : MissingValue());
      }
      ++column_;
      if (cells_.tooLarge()) {
        reader_.Stop();
      }
    }
  }

  XmlReader reader_;
  CellCollector cells_;
  std::size_t row_ = 0;
  std::size_t nextRow_ = 0;
  std::size_t column_ = 0;
  bool number_ = false;
  bool filled_ = false;
  bool inValue_ = false;
  std::string value_;
};

// --- ODS.

// Collects the cells of the first table of a content part. Rows and cells that repeat are written
// once; the empty ones that fill a sheet to its edge are not cells.
class OdsCells {
 public:
  SheetResult Read(const std::string& xml) {
    reader_.begin = [this](std::string_view name, const Attributes& given) { Begin(name, given); };
    reader_.end = [this](std::string_view name) { End(name); };
    const bool whole = reader_.Read(xml);
    return whole || cells_.tooLarge() ? cells_.Result() : Refusal(kNotXml);
  }

 private:
  struct Cell {
    std::size_t column = 0;
    double value = 0;
  };

  static std::size_t Repeats(const Attributes& given, std::string_view name) {
    return static_cast<std::size_t>(std::max(1, ParseLong(Attribute(given, name)).value_or(1)));
  }

  void Begin(std::string_view name, const Attributes& given) {
    if (name == "table") {
      ++table_;
    }
    if (table_ != 1 || done_) {
      return;
    }
    if (name == "table-row") {
      repeats_ = Repeats(given, "number-rows-repeated");
      row_.clear();
      column_ = 0;
    } else if (name == "table-cell" || name == "covered-table-cell") {
      AddCells(given);
    }
  }
  void AddCells(const Attributes& given) {
    const std::string type = Attribute(given, "value-type");
    const std::size_t repeats = Repeats(given, "number-columns-repeated");
    const bool number = type == "float" || type == "percentage" || type == "currency";
    const std::optional<double> value =
        number ? ParseReal(Attribute(given, "value")) : std::nullopt;
    for (std::size_t i = 0; i < repeats && !type.empty() && !cells_.tooLarge(); ++i) {
      if (column_ + i >= SheetColumnLimit) {
        cells_.Put(0, SheetColumnLimit, 0);  // too large
        reader_.Stop();
        return;
      }
      row_.push_back({column_ + i, value.value_or(MissingValue())});
    }
    column_ += repeats;
  }
  void End(std::string_view name) {
    if (name == "table-row" && table_ == 1 && !done_) {
      for (std::size_t i = 0; i < repeats_ && !row_.empty() && !cells_.tooLarge(); ++i) {
        for (const Cell& cell : row_) {
          cells_.Put(nextRow_ + i, cell.column, cell.value);
        }
      }
      nextRow_ += repeats_;
      if (cells_.tooLarge()) {
        reader_.Stop();
      }
    } else if (name == "table") {
      done_ = true;
    }
  }

  XmlReader reader_;
  CellCollector cells_;
  int table_ = 0;
  bool done_ = false;
  std::size_t nextRow_ = 0;
  std::size_t repeats_ = 1;
  std::size_t column_ = 0;
  std::vector<Cell> row_;
};

}  // namespace

bool IsSpreadsheet(std::string_view bytes) { return bytes.substr(0, 4) == "PK\x03\x04"; }

SheetResult ParseSpreadsheet(std::string_view bytes) {
  const std::vector<ZipEntry> entries = ReadZip(bytes, UnpackedSheetLimit);
  if (entries.empty()) {
    return Refusal("it is a damaged archive, or unpacks to more than a sheet of cell means");
  }
  if (const std::string* part = FindEntry(entries, FirstSheetOfXlsx(entries))) {
    return XlsxCells().Read(*part);
  }
  const std::string* type = FindEntry(entries, "mimetype");
  const std::string* content = FindEntry(entries, "content.xml");
  if (type != nullptr && content != nullptr && type->find("spreadsheet") != std::string::npos) {
    return OdsCells().Read(*content);
  }
  return Refusal("it is an archive, and no XLSX or ODS file");
}

SheetResult ReadAnySheet(const std::string& path) {
  const FileBytes file = ReadFile(path, SheetFileLimit);
  return file.problem.empty() && IsSpreadsheet(file.text) ? ParseSpreadsheet(file.text)
                                                          : ReadSheet(path);
}

}  // namespace poweranalysis
