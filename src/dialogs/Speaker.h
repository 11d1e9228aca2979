#pragma once

#include "families/FamilySession.h"
#include "frame/Services.h"

// The one place where what procedures say is shown: their refusals, their notices and their
// progress, over the host.
namespace poweranalysis {

// Shows why something was refused, over `parent`; nothing for an empty refusal.
void Speak(WindowHandle parent, const Refusal& refusal);

// A procedure watched by the host, which forgets a break when the command that it came in ends.
class HostObserver final : public ProcedureObserver {
 public:
  // Without a bar a search shows its messages all the same, and can be stopped where it asks.
  enum class Bar { None, OfSearches };

  HostObserver(WindowHandle parent, Bar bar) : parent_(parent), bar_(bar) {}
  // A single distribution under a bar with this title.
  explicit HostObserver(TextId title) : title_(title) {}

  void Start(std::int32_t count) override;
  bool Advance(std::int32_t counter) override;
  void Stop() override;
  bool Open(Said title, std::int32_t count) override;
  bool StopRequested() override;
  void Notice(Said text, const SlotNumbers& numbers) override;

 private:
  WindowHandle parent_ = nullptr;
  Bar bar_ = Bar::None;
  TextId title_ = text::None;
};

}  // namespace poweranalysis
