#include "recordset/search/field_texts.h"
#include "recordset/search/record_filter.h"
#include "recordset/search/text_query.h"
#include "text/regular_expression.h"

namespace rowvane {
namespace {

constexpr size_t kRecordsPerText = 2;  // where a text is shared by so many records, its outcome is remembered

bool looks_at_what_is_shown(CriterionKind kind) {
  return kind == CriterionKind::kRegEx || kind == CriterionKind::kSimilar;
}

TextQuery::Patterns patterns_of(const CWorkSheet& table, size_t field) {
  return table.field(field).type == FieldType::kLongText ? TextQuery::Patterns::kPlain
                                                         : TextQuery::Patterns::kExpressions;
}

// What is known about the texts of a pool, by code. Threads may find the same out at the same time.
class Outcomes {
 public:
  enum Outcome : uint8_t { kUnknown, kNo, kYes };

  explicit Outcomes(size_t codes) : known_(codes, kUnknown) {}

  bool empty() const { return known_.empty(); }
  Outcome get(TextPool::Code code) const {
    return static_cast<Outcome>(std::atomic_ref(known_[code]).load(std::memory_order_relaxed));
  }
  void set(TextPool::Code code, bool matches) {
    std::atomic_ref(known_[code]).store(matches ? kYes : kNo, std::memory_order_relaxed);
  }

 private:
  mutable std::vector<uint8_t> known_;
};

class TextFilter final : public RecordFilter {
 public:
  TextFilter(const FilterContext& context, size_t field, const Criterion& criterion)
      : context_(context),
        field_(field),
        kind_(criterion.kind),
        query_(criterion, context.options, patterns_of(context.table, field)),
        texts_(std::get_if<TextColumn>(&context.table.column(field))),
        outcomes_(is_worth_remembering() ? texts_->pool->size() : 0) {}

  std::unique_ptr<FilterWorker> make_worker() const override {
    if (outcomes_.empty()) return std::make_unique<Worker>(*this);
    return std::make_unique<RememberingWorker>(*this);
  }

  int cost() const override {
    if (!outcomes_.empty()) return 2;
    return query_.cost() + (is_outside() ? 1'000 : 0);
  }

 private:
  bool is_outside() const { return is_outside_record(context_.table.field(field_).type); }
  bool is_worth_remembering() const {
    return texts_ != nullptr && texts_->pool->size() <= context_.records / kRecordsPerText;
  }

  // Looks at each record's texts.
  class Worker : public FilterWorker {
   public:
    explicit Worker(const TextFilter& filter)
        : state_(filter.context_.state),
          texts_(
              filter.context_.table, filter.field_,
              looks_at_what_is_shown(filter.kind_) ? FieldTexts::Errors::kNamed : FieldTexts::Errors::kNone,
              looks_at_what_is_shown(filter.kind_) ? FieldTexts::FileNames::kEach
                                                   : FieldTexts::FileNames::kJoined),
          slow_(filter.is_outside() || filter.kind_ == CriterionKind::kRegEx),
          test_(filter.query_.make_test()) {}

    size_t keep(uint32_t* positions, size_t count) override {
      return keep_matches(positions, count, [this](uint32_t position) { return matches(position); });
    }

   protected:
    bool matches(uint32_t position) {
      if (slow_ && state_.is_over()) return false;
      if (const ErrorCode error = texts_.read(position); error != ErrorCode::kOk) {
        state_.miss(error);
        return false;
      }
      for (const std::string_view text : texts_.texts()) {
        if (test_->matches(text)) return true;
        if (!test_->error().empty()) state_.fail(regular_expression_message(test_->error()));
      }
      return false;
    }

   private:
    SearchState& state_;
    FieldTexts texts_;
    bool slow_;  // one record may take long
    std::unique_ptr<TextTest> test_;
  };

  // Looks at each text of the pool that it meets, once.
  class RememberingWorker final : public Worker {
   public:
    explicit RememberingWorker(const TextFilter& filter)
        : Worker(filter), codes_(filter.texts_->cells.data()), outcomes_(filter.outcomes_) {}

    size_t keep(uint32_t* positions, size_t count) override {
      return keep_matches(positions, count, [this](uint32_t position) {
        const TextPool::Code code = codes_[position];
        const Outcomes::Outcome known = outcomes_.get(code);
        if (known != Outcomes::kUnknown) return known == Outcomes::kYes;
        const bool found = matches(position);
        outcomes_.set(code, found);
        return found;
      });
    }

   private:
    const TextPool::Code* codes_;
    Outcomes& outcomes_;
  };

  const FilterContext& context_;
  size_t field_;
  CriterionKind kind_;
  TextQuery query_;
  const TextColumn* texts_;    // null for other columns
  mutable Outcomes outcomes_;  // empty where remembering is not worth it
};

}  // namespace

RecordFilterPointer make_text_filter(const FilterContext& context, size_t field, const Criterion& criterion) {
  return std::make_unique<TextFilter>(context, field, criterion);
}

}  // namespace rowvane
