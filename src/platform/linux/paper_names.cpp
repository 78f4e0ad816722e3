#include "platform/linux/paper_names.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <string>

#include "platform/ascii.h"

namespace rowvane::platform {
namespace {

constexpr double kTenthsPerInch = 254.0;
constexpr double kTenthsPerPoint = kTenthsPerInch / 72;
constexpr double kLargestSide = 100'000;  // ten metres

struct NamedPaper {
  std::string_view name;  // lower case
  PaperSize size;
};

constexpr std::array kPapers = {
    NamedPaper{"a3", {2970, 4200}},        NamedPaper{"a4", {2100, 2970}},
    NamedPaper{"a5", {1480, 2100}},        NamedPaper{"a6", {1050, 1480}},
    NamedPaper{"b4", {2570, 3640}},        NamedPaper{"b5", {1820, 2570}},
    NamedPaper{"c5", {1620, 2290}},        NamedPaper{"dl", {1100, 2200}},
    NamedPaper{"letter", {2159, 2794}},    NamedPaper{"legal", {2159, 3556}},
    NamedPaper{"executive", {1842, 2667}}, NamedPaper{"tabloid", {2794, 4318}},
    NamedPaper{"ledger", {4318, 2794}},    NamedPaper{"statement", {1397, 2159}},
};

std::optional<double> take_number(std::string_view& text) {
  double value = 0;
  const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
  if (result.ec != std::errc()) return std::nullopt;
  text.remove_prefix(static_cast<size_t>(result.ptr - text.data()));
  return value;
}

std::optional<PaperSize> size_of(double width, double length, double unit) {
  const double w = std::round(width * unit);
  const double l = std::round(length * unit);
  if (!(w >= 1 && l >= 1 && w <= kLargestSide && l <= kLargestSide)) return std::nullopt;
  return PaperSize{static_cast<int>(w), static_cast<int>(l)};
}

// "210x297mm"; without a unit points, as "Custom" sizes are.
std::optional<PaperSize> dimensions(std::string_view text) {
  const auto width = take_number(text);
  if (!width || !text.starts_with('x')) return std::nullopt;
  text.remove_prefix(1);
  const auto length = take_number(text);
  if (!length) return std::nullopt;
  if (text == "mm") return size_of(*width, *length, 10);
  if (text == "cm") return size_of(*width, *length, 100);
  if (text == "in") return size_of(*width, *length, kTenthsPerInch);
  if (text.empty() || text == "pt") return size_of(*width, *length, kTenthsPerPoint);
  return std::nullopt;
}

// "w595h842"
std::optional<PaperSize> points(std::string_view text) {
  if (!text.starts_with('w')) return std::nullopt;
  text.remove_prefix(1);
  const auto width = take_number(text);
  if (!width || !text.starts_with('h')) return std::nullopt;
  text.remove_prefix(1);
  const auto length = take_number(text);
  return length && text.empty() ? size_of(*width, *length, kTenthsPerPoint) : std::nullopt;
}

}  // namespace

std::optional<PaperSize> paper_size(std::string_view given) {
  constexpr std::string_view kCustom = "custom.";
  const std::string lower = ascii::to_lower(given.substr(0, given.find(',')));
  const std::string_view name = lower;
  if (name.starts_with(kCustom)) return dimensions(name.substr(kCustom.size()));
  if (const size_t border = name.rfind('_'); border != std::string_view::npos) {
    return dimensions(name.substr(border + 1));
  }
  if (const auto size = points(name)) return size;
  const std::string_view common = name.substr(0, name.find('.'));
  const auto* found = std::ranges::find(kPapers, common, &NamedPaper::name);
  return found != kPapers.end() ? std::optional(found->size) : std::nullopt;
}

}  // namespace rowvane::platform
