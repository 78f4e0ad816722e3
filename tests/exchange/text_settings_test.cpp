#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "core/messages/messages.h"
#include "exchange/text/saved_text_settings.h"
#include "exchange/text/text_settings_dialog.h"

namespace rowvane {
namespace {

using testing::ElementsAre;

TEST(TextCodePages, RowsAndEncodingsBelongTogether) {
  EXPECT_EQ(code_page_of(TextFileSettings::kFirstCodePage), 0U);
  EXPECT_EQ(code_page_of(22), 1252U);
  EXPECT_EQ(code_page_of(kLastEncoding), 28605U);
  EXPECT_EQ(kTextCodePages[19].list_text, "ANSI Western European");
  for (int encoding = 0; encoding < 256; ++encoding) {
    const auto value = static_cast<uint8_t>(encoding);
    const bool listed = value >= TextFileSettings::kFirstCodePage && value <= kLastEncoding;
    if (listed) {
      EXPECT_EQ(encoding_of_code_page(code_page_of(value)), value);
    } else {
      EXPECT_EQ(code_page_of(value), 0U);
    }
  }
  EXPECT_EQ(encoding_of_code_page(65001), std::nullopt);
}

TEST(TextFileSettings, RefusesWhatNoFileCanHave) {
  const auto check = [](auto change) {
    TextFileSettings settings;
    change(settings);
    return check_text_settings(settings).refusal.text();
  };
  EXPECT_EQ(check([](auto&) {}), "");
  EXPECT_NE(check([](auto& s) { s.encoding = 0; }), "");
  EXPECT_NE(check([](auto& s) { s.encoding = kLastEncoding + 1; }), "");
  EXPECT_EQ(check([](auto& s) { s.encoding = kLastEncoding; }), "");
  EXPECT_NE(check([](auto& s) { s.separator = '\n'; }), "");
  EXPECT_NE(check([](auto& s) { s.quoting_symbol = '\r'; }), "");
  EXPECT_NE(check([](auto& s) { s.separator = s.quoting_symbol; }), "");
  // A byte of a code page, but half a character in UTF-8.
  EXPECT_NE(check([](auto& s) { s.separator = 0xA7; }), "");
  EXPECT_EQ(check([](auto& s) { s.separator = 0xA7, s.encoding = 22; }), "");
  // What is not used may be anything.
  EXPECT_EQ(check([](auto& s) { s.separator = 0, s.flags &= ~TextFileSettings::kSeparated; }), "");
  EXPECT_EQ(check([](auto& s) { s.quoting_symbol = ',', s.flags &= ~TextFileSettings::kQuoting; }), "");
  EXPECT_EQ(check([](auto& s) { s.separator = 0, s.fixed_widths_on = 1; }), "");
}

TEST(TextSettingsControls, ShowTheDefaultsOfTheDialogs) {
  EXPECT_EQ(show_text_settings(TextFileSettings()), TextSettingsControls());
  EXPECT_EQ(read_text_settings(TextSettingsControls(), TextFileSettings()), TextFileSettings());
}

TEST(TextSettingsControls, SeparatorsMapBothWays) {
  const std::pair<int, char> listed[] = {{kCommaSeparator, ','}, {kTabSeparator, '\t'},
                                         {kPointSeparator, '.'}, {kSemicolonSeparator, ';'},
                                         {kSpaceSeparator, ' '}, {kOtherSeparator, '|'}};
  for (const auto& [choice, separator] : listed) {
    TextFileSettings settings;
    settings.separator = static_cast<uint8_t>(separator);
    const TextSettingsControls controls = show_text_settings(settings);
    EXPECT_EQ(controls.separator, choice);
    EXPECT_EQ(controls.other_separator, choice == kOtherSeparator ? "|" : "");
    TextFileSettings before;
    before.flags = 0;
    EXPECT_EQ(read_text_settings(controls, before), settings);
  }
}

TEST(TextSettingsControls, NoSeparatorKeepsTheStoredOne) {
  TextFileSettings settings;
  settings.separator = ';';
  settings.flags = TextFileSettings::kQuoting;
  const TextSettingsControls controls = show_text_settings(settings);
  EXPECT_EQ(controls.separator, kNoSeparator);
  EXPECT_EQ(read_text_settings(controls, settings), settings);
}

TEST(TextSettingsControls, EncodingsMapBothWays) {
  for (uint8_t encoding = TextFileSettings::kUtf8; encoding <= kLastEncoding; ++encoding) {
    TextFileSettings settings;
    settings.encoding = encoding;
    EXPECT_EQ(read_text_settings(show_text_settings(settings), TextFileSettings()), settings);
  }
  TextSettingsControls controls;
  controls.encoding = kNothingSelected;
  EXPECT_EQ(read_text_settings(controls, {}).encoding, TextFileSettings::kUtf8);
  controls.encoding = kCodePageEncoding;
  EXPECT_EQ(read_text_settings(controls, {}).encoding, TextFileSettings::kFirstCodePage);
  controls.code_page = 19;
  EXPECT_EQ(read_text_settings(controls, {}).encoding, 22);
}

TEST(TextSettingsControls, ReadingKeepsWhatTheDialogDoesNotShow) {
  TextFileSettings before;
  before.column_options[7] = TextFileSettings::kLongText | TextFileSettings::kParseDates;
  before.fixed_widths[0] = 4;
  before.quoting_symbol = '\'';
  TextSettingsControls controls;
  controls.quoting = false;
  controls.quoting_symbol.clear();
  controls.convert_dates = true;
  controls.analyze = false;
  controls.field_names = false;
  EXPECT_EQ(check_text_settings_controls(controls), "");
  const TextFileSettings after = read_text_settings(controls, before);
  EXPECT_EQ(after.column_options, before.column_options);
  EXPECT_EQ(after.fixed_widths, before.fixed_widths);
  EXPECT_EQ(after.quoting_symbol, '\'');
  EXPECT_EQ(after.flags, TextFileSettings::kSeparated);
  EXPECT_EQ(after.options, TextFileSettings::kConvertDates);
}

TEST(TextSettingsControls, QuotingSymbolIsTheFirstByte) {
  TextSettingsControls controls;
  controls.quoting_symbol = "\xC3\xA9";
  EXPECT_EQ(read_text_settings(controls, {}).quoting_symbol, 0xC3);
}

TEST(TextSettingsControls, WrongEntriesKeepTheDialogOpen) {
  const auto check = [](auto change) {
    TextSettingsControls controls;
    change(controls);
    return check_text_settings_controls(controls).refusal.text();
  };
  EXPECT_EQ(check([](auto&) {}), "");
  EXPECT_NE(check([](auto& c) { c.separator = 7; }), "");
  EXPECT_NE(check([](auto& c) { c.separator = kNothingSelected; }), "");
  EXPECT_NE(check([](auto& c) { c.code_page = 36; }), "");
  EXPECT_NE(check([](auto& c) { c.separator = kOtherSeparator; }), "");
  EXPECT_NE(check([](auto& c) { c.separator = kOtherSeparator, c.other_separator = "||"; }), "");
  EXPECT_NE(check([](auto& c) { c.separator = kOtherSeparator, c.other_separator = "\xC2\xA7"; }), "");
  EXPECT_NE(check([](auto& c) { c.separator = kOtherSeparator, c.other_separator = "\""; }), "");
  EXPECT_NE(check([](auto& c) { c.quoting_symbol = ""; }), "");
  EXPECT_NE(check([](auto& c) { c.quoting_symbol = "''"; }), "");
  EXPECT_EQ(check([](auto& c) { c.fixed_widths = true, c.widths = "3;x"; }), kWidthsHint);
  EXPECT_EQ(check([](auto& c) { c.fixed_widths = false, c.widths = "3;x"; }), "");
}

TEST(TextWidths, AreReadAndShown) {
  EXPECT_THAT(parse_widths(" 10,8;  15 ,").value(), ElementsAre(10, 8, 15));
  EXPECT_THAT(parse_widths("007").value(), ElementsAre(7));
  EXPECT_THAT(parse_widths("65535").value(), ElementsAre(65535));
  EXPECT_THAT(parse_widths("4 0").value(), ElementsAre(4, 0));
  EXPECT_TRUE(parse_widths("").value().empty());
  for (const char* wrong : {"10-8", "3x", "\t3", "65536", "99999999999999999999", "4 0 3", "1.5"}) {
    EXPECT_FALSE(parse_widths(wrong).has_value()) << wrong;
  }
  TextSettingsControls controls;
  controls.fixed_widths = true;
  controls.widths = "10 8; 15";
  TextFileSettings before;
  before.fixed_widths.fill(9);
  const TextFileSettings settings = read_text_settings(controls, before);
  EXPECT_TRUE(settings.has_fixed_widths());
  EXPECT_EQ(show_widths(settings), "10,8,15");
  EXPECT_EQ(settings.fixed_widths[3], 0);
  EXPECT_EQ(settings.fixed_widths.back(), 0);
}

TEST(TextWidths, HaveLimits) {
  std::string most;
  for (size_t i = 0; i < kMaxImportColumns; ++i) most += "1,";
  EXPECT_EQ(parse_widths(most).value().size(), kMaxImportColumns);
  EXPECT_FALSE(parse_widths(most + "1").has_value());
  EXPECT_TRUE(parse_widths(std::string(kMaxWidthsText, ' ')).has_value());
  EXPECT_FALSE(parse_widths(std::string(kMaxWidthsText + 1, ' ')).has_value());
}

TEST(TextQuestions, AreAskedWhenTheyApply) {
  TextFileSettings settings;
  EXPECT_EQ(check_date_conversion(settings), Check());
  settings.column_options[0] = TextFileSettings::kParseDates;
  EXPECT_EQ(check_date_conversion(settings), Check());
  settings.options |= TextFileSettings::kConvertDates;
  EXPECT_EQ(check_date_conversion(settings).question, texts::kParseDatesSlow);
  EXPECT_EQ(check_auto_fit(false, false), Check());
  EXPECT_EQ(check_auto_fit(true, false).question, MessageId::kAutoFitSlow);
  EXPECT_EQ(check_auto_fit(false, true).question, MessageId::kAutoFitSlow);
}

TEST(SavedTextSettings, NewestFirstAndTheNinthDropsTheOldest) {
  SavedTextSettings saved;
  EXPECT_THAT(saved.menu_texts(), ElementsAre("(no saved settings)"));
  EXPECT_EQ(saved.proposed_name(), "Settings 1.");
  for (uint8_t i = 1; i <= 9; ++i) {
    TextFileSettings settings;
    settings.column_options[3] = i;
    saved.add(saved.proposed_name(), settings);
  }
  ASSERT_EQ(saved.entries().size(), SavedTextSettings::kMaxEntries);
  EXPECT_EQ(saved.proposed_name(), "Settings 9.");
  EXPECT_EQ(saved.menu_texts().front(), "Settings 9.\t(Update: +SHIFT)");
  EXPECT_EQ(saved.entries().back().name, "Settings 2.");
  EXPECT_EQ(saved.load(0)->column_options[3], 9);
  EXPECT_EQ(saved.load(7)->column_options[3], 2);
  EXPECT_EQ(saved.load(8), nullptr);
}

TEST(SavedTextSettings, OverwritingKeepsNameAndPlace) {
  SavedTextSettings saved;
  saved.add("old", {});
  saved.add("new", {});
  TextFileSettings settings;
  settings.separator = ';';
  EXPECT_TRUE(saved.overwrite(1, settings));
  EXPECT_EQ(saved.entries()[1], (SavedTextSetting{"old", settings}));
  EXPECT_EQ(*saved.load(0), TextFileSettings());
  EXPECT_FALSE(saved.overwrite(2, settings));
}

TEST(SavedTextSettings, ErasingClosesTheGap) {
  SavedTextSettings saved;
  for (const char* name : {"a", "b", "c"}) saved.add(name, TextFileSettings());
  EXPECT_FALSE(saved.erase(3));
  EXPECT_TRUE(saved.erase(1));
  ASSERT_EQ(saved.entries().size(), 2u);
  EXPECT_EQ(saved.entries()[1].name, "a");
}

TEST(SavedTextSettings, NamesAndProfilesAreChecked) {
  EXPECT_EQ(SavedTextSettings::check_name("Settings 1."), "");
  EXPECT_NE(SavedTextSettings::check_name("  "), "");
  EXPECT_NE(SavedTextSettings::check_name("a\tb"), "");
  EXPECT_NE(SavedTextSettings::check_name("\xFF"), "");
  std::vector<SavedTextSetting> many(12);
  many[7].name = "last";
  EXPECT_EQ(SavedTextSettings(many).entries().back().name, "last");
}

}  // namespace
}  // namespace rowvane
