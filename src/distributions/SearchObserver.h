#pragma once

#include <cstdint>

namespace poweranalysis {

// Watches a long search: it is told when the search opens and closes and how far it is, and is
// asked whether the search is to go on. A search calls Start once and Stop at least once; a
// cancelled one may call Stop a second time, so that Stop must allow it.
class SearchObserver {
 public:
  SearchObserver() = default;
  SearchObserver(const SearchObserver&) = delete;
  SearchObserver& operator=(const SearchObserver&) = delete;
  virtual ~SearchObserver() = default;

  // The search begins; `count` is the length of the scale that the counter is shown on, which the
  // counter may pass.
  virtual void Start(std::int32_t count) = 0;

  // The search is at `counter`. True asks it to stop.
  virtual bool Advance(std::int32_t counter) = 0;

  // The search has ended.
  virtual void Stop() = 0;
};

// Observes nothing and never asks to stop.
class SilentObserver final : public SearchObserver {
 public:
  void Start(std::int32_t /*count*/) override {}
  bool Advance(std::int32_t /*counter*/) override { return false; }
  void Stop() override {}
};

}  // namespace poweranalysis
