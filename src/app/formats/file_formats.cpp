#include <algorithm>

#include "app/database/open_database.h"
#include "app/formats/file_format.h"
#include "app/formats/file_start.h"
#include "app/formats/recognized_file.h"
#include "app/formats/text_format.h"

namespace rowvane {
namespace {

using namespace std::string_view_literals;

// The date of the last change and the sizes of header and record, in a header without text in it.
bool is_xbase(const FileStart& file) {
  constexpr std::string_view kVersions = "\x02\x03\x30\x31\x32\x43\x63\x83\x8B\x8E\xCB\xF5\xFB";
  constexpr size_t kShortestHeader = 33;
  constexpr size_t kReserved = 12;
  if (file.bytes().size() < kShortestHeader || kVersions.find(file.bytes()[0]) == std::string_view::npos)
    return false;
  const char month = file.bytes()[2];
  const char day = file.bytes()[3];
  const unsigned header_size = file.word_at(8);
  const unsigned record_size = file.word_at(10);
  return month >= 1 && month <= 12 && day >= 1 && day <= 31 && header_size >= kShortestHeader &&
         header_size <= file.size() && record_size > 1 && file.word_at(kReserved) == 0;
}

OpenedDatabase open_database_file(const OpenRequest& request) {
  return open_database(request.file.path, request.options, request.questions, request.progress,
                       request.password);
}

FileFormat database_row() {
  return {
      .name = "rvb",
      .caption = "Rowvane database",
      .description = "a Rowvane database",
      .extensions = {"zip", "rvb"},
      .is_content = [](const FileStart& file) { return file.is_zip(); },
      .open = open_database_file,
      .check_save = [](const OpenDatabase&) { return Check(); },
      .save = [](OpenDatabase& open, Progress& progress) { return open.save(open.path(), {}, progress); }};
}

FileFormat text_row() {
  return {.name = "text",
          .caption = "Text files",
          .description = "a text",
          .extensions = {"csv", "tsv", "tab", "txt"},
          .open = open_text_file,
          .check_save = check_save_as_text,
          .save = save_as_text,
          .check_export = check_export_as_text,
          .export_table = export_as_text};
}

using ContentCheck = bool (*)(const FileStart&);

// A format that only its name and content are known of. Null: text of its own kind, read as any text is.
FileFormat other(std::string_view description, std::vector<std::string_view> extensions,
                 ContentCheck is_content) {
  return {.description = description, .extensions = std::move(extensions), .is_content = is_content};
}

// The first row whose content fits is taken: archives of others come before the database, which takes all the
// rest.
std::vector<FileFormat> make_formats() {
  using File = const FileStart&;
  return {
      other("an Excel workbook", {"xlsx", "xlsm"},
            [](File f) { return f.has_zip_member("xl/workbook.xml"); }),
      other("an OpenDocument spreadsheet", {"ods"},
            [](File f) { return f.has("mimetypeapplication/vnd.oasis.opendocument.spreadsheet", 30); }),
      other("a Word document", {"docx"}, [](File f) { return f.has_zip_member("word/document.xml"); }),
      other("an OpenDocument text", {"odt"},
            [](File f) { return f.has("mimetypeapplication/vnd.oasis.opendocument.text", 30); }),
      database_row(),
      text_row(),
      other("a SQLite database", {"sqlite", "sqlite3", "db", "db3"},
            [](File f) { return f.has("SQLite format 3\0"sv); }),
      other("an xBase table", {"dbf"}, is_xbase),
      other("an Access database", {"mdb", "accdb"},
            [](File f) { return f.has("Standard Jet DB\0"sv, 4) || f.has("Standard ACE DB\0"sv, 4); }),
      other("an older Office document", {"xls", "doc"},
            [](File f) { return f.has("\xD0\xCF\x11\xE0\xA1\xB1\x1A\xE1"); }),
      other("a Parquet file", {"parquet"}, [](File f) { return f.has("PAR1\x15"); }),
      other("a PDF document", {"pdf"}, [](File f) { return f.has("%PDF-"); }),
      other("a PNG image", {"png"}, [](File f) { return f.has("\x89PNG\r\n\x1A\n"); }),
      other("a JPEG image", {"jpg", "jpeg"}, [](File f) { return f.has("\xFF\xD8\xFF"); }),
      other("a GIF image", {"gif"}, [](File f) { return f.has("GIF87a") || f.has("GIF89a"); }),
      other("a TIFF image", {"tif", "tiff"}, [](File f) { return f.has("II*\0"sv) || f.has("MM\0*"sv); }),
      other("a WebP image", {"webp"}, [](File f) { return f.has("RIFF") && f.has("WEBP", 8); }),
      other("a gzip archive", {"gz", "tgz"}, [](File f) { return f.has("\x1F\x8B\x08"); }),
      other("a bzip2 archive", {"bz2"}, [](File f) { return f.has("BZh") && f.has("1AY&SY", 4); }),
      other("an xz archive", {"xz"},
            [](File f) {
              return f.has(
                  "\xFD"
                  "7zXZ\0"sv);
            }),
      other("a Zstandard archive", {"zst"}, [](File f) { return f.has("\x28\xB5\x2F\xFD"); }),
      other("a 7-Zip archive", {"7z"}, [](File f) { return f.has("7z\xBC\xAF\x27\x1C"); }),
      other("a RAR archive", {"rar"}, [](File f) { return f.has("Rar!\x1A\x07"); }),
      other("a tar archive", {"tar"}, [](File f) { return f.has("ustar", 257); }),
      other("a JSON file", {"json", "jsonl"}, nullptr),
      other("an XML file", {"xml"}, nullptr),
      other("a web page", {"html", "htm"}, nullptr),
      other("an SQL script", {"sql"}, nullptr),
  };
}

}  // namespace

std::span<const FileFormat> file_formats() {
  static const std::vector<FileFormat> formats = make_formats();
  return formats;
}

const FileFormat* format_named(std::string_view name) {
  const auto formats = file_formats();
  const auto found = std::ranges::find(formats, name, &FileFormat::name);
  return found != formats.end() && !name.empty() ? &*found : nullptr;
}

std::vector<std::string> format_names(bool (FileFormat::*can)() const) {
  std::vector<std::string> names;
  for (const FileFormat& format : file_formats()) {
    if ((format.*can)()) names.emplace_back(format.name);
  }
  return names;
}

const FileFormat& database_format() {
  static const FileFormat& format = *format_named("rvb");
  return format;
}

const FileFormat& text_format() {
  static const FileFormat& format = *format_named("text");
  return format;
}

}  // namespace rowvane
