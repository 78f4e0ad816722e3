// What texts become in a Number field by the generic signs, whichever way they come in: the tests of each way
// hold it against this list.
#pragma once

#include <array>
#include <string>

namespace rowvane {

struct TypedText {
  const char* text;
  const char* number;  // empty: the text is refused
};

inline constexpr std::array kTypedTexts = {
    TypedText{"12.5", "12.5"},
    TypedText{" -1,234 ", "-1234"},
    TypedText{"1e3", "1000"},
    TypedText{"12.5%", "0.125"},
    TypedText{"$5", "5"},
    TypedText{"(4)", "-4"},
    TypedText{"3 1/2", "3.5"},
    TypedText{"2024-02-29", "45351"},
    TypedText{"2024-02-29T18:00:00", "45351.75"},
    TypedText{"29 Feb 2024 6 PM", "45351.75"},
    TypedText{"12:00", "0.5"},
    TypedText{"36:00", "1.5"},
    TypedText{"#DATA!", "#DATA!"},
    TypedText{"00501", "501"},
    TypedText{"2024-02-30", ""},
    TypedText{"1,5", ""},
    TypedText{"5 kg", ""},
    TypedText{" ", ""},
    TypedText{"#DATE!", ""},
};

}  // namespace rowvane
