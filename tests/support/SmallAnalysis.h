#pragma once

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "host/AnalysisSupport.h"

// An analysis of two stages whose dialogs do one thing for each button, and write down what becomes
// of them. For tests of the hosts.
namespace poweranalysis::testing {

namespace small {

// Buttons of every dialog.
constexpr int Forward = 1;
constexpr int Back = 2;
constexpr int Edit = 10;
constexpr int OpenModal = 20;
constexpr int OpenModalAndLeave = 21;
constexpr int Speak = 22;
constexpr int Search = 23;
constexpr int Nowhere = 24;  // names a stage that there is not

constexpr int FirstStage = 101;
constexpr int SecondStage = 102;
constexpr int ModalResource = 900;

constexpr int SearchLength = 10;

inline DialogSpec Spec(int resource) {
  DialogSpec spec;
  spec.resource = resource;
  spec.title = "dialog " + std::to_string(resource);
  spec.frame = {{Forward, ControlKind::Button, "OK", "OK", {}, {}, 0},
                {Back, ControlKind::Button, "Cancel", "Back", {}, {}, 0}};
  spec.pages = {{1,
                 "page",
                 {{Edit, ControlKind::RealEdit, "Value", "Value", {}, {}, 0},
                  {OpenModal, ControlKind::Button, "Open", "Open", {}, {}, 0}}}};
  return spec;
}

}  // namespace small

class SmallAnalysis : public CAnalysisSupport {
 public:
  SmallAnalysis() {
    static constexpr SequenceRow kRows[] = {
        {small::FirstStage, static_cast<int (CAnalysisSupport::*)()>(&SmallAnalysis::First),
         small::SecondStage},
        {small::SecondStage, static_cast<int (CAnalysisSupport::*)()>(&SmallAnalysis::Second), 0}};
    SetSequenceTable(kRows, 2);
  }

  int InitializeAfterFileChanged() override { return 1; }
  void Initialize() override {}
  const void* GetLibInstance() const override { return nullptr; }
  int GetAnalysisID() const override { return 1; }
  std::string GetAnalysisName() const override { return "small"; }

  void Note(const std::string& line) { log->push_back(line); }
  // What happened, line by line; it outlives the analysis.
  std::shared_ptr<std::vector<std::string>> log = std::make_shared<std::vector<std::string>>();
  std::function<void(int)> onPoll;  // of a search, before it asks whether to stop
  bool stagesOpenModal = false;

 private:
  int First() { return Open(small::FirstStage); }
  int Second() { return Open(small::SecondStage); }
  int Open(int resource);
};

// The dialogs differ in their base class alone.
template <class Base>
class SmallDialog : public Base {
 public:
  SmallDialog(SmallAnalysis& analysis, int resource)
      : Base(analysis, resource), analysis_(analysis), log_(analysis.log) {}
  SmallDialog(const SmallDialog&) = delete;
  SmallDialog& operator=(const SmallDialog&) = delete;
  ~SmallDialog() override { log_->push_back(Name() + " gone"); }

  DialogSpec Spec() const override { return small::Spec(this->resource()); }

 protected:
  long EventHandler(const DialogEvent& event) override {
    if (event.message == MessageStart) {
      log_->push_back(Name() + " started");
      this->form().AddDlgTabs(Spec());
      return 1;
    }
    log_->push_back(Name() + " " + std::to_string(event.control));
    Command(event.control);
    return 1;
  }

 private:
  std::string Name() const { return std::to_string(this->resource()); }
  Host& host() const { return analysis_.host(); }

  void Command(int control) {
    switch (control) {
      case small::Forward:
        return this->ExitDialog(1, ExitForward, 0);
      case small::Back:
        return this->ExitDialog(0, ExitBack, 0);
      case small::OpenModal:
        return OpenModal();
      case small::OpenModalAndLeave:
        OpenModal();
        return this->ExitDialog(1, ExitForward, 0);
      case small::Speak:
        return Speak();
      case small::Search:
        return Search();
      case small::Nowhere:
        return this->ExitDialog(small::SecondStage + 1, ExitForward, 0);
      default:
        return;
    }
  }
  void OpenModal() {
    host().CreateAnalysisDialog(std::make_unique<SmallDialog<CAnalysisModalDialog>>(
        analysis_, small::ModalResource + NextModal()));
  }
  int NextModal() const {
    const int depth = this->resource() - small::ModalResource;
    return depth < 0 ? 0 : depth + 1;
  }
  void Speak() {
    for (const char* text : {"a", "a", "b", "a"}) {
      host().DspMessageBox(MessagePlain, this->window(), 1, text);
    }
  }
  void Search() {
    host().d_pbar("searching");
    host().dstart(small::SearchLength);
    int at = 0;
    while (at < small::SearchLength && !Stopped(at)) {
      host().termom(++at);
    }
    host().dstop();
    log_->push_back("searched " + std::to_string(at));
  }
  bool Stopped(int at) {
    if (analysis_.onPoll) {
      analysis_.onPoll(at);
    }
    return host().lookbr();
  }

  SmallAnalysis& analysis_;
  std::shared_ptr<std::vector<std::string>> log_;
};

inline int SmallAnalysis::Open(int resource) {
  std::unique_ptr<CAnalysisDialog> dialog;
  if (stagesOpenModal) {
    dialog = std::make_unique<SmallDialog<CAnalysisModalDialog>>(*this, resource);
  } else {
    dialog = std::make_unique<SmallDialog<CAnalysisModelessDialog>>(*this, resource);
  }
  return host().CreateAnalysisDialog(std::move(dialog)) ? StageRuns : StageNothing;
}

}  // namespace poweranalysis::testing
