#include "office/Zip.h"

#include <zlib.h>

#include <cstdint>
#include <limits>
#include <optional>

namespace poweranalysis {

namespace {

constexpr std::uint32_t kLocalMark = 0x04034b50;
constexpr std::uint32_t kCentralMark = 0x02014b50;
constexpr std::uint32_t kEndMark = 0x06054b50;
constexpr std::uint16_t kVersion = 20;        // 2.0: deflate
constexpr std::uint16_t kUtf8Names = 0x0800;  // flag bit 11
constexpr std::uint16_t kStored = 0;
constexpr std::uint16_t kDeflated = 8;
constexpr std::uint16_t kDate = 0x0021;  // 1980-01-01, the first that can be stored
constexpr std::size_t kLocalSize = 30;
constexpr std::size_t kCentralSize = 46;
constexpr std::size_t kEndSize = 22;

void Put16(std::string& bytes, std::size_t value) {
  bytes += static_cast<char>(value & 0xFFU);
  bytes += static_cast<char>((value >> 8U) & 0xFFU);
}

void Put32(std::string& bytes, std::size_t value) {
  Put16(bytes, value & 0xFFFFU);
  Put16(bytes, (value >> 16U) & 0xFFFFU);
}

std::uint32_t Checksum(std::string_view bytes) {
  const auto* data = reinterpret_cast<const Bytef*>(bytes.data());
  return static_cast<std::uint32_t>(crc32_z(crc32_z(0, nullptr, 0), data, bytes.size()));
}

// Without zlib's own header and trailer. Nothing when memory runs out.
std::optional<std::string> Deflated(const std::string& bytes) {
  z_stream stream = {};
  constexpr int kMemory = 8;
  if (deflateInit2(&stream, Z_BEST_COMPRESSION, Z_DEFLATED, -MAX_WBITS, kMemory,
                   Z_DEFAULT_STRATEGY) != Z_OK) {
    return std::nullopt;
  }
  std::string out(deflateBound(&stream, bytes.size()), '\0');
  // zlib takes what it only reads through a pointer that is not const.
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  const int result = deflate(&stream, Z_FINISH);
  out.resize(stream.total_out);
  deflateEnd(&stream);
  return result == Z_STREAM_END ? std::optional(out) : std::nullopt;
}

std::optional<std::string> Inflated(std::string_view bytes, std::size_t size) {
  z_stream stream = {};
  if (inflateInit2(&stream, -MAX_WBITS) != Z_OK) {
    return std::nullopt;
  }
  std::string out(size, '\0');
  stream.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(bytes.data()));
  stream.avail_in = static_cast<uInt>(bytes.size());
  stream.next_out = reinterpret_cast<Bytef*>(out.data());
  stream.avail_out = static_cast<uInt>(out.size());
  const int result = inflate(&stream, Z_FINISH);
  const bool whole = result == Z_STREAM_END && stream.total_out == size;
  inflateEnd(&stream);
  return whole ? std::optional(out) : std::nullopt;
}

// What the header before the bytes and the directory have in common.
std::string CommonFields(const ZipEntry& entry, std::size_t packedSize) {
  std::string fields;
  Put16(fields, kVersion);
  Put16(fields, kUtf8Names);
  Put16(fields, entry.stored ? kStored : kDeflated);
  Put16(fields, 0);  // time of day
  Put16(fields, kDate);
  Put32(fields, Checksum(entry.bytes));
  Put32(fields, packedSize);
  Put32(fields, entry.bytes.size());
  Put16(fields, entry.name.size());
  Put16(fields, 0);  // no extra field, which an OpenDocument reader would stumble over
  return fields;
}

// A little-endian number in a text that is long enough.
std::size_t Number(std::string_view bytes, std::size_t at, std::size_t size) {
  std::size_t value = 0;
  for (std::size_t i = size; i-- > 0;) {
    value = (value << 8U) | static_cast<unsigned char>(bytes[at + i]);
  }
  return value;
}

// The entry that the directory lists at `at`, which moves on to the next one.
std::optional<ZipEntry> ReadEntry(std::string_view bytes, std::size_t& at, std::size_t& limit) {
  if (at > bytes.size() || bytes.size() - at < kCentralSize ||
      Number(bytes, at, 4) != kCentralMark) {
    return std::nullopt;
  }
  const std::size_t method = Number(bytes, at + 10, 2);
  const std::size_t checksum = Number(bytes, at + 16, 4);
  const std::size_t packed = Number(bytes, at + 20, 4);
  const std::size_t size = Number(bytes, at + 24, 4);
  const std::size_t nameSize = Number(bytes, at + 28, 2);
  const std::size_t local = Number(bytes, at + 42, 4);
  const std::size_t extras = Number(bytes, at + 30, 2) + Number(bytes, at + 32, 2);
  if (bytes.size() - at - kCentralSize < nameSize || bytes.size() < kLocalSize ||
      local > bytes.size() - kLocalSize || size > limit ||
      (method != kStored && method != kDeflated)) {
    return std::nullopt;
  }
  limit -= size;
  ZipEntry entry;
  entry.name = bytes.substr(at + kCentralSize, nameSize);
  entry.stored = method == kStored;
  at += kCentralSize + nameSize + extras;
  const std::size_t begin =
      local + kLocalSize + Number(bytes, local + 26, 2) + Number(bytes, local + 28, 2);
  if (begin > bytes.size() || packed > bytes.size() - begin || (entry.stored && packed != size)) {
    return std::nullopt;
  }
  const std::string_view data = bytes.substr(begin, packed);
  const auto unpacked = entry.stored ? std::optional(std::string(data)) : Inflated(data, size);
  if (!unpacked || Checksum(*unpacked) != checksum) {
    return std::nullopt;
  }
  entry.bytes = *unpacked;
  return entry;
}

}  // namespace

