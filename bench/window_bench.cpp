// What the window costs, as a line of JSON.
//
//     window_bench start DATABASE
//     window_bench long|wide [EVERY]
//
// start: from the beginning of the program until the window has drawn DATABASE.
// long: a grid of 12,582,912 records of 12 fields is scrolled from end to end, page by page; wide: one of
// 100,000 records of 2,000 fields, sideways. With EVERY only each EVERY-th page is shown. A picture is all
// that happens from a step of the scroll bar until the window is drawn: cells, heads and record numbers, 1280
// by 800 pixels, without a screen. The pages that took more than kGoalMs are shown once more at the end: what
// a page costs is the same then, what else the machine did is not.
#include <QApplication>
#include <QScrollBar>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <ctime>
#include <fstream>
#include <string>
#include <vector>

#include "core/database/database.h"
#include "ui/dialogs.h"
#include "ui/document/database_document.h"
#include "ui/grid/cellvane_view.h"
#include "ui/main_frame.h"
#include "ui/table_views.h"
#include "ui/theme.h"

namespace rowvane {
namespace {

constexpr uint32_t kLongRecords = 12'582'912;
constexpr size_t kLongFields = 12;
constexpr uint32_t kWideRecords = 100'000;
constexpr size_t kWideFields = 2'000;

double resident_megabytes() {
  std::ifstream status("/proc/self/status");
  for (std::string word; status >> word;) {
    if (word != "VmRSS:") continue;
    double kilobytes = 0;
    status >> kilobytes;
    return kilobytes / 1024;
  }
  return 0;
}

// ---- the tables: numbers, texts and dates in turn

uint32_t scrambled(uint32_t record, size_t field) {
  uint32_t bits = record * 2654435761u + static_cast<uint32_t>(field) * 40503u;
  bits ^= bits >> 15;
  bits *= 2246822519u;
  return bits ^ (bits >> 13);
}

void add_numbers(TableData& data, size_t field, bool dates) {
  NumberColumn column;
  column.cells.resize(data.record_count);
  for (uint32_t i = 0; i < data.record_count; ++i) {
    const uint32_t bits = scrambled(i, field);
    column.cells[i] = dates ? 36'500 + bits % 10'000 : bits % 2'000'000 / 100.0 - 5'000;
  }
  data.columns.emplace_back(std::move(column));
}

void add_texts(TableData& data, size_t field) {
  TextColumn column;
  column.cells.resize(data.record_count);
  std::vector<TextPool::Code> codes;
  for (int i = 0; i < 5'000; ++i) {
    codes.push_back(
        column.code_for("Customer " + std::to_string(i * 37) + ", Żółta ulica " + std::to_string(i)));
  }
  for (uint32_t i = 0; i < data.record_count; ++i)
    column.cells[i] = codes[scrambled(i, field) % codes.size()];
  data.columns.emplace_back(std::move(column));
}

std::unique_ptr<CWorkSheet> make_table(size_t fields, uint32_t records) {
  TableData data;
  data.record_count = records;
  for (size_t i = 0; i < fields; ++i) {
    Field field;
    field.name = "Field " + std::to_string(i + 1);
    field.position = static_cast<uint16_t>(i);
    switch (i % 4) {
      case 0:
        field.type = FieldType::kNumber;
        add_numbers(data, i, false);
        break;
      case 1:
        add_texts(data, i);
        break;
      case 2:
        field.type = FieldType::kNumber;
        field.format = "yyyy-mm-dd";
        add_numbers(data, i, true);
        break;
      default:
        field.type = FieldType::kNumber;
        field.format = "#,##0.00;[red]-#,##0.00";
        add_numbers(data, i, false);
        break;
    }
    data.fields.push_back(std::move(field));
  }
  return std::make_unique<CWorkSheet>("records", std::move(data));
}

// ---- the pictures

constexpr double kGoalMs = 16;

struct Figures {
  std::vector<double> pictures;  // milliseconds
  size_t over_goal = 0;
  double worst_again = 0;                // of those over the goal, shown once more; milliseconds
  double worst_cpu = 0;                  // milliseconds of processor time, of all threads together
  double before = 0, with = 0, end = 0;  // megabytes
};

double timed_ms(const std::function<void()>& work) {
  const auto start = std::chrono::steady_clock::now();
  work();
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start).count();
}

Figures scroll(CWorkSheet& table, DatabaseDocument& document, Qt::Orientation direction, int every) {
  Figures figures;
  profile::Settings settings;
  MessageBoxes dialogs;
  figures.before = resident_megabytes();
  TablePane pane(document, table, settings, dialogs, make_grid);
  auto& view = dynamic_cast<CCellvaneView&>(pane.view());
  pane.resize(1280, 800);
  pane.show();
  QApplication::processEvents();
  figures.with = resident_megabytes();
  QScrollBar* bar = direction == Qt::Vertical ? view.verticalScrollBar() : view.horizontalScrollBar();
  const int64_t page = int64_t{bar->pageStep()} * every;
  const auto show = [&](int64_t at) {
    return timed_ms([&] {
      bar->setValue(static_cast<int>(std::min<int64_t>(at, bar->maximum())));
      QApplication::processEvents();
    });
  };
  std::vector<int64_t> slow;
  for (int64_t at = page; at < bar->maximum() + page; at += page) {
    const std::clock_t cpu = std::clock();
    figures.pictures.push_back(show(at));
    figures.worst_cpu =
        std::max(figures.worst_cpu, 1e3 * static_cast<double>(std::clock() - cpu) / CLOCKS_PER_SEC);
    if (figures.pictures.back() > kGoalMs) slow.push_back(at);
  }
  figures.over_goal = slow.size();
  for (const int64_t at : slow) {
    show(at - page);
    figures.worst_again = std::max(figures.worst_again, show(at));
  }
  figures.end = resident_megabytes();
  return figures;
}

void print(const char* name, Figures figures) {
  std::ranges::sort(figures.pictures);
  double sum = 0;
  for (const double picture : figures.pictures) sum += picture;
  const size_t count = figures.pictures.size();
  const auto rank = static_cast<size_t>(std::ceil(static_cast<double>(count) * 0.999)) - 1;
  std::printf(
      "{\"table\": \"%s\", \"pages\": %zu, \"worst_ms\": %.3f, \"p999_ms\": %.3f, \"mean_ms\": %.3f, "
      "\"worst_cpu_ms\": %.3f, \"over_goal\": %zu, \"worst_again_ms\": %.3f, "
      "\"mb_before\": %.1f, \"mb_with_window\": %.1f, \"mb_at_end\": %.1f}\n",
      name, count, figures.pictures.back(), figures.pictures[rank], sum / static_cast<double>(count),
      figures.worst_cpu, figures.over_goal, figures.worst_again, figures.before, figures.with, figures.end);
}

void run(const char* name, size_t fields, uint32_t records, Qt::Orientation direction, int every) {
  DatabaseDocument document{Options()};
  std::unique_ptr<CWorkSheet> made = make_table(fields, records);
  CWorkSheet& table = *made;
  if (document.database().add_table(document.database().root(), made) != ErrorCode::kOk) return;
  print(name, scroll(table, document, direction, every));
}

int start(const char* database, std::chrono::steady_clock::time_point begin) {
  MessageBoxes dialogs;
  ProgramProfile profile(dialogs, dialogs, nullptr);
  CMainFrame frame(profile, dialogs);
  frame.show();
  if (!frame.open_file(QString::fromLocal8Bit(database))) return 1;
  QApplication::processEvents();
  frame.repaint();
  const std::chrono::duration<double, std::milli> passed = std::chrono::steady_clock::now() - begin;
  std::printf("{\"ms\": %.1f}\n", passed.count());
  return 0;
}

}  // namespace
}  // namespace rowvane

int main(int argc, char** argv) {
  const auto begin = std::chrono::steady_clock::now();
  qputenv("QT_QPA_PLATFORM", "offscreen");
  const QApplication application(argc, argv);
  rowvane::set_dark_colors(false);
  const std::string operation = argc > 1 ? argv[1] : "";
  const int every = argc > 2 ? std::max(std::atoi(argv[2]), 1) : 1;
  if (operation == "start" && argc == 3) return rowvane::start(argv[2], begin);
  if (operation == "long") {
    rowvane::run("long", rowvane::kLongFields, rowvane::kLongRecords, Qt::Vertical, every);
  } else if (operation == "wide") {
    rowvane::run("wide", rowvane::kWideFields, rowvane::kWideRecords, Qt::Horizontal, every);
  } else {
    std::fputs("usage: window_bench start DATABASE | long [EVERY] | wide [EVERY]\n", stderr);
    return 2;
  }
  return 0;
}
