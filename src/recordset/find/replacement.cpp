#include "recordset/find/replacement.h"

namespace rowvane {
namespace {

bool is_digit(std::string_view text, size_t position) {
  return position < text.size() && text[position] >= '0' && text[position] <= '9';
}

int digit(char c) {
  return c - '0';
}

}  // namespace

Replacement::Replacement(std::string_view text, const PreparedPattern& pattern) {
  if (pattern.pattern().regular_expression) {
    read(text, pattern.group_count());
  } else {
    pieces_.push_back({std::string(text), kLiteral});
  }
}

void Replacement::add_literal(char c) {
  if (pieces_.empty() || pieces_.back().group != kLiteral) pieces_.emplace_back();
  pieces_.back().text += c;
}

void Replacement::read(std::string_view text, size_t groups) {
  for (size_t i = 0; i < text.size();) {
    const char c = text[i];
    if ((c == '$' || c == '\\') && read_group(text, i, groups)) continue;
    const char next = i + 1 < text.size() ? text[i + 1] : '\0';
    const std::string_view written = "nrt";
    const size_t control = c == '\\' && next != '\0' ? written.find(next) : std::string_view::npos;
    const bool is_doubled = (c == '$' || c == '\\') && next == c;
    add_literal(control == std::string_view::npos ? c : "\n\r\t"[control]);
    i += is_doubled || control != std::string_view::npos ? 2 : 1;
  }
}

// Reads a group at POSITION, where its "$" or "\" stands, and moves behind it. False where none is named.
bool Replacement::read_group(std::string_view text, size_t& position, size_t groups) {
  const bool in_braces = text[position] == '$' && text.substr(position + 1).starts_with('{');
  size_t end = position + (in_braces ? 2 : 1);
  if (!is_digit(text, end)) return false;
  int number = digit(text[end++]);
  if (is_digit(text, end)) {
    const int longer = 10 * number + digit(text[end]);
    if (in_braces || static_cast<size_t>(longer) <= groups) {
      number = longer;
      ++end;
    }
  }
  if (in_braces && !text.substr(end).starts_with('}')) return false;
  if (static_cast<size_t>(number) > groups && problem_.empty()) {
    problem_ = "The replacement names group " + std::to_string(number) + "; the expression has " +
               std::to_string(groups) + ".";
  }
  pieces_.push_back({{}, number});
  position = end + (in_braces ? 1 : 0);
  return true;
}

void Replacement::append(std::string_view text, const TextMatcher& matcher, std::string& out) const {
  for (const Piece& piece : pieces_) {
    if (piece.group == kLiteral) {
      out += piece.text;
    } else if (const auto span = matcher.group(static_cast<size_t>(piece.group))) {
      out += text.substr(span->begin, span->size());
    }
  }
}

}  // namespace rowvane
