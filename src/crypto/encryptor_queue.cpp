#include "crypto/encryptor_queue.h"

#include <system_error>

namespace rowvane {

EncryptorQueue::EncryptorQueue(const Protection& protection, size_t count, int ahead)
    : protection_(protection), left_(count) {
  for (int i = 0; i < ahead; ++i) make_next();
}

void EncryptorQueue::make_next() {
  if (left_ == 0) return;
  --left_;
  const auto make = [this] {
    Made made;
    made.error = made.encryptor.start(protection_);
    return made;
  };
  try {
    waiting_.push_back(std::async(std::launch::async, make));
  } catch (const std::system_error&) {  // no more threads
    waiting_.push_back(std::async(std::launch::deferred, make));
  }
}

ErrorCode EncryptorQueue::take(MemberEncryptor& encryptor) {
  if (waiting_.empty()) return encryptor.start(protection_);
  Made made = waiting_.front().get();
  waiting_.pop_front();
  make_next();
  encryptor = std::move(made.encryptor);
  return made.error;
}

}  // namespace rowvane
