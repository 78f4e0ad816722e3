#include "text/regular_expression.h"

#include <array>
#include <new>

#include <pcre2.h>

namespace rowvane {
namespace {

constexpr size_t kFirstStackBytes = size_t{32} << 10;
constexpr size_t kMostStackBytes = size_t{16} << 20;

// The one place that knows what the library calls the options of an expression.
uint32_t library_options(uint32_t options) {
  uint32_t theirs = PCRE2_NEVER_BACKSLASH_C;
  if ((options & regex::kCaseless) != 0) theirs |= PCRE2_CASELESS;
  if ((options & regex::kMultiline) != 0) theirs |= PCRE2_MULTILINE;
  if ((options & regex::kUtf8) != 0) theirs |= PCRE2_UTF | PCRE2_MATCH_INVALID_UTF;
  return theirs;
}

// The same for the options of matching.
uint32_t library_match_options(uint32_t options) {
  return (options & regex::kNotEmpty) != 0 ? PCRE2_NOTEMPTY : 0;
}

std::string error_message(int code) {
  std::array<PCRE2_UCHAR, 256> text{};
  pcre2_get_error_message(code, text.data(), text.size());
  return reinterpret_cast<const char*>(text.data());
}

PCRE2_SPTR bytes_of(std::string_view text) {
  return reinterpret_cast<PCRE2_SPTR>(text.data() != nullptr ? text.data() : "");
}

template <auto Free>
struct FreeBy {
  template <typename T>
  void operator()(T* object) const {
    Free(object);
  }
};

template <typename T, auto Free>
using Handle = std::unique_ptr<T, FreeBy<Free>>;
using CompileContext = Handle<pcre2_compile_context, pcre2_compile_context_free>;
using MatchContext = Handle<pcre2_match_context, pcre2_match_context_free>;
using MatchData = Handle<pcre2_match_data, pcre2_match_data_free>;
using JitStack = Handle<pcre2_jit_stack, pcre2_jit_stack_free>;

// The library answers null for want of memory.
template <typename T>
T* not_null(T* made) {
  if (made == nullptr) throw std::bad_alloc();
  return made;
}

}  // namespace

std::string regular_expression_message(std::string_view error) {
  return "Regular expression error:\n" + std::string(error);
}

// ---- the expression

struct RegularExpression::Code {
  Handle<pcre2_code, pcre2_code_free> handle;
  bool is_native = false;  // translated to machine code

  uint32_t groups() const {
    uint32_t count = 0;
    pcre2_pattern_info(handle.get(), PCRE2_INFO_CAPTURECOUNT, &count);
    return count;
  }
};

RegularExpression::RegularExpression(std::string_view pattern, uint32_t options) {
  const CompileContext context(not_null(pcre2_compile_context_create(nullptr)));
  pcre2_set_newline(context.get(), PCRE2_NEWLINE_ANYCRLF);
  int error = 0;
  pcre2_code* compiled = pcre2_compile(bytes_of(pattern), pattern.size(), library_options(options), &error,
                                       &error_offset_, context.get());
  if (compiled == nullptr) {
    error_ = error_message(error);
    return;
  }
  error_offset_ = 0;
  auto code = std::make_unique<Code>();
  code->handle.reset(compiled);
  code->is_native = pcre2_jit_compile(compiled, PCRE2_JIT_COMPLETE) == 0;
  code_ = std::move(code);
}

RegularExpression::~RegularExpression() = default;
RegularExpression::RegularExpression(RegularExpression&&) noexcept = default;
RegularExpression& RegularExpression::operator=(RegularExpression&&) noexcept = default;

// ---- matching

struct RegexMatcher::State {
  const RegularExpression::Code& code;
  uint32_t options;
  size_t groups;  // that are kept
  MatchContext context;
  MatchData data;
  JitStack stack;
  bool found = false;

  State(const RegularExpression::Code& expression, uint32_t match_options, bool captures)
      : code(expression),
        options(library_match_options(match_options)),
        groups(captures ? expression.groups() : 0),
        context(not_null(pcre2_match_context_create(nullptr))),
        data(not_null(pcre2_match_data_create(static_cast<uint32_t>(groups) + 1, nullptr))) {
    pcre2_set_match_limit(context.get(), kMaxMatchSteps);
    pcre2_set_heap_limit(context.get(), kMaxMatchKilobytes);
    if (!code.is_native) return;
    stack.reset(not_null(pcre2_jit_stack_create(kFirstStackBytes, kMostStackBytes, nullptr)));
    pcre2_jit_stack_assign(context.get(), nullptr, stack.get());
  }

  // Number of kept groups plus 1, 0 where they don't fit; negative: no match, or why it failed.
  int match(std::string_view text, size_t from) {
    const auto run = code.is_native ? pcre2_jit_match : pcre2_match;
    return run(code.handle.get(), bytes_of(text), text.size(), from, options, data.get(), context.get());
  }

  std::optional<TextSpan> span(size_t number) const {
    const size_t* ends = pcre2_get_ovector_pointer(data.get()) + 2 * number;
    if (ends[0] == PCRE2_UNSET || ends[1] < ends[0]) return std::nullopt;
    return TextSpan{ends[0], ends[1]};
  }
};

RegexMatcher::RegexMatcher(const RegularExpression& expression, uint32_t options, bool captures) {
  if (expression.code_ != nullptr) state_ = std::make_unique<State>(*expression.code_, options, captures);
}

RegexMatcher::~RegexMatcher() = default;
RegexMatcher::RegexMatcher(RegexMatcher&&) noexcept = default;
RegexMatcher& RegexMatcher::operator=(RegexMatcher&&) noexcept = default;

std::optional<TextSpan> RegexMatcher::find(std::string_view text, size_t from) {
  if (!error_.empty()) error_.clear();
  if (state_ == nullptr || from > text.size()) return std::nullopt;
  const int outcome = state_->match(text, from);
  state_->found = outcome >= 0;
  if (state_->found) return state_->span(0);
  if (outcome != PCRE2_ERROR_NOMATCH) error_ = error_message(outcome);
  return std::nullopt;
}

size_t RegexMatcher::capture_count() const {
  return state_ == nullptr ? 0 : state_->groups;
}

std::optional<TextSpan> RegexMatcher::capture(size_t number) const {
  if (number > capture_count() || state_ == nullptr || !state_->found) return std::nullopt;
  return state_->span(number);
}

std::optional<size_t> RegexMatcher::capture_named(const std::string& name) const {
  if (capture_count() == 0) return std::nullopt;
  const int number = pcre2_substring_number_from_name(state_->code.handle.get(), bytes_of(name));
  if (number <= 0) return std::nullopt;
  return static_cast<size_t>(number);
}

}  // namespace rowvane
