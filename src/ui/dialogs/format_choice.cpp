#include "ui/dialogs/format_choice.h"

#include <QLineEdit>

#include "core/values/number_text.h"
#include "formula/formats/format_style_text.h"
#include "formula/formats/number_format.h"
#include "ui/text.h"

namespace rowvane {
namespace {

std::vector<FormatStyle> usual_styles(const std::string& symbol) {
  std::vector<FormatStyle> styles;
  const auto add = [&](FormatKind kind, int decimals, bool thousands) -> FormatStyle& {
    FormatStyle style;
    style.kind = kind;
    style.decimals = decimals;
    style.thousands = thousands;
    style.symbol = symbol;
    styles.push_back(style);
    return styles.back();
  };
  for (const bool thousands : {false, true}) {
    for (const int decimals : {0, 2}) add(FormatKind::kGeneral, decimals, thousands);
  }
  add(FormatKind::kGeneral, 2, true).negative = NegativeForm::kRed;
  add(FormatKind::kCurrency, 2, true);
  add(FormatKind::kAccounting, 2, true);
  for (const int form : {0, 1, 10}) add(FormatKind::kDate, 0, false).date_form = form;
  for (const int form : {2, 6, 9}) add(FormatKind::kTime, 0, false).time_form = form;
  FormatStyle& both = add(FormatKind::kDateTime, 0, false);
  both.date_form = 1;
  both.time_form = 2;
  for (const int decimals : {0, 2}) add(FormatKind::kPercent, decimals, false);
  add(FormatKind::kFraction, 0, false).fraction_digits = 2;
  add(FormatKind::kScientific, 2, false);
  return styles;
}

}  // namespace

FormatChoice::FormatChoice(const std::vector<std::string>& user_formats,
                           const platform::RegionalSettings& region, double value, QWidget* parent)
    : QComboBox(parent), region_(region), value_(value) {
  setEditable(true);
  setInsertPolicy(NoInsert);
  setMaxVisibleItems(20);
  lineEdit()->setPlaceholderText(to_qt(format_kind_name(FormatKind::kDefault)));
  lineEdit()->setMaxLength(static_cast<int>(kMaxFormatCodeBytes));
  addItem(QString());
  setItemData(0, to_qt(format_kind_name(FormatKind::kDefault)), Qt::ToolTipRole);
  for (const FormatStyle& style : usual_styles(region.currency_symbol)) {
    addItem(to_qt(build_format_code(style, stored_format_separators(region))));
    setItemData(count() - 1, to_qt(format_kind_name(style.kind)), Qt::ToolTipRole);
  }
  if (!user_formats.empty()) insertSeparator(count());
  for (const std::string& code : user_formats) addItem(to_qt(code));
  setCurrentIndex(0);
}

// The name of a style with its options may be typed as well.
std::string FormatChoice::code() const {
  std::string typed = to_utf8(currentText().trimmed());
  const StyleEntry entry = read_format_style(typed, region_.currency_symbol);
  if (!entry.check.passes() || entry.style.kind == FormatKind::kCustom) return typed;
  return build_format_code(entry.style, stored_format_separators(region_));
}

void FormatChoice::set_code(const std::string& code) {
  setCurrentText(to_qt(code));
}

QString FormatChoice::preview() const {
  const std::string shown_code = code();
  if (shown_code.empty()) return to_qt(number_to_text(value_, {region_.decimal_separator, std::string()}));
  const NumberFormat format(shown_code, DisplayRegion(region_));
  if (!format.problem().empty()) return to_qt(format.problem());
  std::string text;
  format.append(value_, text);
  return to_qt(text);
}

bool FormatChoice::is_users_own() const {
  const std::string own = code();
  return !own.empty() && findText(to_qt(own), Qt::MatchExactly | Qt::MatchCaseSensitive) < 0 &&
         FormatCode(own).problem().empty();
}

}  // namespace rowvane
