// The file of the settings profile: an XML document in UTF-8, written in one step, encrypted if the user
// wants.
//
// doc/profile.md describes it. A protected file holds, as base64, a check text and the document of a plain
// one, both encrypted.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "app/profile/profile_cipher.h"
#include "app/profile/profile_settings.h"
#include "core/messages/error_code.h"

namespace pugi {
class xml_document;
}

namespace rowvane {

inline constexpr std::string_view kProfileFileName = "settings.xml";
inline constexpr std::string_view kProfileCheckText = "Profile File Password check";

// Remembers the document that was loaded, so that elements and attributes that this version does not know are
// written back, and the password, so that a protected profile stays one.
class ProfileFile {
 public:
  // CIPHER, which must outlive this, serves protected profiles; without one they can't be loaded or saved.
  explicit ProfileFile(ProfileCipher* cipher = nullptr);
  ~ProfileFile();
  ProfileFile(const ProfileFile&) = delete;
  ProfileFile& operator=(const ProfileFile&) = delete;

  struct LoadResult {
    ErrorCode error = ErrorCode::kOk;
    std::vector<std::string> bad_values;  // "Element/Attribute" of those that have their defaults instead
  };

  // Reads PATH into SETTINGS, which are the defaults where the file says nothing. PROMPT is asked for the
  // password of a protected file, up to kPasswordTries times; without it, or when the user gives up, the
  // answer is kInvalidPassword. After an error SETTINGS and this object are as they were. Errors: kFileOpen,
  // kFileRead and their kin; kXmlUtf8Only; kXmlElement for a file that is no profile; kFileDecrypt for a
  // protected one that is damaged, kCryptographicKey.
  LoadResult load(const std::string& path, PasswordPrompt* prompt, profile::Settings& settings);

  // Replaces PATH in one step, making its folder when it is missing. A file there that is no readable profile
  // is kept as PATH + ".bak". Errors: kFileCreate, kFileWrite and their kin, kFileEncrypt, kCryptographicKey;
  // the former file is whole then.
  ErrorCode save(const std::string& path, const profile::Settings& settings);

  bool is_protected() const { return !password_.empty(); }
  // For the next save; empty: stored plain. The rules are those of ProfileProtection.
  void set_password(Secret password) { password_ = std::move(password); }

  static constexpr int kPasswordTries = 3;

 private:
  using Document = std::unique_ptr<pugi::xml_document>;

  ErrorCode parse(const std::string& content, const std::string& path, PasswordPrompt* prompt,
                  Document& document, Secret& password) const;
  ErrorCode unlock(const pugi::xml_document& sealed, const Secret& password, std::string& plain) const;
  ErrorCode seal(const std::string& plain, std::string& content) const;

  ProfileCipher* cipher_;
  Document document_;
  Secret password_;
};

}  // namespace rowvane
