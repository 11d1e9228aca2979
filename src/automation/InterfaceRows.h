#pragma once

#include <span>

#include "automation/Interfaces.h"

// The rows from which the interfaces are made: each interface is a Dialog row with its members
// after it.
namespace poweranalysis {

enum class RowKind { Dialog, Edit, Flag, Check, List, Graph, Summary, Button };

struct MemberRow {
  RowKind kind;
  const char* name;
  const char* field = "";
  int control = 0;  // 0: that of the field, or of the chart
  int value = -1;   // of a flag
  MemberType type = MemberType::None;
  const char* chart = "";  // that a graph shows
};

std::span<const MemberRow> InterfaceRows();

}  // namespace poweranalysis
