// Packs a folder with ZipWriter and unpacks an archive with ZipReader, for the comparison with other
// archivers.
//   zip_tool pack zip64|zip32 ARCHIVE FOLDER
//   zip_tool unpack ARCHIVE FOLDER
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

#include "zip/zip_reader.h"
#include "zip/zip_writer.h"

namespace {

namespace fs = std::filesystem;
using namespace rowvane;

int fail(const std::string& what, ErrorCode error) {
  std::fprintf(stderr, "%s: error %d\n", what.c_str(), static_cast<int>(error));
  return 1;
}

std::string content_of(const fs::path& path) {
  std::stringstream content;
  content << std::ifstream(path, std::ios::binary).rdbuf();
  return content.str();
}

// Every other file is streamed, every third one is stored.
ErrorCode pack_file(ZipWriter& writer, const std::string& name, const std::string& content, int number) {
  const ZipMethod method = number % 3 == 0 ? ZipMethod::kStored : ZipMethod::kDeflated;
  if (number % 2 == 0) return writer.add(name, content, method);
  if (const ErrorCode error = writer.begin(name, method); error != ErrorCode::kOk) return error;
  if (const ErrorCode error = writer.write(content); error != ErrorCode::kOk) return error;
  return writer.end();
}

int pack(const std::string& variant, const std::string& archive, const fs::path& folder) {
  ZipWriter writer;
  const ZipVariant zip_variant = variant == "zip64" ? ZipVariant::kZip64 : ZipVariant::kZip32;
  ErrorCode error = writer.create(archive, {.variant = zip_variant, .threads = 2});
  int number = 0;
  for (const auto& file : fs::recursive_directory_iterator(folder)) {
    if (error != ErrorCode::kOk) break;
    if (!file.is_regular_file()) continue;
    const std::string name = fs::relative(file.path(), folder).generic_string();
    error = pack_file(writer, name, content_of(file.path()), number++);
  }
  if (error == ErrorCode::kOk) error = writer.finish();
  return error == ErrorCode::kOk ? 0 : fail(archive, error);
}

int unpack(const std::string& archive, const fs::path& folder) {
  ZipReader reader;
  if (const ErrorCode error = reader.open(archive); error != ErrorCode::kOk) return fail(archive, error);
  for (const ZipMember& member : reader.members()) {
    if (member.is_folder()) continue;
    std::string content;
    const ErrorCode error = reader.read(member, uint64_t{1} << 30, content);
    if (error != ErrorCode::kOk) return fail(archive + ": " + member.name, error);
    fs::create_directories((folder / member.name).parent_path());
    std::ofstream(folder / member.name, std::ios::binary) << content;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const std::string command = argc > 1 ? argv[1] : "";
  if (command == "pack" && argc == 5) return pack(argv[2], argv[3], argv[4]);
  if (command == "unpack" && argc == 4) return unpack(argv[2], argv[3]);
  std::fprintf(stderr, "usage: zip_tool pack zip64|zip32 ARCHIVE FOLDER | unpack ARCHIVE FOLDER\n");
  return 2;
}
