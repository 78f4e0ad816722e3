#include "exchange/text/text_stream.h"

#include <new>
#include <thread>

#include "exchange/text/text_pipeline.h"
#include "platform/code_pages.h"
#include "platform/pipe.h"
#include "platform/utf8.h"

namespace rowvane {
namespace {

constexpr size_t kPipeBytes = 32'768;
constexpr size_t kReadBytes = 32'768;
constexpr size_t kUtf16BlockBytes = 16'384;

// The reading side: moves the bytes of the source into the pipe.
class PipeFeeder {
 public:
  PipeFeeder(TextSource& source, const TextLoadPlan& plan, platform::BytePipe& pipe, Progress& progress)
      : source_(source),
        utf16_(plan.encoding == TextFileSettings::kUtf16),
        plan_(plan),
        pipe_(pipe),
        progress_(progress) {}

  // kOk also when the parser wanted no more.
  bool run() {
    std::string block(kReadBytes, '\0');
    size_t kept = read_start(block.data());
    uint64_t done = kept;
    for (;;) {
      const size_t room = (utf16_ ? kUtf16BlockBytes : kReadBytes) - kept;
      const size_t count = source_.read({block.data() + kept, room});
      done += count;
      const std::string_view bytes(block.data(), kept + count);
      const bool last = count == 0;
      const size_t taken = utf16_ ? convert(bytes, !last) : bytes.size();
      const std::string_view out = utf16_ ? std::string_view(utf8_) : bytes;
      if (pipe_.write(std::as_bytes(std::span(out))) < out.size()) return !progress_.cancelled();
      if (last) return true;
      kept = bytes.size() - taken;
      std::copy(bytes.end() - static_cast<std::ptrdiff_t>(kept), bytes.end(), block.begin());
      progress_.report(done, source_.size());
      if (progress_.cancelled()) return false;
    }
  }

 private:
  // Reads the first four bytes and drops a byte-order mark; answers the number of bytes left in BLOCK.
  size_t read_start(char* block) {
    size_t count = 0;
    while (count < 4) {
      const size_t more = source_.read({block + count, 4 - count});
      if (more == 0) break;
      count += more;
    }
    const std::string_view start(block, count);
    size_t mark = 0;
    if (plan_.encoding == TextFileSettings::kUtf8 && start.starts_with(kByteOrderMark))
      mark = kByteOrderMark.size();
    // Text whose mark says big-endian is read as little-endian all the same.
    if (utf16_ && (start.starts_with("\xFF\xFE") || start.starts_with("\xFE\xFF"))) mark = 2;
    std::copy(block + mark, block + count, block);
    return count - mark;
  }

  size_t convert(std::string_view bytes, bool more_follows) {
    utf8_.clear();
    return platform::utf16le_to_utf8(bytes, more_follows, utf8_);
  }

  TextSource& source_;
  bool utf16_;
  const TextLoadPlan& plan_;
  platform::BytePipe& pipe_;
  Progress& progress_;
  std::string utf8_;
};

// About the bytes of the text as it is cut into cells.
uint64_t text_bytes(const TextSource& source, const TextLoadPlan& plan) {
  return plan.encoding == TextFileSettings::kUtf16 ? source.size() / 2 : source.size();
}

// One pass over the source.
Outcome run_pass(TextSource& source, const TextLoadPlan& plan, TextLoader& loader, Progress& progress) {
  ErrorCode error = source.rewind();
  platform::BytePipe pipe;
  if (error == ErrorCode::kOk && !pipe.create(kPipeBytes)) error = ErrorCode::kOutOfResources;
  if (error != ErrorCode::kOk) return error;
  ErrorCode parse_error = ErrorCode::kOk;
  std::jthread parser([&] {
    parse_error = load_text_stream(
        loader, plan, [&pipe](std::span<char> buffer) { return pipe.read(std::as_writable_bytes(buffer)); });
    pipe.close_read_end();
  });
  bool completed = false;
  try {
    completed = PipeFeeder(source, plan, pipe, progress).run();
  } catch (const std::bad_alloc&) {
    error = ErrorCode::kOutOfMemory;
  }
  pipe.close_write_end();
  parser.join();
  if (error == ErrorCode::kOk) error = parse_error != ErrorCode::kOk ? parse_error : source.error;
  Outcome outcome = error;
  outcome.cancelled = error == ErrorCode::kOk && !completed;
  return outcome;
}

// The plan that reads the columns COLUMNS as text and leaves the others out.
TextLoadPlan reload_plan(const TextLoadPlan& plan, const std::vector<size_t>& columns) {
  TextLoadPlan reload = plan;
  reload.columns.assign(columns.back() + 1, ColumnPlan{ColumnLoad::kSkip, false});
  reload.further = {ColumnLoad::kSkip, false};
  for (const size_t column : columns) reload.columns[column] = {ColumnLoad::kText, plan.column(column).dates};
  return reload;
}

}  // namespace

TextStreamResult load_text(TextSource& source, const TextLoadPlan& plan, Progress& progress) {
  TextStreamResult result;
  TextLoader loader(plan, text_bytes(source, plan));
  result.outcome() = run_pass(source, plan, loader, progress);
  const std::vector<size_t> columns = loader.columns_to_reload();
  if (result.is_done() && !columns.empty()) {
    const TextLoadPlan again = reload_plan(plan, columns);
    TextLoader second(again, text_bytes(source, again));
    result.outcome() = run_pass(source, again, second, progress);
    loader.take_columns(second, columns);
  }
  if (!result.is_done()) return result;
  result.notices = loader.notices();
  result.data = loader.finish();
  return result;
}

}  // namespace rowvane
