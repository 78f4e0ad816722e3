#include "app/formats/recognized_file.h"

#include <algorithm>

#include "app/formats/file_start.h"
#include "app/formats/text_content.h"
#include "app/formats/text_format.h"
#include "platform/paths.h"

namespace rowvane {
namespace {

const FileFormat* format_of_content(const FileStart& file) {
  const auto formats = file_formats();
  const auto found = std::ranges::find_if(formats, [&](const FileFormat& format) {
    return format.is_content != nullptr && format.is_content(file);
  });
  return found != formats.end() ? &*found : nullptr;
}

const FileFormat* format_of_extension(const std::string& path) {
  const std::string extension = platform::extension(path);
  const auto formats = file_formats();
  const auto found = std::ranges::find_if(formats, [&](const FileFormat& format) {
    return std::ranges::find(format.extensions, extension) != format.extensions.end();
  });
  return found != formats.end() ? &*found : nullptr;
}

std::string cannot_read(const std::string& path, std::string_view description) {
  return platform::file_name(path) + " is " + std::string(description) + ", which Rowvane can't read";
}

// Neither its content nor its name tell it.
void take_as_text(TextContent content, RecognizedFile& file) {
  file.format = &text_format();
  if (content == TextContent::kUtf16) file.text.encoding = TextFileSettings::kUtf16;
  if (content == TextContent::kBigEndianUtf16) {
    file.refusal = cannot_read(file.path, "a text in big-endian UTF-16");
  } else if (content == TextContent::kBinary) {
    file.format = nullptr;
    file.refusal = platform::file_name(file.path) + " is no text, and of no format that Rowvane can read";
  }
}

}  // namespace

void RecognizedFile::take_as(const FileFormat& wanted) {
  format = &wanted;
  refusal.clear();
}

RecognizedFile recognize_file(const std::string& path) {
  const FileStart start(path);
  RecognizedFile file;
  file.path = path;
  file.text = text_settings_of_name(path);
  file.format = format_of_content(start);
  if (file.format != nullptr) {
    if (!file.format->can_open()) file.refusal = cannot_read(path, file.format->description);
    return file;
  }
  // A text may have the name of anything else, a database in pieces only its own.
  file.format = format_of_extension(path);
  const bool is_named = file.format != nullptr && file.format->can_open();
  if (!is_named || file.format == &text_format()) take_as_text(text_content_of(start.bytes()), file);
  return file;
}

ExportTarget export_target(const std::string& path) {
  ExportTarget target;
  target.text = text_settings_of_name(path);
  const FileFormat* named = format_of_extension(path);
  target.format = named != nullptr ? named : &text_format();
  if (!target.format->can_export())
    target.refusal = platform::file_name(path) + ": a table can't be exported as " +
                     std::string(target.format->description);
  return target;
}

}  // namespace rowvane
