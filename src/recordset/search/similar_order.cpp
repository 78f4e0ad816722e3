#include "recordset/search/similar_order.h"

#include <algorithm>
#include <unordered_map>

#include "core/parallel_blocks.h"
#include "recordset/search/field_texts.h"
#include "text/similar_text.h"

namespace rowvane {
namespace {

// The similarity of a field's cells to one wanted text; works texts that records share out once.
class CellSimilarity {
 public:
  CellSimilarity(const CWorkSheet& table, const FieldCriterion& wanted)
      : column_(std::get_if<TextColumn>(&table.column(wanted.field))),
        texts_(table, wanted.field, FieldTexts::Errors::kNamed, FieldTexts::FileNames::kEach),
        similar_(wanted.criterion.text) {}

  double of(uint32_t position) {
    if (column_ == nullptr) return work_out(position);
    const auto [known, is_new] = by_code_.try_emplace(column_->cells[position], 0.0);
    if (is_new) known->second = work_out(position);
    return known->second;
  }

 private:
  double work_out(uint32_t position) {
    if (texts_.read(position) != ErrorCode::kOk) return 0;
    double best = 0;
    for (const std::string_view text : texts_.texts()) best = std::max(best, similar_.similarity(text));
    return best;
  }

  const TextColumn* column_;  // null for other columns
  FieldTexts texts_;
  SimilarText similar_;
  std::unordered_map<TextPool::Code, double> by_code_;
};

}  // namespace

void sort_by_similarity(const CWorkSheet& table, const std::vector<FieldCriterion>& criteria, int threads,
                        SearchState& state, RecordSet& records) {
  const auto is_similar = [](const FieldCriterion& each) {
    return each.criterion.kind == CriterionKind::kSimilar;
  };
  if (std::ranges::none_of(criteria, is_similar)) return;
  struct Ranked {
    double similarity;
    uint32_t position;
  };
  std::vector<Ranked> ranked(records.size());
  parallel_blocks(records.size(), threads, [&](int, uint64_t first, uint64_t end) {
    for (uint64_t i = first; i < end; ++i) ranked[i] = {0, records[i]};
    for (const FieldCriterion& wanted : criteria) {
      if (!is_similar(wanted)) continue;
      CellSimilarity similarity(table, wanted);
      for (uint64_t i = first; i < end && !state.is_over(); ++i)
        ranked[i].similarity += similarity.of(records[i]);
    }
  });
  std::ranges::stable_sort(ranked, std::ranges::greater(), &Ranked::similarity);
  std::ranges::transform(ranked, records.begin(), &Ranked::position);
}

}  // namespace rowvane
