#include "platform/printer.h"

#include <algorithm>
#include <chrono>
#include <map>
#include <sstream>
#include <string>

#include "platform/linux/paper_names.h"
#include "platform/linux/run_program.h"

namespace rowvane::platform {
namespace {

constexpr std::chrono::milliseconds kPrintServerPatience{
    1500};  // for each program: a print server may be unreachable
constexpr std::string_view kOrientation = "orientation-requested";
constexpr std::string_view kLandscapeValue = "4";
constexpr std::string_view kReverseLandscapeValue = "5";

std::string default_printer() {
  constexpr std::string_view kAnswer = "system default destination: ";
  const auto text = run_program({"lpstat", "-d"}, kPrintServerPatience);
  if (!text || !text->starts_with(kAnswer)) return {};
  return text->substr(kAnswer.size(), text->find_first_of("\r\n") - kAnswer.size());
}

// Takes a word or a text in quotes up to a blank, without the quotes.
std::string take_option(std::string_view& text) {
  std::string option;
  char quote = '\0';
  size_t i = std::min(text.find_first_not_of(" \r\n\t"), text.size());
  for (; i < text.size(); ++i) {
    const char c = text[i];
    if (quote == '\0' && (c == '\'' || c == '"')) {
      quote = c;
    } else if (c == quote && quote != '\0') {
      quote = '\0';
    } else if (quote == '\0' && (c == ' ' || c == '\n' || c == '\r' || c == '\t')) {
      break;
    } else {
      option += c;
    }
  }
  text.remove_prefix(i);
  return option;
}

std::map<std::string, std::string, std::less<>> printer_options(const std::string& printer) {
  std::map<std::string, std::string, std::less<>> options;
  const auto text = run_program({"lpoptions", "-p", printer}, kPrintServerPatience);
  std::string_view rest = text ? std::string_view(*text) : std::string_view();
  for (;;) {
    const std::string option = take_option(rest);
    if (option.empty()) return options;
    const size_t border = option.find('=');
    const std::string value = border == std::string::npos ? "true" : option.substr(border + 1);
    options.emplace(option.substr(0, border), value);
  }
}

// The choice with the star in "PageSize/Media Size: Letter *A4 Legal".
std::string chosen_page_size(const std::string& printer) {
  const auto text = run_program({"lpoptions", "-p", printer, "-l"}, kPrintServerPatience);
  std::istringstream lines(text.value_or(std::string()));
  for (std::string line; std::getline(lines, line);) {
    if (!line.starts_with("PageSize/") && !line.starts_with("PageSize:")) continue;
    const size_t star = line.find('*');
    if (star == std::string::npos) return {};
    return line.substr(star + 1, line.find(' ', star) - star - 1);
  }
  return {};
}

}  // namespace

std::optional<PrinterPage> default_printer_page() {
  const std::string printer = default_printer();
  if (printer.empty()) return std::nullopt;
  const auto options = printer_options(printer);
  const auto option = [&](std::string_view name) {
    const auto found = options.find(name);
    return found != options.end() ? found->second : std::string();
  };
  std::string paper = option("media");
  if (paper.empty()) paper = option("PageSize");
  if (paper.empty()) paper = chosen_page_size(printer);
  const auto size = paper_size(paper);
  if (!size) return std::nullopt;
  PrinterPage page{size->width, size->length, PrinterPage::kPortrait};
  const std::string orientation = option(kOrientation);
  const std::string landscape = option("landscape");
  if (orientation == kLandscapeValue || orientation == kReverseLandscapeValue ||
      (!landscape.empty() && landscape != "false" && landscape != "no")) {
    page.orientation = PrinterPage::kLandscape;
  }
  return page;
}

}  // namespace rowvane::platform
