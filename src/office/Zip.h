#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

// The container of office documents.
namespace poweranalysis {

struct ZipEntry {
  std::string name;
  std::string bytes;
  bool stored = false;  // not compressed
};

// A ZIP file of these entries in this order, all of the same fixed time: the same entries give the
// same bytes. For files below 4 GiB and fewer than 65536 entries; else empty.
//
// Source: PKWARE, .ZIP File Format Specification (APPNOTE.TXT), sections 4.3.7, 4.3.12 and 4.3.16.
std::string WriteZip(const std::vector<ZipEntry>& entries);

// The entries of a ZIP file as WriteZip and office programs write them (stored or deflated, no
// encryption, no ZIP64); none when it is not one, or its contents have more than `limit` bytes or
// do not match their checksums.
std::vector<ZipEntry> ReadZip(std::string_view bytes, std::size_t limit);

}  // namespace poweranalysis
