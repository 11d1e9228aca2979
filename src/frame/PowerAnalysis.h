#pragma once

#include <memory>

#include "frame/Services.h"
#include "frame/TaskCatalogue.h"
#include "host/AnalysisSupport.h"

#if defined(__GNUC__)
#define POWERANALYSIS_EXPORT __attribute__((visibility("default")))
#else
#define POWERANALYSIS_EXPORT
#endif

namespace poweranalysis {

class CPowerAnalysis;

// What the frame needs of the folders above it, filled in by the one source that knows them all.
struct AnalysisParts {
  // The parameter block: its size, and how it is made in zeroed memory and destroyed.
  std::size_t settingsSize = 0;
  PowerSettingsHead* (*constructSettings)(void* zeroedMemory) = nullptr;
  void (*loadAllDefaults)(PowerSettingsHead& settings) = nullptr;
  void (*destroySettings)(PowerSettingsHead& settings) = nullptr;
  // The dialog of a catalogue row; null when it could not be allocated.
  std::unique_ptr<CAnalysisDialog> (*createDialog)(CPowerAnalysis& analysis,
                                                   const CatalogueDialog& entry) = nullptr;
};

inline constexpr int AnalysisNumber = 4900;

inline constexpr int StageInit = 100;
inline constexpr int StageStartup = 101;
inline constexpr int StageCompute = 102;
inline constexpr int StageResult = 103;

// The analysis: a short table of stages, each of which does set-up or opens one dialog. It holds no
// parameters itself; every one lives in the one block.
class POWERANALYSIS_EXPORT CPowerAnalysis : public CAnalysisSupport {
 public:
  // With the parts of this program; defined where they are known.
  explicit CPowerAnalysis(CAnalysisDoc* document);
  CPowerAnalysis(CAnalysisDoc* document, const AnalysisParts& parts);
  ~CPowerAnalysis() override;

  // Allocates and fills the block. Always 1: on failure the block silently stays null, and the
  // dialogs open without values.
  int Init();
  // Each opens at most one dialog: StageRuns, or StageNothing when none came up.
  int StartAnalysis();
  int Compute();
  int Result();

  int InitializeAfterFileChanged() override;
  // Empty: all initialisation is in stage 100.
  void Initialize() override {}
  int ForwardSequence(int stage, int kind) override;
  const void* GetLibInstance() const override;
  int GetAnalysisID() const override { return AnalysisNumber; }
  std::string GetAnalysisName() const override;

  // Frees the block; a second call frees nothing.
  void FreeSettings();

 private:
  void InitCommons();
  int OpenDialog(const DialogRow* row, bool result);

  AnalysisParts parts_;
};

// A dialog of this program: the common first step of every handler. With a null block the common
// handler is skipped.
class CPowerAnalysisModelessDialog : public CAnalysisModelessDialog {
 public:
  using CAnalysisModelessDialog::CAnalysisModelessDialog;
};

class CPowerAnalysisModalDialog : public CAnalysisModalDialog {
 public:
  using CAnalysisModalDialog::CAnalysisModalDialog;
};

}  // namespace poweranalysis
