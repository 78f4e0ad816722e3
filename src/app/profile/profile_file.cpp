#include "app/profile/profile_file.h"

#include <algorithm>
#include <sstream>

#include <pugixml.hpp>

#include "app/profile/profile_xml.h"
#include "core/messages/file_error.h"
#include "core/program_version.h"
#include "core/values/base64.h"
#include "platform/file.h"
#include "platform/file_system.h"
#include "platform/paths.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr uint64_t kMaxProfileBytes = uint64_t{64} << 20;
constexpr const char* kRoot = "Profile";
constexpr const char* kEncrypted = "encrypted";
constexpr const char* kVersion = "version";
constexpr const char* kCheck = "Check";
constexpr const char* kContent = "Content";

// The line ends of scripts stay as they are.
constexpr unsigned kParsing = (pugi::parse_default & ~pugi::parse_eol) | pugi::parse_declaration |
                              pugi::parse_comments | pugi::parse_pi | pugi::parse_ws_pcdata_single;

// Elements one within the other; the library removes elements by recursion.
constexpr int kMaxDepth = 100;

class DepthLimit final : public pugi::xml_tree_walker {
 public:
  bool for_each(pugi::xml_node&) override { return depth() < kMaxDepth; }
};

ErrorCode parse_document(const std::string& content, pugi::xml_document& document) {
  if (!is_valid_utf8(content)) return ErrorCode::kXmlUtf8Only;
  const pugi::xml_parse_result result =
      document.load_buffer(content.data(), content.size(), kParsing, pugi::encoding_utf8);
  if (result.status == pugi::status_out_of_memory) return ErrorCode::kXmlMemory;
  DepthLimit limit;
  return result && document.child(kRoot) && document.traverse(limit) ? ErrorCode::kOk
                                                                     : ErrorCode::kXmlElement;
}

std::string document_text(const pugi::xml_document& document) {
  std::ostringstream text;
  document.save(text, "  ", pugi::format_default | pugi::format_no_declaration, pugi::encoding_utf8);
  return text.str();
}

// The root of DOCUMENT, which gets a declaration and a root when it has none.
pugi::xml_node prepare(pugi::xml_document& document, bool encrypted) {
  pugi::xml_node declaration = document.first_child();
  if (declaration.type() != pugi::node_declaration)
    declaration = document.prepend_child(pugi::node_declaration);
  declaration.remove_attributes();
  declaration.append_attribute("version") = "1.0";
  declaration.append_attribute("encoding") = "utf-8";
  pugi::xml_node root = document.child(kRoot);
  if (!root) root = document.append_child(kRoot);
  if (!root.attribute(kVersion)) root.append_attribute(kVersion);
  if (!root.attribute(kEncrypted)) root.append_attribute(kEncrypted);
  root.attribute(kVersion) = std::string(program_version()).c_str();
  root.attribute(kEncrypted) = encrypted;
  return root;
}

// Base64 may be wrapped by whoever edited the file.
std::optional<std::string> sealed_bytes(const pugi::xml_node& node) {
  std::string text = node.text().get();
  std::erase_if(text, [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; });
  auto bytes = base64_decode(text);
  return bytes && !bytes->empty() ? bytes : std::nullopt;
}

// Whether PATH holds something that would be lost when it is replaced.
bool holds_no_profile(const std::string& path) {
  std::string content;
  if (platform::read_whole_file(path, content, kMaxProfileBytes) != platform::FileStatus::kOk) {
    return platform::file_exists(path);
  }
  pugi::xml_document document;
  return !content.empty() && parse_document(content, document) != ErrorCode::kOk;
}

}  // namespace

ProfileFile::ProfileFile(ProfileCipher* cipher)
    : cipher_(cipher), document_(std::make_unique<pugi::xml_document>()) {}

ProfileFile::~ProfileFile() = default;

