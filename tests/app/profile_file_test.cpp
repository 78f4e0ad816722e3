#include "app/profile/profile_file.h"

#include <filesystem>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "app/profile/engine_options.h"
#include "app/profile/profile_protection.h"
#include "app/profile/sort_settings.h"
#include "app/profile/twofish_profile_cipher.h"
#include "app/profile_test_support.h"
#include "core/messages/messages.h"
#include "core/program_version.h"
#include "platform/temporary_folder.h"

namespace rowvane {
namespace {

using profile::Settings;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

// Gives every setting a value that is none of the defaults.
class ChangeAll {
 public:
  void flag(const char*, bool& value) { value = !value; }
  template <std::integral Number>
  void number(const char*, Number& value, profile::NumberRange range) {
    value = static_cast<Number>(value == range.most ? range.least : range.most);
  }
  void text(const char* name, std::string& value) {
    value = std::string(name) + " \t\r\n<\"&'> \xC3\xA4\xF0\x9F\x98\x80" + std::to_string(++count_);
  }
  template <typename Enum>
  void choice(const char*, Enum& value) {
    value = static_cast<Enum>(names_of(value).size() - 1 - static_cast<size_t>(value));
  }
  void color(const char*, uint32_t& value) { value ^= 0xABCDEF; }
  void words(const char*, std::vector<std::string>& value) { value = {"zip", "x1", "\xC3\xA4"}; }
  void placement(const char*, profile::FramePlacement& value) { value = {2, 3, -1920, -8, 0, 1080}; }
  void content(std::string& value) { value = " first\r\n\tsecond ]]> <b> &amp;\n"; }

  template <typename Group>
  void element(const char*, Group& group) {
    visit_attributes(group, *this);
  }
  template <typename Group>
  void records(const char*, const char*, const char*, size_t, std::vector<Group>& groups) {
    groups.resize(2);
    for (Group& group : groups) visit_attributes(group, *this);
  }
  void list(const char* name, size_t, std::vector<std::string>& entries) {
    for (const char* tail : {"b", "a", "b,7"}) entries.push_back(std::string(name) + tail);
  }
  void list(const char*, size_t, std::vector<RecentFile>& entries) {
    entries = {{"/data/b.rvb", 3}, {"/data/report,2024", 0}, {"/data/a.rvb", 0}, {"/data/x,1", 5}};
  }

 private:
  int count_ = 0;
};

Settings changed_settings() {
  Settings settings;
  ChangeAll change;
  visit_elements(settings, change);
  TextFileSettings& text = settings.text_file_options;
  text.separator = '\t';
  text.flags = TextFileSettings::kQuoting;
  text.quoting_symbol = '#';
  text.encoding = kLastEncoding;
  text.options = TextFileSettings::kConvertDates;
  text.fixed_widths_on = 1;
  text.fixed_widths[0] = 65535;
  text.fixed_widths[1] = 8;
  text.column_options[3] = TextFileSettings::kLongText | TextFileSettings::kParseDates;
  TextFileSettings other;
  other.separator = 0xA3;
  other.column_options.back() = TextFileSettings::kText;
  for (int i = 0; i < 9; ++i) settings.named_text_file_settings.add("set " + std::to_string(i), other);
  return settings;
}

class ProfileFileTest : public testing::Test {
 private:
  platform::TemporaryFolder folder_;

 protected:
  std::string path_ = folder().path("settings.xml");
  PlainCipher cipher_;

