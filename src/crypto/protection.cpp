#include "crypto/protection.h"

#include "core/utf8.h"

namespace rowvane {

PasswordCheck check_new_password(const Secret& password, const Secret& repeated) {
  PasswordCheck check;
  if (count_characters(password.view()) < kMinPasswordCharacters) {
    check.refusal = MessageId::kPasswordTooShort;
  } else if (!(password == repeated)) {
    check.refusal = MessageId::kPasswordsDiffer;
  }
  return check;
}

PasswordCheck check_protection(const ProtectionSettings& settings) {
  PasswordCheck check = check_new_password(settings.password, settings.repeated);
  if (!check.refusal && settings.read_only_open) check.question = MessageId::kReadOnlyOpenQuestion;
  return check;
}

Protection make_protection(ProtectionSettings settings) {
  return {std::make_shared<const Secret>(std::move(settings.password)), settings.algorithm,
          settings.read_only_open};
}

std::optional<MessageId> check_target_format(bool is_protected, FileFormat target, bool record_set) {
  if (!is_protected || target == FileFormat::kNative) return std::nullopt;
  return record_set ? MessageId::kRecordsNotProtected : MessageId::kUseNativeFormat;
}

}  // namespace rowvane
