// Long texts and files on their way into a protected database file.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "core/table/content.h"
#include "crypto/member_cipher.h"
#include "zip/zip_format.h"

namespace rowvane {

// A content that becomes a member of its own.
struct PendingContent {
  std::string name;  // of the member; of a long text only the folder, until its beginning is known
  Content content;
  bool is_long_text = false;
};

// A content as its member holds it.
struct EncryptedContent {
  ErrorCode error = ErrorCode::kOk;  // of reading, packing or encrypting it
  std::string name;
  bool deflated = false;
  EncryptionRecord record;
};

struct ContentPacking {
  int level = 1;  // of deflate
  std::function<ZipMethod(std::string_view file_name)> method_for;
};

// Takes the next member; false to stop.
using TakeEncrypted = std::function<bool(size_t index, EncryptedContent& member, std::string_view bytes)>;

// Packs and encrypts CONTENTS on THREADS threads and hands them to TAKE in their order, on the calling
// thread; those that can't be had come with their error. What lies encrypted in an archive is encrypted anew
// without being inflated. Large contents are made one at a time, so that memory holds few of them.
// kOutOfMemory.
ErrorCode encrypt_contents(const std::vector<PendingContent>& contents, const Protection& protection,
                           const ContentPacking& packing, int threads, const TakeEncrypted& take);

// The name that PENDING's member gets. A long text that lies in an archive need not be read for it; one that
// can't be read is called a plain text.
ErrorCode name_content(const PendingContent& pending, std::string& name);

// True for what makes a member of an archive unreadable for good.
bool is_damage(ErrorCode error);

}  // namespace rowvane