  platform::TemporaryFolder& folder() { return folder_; }
  std::string write(std::string_view content) {
    put(path_, content);
    return path_;
  }
  // The settings of a file with CONTENT inside its root.
  ProfileFile::LoadResult load(std::string_view content, Settings& settings) {
    ProfileFile file(&cipher_);
    return file.load(write("<Profile>" + std::string(content) + "</Profile>"), nullptr, settings);
  }
  void protect(const std::string& password) {
    ProfileFile file(&cipher_);
    file.set_password(Secret(password));
    ASSERT_EQ(file.save(path_, changed_settings()), ErrorCode::kOk);
  }
};

TEST_F(ProfileFileTest, EverySettingComesBack) {
  const Settings all = changed_settings();
  ASSERT_EQ(ProfileFile().save(path_, all), ErrorCode::kOk);
  Settings loaded;
  ProfileFile file;
  const auto result = file.load(path_, nullptr, loaded);
  EXPECT_EQ(result.error, ErrorCode::kOk);
  EXPECT_THAT(result.bad_values, IsEmpty());
  EXPECT_TRUE(loaded == all);
  EXPECT_EQ(loaded.scripts[1].text, all.scripts[1].text);
  // Saved again, nothing moves.
  const std::string before = content_of(path_);
  ASSERT_EQ(file.save(path_, loaded), ErrorCode::kOk);
  EXPECT_TRUE(content_of(path_) == before);
}

TEST_F(ProfileFileTest, WritesTheStatedFormats) {
  Settings settings;
  settings.general_options.max_records = 1000;
  settings.check_box_options.playback_ff_step = 30'000'000'000;
  settings.table_font.color = 0x0AFF07;
  settings.application_window.position = {0, 6, 10, -20, 300, 400};
  settings.spellchecker.engine = profile::SpellEngine::kWindows;
  settings.recent_files = {{"a.rvb", 12}};
  ASSERT_EQ(ProfileFile().save(path_, settings), ErrorCode::kOk);
  const std::string text = content_of(path_);
  const std::string start = "<?xml version=\"1.0\" encoding=\"utf-8\"?>\n<Profile version=\"" +
                            std::string(program_version()) + "\" encrypted=\"false\">";
  EXPECT_TRUE(text.starts_with(start)) << text;
  for (const char* part :
       {"MaxRecords=\"1000\"", "PlaybackFFStep=\"30000000000\"", "Color=\"#0AFF07\"",
        "Position=\"0 6 10 -20 300 400\"", "Engine=\"Windows\"", "<RecentFile Value=\"a.rvb,12\" />",
        "ReadOnly=\"false\"", "SortingType=\"ByName\"", "Separator=\",\""}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST_F(ProfileFileTest, ABadValueLeavesTheDefaultForThatAttributeOnly) {
  const std::pair<const char*, const char*> bad[] = {
      {"GeneralOptions", "MaxRecords=\"0\""},
      {"GeneralOptions", "MaxRecords=\"2147483648\""},
      {"GeneralOptions", "MaxRecords=\"99999999999999999999\""},
      {"GeneralOptions", "MaxRecords=\"12x\""},
      {"GeneralOptions", "MaxRecords=\"\""},
      {"GeneralOptions", "UsedProcessorCores=\"17\""},
      {"GeneralOptions", "Backups=\"maybe\""},
      {"GeneralOptions", "NonDeflateFiles=\"zip a/b\""},
      {"GeneralOptions", "Locales=\"a\xFF\""},
      {"CheckBoxOptions", "PlaybackFFStep=\"-1\""},
      {"ApplicationWindow", "Position=\"1 2 3 4 5\""},
      {"ApplicationWindow", "Position=\"1 2 3 4 5 6 7\""},
      {"TableFont", "Color=\"FF0000\""},
      {"TableFont", "Color=\"#FF00G0\""},
      {"ExplorerOptions", "SortingType=\"ByColour\""},
      {"TextFileOptions", "Encoding=\"39\""},
      {"TextFileOptions", "Separator=\"#0\""},
      {"TextFileOptions", "ColumnWidths=\"1,x\""},
      {"TextFileOptions", "ColumnOptions=\"8\""},
      {"TextFileOptions", "ColumnOptions=\"1*16384,1\""},
      {"TextFileOptions", "ColumnOptions=\"1*0\""},
      {"MailSettings", "Port=\"0\""},
  };
  for (const auto& [element, attribute] : bad) {
    Settings settings;
    const std::string name = std::string(attribute).substr(0, std::string(attribute).find('='));
    const auto result = load("<" + std::string(element) + " " + attribute +
                                 "/><ToolbarOptions DarkMode=\" YES \"/><Python Folder=\"p\"/>",
                             settings);
    if (std::string(attribute).find('\xFF') != std::string::npos) {
      EXPECT_EQ(result.error, ErrorCode::kXmlUtf8Only);
      continue;
    }
    EXPECT_EQ(result.error, ErrorCode::kOk) << attribute;
    EXPECT_THAT(result.bad_values, ElementsAre(std::string(element) + "/" + name)) << attribute;
    Settings expected;
    expected.toolbar_options.dark_mode = true;
    expected.python.folder = "p";
    EXPECT_TRUE(settings == expected) << attribute;
  }
}

TEST_F(ProfileFileTest, ListsAreCutAndTheirBadEntriesLeftOut) {
  std::string lists;
  for (int i = 0; i < 20; ++i) lists += "<RecentFile Value=\"f" + std::to_string(i) + ",x\"/>";
  lists += "<RecentFile/><UserNumericFormat Value=\"\"/><UserNumericFormat Value=\"0.00\"/>";
  Settings settings;
  const auto result = load("<RecentLists>" + lists +
                               "</RecentLists><NamedTextFileSettings><TextFileOptions Name=\" \"/>"
                               "<TextFileOptions Name=\"old\" Separator=\";\" Encoding=\"x\"/>"
                               "</NamedTextFileSettings>",
                           settings);
  EXPECT_EQ(settings.recent_files.size(), 16U);
  EXPECT_EQ(settings.recent_files.back(), (RecentFile{"f15,x", 0}));
  EXPECT_THAT(settings.user_numeric_formats, ElementsAre("0.00"));
  ASSERT_EQ(settings.named_text_file_settings.entries().size(), 1U);
  EXPECT_EQ(settings.named_text_file_settings.load(0)->separator, ';');
  EXPECT_THAT(result.bad_values,
              ElementsAre("UserNumericFormat/Value", "TextFileOptions/Name", "TextFileOptions/Encoding"));
}

TEST_F(ProfileFileTest, KeepsWhatItDoesNotKnow) {
  ProfileFile file;
  Settings settings;
  ASSERT_EQ(file.load(write("<?xml version='1.0' encoding='ISO-8859-1'?>\n<!-- mine -->\n"
                            "<Profile theme='blue'><Future a='1'><Deep/>text</Future>"
                            "<GeneralOptions UndoLevel='7' Later='x'/><RecentLists><Other Value='o'/>"
                            "<RecentFile Value='b' pinned='true'/><RecentFile Value='a'/></RecentLists>"
                            "</Profile>"),
                      nullptr, settings)
                .error,
            ErrorCode::kOk);
  add_recent_file(settings.recent_files, {"new", 0}, 16);
  add_recent_file(settings.recent_files, {"a", 0}, 16);
  settings.general_options.undo_level = 8;
  ASSERT_EQ(file.save(path_, settings), ErrorCode::kOk);
  const std::string text = content_of(path_);
  for (const char* part : {"<!-- mine -->", "theme=\"blue\"", "<Future a=\"1\">", "<Deep />text</Future>",
                           "UndoLevel=\"8\"", "Later=\"x\"", "<Other Value=\"o\" />", "encoding=\"utf-8\"",
                           "<RecentFile Value=\"a\" />\n    <RecentFile Value=\"new\" />\n    "
                           "<RecentFile Value=\"b\" pinned=\"true\" />"}) {
    EXPECT_THAT(text, HasSubstr(part));
  }
}

TEST_F(ProfileFileTest, WhatIsNoProfileChangesNothingAndIsKeptWhenReplaced) {
  for (const char* content :
       {"", "no xml", "<Profile>", "<Other/>", "<Profile><a></Profile>", "\xFF\xFE<\0"}) {
    Settings settings = changed_settings();
    const Settings before = settings;
    ProfileFile file;
    EXPECT_NE(file.load(write(content), nullptr, settings).error, ErrorCode::kOk) << content;
    EXPECT_TRUE(settings == before) << content;
    ASSERT_EQ(file.save(path_, settings), ErrorCode::kOk);
    if (*content != '\0') {
      EXPECT_EQ(content_of(path_ + ".bak"), content);
    }
  }
  std::string deep = "<Profile>";
  for (int i = 0; i < 200'000; ++i) deep += "<a>";
  for (int i = 0; i < 200'000; ++i) deep += "</a>";
  EXPECT_EQ(ProfileFile().load(write(deep + "</Profile>"), nullptr, *std::make_unique<Settings>()).error,
            ErrorCode::kXmlElement);
  EXPECT_EQ(ProfileFile().load(folder().path("none.xml"), nullptr, *std::make_unique<Settings>()).error,
            ErrorCode::kFileRead);
  // A good profile leaves no copy.
  ASSERT_EQ(ProfileFile().save(path_, Settings()), ErrorCode::kOk);
  std::filesystem::remove(path_ + ".bak");
  ASSERT_EQ(ProfileFile().save(path_, Settings()), ErrorCode::kOk);
  EXPECT_FALSE(std::filesystem::exists(path_ + ".bak"));
}

TEST_F(ProfileFileTest, MakesItsFolderAndReportsWhatItCanNotWrite) {
  const std::string deep = folder().path("a/b/settings.xml");
  EXPECT_EQ(ProfileFile().save(deep, Settings()), ErrorCode::kOk);
  EXPECT_THAT(content_of(deep), HasSubstr("</Profile>"));
  EXPECT_EQ(ProfileFile().save(deep + "/settings.xml", Settings()), ErrorCode::kFileWrite);
}

TEST_F(ProfileFileTest, AProtectedProfileOpensWithItsPasswordOnly) {
  protect("secret");
  const std::string stored = content_of(path_);
  EXPECT_THAT(stored, HasSubstr("encrypted=\"true\""));
  EXPECT_THAT(stored, Not(HasSubstr("GeneralOptions")));
  EXPECT_THAT(stored, Not(HasSubstr(kProfileCheckText)));

  Settings settings;
  ProfileFile file(&cipher_);
  ListedPasswords wrong({"Secret", "secret ", "", "secret"});
  EXPECT_EQ(file.load(path_, &wrong, settings).error, ErrorCode::kInvalidPassword);
  EXPECT_EQ(wrong.asked, 3U);
  ListedPasswords none({});
  EXPECT_EQ(file.load(path_, &none, settings).error, ErrorCode::kInvalidPassword);
  EXPECT_EQ(file.load(path_, nullptr, settings).error, ErrorCode::kInvalidPassword);
  EXPECT_EQ(ProfileFile().load(path_, nullptr, settings).error, ErrorCode::kCryptographicKey);
  EXPECT_FALSE(file.is_protected());
  EXPECT_TRUE(settings == Settings());
  EXPECT_EQ(content_of(path_), stored);

  ListedPasswords right({"wrong!", "secret"});
  EXPECT_EQ(file.load(path_, &right, settings).error, ErrorCode::kOk);
  EXPECT_TRUE(settings == changed_settings());
  // It stays protected, and plain again once the protection is off.
  settings.general_options.undo_level = 5;
  ASSERT_EQ(file.save(path_, settings), ErrorCode::kOk);
  EXPECT_THAT(content_of(path_), HasSubstr("encrypted=\"true\""));
  protect_profile({}, file);
  ASSERT_EQ(file.save(path_, settings), ErrorCode::kOk);
  EXPECT_THAT(content_of(path_), HasSubstr("UndoLevel=\"5\""));
}

TEST_F(ProfileFileTest, ADamagedProtectedProfileIsToldFromAWrongPassword) {
  protect("secret");
  const std::string stored = content_of(path_);
  const size_t content = stored.find("<Content>") + 9;
  std::string broken = stored;
  broken[content] = broken[content] == 'A' ? 'B' : 'A';
  const std::string cases[] = {
      broken,
      stored.substr(0, content) + "</Content></Profile>",
      stored.substr(0, content) + "!" + stored.substr(content + 1),
      "<Profile encrypted='true'/>",
  };
  for (const std::string& damaged : cases) {
    ListedPasswords right({"secret"});
    Settings settings;
    EXPECT_EQ(ProfileFile(&cipher_).load(write(damaged), &right, settings).error, ErrorCode::kFileDecrypt);
  }
  cipher_.failure = ErrorCode::kFileEncrypt;
  ProfileFile file(&cipher_);
  file.set_password(Secret("secret"));
  write(stored);
  EXPECT_EQ(file.save(path_, Settings()), ErrorCode::kFileEncrypt);
  EXPECT_EQ(content_of(path_), stored);
}

TEST(ProfileProtection, ChecksTheEntries) {
  const auto check = [](const char* password, const char* repeated) {
    return check_profile_protection({Secret(password), Secret(repeated)}).refusal.text();
  };
  EXPECT_EQ(check("", ""), "");
  EXPECT_EQ(check("\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F 1", "\xC3\xA4\xC3\xB6\xC3\xBC\xC3\x9F 1"), "");
  EXPECT_EQ(check("12345", "12345"), message(MessageId::kPasswordTooShort));
  EXPECT_EQ(check("\xC3\xA4\xC3\xB6\xC3\xBC", "\xC3\xA4\xC3\xB6\xC3\xBC"),
            message(MessageId::kPasswordTooShort));
  EXPECT_EQ(check("123456", "123457"), message(MessageId::kPasswordsDiffer));
  EXPECT_EQ(check("123456", ""), message(MessageId::kPasswordsDiffer));
  EXPECT_EQ(check("", "123456"), message(MessageId::kPasswordTooShort));
}

TEST_F(ProfileFileTest, TheRealCipherOpensWithItsPasswordAndSeesDamage) {
  TwofishProfileCipher cipher;
  const std::string plain = "Profile bytes" + std::string(1000, '\0');
  std::string sealed;
  std::string again;
  std::string opened;
  ASSERT_EQ(cipher.encrypt(plain, Secret("secret"), sealed), ErrorCode::kOk);
  ASSERT_EQ(cipher.encrypt(plain, Secret("secret"), again), ErrorCode::kOk);
  EXPECT_NE(sealed, again);
  EXPECT_EQ(cipher.decrypt(sealed, Secret("secret"), opened), ErrorCode::kOk);
  EXPECT_EQ(opened, plain);
  EXPECT_EQ(cipher.decrypt(sealed, Secret("Secret"), opened), ErrorCode::kInvalidPassword);
  EXPECT_EQ(opened, "");
  for (const size_t place : {size_t{0}, size_t{20}, size_t{40}, sealed.size() - 1}) {
    std::string damaged = sealed;
    damaged[place] = static_cast<char>(damaged[place] ^ 1);
    EXPECT_EQ(cipher.decrypt(damaged, Secret("secret"), opened), ErrorCode::kInvalidPassword) << place;
  }
  EXPECT_EQ(cipher.decrypt(sealed.substr(0, 51), Secret("secret"), opened), ErrorCode::kFileDecrypt);

  ProfileFile file(&cipher);
  file.set_password(Secret("secret"));
  ASSERT_EQ(file.save(path_, changed_settings()), ErrorCode::kOk);
  Settings settings;
  ListedPasswords passwords({"guess1", "secret"});
  EXPECT_EQ(ProfileFile(&cipher).load(path_, &passwords, settings).error, ErrorCode::kOk);
  EXPECT_TRUE(settings == changed_settings());
  // Damage behind the check text is no wrong password.
  std::string stored = content_of(path_);
  const size_t place = stored.find("<Content>") + 100;
  stored[place] = stored[place] == 'A' ? 'B' : 'A';
  ListedPasswords right({"secret"});
  EXPECT_EQ(ProfileFile(&cipher).load(write(stored), &right, settings).error, ErrorCode::kFileDecrypt);
}

TEST(EngineOptions, FollowTheProfile) {
  Settings settings;
  const Options unset = engine_options(settings);
  EXPECT_EQ(unset.max_records, kDefaultMaxRecords);
  EXPECT_EQ(unset.non_deflate_files, Options().non_deflate_files);
  settings.general_options.max_records = 5;
  settings.general_options.used_processor_cores = 3;
  settings.general_options.undo_level = 2;
  settings.general_options.backups = true;
  settings.general_options.text_export_row_limit = 9;
  settings.general_options.non_deflate_files = {"abc"};
  settings.check_box_options.show_unused_zip_streams = true;
  settings.check_box_options.auto_update = false;
  const Options options = engine_options(settings);
  EXPECT_EQ(options.max_records, 5U);
  EXPECT_EQ(options.used_processor_cores, 3);
  EXPECT_EQ(options.undo_level, 2U);
  EXPECT_TRUE(options.backups);
  EXPECT_TRUE(options.show_unused_members);
  EXPECT_TRUE(unset.auto_update);
  EXPECT_FALSE(options.auto_update);
  EXPECT_EQ(options.text_export_row_limit, 9U);
  EXPECT_THAT(options.non_deflate_files, ElementsAre("abc"));
}

TEST(EngineOptions, SearchOptionsFollowTheProfileAndGoBack) {
  Settings settings;
  EXPECT_EQ(search_options(settings), SearchOptions());
  settings.find_and_replace_options.empty_matches = true;
  settings.find_and_replace_options.caseless = false;
  settings.find_and_replace_options.match_mode = 10;
  const SearchOptions options = search_options(settings);
  EXPECT_EQ(options, (SearchOptions{true, false, true, CriterionKind::kSimilar}));
  Settings stored;
  store_search_options(options, stored);
  EXPECT_EQ(stored.find_and_replace_options.match_mode, 10);
  EXPECT_EQ(search_options(stored), options);
}

TEST(RecentFiles, EntriesMayCarryANumber) {
  const std::pair<RecentFile, const char*> cases[] = {
      {{"a.rvb", 0}, "a.rvb"}, {{"a.rvb", 12}, "a.rvb,12"}, {{"a,5", 0}, "a,5,0"},
      {{"a,b", 0}, "a,b"},     {{"a,", 0}, "a,"},           {{"a,99999999999", 0}, "a,99999999999"},
      {{"a,-5", 0}, "a,-5"},
  };
  for (const auto& [file, text] : cases) {
    EXPECT_EQ(recent_file_text(file), text);
    EXPECT_EQ(parse_recent_file(text), file) << text;
  }
  EXPECT_EQ(parse_recent_file(std::string(260, 'x') + ",1").path, "");
  EXPECT_EQ(parse_recent_file(std::string(259, 'x') + ",1").path.size(), 259U);
  // Characters outside the basic plane take two.
  std::string wide;
  for (int i = 0; i < 130; ++i) wide += "\xF0\x9F\x98\x80";
  EXPECT_EQ(cut_path(wide).size(), 129U * 4);
}

TEST(FramePlacement, MaximizedAndMinimizedFramesStartAtTheDefaultPosition) {
  using profile::FramePlacement;
  EXPECT_TRUE(FramePlacement().starts_at_default());
  EXPECT_FALSE((FramePlacement{0, 1, 10, 10, 20, 20}).starts_at_default());
  EXPECT_TRUE((FramePlacement{0, 3, 10, 10, 20, 20}).starts_at_default());
  EXPECT_TRUE((FramePlacement{0, 6, 10, 10, 20, 20}).starts_at_default());
  EXPECT_TRUE((FramePlacement{0, 1, 20, 10, 10, 20}).starts_at_default());
}

TEST(SortSettings, KeepTheRulesOfTheDialog) {
  Settings settings;
  const SortOptions chosen{.collation = SortCollation::kNeutral, .case_sensitive = true};
  store_sort_options(chosen, settings);
  EXPECT_EQ(sort_options(settings), chosen);
  settings.sort_options.ignore_punctuation = true;
  EXPECT_EQ(sort_options(settings), chosen);
  settings.sort_options.collation = profile::SortCollation::kLanguage;
  EXPECT_EQ(sort_options(settings), (SortOptions{.ignore_punctuation = true}));
}

}  // namespace
}  // namespace rowvane
