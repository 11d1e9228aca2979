#pragma once

#include <string>
#include <vector>

#include "exporters/Samples.h"
#include "exporters/WorkbookFile.h"
#include "office/Zip.h"

// Documents taken apart again.
namespace poweranalysis {

inline std::vector<WorkbookStudy> SampleStudies() {
  WorkbookStudy study;
  study.name = "Power <of> a test";
  study.date = "2024-05-17T09:30:00";
  study.inputs = {{"Sigma", 0.1 + 0.2}};
  study.study = SampleStudy();
  study.labels = {{"The table", ""}, {"", ""}, {"Power vs. N", ""}};
  study.notes = {"Power at N + 1: 0.9"};
  WorkbookStudy other = study;
  other.name = "power <of> A test";
  other.date = "2024-05-18T10:00:00Z";
  return {study, other};
}

inline std::vector<ZipEntry> Opened(const std::string& document) {
  constexpr std::size_t kLimit = 100'000'000;
  return ReadZip(document, kLimit);
}

inline std::string PartOf(const std::string& document, const std::string& name) {
  for (const ZipEntry& entry : Opened(document)) {
    if (entry.name == name) {
      return entry.bytes;
    }
  }
  return {};
}

}  // namespace poweranalysis