std::string WriteZip(const std::vector<ZipEntry>& entries) {
  constexpr std::size_t kMostBytes = std::numeric_limits<std::uint32_t>::max();
  constexpr std::size_t kMostEntries = std::numeric_limits<std::uint16_t>::max();
  std::string file;
  std::string directory;
  for (const ZipEntry& entry : entries) {
    if (entry.bytes.size() > kMostBytes || entry.name.size() > kMostEntries) {
      return {};
    }
    const auto packed = entry.stored ? std::optional(entry.bytes) : Deflated(entry.bytes);
    if (!packed) {
      return {};
    }
    const std::string fields = CommonFields(entry, packed->size());
    Put32(directory, kCentralMark);
    Put16(directory, kVersion);
    directory += fields;
    Put16(directory, 0);  // no comment
    Put16(directory, 0);  // first disk
    Put16(directory, 0);  // internal attributes
    Put32(directory, 0);  // external attributes
    Put32(directory, file.size());
    directory += entry.name;
    Put32(file, kLocalMark);
    file += fields;
    file += entry.name;
    file += *packed;
  }
  if (file.size() + directory.size() > kMostBytes || entries.size() >= kMostEntries) {
    return {};
  }
  const std::size_t start = file.size();
  file += directory;
  Put32(file, kEndMark);
  Put32(file, 0);  // disks
  Put16(file, entries.size());
  Put16(file, entries.size());
  Put32(file, directory.size());
  Put32(file, start);
  Put16(file, 0);  // no comment
  return file;
}

std::vector<ZipEntry> ReadZip(std::string_view bytes, std::size_t limit) {
  if (bytes.size() < kEndSize || Number(bytes, bytes.size() - kEndSize, 4) != kEndMark) {
    return {};
  }
  const std::size_t end = bytes.size() - kEndSize;
  const std::size_t count = Number(bytes, end + 10, 2);
  std::size_t at = Number(bytes, end + 16, 4);
  std::vector<ZipEntry> entries;
  for (std::size_t i = 0; i < count; ++i) {
    std::optional<ZipEntry> entry = ReadEntry(bytes, at, limit);
    if (!entry) {
      return {};
    }
    entries.push_back(std::move(*entry));
  }
  return entries;
}

}  // namespace poweranalysis
