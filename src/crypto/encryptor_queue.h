// Encryptors for the members of a file, made ahead of their use.
#pragma once

#include <deque>
#include <future>

#include "crypto/member_cipher.h"

namespace rowvane {

// Deriving a key takes longer than packing a small member, so threads do it beside other work. Belongs to one
// thread.
class EncryptorQueue {
 public:
  // COUNT encryptors for PROTECTION, which must outlive the queue; up to AHEAD of them wait to be taken.
  EncryptorQueue(const Protection& protection, size_t count, int ahead);

  // The next one. Its errors are those of MemberEncryptor::start.
  ErrorCode take(MemberEncryptor& encryptor);

 private:
  struct Made {
    ErrorCode error = ErrorCode::kOk;
    MemberEncryptor encryptor;
  };

  void make_next();

  const Protection& protection_;
  size_t left_;
  std::deque<std::future<Made>> waiting_;
};

}  // namespace rowvane
