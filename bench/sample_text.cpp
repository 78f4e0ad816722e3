#include "sample_text.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string_view>
#include <vector>

namespace rowvane::bench {
namespace {

constexpr size_t kBufferBytes = size_t{1} << 20;
constexpr int kFlightsInRecord = 5;

// The line of names and the lines of the records, without their ends.
struct Flights {
  std::string text;
  std::string_view names;
  std::vector<std::string_view> records;
};

Flights read_flights(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  Flights flights;
  flights.text.assign(std::istreambuf_iterator<char>(file), {});
  std::string_view left = flights.text;
  while (!left.empty()) {
    const size_t end = std::min(left.find('\n'), left.size());
    std::string_view line = left.substr(0, end);
    if (line.ends_with('\r')) line.remove_suffix(1);
    flights.records.push_back(line);
    left.remove_prefix(std::min(end + 1, left.size()));
  }
  if (flights.records.size() < 2) fail("no records in " + path);
  flights.names = flights.records.front();
  flights.records.erase(flights.records.begin());
  return flights;
}

// Writes lines; the file is whole once `close` has returned.
class LineFile {
 public:
  explicit LineFile(const std::string& path) : path_(path), file_(path, std::ios::binary) {}

  void add(std::string_view text) { line_ += text; }
  void end_line() {
    line_ += '\n';
    bytes_ += line_.size();
    file_.write(line_.data(), static_cast<std::streamsize>(line_.size()));
    line_.clear();
  }
  void close() {
    file_.close();
    if (!file_) fail("can't write " + path_);
  }
  uint64_t bytes() const { return bytes_; }

 private:
  std::string path_;
  std::ofstream file_;
  std::string line_;
  uint64_t bytes_ = 0;
};

int64_t second_cell(std::string_view line) {
  const size_t comma = line.find(',');
  int64_t number = 0;
  const char* first = line.data() + comma + 1;
  const auto [end, error] = std::from_chars(first, line.data() + line.size(), number);
  if (comma == std::string_view::npos || error != std::errc() || *end != ',')
    fail("no number in: " + std::string(line));
  return number;
}

}  // namespace

void fail(const std::string& message) {
  std::cerr << message << "\n";
  std::exit(1);
}

TextSum sum_text(const std::string& path) {
  std::FILE* file = path == "-" ? stdin : std::fopen(path.c_str(), "rb");
  if (file == nullptr) fail("can't open " + path);
  TextSum sum;
  std::string text;
  bool in_names = true;
  for (bool more = true; more;) {
    const size_t kept = text.size();
    text.resize(kept + kBufferBytes);
    const size_t count = std::fread(text.data() + kept, 1, kBufferBytes, file);
    text.resize(kept + count);
    sum.bytes += count;
    more = count > 0;
    size_t start = 0;
    for (size_t end; (end = text.find('\n', start)) != std::string::npos; start = end + 1) {
      if (!in_names) {
        sum.delay += second_cell(std::string_view(text).substr(start, end - start));
        ++sum.records;
      }
      in_names = false;
    }
    text.erase(0, start);
  }
  if (std::ferror(file) != 0 || !text.empty()) fail(path + " does not end with a whole line");
  if (file != stdin) std::fclose(file);
  return sum;
}

void make_records(const std::string& from, const std::string& to, uint64_t records) {
  const Flights flights = read_flights(from);
  LineFile file(to);
  file.add(flights.names);
  file.end_line();
  for (uint64_t i = 0; i < records; ++i) {
    file.add(flights.records[i % flights.records.size()]);
    file.end_line();
  }
  file.close();
}

uint64_t make_wide(const std::string& from, const std::string& to, uint64_t bytes, uint64_t keys) {
  const Flights flights = read_flights(from);
  LineFile file(to);
  file.add("key");
  for (int i = 0; i < kFlightsInRecord; ++i) {
    file.add(",");
    file.add(flights.names);
  }
  file.end_line();
  uint64_t next = 0;
  uint64_t records = 0;
  for (; file.bytes() < bytes; ++records) {
    file.add("key " + std::to_string(records % keys));
    for (int i = 0; i < kFlightsInRecord; ++i) {
      file.add(",");
      file.add(flights.records[next++ % flights.records.size()]);
    }
    file.end_line();
  }
  file.close();
  return records;
}

}  // namespace rowvane::bench
