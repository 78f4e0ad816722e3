#include "text/similar_text.h"

#include <random>

#include <gtest/gtest.h>

namespace rowvane {
namespace {

double similarity(std::string_view wanted, std::string_view text, double threshold = kSimilarThreshold) {
  return SimilarText(wanted).similarity(text, threshold);
}

TEST(SimilarText, FindsMisspellingsAndChangedOrder) {
  for (const auto& [wanted, text] : std::initializer_list<std::pair<const char*, const char*>>{
           {"Smith", "Smyth"},
           {"recieve", "receive"},
           {"John Smith", "Smith, John"},
           {"John Smith", "SMITH, JON A."},
           {"Meier", "Dr. Hans Meyer, Berlin"},
           {"lmap", "Floor lamp with a very long description"},
           {"data base", "database"},
           {"Straße", "STRASSE"},
           {"Müller", "muller"},
           {"Достоевский", "ДОСТОЕВСКИ"},
       }) {
    EXPECT_GE(similarity(wanted, text), kSimilarThreshold) << wanted << " / " << text;
  }
  for (const auto& [wanted, text] : std::initializer_list<std::pair<const char*, const char*>>{
           {"Smith", "Miller"},
           {"cat", "dog"},
           {"John Smith", "Smith"},
           {"John John", "John"},
           {"Smith", ""},
           {"", "Smith"},
           {"?!", "Smith"},
           {"Smith", "?!"},
       }) {
    EXPECT_EQ(similarity(wanted, text), 0) << wanted << " / " << text;
  }
  EXPECT_EQ(similarity("?!", "?!"), 1);
}

TEST(SimilarText, NearerTextsAreMoreSimilar) {
  const char* const ordered[] = {"John Smith", "John Smith jr.", "Jon Smith", "Jon Smyth jr."};
  double former = 2;
  for (const char* text : ordered) {
    const double similar = similarity("john smith", text);
    EXPECT_LT(similar, former) << text;
    EXPECT_GT(similar, kSimilarThreshold) << text;
    former = similar;
  }
  EXPECT_EQ(similarity("john smith", "SMITH JOHN"), 1);
}

// The definition, by a table of all distances.
size_t plain_distance(std::string_view a, std::string_view b) {
  std::vector<std::vector<size_t>> d(a.size() + 1, std::vector<size_t>(b.size() + 1));
  for (size_t i = 0; i <= a.size(); ++i) {
    for (size_t j = 0; j <= b.size(); ++j) {
      if (i == 0 || j == 0) {
        d[i][j] = i + j;
        continue;
      }
      d[i][j] =
          std::min({d[i - 1][j] + 1, d[i][j - 1] + 1, d[i - 1][j - 1] + (a[i - 1] == b[j - 1] ? 0u : 1u)});
      if (i > 1 && j > 1 && a[i - 1] == b[j - 2] && a[i - 2] == b[j - 1])
        d[i][j] = std::min(d[i][j], d[i - 2][j - 2] + 1);
    }
  }
  return d[a.size()][b.size()];
}

TEST(SimilarText, SingleWordsFollowTheAlignmentDistance) {
  std::mt19937 random(1);
  const auto word = [&](size_t most) {
    std::string text(1 + random() % most, 'a');
    for (char& c : text) c = static_cast<char>('a' + random() % 3);
    return text;
  };
  for (int i = 0; i < 3000; ++i) {
    const std::string a = word(i % 10 == 0 ? 64 : 8);
    const std::string b = word(i % 10 == 0 ? 90 : 8);
    const auto longer = static_cast<double>(std::max(a.size(), b.size()));
    const double expected = 1 - static_cast<double>(plain_distance(a, b)) / longer;
    EXPECT_DOUBLE_EQ(similarity(a, b, 0.5), expected < 0.5 ? 0 : expected) << a << " / " << b;
  }
}

// The best of all ways to match the words, by trying them.
double tried_assignment(const std::vector<std::string>& wanted, std::vector<std::string> words,
                        size_t from = 0) {
  if (from == wanted.size()) return 0;
  double best = tried_assignment(wanted, words, from + 1);
  for (size_t i = 0; i < words.size(); ++i) {
    const double similar = similarity(wanted[from], words[i], 0.5);
    if (similar == 0) continue;
    std::vector<std::string> rest = words;
    rest.erase(rest.begin() + static_cast<std::ptrdiff_t>(i));
    best = std::max(
        best, similar * static_cast<double>(wanted[from].size()) + tried_assignment(wanted, rest, from + 1));
  }
  return best;
}

TEST(SimilarText, WordsAreMatchedInTheBestWay) {
  std::mt19937 random(2);
  for (int i = 0; i < 400; ++i) {
    std::vector<std::string> wanted(1 + random() % 4);
    std::vector<std::string> words(wanted.size());  // as many, so that none is left over when all match
    std::string wanted_text;
    std::string text;
    double size = 0;
    for (auto* list : {&wanted, &words}) {
      for (std::string& word : *list) {
        word.resize(4);
        for (char& c : word) c = static_cast<char>('a' + random() % 2);
        (list == &wanted ? wanted_text : text) += word + " ";
      }
    }
    size = static_cast<double>(4 * wanted.size());
    const double best = tried_assignment(wanted, words) / size;
    const double found = similarity(wanted_text, text, 0);
    EXPECT_LE(found, 1);
    // Between all and nineteen twentieths of it, or more where the texts run together are more similar.
    EXPECT_GE(found, best * 0.95 - 1e-12) << wanted_text << "/ " << text;
    std::string joined_wanted;
    std::string joined;
    for (const std::string& word : wanted) joined_wanted += word;
    for (const std::string& word : words) joined += word;
    EXPECT_LE(found, std::max(best, similarity(joined_wanted, joined, 0)) + 1e-12)
        << wanted_text << "/ " << text;
  }
}

TEST(SimilarText, LongTextsAreHandled) {
  std::string many;
  for (int i = 0; i < 2000; ++i) many += "word" + std::to_string(i) + " ";
  EXPECT_GT(similarity("word1999 word77", many), kSimilarThreshold);
  EXPECT_GT(similarity(many, many), 0.9);
  const std::string long_word(3000, 'a');
  EXPECT_EQ(similarity(long_word, long_word), 1);
  EXPECT_EQ(similarity(long_word, long_word + "b"), 0);
  EXPECT_EQ(similarity("\xFF\xC3", "\xFF"), 0);
}

}  // namespace
}  // namespace rowvane
