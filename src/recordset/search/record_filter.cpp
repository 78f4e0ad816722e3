#include "recordset/search/record_filter.h"

#include "core/database/database.h"
#include "recordset/search/criterion_formula.h"

namespace rowvane {

void SearchState::fail(std::string_view text) {
  const std::lock_guard lock(mutex_);
  if (failure_.empty()) failure_ = text;
  failed_.store(true, std::memory_order_relaxed);
}

void SearchState::miss(ErrorCode error) {
  const std::lock_guard lock(mutex_);
  ++missed_;
  if (missed_error_ == ErrorCode::kOk) missed_error_ = error;
}

namespace {

// Number 0: any flag.
class FlagFilter final : public RecordFilter {
 public:
  FlagFilter(const UninitializedVector<RecordFlags>& flags, int number) : flags_(flags), number_(number) {}

  std::unique_ptr<FilterWorker> make_worker() const override { return std::make_unique<Worker>(*this); }
  int cost() const override { return 1; }

 private:
  class Worker final : public FilterWorker {
   public:
    explicit Worker(const FlagFilter& filter) : filter_(filter) {}
    size_t keep(uint32_t* positions, size_t count) override {
      if (filter_.flags_.empty()) return 0;
      return keep_matches(positions, count, [this](uint32_t position) {
        const int type = filter_.flags_[position] >> kFlagTypeShift;
        return filter_.number_ == 0 ? type != 0 : type == filter_.number_;
      });
    }

   private:
    const FlagFilter& filter_;
  };

  const UninitializedVector<RecordFlags>& flags_;
  int number_;
};

}  // namespace

RecordFilterPointer make_flag_filter(const FilterContext& context, const Criterion& criterion) {
  const Database* database = context.table.database();
  const size_t types = database != nullptr ? database->settings().record_flag_types.size() : 0;
  const int number = flag_number(criterion);
  const bool known = number >= 1 && static_cast<size_t>(number) <= types;
  return std::make_unique<FlagFilter>(context.table.data().flags, known ? number : 0);
}

RecordFilterPointer make_record_filter(const FilterContext& context, size_t field,
                                       const Criterion& criterion) {
  if (criterion.kind == CriterionKind::kFlag) return make_flag_filter(context, criterion);
  if (criterion.kind == CriterionKind::kFormula) return make_formula_filter(context, criterion.text);
  const bool of_numbers = context.table.field(field).type == FieldType::kNumber;
  const bool compares = criterion.kind >= CriterionKind::kEqual && criterion.kind <= CriterionKind::kIsEmpty;
  if (!of_numbers || !compares) return make_text_filter(context, field, criterion);
  RecordFilterPointer filter = make_number_filter(context, field, criterion);
  if (filter != nullptr) return filter;
  return make_formula_filter(context, equivalent_formula(context.table.field(field), criterion));
}

}  // namespace rowvane
