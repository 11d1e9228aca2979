#pragma once

#include <memory>
#include <string>

#include "host/Host.h"

namespace poweranalysis {

// What every host does alike on the machine that it runs on: memory and keyword files.
class LocalHost : public Host {
 public:
  LocalHost();
  LocalHost(const LocalHost&) = delete;
  LocalHost& operator=(const LocalHost&) = delete;
  ~LocalHost() override;

  // Folder in which bare names of keyword files resolve; empty: bare names hold nothing.
  std::string configFolder;
  // Why the last keyword write failed; empty when none did.
  const std::string& keywordError() const { return keywordError_; }
  // Why the last keyword file read held nothing; empty when it could be read or is not there.
  const std::string& keywordReadError() const { return keywordReadError_; }

  // --- Host.
  int AllocMem(void** block, std::size_t bytes) override;
  int GetMem(void** block, std::size_t bytes) override;
  void FreeMem(void* block) override;
  std::optional<KeywordValue> GetInitKeywordPrivate(KeywordKind kind,
                                                    const std::string& file,
                                                    const std::string& section,
                                                    const std::string& key) override;
  KeywordSection GetInitSection(const std::string& file, const std::string& section) override;
  int BeginInitKeywords(const std::string& file) override;
  int PutInitKeywordPrivate(const std::string& file,
                            const std::string& section,
                            const std::string& key,
                            const KeywordValue& factory,
                            const KeywordValue& value) override;
  int EndInitKeywords(const std::string& file) override;
  std::string InitKeywordsError() const override { return keywordError_; }

 protected:
  void SetKeywordError(const std::string& error) { keywordError_ = error; }

 private:
  struct Keywords;  // the files read and the one being written

  std::string ResolveKeywordFile(const std::string& file) const;

  std::unique_ptr<Keywords> keywords_;
  std::string keywordError_;
  std::string keywordReadError_;
};

}  // namespace poweranalysis