ProfileFile::LoadResult ProfileFile::load(const std::string& path, PasswordPrompt* prompt,
                                          profile::Settings& settings) {
  LoadResult result;
  std::string content;
  const platform::FileStatus status = platform::read_whole_file(path, content, kMaxProfileBytes);
  if (status != platform::FileStatus::kOk) {
    result.error = file_error(status, ErrorCode::kFileRead);
    return result;
  }
  auto document = std::make_unique<pugi::xml_document>();
  Secret password;
  result.error = parse(content, path, prompt, document, password);
  if (result.error != ErrorCode::kOk) return result;
  profile::Settings loaded;
  result.bad_values = profile::read_settings(document->child(kRoot), loaded);
  settings = std::move(loaded);
  document_ = std::move(document);
  set_password(std::move(password));
  return result;
}

ErrorCode ProfileFile::parse(const std::string& content, const std::string& path, PasswordPrompt* prompt,
                             Document& document, Secret& password) const {
  if (const ErrorCode error = parse_document(content, *document); error != ErrorCode::kOk) return error;
  if (!document->child(kRoot).attribute(kEncrypted).as_bool()) return ErrorCode::kOk;
  if (cipher_ == nullptr) return ErrorCode::kCryptographicKey;
  for (int tries = 0; prompt != nullptr && tries < kPasswordTries; ++tries) {
    std::optional<Secret> given = prompt->ask_password(path);
    if (!given) break;
    std::string plain;
    const ErrorCode error = unlock(*document, *given, plain);
    if (error == ErrorCode::kInvalidPassword) continue;
    if (error != ErrorCode::kOk) return error;
    password = *std::move(given);
    auto opened = std::make_unique<pugi::xml_document>();
    // The password is right, so it is the file that is damaged.
    const bool is_sound = parse_document(plain, *opened) == ErrorCode::kOk;
    wipe(plain);
    if (!is_sound) return ErrorCode::kFileDecrypt;
    document = std::move(opened);
    return ErrorCode::kOk;
  }
  return ErrorCode::kInvalidPassword;
}

ErrorCode ProfileFile::unlock(const pugi::xml_document& sealed, const Secret& password,
                              std::string& plain) const {
  const pugi::xml_node root = sealed.child(kRoot);
  const auto check = sealed_bytes(root.child(kCheck));
  const auto content = sealed_bytes(root.child(kContent));
  if (!check || !content) return ErrorCode::kFileDecrypt;
  std::string check_text;
  if (const ErrorCode error = cipher_->decrypt(*check, password, check_text); error != ErrorCode::kOk) {
    return error;
  }
  if (check_text != kProfileCheckText) return ErrorCode::kInvalidPassword;
  const ErrorCode error = cipher_->decrypt(*content, password, plain);
  return error == ErrorCode::kInvalidPassword ? ErrorCode::kFileDecrypt : error;
}

ErrorCode ProfileFile::seal(const std::string& plain, std::string& content) const {
  if (cipher_ == nullptr) return ErrorCode::kCryptographicKey;
  std::string check;
  std::string sealed;
  if (const ErrorCode error = cipher_->encrypt(kProfileCheckText, password_, check);
      error != ErrorCode::kOk) {
    return error;
  }
  if (const ErrorCode error = cipher_->encrypt(plain, password_, sealed); error != ErrorCode::kOk)
    return error;
  pugi::xml_document document;
  pugi::xml_node root = prepare(document, true);
  root.append_child(kCheck).text().set(base64_encode(check).c_str());
  root.append_child(kContent).text().set(base64_encode(sealed).c_str());
  content = document_text(document);
  return ErrorCode::kOk;
}

ErrorCode ProfileFile::save(const std::string& path, const profile::Settings& settings) {
  pugi::xml_node root = prepare(*document_, false);
  profile::write_settings(settings, root);
  std::string content = document_text(*document_);
  if (is_protected()) {
    std::string plain = std::move(content);
    const ErrorCode error = seal(plain, content);
    wipe(plain);
    if (error != ErrorCode::kOk) return error;
  }
  const std::string backup = holds_no_profile(path) ? path + ".bak" : std::string();
  platform::FileStatus status = platform::create_folders(platform::parent_folder(path));
  platform::ReplacingFile file;
  if (status == platform::FileStatus::kOk) status = file.create(path);
  if (status == platform::FileStatus::kOk) status = file.write(std::as_bytes(std::span(content)));
  if (status == platform::FileStatus::kOk) status = file.commit(backup);
  return file_error(status, ErrorCode::kFileWrite);
}

}  // namespace rowvane
