#pragma once

#include <optional>
#include <vector>

#include "families/Families.h"
#include "host/Answer.h"
#include "settings/PowerSettings.h"

namespace poweranalysis {

// The numbers among those of a finished summary table that were asked for: the power, or the sizes
// that were sought. `params` is the block that the table was made for. Empty for a table that holds
// none, such as that of an unknown code.
std::vector<Answer> AnswersOf(const SummaryTable& table, PowerSettings& params);

// The same straight from a calculation, without a table.
std::vector<Answer> AnswersOf(const FamilyRow& row,
                              Question question,
                              const RecordView& record,
                              const Computed& computed);

// The limits in a finished table of an interval, in its order; none for any other table. A limit
// that failed, or that the table does not have, is missing.
std::vector<NamedLimits> LimitsOf(const SummaryTable& table, PowerSettings& params);
// The p value of what was observed, missing when it failed; nothing where the table has none.
std::optional<double> PValueOf(const SummaryTable& table, PowerSettings& params);

}  // namespace poweranalysis
