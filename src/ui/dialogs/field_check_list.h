// A list of fields to choose several of.
#pragma once

#include <QListWidget>
#include <functional>

#include "core/table/work_sheet.h"

namespace rowvane {

class FieldCheckList final : public QListWidget {
  Q_OBJECT

 public:
  // Lists the fields of TABLE that OFFERS accepts, none of them checked.
  FieldCheckList(const CWorkSheet& table, const std::function<bool(const Field&)>& offers,
                 QWidget* parent = nullptr);

  // The indexes of the checked fields, ascending.
  std::vector<size_t> checked_fields() const;
  void tick_field(size_t field);
  void tick_all();
};

}  // namespace rowvane
