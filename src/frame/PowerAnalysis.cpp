#include "frame/PowerAnalysis.h"

#include <utility>

#include "frame/DefineTask.h"

namespace poweranalysis {

namespace {

using Stage = int (CAnalysisSupport::*)();

constexpr SequenceRow kSequence[] = {
    {StageInit, static_cast<Stage>(&CPowerAnalysis::InitializeAfterFileChanged), StageStartup},
    {StageStartup, static_cast<Stage>(&CPowerAnalysis::StartAnalysis), StageCompute},
    {StageCompute, static_cast<Stage>(&CPowerAnalysis::Compute), StageResult},
    {StageResult, static_cast<Stage>(&CPowerAnalysis::Result), 0},
};
constexpr int kStages = 4;

constexpr std::array<std::uint8_t, 8> kAttributes = {112, 121, 116, 127, 23, 7, 7, 7};

}  // namespace

CPowerAnalysis::CPowerAnalysis(CAnalysisDoc* document, const AnalysisParts& parts)
    : CAnalysisSupport(document), parts_(parts) {
  attributes_ = kAttributes;
  SetSequenceTable(kSequence, kStages);
}

CPowerAnalysis::~CPowerAnalysis() {
  FreeSettings();
  if (Module().analysis == this) {
    Module().analysis = nullptr;
  }
}

void CPowerAnalysis::FreeSettings() {
  PowerSettingsHead* settings = Module().settings;
  if (settings == nullptr || Module().analysis != this) {
    return;
  }
  parts_.destroySettings(*settings);
  host().FreeMem(settings);
  Module().settings = nullptr;
}

void CPowerAnalysis::InitCommons() { Module().analysis = this; }

int CPowerAnalysis::Init() {
  // One live analysis a thread: a second start, or a second analysis, takes over from the one
  // before.
  if (auto* live = static_cast<CPowerAnalysis*>(Module().analysis)) {
    live->FreeSettings();
  }
  InitCommons();
  Module().settings = nullptr;
  void* block = nullptr;
  if (host().AllocMem(&block, parts_.settingsSize) == 0) {
    PowerSettingsHead* settings = parts_.constructSettings(block);
    Module().settings = settings;
    parts_.loadAllDefaults(*settings);
  }
  Module().ProgressOpen = 0;
  return 1;
}

int CPowerAnalysis::InitializeAfterFileChanged() { return Init(); }

int CPowerAnalysis::StartAnalysis() {
  InitCommons();
  const bool created = host().CreateAnalysisDialog(std::make_unique<CDefineTask>(*this));
  return created ? StageRuns : StageNothing;
}

int CPowerAnalysis::OpenDialog(const DialogRow* row, bool result) {
  if (row == nullptr) {
    return StageNothing;
  }
  const PowerSettingsHead& head = *Module().settings;
  const int selection = head.Selection[static_cast<std::size_t>(head.Mode)];
  const CatalogueDialog entry = {row, head.Mode, selection, result};
  // A null object, when it could not be allocated, is a failure of the creation.
  return host().CreateAnalysisDialog(parts_.createDialog(*this, entry)) ? StageRuns : StageNothing;
}

namespace {

// The row that mode and selection of the block name; the mode is tested before its selection is
// read.
template <class Find>
const DialogRow* ChosenDialog(Find find) {
  const PowerSettingsHead* head = Module().settings;
  if (head == nullptr || head->Mode < 0 || head->Mode >= ModeCount) {
    return nullptr;
  }
  return find(head->Mode, head->Selection[static_cast<std::size_t>(head->Mode)]);
}

}  // namespace

int CPowerAnalysis::Compute() { return OpenDialog(ChosenDialog(ComputeDialog), false); }

int CPowerAnalysis::Result() { return OpenDialog(ChosenDialog(ResultDialog), true); }

int CPowerAnalysis::ForwardSequence(int stage, int kind) {
  return CAnalysisSupport::ForwardSequence(stage, kind);
}

const void* CPowerAnalysis::GetLibInstance() const { return &kSequence; }

std::string CPowerAnalysis::GetAnalysisName() const { return LoadText(text::AnalysisName); }

}  // namespace poweranalysis
