#include "platform/printer.h"

#include <algorithm>
#include <string>
#include <vector>

#include "platform/windows/shell_headers.h"

namespace rowvane::platform {
namespace {

std::wstring default_printer() {
  DWORD length = 0;
  ::GetDefaultPrinterW(nullptr, &length);
  std::wstring name(length, L'\0');
  if (length == 0 || ::GetDefaultPrinterW(name.data(), &length) == 0) return {};
  name.resize(length - 1);  // without the zero
  return name;
}

// A DEVMODEW and what the driver keeps behind it; empty when the printer does not answer.
std::vector<std::byte> printer_settings(const std::wstring& name) {
  HANDLE printer = nullptr;
  std::wstring writable = name;
  if (::OpenPrinterW(writable.data(), &printer, nullptr) == 0) return {};
  std::vector<std::byte> settings;
  const LONG size = ::DocumentPropertiesW(nullptr, printer, writable.data(), nullptr, nullptr, 0);
  if (size >= static_cast<LONG>(sizeof(DEVMODEW))) {
    settings.resize(static_cast<size_t>(size));
    auto* const mode = reinterpret_cast<DEVMODEW*>(settings.data());
    if (::DocumentPropertiesW(nullptr, printer, writable.data(), mode, nullptr, DM_OUT_BUFFER) != IDOK) {
      settings.clear();
    }
  }
  ::ClosePrinter(printer);
  return settings;
}

// Takes the size of paper number PAPER from the printer's lists.
bool find_paper(const std::wstring& name, short paper, PrinterPage& page) {
  const int count = ::DeviceCapabilitiesW(name.c_str(), nullptr, DC_PAPERS, nullptr, nullptr);
  if (count <= 0 || ::DeviceCapabilitiesW(name.c_str(), nullptr, DC_PAPERSIZE, nullptr, nullptr) != count) {
    return false;
  }
  std::vector<WORD> papers(static_cast<size_t>(count));
  std::vector<POINT> sizes(static_cast<size_t>(count));
  ::DeviceCapabilitiesW(name.c_str(), nullptr, DC_PAPERS, reinterpret_cast<LPWSTR>(papers.data()), nullptr);
  ::DeviceCapabilitiesW(name.c_str(), nullptr, DC_PAPERSIZE, reinterpret_cast<LPWSTR>(sizes.data()), nullptr);
  const auto found = std::ranges::find(papers, static_cast<WORD>(paper));
  if (found == papers.end()) return false;
  const POINT& size = sizes[static_cast<size_t>(found - papers.begin())];
  page.paper_width = static_cast<int>(size.x);
  page.paper_length = static_cast<int>(size.y);
  return true;
}

}  // namespace

std::optional<PrinterPage> default_printer_page() {
  const std::wstring name = default_printer();
  if (name.empty()) return std::nullopt;
  const std::vector<std::byte> settings = printer_settings(name);
  if (settings.empty()) return std::nullopt;
  const auto& mode = *reinterpret_cast<const DEVMODEW*>(settings.data());
  PrinterPage page;
  constexpr DWORD kSize = DM_PAPERWIDTH | DM_PAPERLENGTH;
  if ((mode.dmFields & kSize) == kSize && mode.dmPaperWidth > 0 && mode.dmPaperLength > 0) {
    page.paper_width = mode.dmPaperWidth;
    page.paper_length = mode.dmPaperLength;
  } else if ((mode.dmFields & DM_PAPERSIZE) == 0 || !find_paper(name, mode.dmPaperSize, page)) {
    return std::nullopt;
  }
  if ((mode.dmFields & DM_ORIENTATION) != 0 && mode.dmOrientation == DMORIENT_LANDSCAPE) {
    page.orientation = PrinterPage::kLandscape;
  }
  return page;
}

}  // namespace rowvane::platform
