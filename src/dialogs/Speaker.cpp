#include "dialogs/Speaker.h"

#include <array>
#include <span>
#include <string>
#include <variant>

namespace poweranalysis {

namespace {

// What a procedure says has the number of a text of this name.
#define SAID_AS_TEXT(name) static_assert(static_cast<int>(Said::name) == text::name)
SAID_AS_TEXT(SearchTooLarge);
SAID_AS_TEXT(CancelledAtRequest);
SAID_AS_TEXT(NullHypothesisTrue);
SAID_AS_TEXT(NullHypothesisNearlyTrue);
SAID_AS_TEXT(EtaTooSmall);
SAID_AS_TEXT(FollowUpTooShort);
SAID_AS_TEXT(SelectedGroupNotFound);
SAID_AS_TEXT(FollowUpBeforeAccrual);
SAID_AS_TEXT(IncreaseN2);
SAID_AS_TEXT(IncreaseN1);
SAID_AS_TEXT(LambdaNotPositive);
SAID_AS_TEXT(SwitchingToRefined);
SAID_AS_TEXT(SearchingForN);
SAID_AS_TEXT(SearchingForDf);
SAID_AS_TEXT(SearchingForUpperBound);
SAID_AS_TEXT(ComputingLowerBound);
SAID_AS_TEXT(ComputingUpperBound);
#undef SAID_AS_TEXT

TextId TextOf(Said said) { return static_cast<TextId>(said); }

FormatArg ArgumentOf(const SlotNumber& number) {
  return std::visit([](auto value) { return FormatArg(value); }, number);
}

// The text with as many of the numbers as it has slots.
std::string Filled(Said said, const SlotNumbers& numbers) {
  const std::string format = LoadText(TextOf(said));
  const std::array<FormatArg, 2> arguments = {ArgumentOf(numbers[0]), ArgumentOf(numbers[1])};
  return FormatText(format, std::span(arguments).first(FormatSlots(format).size()));
}

}  // namespace

void Speak(WindowHandle parent, const Refusal& refusal) {
  HostObserver(parent, HostObserver::Bar::None).Tell(refusal);
}

void HostObserver::Notice(Said text, const SlotNumbers& numbers) {
  ShowMessage(MessageStopIcon, parent_, static_cast<int>(text), Filled(text, numbers));
}

bool HostObserver::Open(Said title, std::int32_t count) {
  if (bar_ == Bar::OfSearches) {
    ProgressStart(LoadText(TextOf(title)), count);
  }
  return bar_ == Bar::OfSearches;
}

void HostObserver::Start(std::int32_t count) {
  if (title_ != text::None) {
    ProgressStart(LoadText(title_), count);
  }
}

bool HostObserver::Advance(std::int32_t counter) {
  if (bar_ == Bar::OfSearches || title_ != text::None) {
    ProgressStep(counter);
  }
  return StopRequested();
}

bool HostObserver::StopRequested() { return BreakRequested(); }

void HostObserver::Stop() {
  if (bar_ == Bar::OfSearches || title_ != text::None) {
    ProgressStop();
  }
}

}  // namespace poweranalysis
