#include "crypto/protection.h"

#include "platform/utf8.h"

namespace rowvane {

Check check_new_password(const Secret& password, const Secret& repeated) {
  if (count_characters(password.view()) < kMinPasswordCharacters) return MessageId::kPasswordTooShort;
  return password == repeated ? Check() : Check(MessageId::kPasswordsDiffer);
}

Check check_protection(const ProtectionSettings& settings) {
  Check check = check_new_password(settings.password, settings.repeated);
  if (check.passes() && settings.read_only_open) check.question = MessageId::kReadOnlyOpenQuestion;
  return check;
}

Protection make_protection(ProtectionSettings settings) {
  return {std::make_shared<const Secret>(std::move(settings.password)), settings.algorithm,
          settings.read_only_open};
}

Check check_other_format(bool is_protected, bool record_set) {
  if (!is_protected) return {};
  return record_set ? Check::noting(MessageId::kRecordsNotProtected)
                    : Check::asking(MessageId::kUseNativeFormat);
}

}  // namespace rowvane
