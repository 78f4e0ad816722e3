// Opens a database whose members are any bytes: the archive around them is sound, so that what is in them is
// reached.
//
// The input is a list of members, each a name number, a length of three bytes and the bytes. An input that
// begins with "PK" is the file itself. What opens is saved and must read the same again.
#include <bit>
#include <cstdint>
#include <cstdlib>
#include <fstream>
#include <string>
#include <string_view>

#include <unistd.h>

#include "file/database_file.h"

namespace {

using namespace rowvane;

const std::string kFolder = "/dev/shm/rowvane-fuzz-" + std::to_string(::getpid());

const std::string_view kNames[] = {"config.dat",
                                   "META-INF/manifest.txt",
                                   "min-version.txt",
                                   "t.txt",
                                   "d/t.txt",
                                   "u.txt",
                                   "db.rvb-bin/t.r000000001f00003/text.txt",
                                   "db.rvb-bin/t.r000000001f00004/a.zip",
                                   "db.rvb-bin/d/t.r000000002f00003/text.rtf",
                                   "db.rvb-bin/t.r000000002f00004/b"};

class YesToAll final : public Questions {
 public:
  bool ask(const std::string&) override { return true; }
};

void expect(bool condition) {
  if (!condition) std::abort();
}

bool write_members(std::string_view input, const std::string& path) {
  ZipWriter writer;
  if (writer.create(path, {.level = 1}) != ErrorCode::kOk) return false;
  while (input.size() >= 4) {
    const auto byte = [&input](size_t i) {
      return static_cast<size_t>(static_cast<unsigned char>(input[i]));
    };
    const std::string_view name = kNames[byte(0) % std::size(kNames)];
    const size_t size = std::min(byte(1) | byte(2) << 8 | byte(3) << 16, input.size() - 4);
    static_cast<void>(writer.add(name, input.substr(4, size), ZipMethod::kDeflated) == ErrorCode::kOk);
    input.remove_prefix(4 + size);
  }
  return writer.finish() == ErrorCode::kOk;
}

// All values as one text.
std::string contents_of(const Database& database) {
  std::string text;
  for (const CWorkSheet* table : database.tables()) {
    text += table->path() + "\n";
    for (RecordNumber record = 1; record < table->end_record(); ++record) {
      for (size_t i = 0; i < table->field_count(); ++i) {
        const CellValue value = table->value(record, i);
        if (const auto* number = std::get_if<double>(&value))
          text += std::to_string(std::bit_cast<uint64_t>(*number));
        text += table->value_text(record, i) + "\n";
      }
    }
  }
  return text;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string_view input(reinterpret_cast<const char*>(data), size);
  const std::string path = kFolder + ".rvb";
  if (input.starts_with("PK")) {
    std::ofstream(path, std::ios::binary) << input;
  } else if (!write_members(input, path)) {
    return 0;
  }
  Options options;
  options.used_processor_cores = 1;
  options.max_records = 1000;
  YesToAll questions;
  OpenedDatabase opened = open_database(path, options, &questions);
  expect((opened.failure == ErrorCode::kOk) == (opened.database != nullptr));
  if (opened.failure != ErrorCode::kOk) return 0;
  const std::string contents = contents_of(*opened.database);
  const Outcome saved = opened.file->save(path, {}, options);
  expect(saved.failure == ErrorCode::kOk);
  OpenedDatabase again = open_database(path, options);
  expect(again.failure == ErrorCode::kOk);
  if (saved.notices.empty()) expect(contents_of(*again.database) == contents);
  return 0;
}
