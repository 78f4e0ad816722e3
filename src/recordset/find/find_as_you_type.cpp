#include "recordset/find/find_as_you_type.h"

#include <algorithm>

namespace rowvane {
namespace {

// What lies in FOUND from index START of the record set on, at most MOST records.
FoundRecords part_of(const FoundRecords& found, size_t start, size_t most) {
  FoundRecords part;
  part.notices = found.notices;
  part.next = found.next;
  const auto first = std::ranges::lower_bound(found.indices, start);
  for (auto i = static_cast<size_t>(first - found.indices.begin()); i < found.indices.size(); ++i) {
    if (part.records.size() == most) {
      part.next = most == 0 ? start : size_t{part.indices.back()} + 1;
      break;
    }
    part.records.push_back(found.records[i]);
    part.indices.push_back(found.indices[i]);
  }
  return part;
}

}  // namespace

FindAsYouType::FindAsYouType(const CWorkSheet& table, RecordSet records, FindText settings)
    : table_(table),
      records_(std::move(records)),
      settings_(std::move(settings)),
      revision_(table.revision()) {}

void FindAsYouType::type(FindPattern pattern) {
  if (all_ && is_narrower(pattern, settings_.pattern)) {
    candidates_ = std::move(all_);
  } else if (!candidates_ || !is_narrower(pattern, settings_.pattern)) {
    candidates_.reset();
  }
  settings_.pattern = std::move(pattern);
  all_.reset();
  finder_.reset();
}

void FindAsYouType::follow_changes() {
  if (revision_ != table_.revision()) {
    revision_ = table_.revision();
    std::erase_if(records_, [this](uint32_t position) { return position >= table_.record_count(); });
    std::erase_if(settings_.fields, [this](size_t field) { return field >= table_.field_count(); });
    candidates_.reset();
    all_.reset();
    finder_.reset();
  }
  if (finder_ == nullptr) finder_ = std::make_unique<TextFinder>(table_, settings_);
}

FoundRecords FindAsYouType::in_record_set(FoundRecords found) const {
  if (!candidates_) return found;
  for (uint32_t& index : found.indices) index = candidates_->indices[index];
  const bool at_end = found.next == candidates_->records.size();
  found.next = at_end ? records_.size() : candidates_->indices[found.next];
  return found;
}

FoundRecords FindAsYouType::screenful(size_t start, size_t most, Progress& progress) {
  follow_changes();
  if (all_) return part_of(*all_, start, most);
  if (!candidates_) return finder_->find(records_, start, most, progress);
  const auto first = std::ranges::lower_bound(candidates_->indices, start);
  const auto index = static_cast<size_t>(first - candidates_->indices.begin());
  return in_record_set(finder_->find(candidates_->records, index, most, progress));
}

FoundRecords FindAsYouType::all(Progress& progress) {
  follow_changes();
  if (all_) return *all_;
  FoundRecords found = in_record_set(
      finder_->find(candidates_ ? candidates_->records : records_, 0, TextFinder::kAll, progress));
  if (!found.cancelled) all_ = found;
  return found;
}

}  // namespace rowvane
