#include <QBuffer>
#include <QDir>
#include <QFileInfo>
#include <QImage>

#include "source_folder.h"
#include "ui/grid/type_signs.h"
#include "ui/grid_fixture.h"
#include "ui/pane/content_texts.h"
#include "ui/pane/links.h"

namespace rowvane {
namespace {

// Long texts, files, links and colours as cells show them.
class GridContentsTest : public GridTest {
 protected:
  QString shown(uint32_t record, size_t field) {
    return view->model().shown_cell(static_cast<int>(record) - 1, static_cast<int>(field)).text;
  }
};

class CountingSource final : public ContentSource {
 public:
  explicit CountingSource(std::string content) : text(std::move(content)) {}
  ErrorCode read(std::string& out) const override {
    ++reads;
    out = text;
    return ErrorCode::kOk;
  }
  std::string text;
  mutable int reads = 0;
};

TEST(ContentTextsTest, AMemberIsReadOnceForManyPaints) {
  ContentTexts texts;
  auto source = std::make_shared<CountingSource>("beginning" + std::string(10'000, '.') + "end");
  const Content content = Content::stored(source, source->text.size());
  for (int i = 0; i < 5; ++i) {
    EXPECT_TRUE(texts.read(content, FieldType::kLongText).beginning.startsWith("beginning"));
    EXPECT_TRUE(texts.read(content, FieldType::kLongText).end.endsWith("end"));
  }
  EXPECT_EQ(source->reads, 1);
  EXPECT_FALSE(texts.read(content, FieldType::kLongText).whole);
  auto large = std::make_shared<CountingSource>("x");
  const Content too_large = Content::stored(large, ContentTexts::kMostReadBytes + 1);
  EXPECT_TRUE(texts.read(too_large, FieldType::kLongText).beginning.startsWith("["));
  EXPECT_EQ(large->reads, 0);
}

TEST_F(GridContentsTest, LongTextsShowTheirBeginningOrTheirEnd) {
  const std::string text = "first" + std::string(5000, '-') + "last";
  ASSERT_EQ(table.set_value(1, kNotes, Content::of(text)), ErrorCode::kOk);
  ASSERT_EQ(table.set_value(2, kNotes, Content::of("short")), ErrorCode::kOk);
  EXPECT_TRUE(shown(1, kNotes).startsWith("first"));
  settings.check_box_options.show_memo_text_end = true;
  EXPECT_TRUE(shown(1, kNotes).endsWith("last"));
  EXPECT_EQ(shown(2, kNotes), "short");
  ASSERT_EQ(table.set_value(2, kNotes, Content::of(R"({\rtf1 rich \i text\i0})")), ErrorCode::kOk);
  EXPECT_EQ(shown(2, kNotes), "rich text");
}

TEST_F(GridContentsTest, FilesAreNamedAsTheOptionsSay) {
  const FileList files = {{"a.txt", "", Content::of("12345")}, {"b.txt", "", Content::of("1")}};
  ASSERT_EQ(table.set_value(1, kPicture, files), ErrorCode::kOk);
  profile::CheckBoxOptions& options = settings.check_box_options;
  EXPECT_EQ(shown(1, kPicture), "a.txt; b.txt");
  options.table_view_file_size = true;
  EXPECT_EQ(shown(1, kPicture), "a.txt, 5 bytes; b.txt, 1 bytes");
  options.table_view_file_labels = false;
  EXPECT_EQ(shown(1, kPicture), "");
  options.files_in_tables = false;
  EXPECT_TRUE(shown(1, kPicture).startsWith("2 "));
}

TEST_F(GridContentsTest, ThumbnailsAreDecodedAtTheirSizeAndDamagedOnesMarked) {
  QImage image(800, 400, QImage::Format_RGB32);
  image.fill(Qt::red);
  QByteArray bytes;
  QBuffer buffer(&bytes);
  ASSERT_TRUE(image.save(&buffer, "PNG"));
  const FileObject good{"red.png", "", Content::of(bytes.toStdString())};
  const FileObject cut{"cut.png", "", Content::of(bytes.left(40).toStdString())};
  Thumbnails thumbnails;
  EXPECT_EQ(thumbnails.of(good, 48).state, Thumbnails::State::kWaiting);
  EXPECT_EQ(thumbnails.of(cut, 48).state, Thumbnails::State::kWaiting);
  EXPECT_EQ(thumbnails.of({"a.txt", "", Content::of("x")}, 48).state, Thumbnails::State::kNoImage);
  QApplication::processEvents();
  QTest::qWait(20);
  EXPECT_EQ(thumbnails.of(good, 48).state, Thumbnails::State::kImage);
  EXPECT_EQ(thumbnails.of(good, 48).pixmap.size(), QSize(48, 24));
  EXPECT_EQ(thumbnails.of(cut, 48).state, Thumbnails::State::kDamaged);
  EXPECT_EQ(thumbnails.of({"gone.png", "/nowhere/gone.png", {}}, 48).state, Thumbnails::State::kWaiting);
  QTest::qWait(20);
  EXPECT_EQ(thumbnails.of({"gone.png", "/nowhere/gone.png", {}}, 48).state, Thumbnails::State::kDamaged);

  ASSERT_EQ(table.set_value(1, kPicture, FileList{good, cut}), ErrorCode::kOk);
  view->set_lines(4);
  view->grab();
  QTest::qWait(50);
  const QImage picture = view->viewport()->grab().toImage();
  const QRect cell = view->visualRect(view->model().index(0, kPicture));
  int red = 0;
  for (int x = cell.left(); x < std::min(cell.right(), picture.width()); ++x) {
    red += QColor(picture.pixel(x, cell.center().y())) == Qt::red ? 1 : 0;
  }
  EXPECT_GT(red, 20);
}

TEST_F(GridContentsTest, TheRowAndTheColumnOfTheCurrentCellAreHighlighted) {
  settings.crosshighlighting.rows = true;
  settings.crosshighlighting.columns = true;
  settings.crosshighlighting.contrast = 100;
  go_to(2, 1);
  const QImage picture = view->viewport()->grab().toImage();
  const auto ground = [&](int row, int place) {
    const GridLayout& layout = view->grid_layout();
    return picture.pixel(layout.left(place) + 2, layout.top(row) + layout.row_height() - 3) & 0xFFFFFF;
  };
  EXPECT_EQ(ground(2, 4), 0xFFF2CCu);
  EXPECT_EQ(ground(6, 1), 0xFFF2CCu);
  EXPECT_NE(ground(6, 4), 0xFFF2CCu);
}

TEST(LinkTargetTest, WebMailAndFiles) {
  EXPECT_EQ(link_target("www.example.org/a", {}), QUrl("https://www.example.org/a"));
  EXPECT_EQ(link_target("example.org", {}), QUrl("https://example.org"));
  EXPECT_EQ(link_target(" http://example.org:80/x ", {}), QUrl("http://example.org:80/x"));
  EXPECT_EQ(link_target("anna@example.org", {}), QUrl("mailto:anna@example.org"));
  const QDir source(QFileInfo(kSourceFolder).absoluteFilePath());
  EXPECT_EQ(link_target(source.filePath("a b.txt"), {}), QUrl::fromLocalFile(source.filePath("a b.txt")));
  EXPECT_EQ(link_target("README.md", source.path()), QUrl::fromLocalFile(source.filePath("README.md")));
  for (const char* none : {"", "just words", "javascript:alert(1)", "unknown:thing"}) {
    EXPECT_FALSE(link_target(none, {}).isValid()) << none;
  }
}

TEST_F(GridContentsTest, ALinkIsOpenedByItsCommandAndByCtrlClick) {
  set_field(kName, [](Field& field) { field.link = true; });
  ASSERT_EQ(table.set_value(2, kName, std::string("www.example.org")), ErrorCode::kOk);
  std::vector<QUrl> opened;
  const OpenLink former = link_opener();
  link_opener() = [&](const QUrl& url) {
    opened.push_back(url);
    return opened.size() < 2;
  };
  QTest::mouseClick(view->viewport(), Qt::LeftButton, Qt::ControlModifier,
                    view->visualRect(view->model().index(1, kName)).center());
  EXPECT_EQ(view->current_place(), (GridPlace{1, 0}));
  EXPECT_TRUE(dialogs.shown.empty());
  pane->open_link();
  EXPECT_THAT(opened, testing::ElementsAre(QUrl("https://www.example.org"), QUrl("https://www.example.org")));
  EXPECT_EQ(dialogs.shown.size(), 1u);
  go_to(0, kPrice);
  pane->open_link();
  EXPECT_EQ(opened.size(), 2u);
  EXPECT_EQ(dialogs.shown.size(), 2u);
  link_opener() = former;
}

TEST_F(GridContentsTest, NumbersKeepTheColourOfTheirFormatReadable) {
  set_field(kPrice, [](Field& field) { field.format = "0.00;[red]-0.00"; });
  ASSERT_EQ(table.set_value(1, kPrice, -3.0), ErrorCode::kOk);
  const ShownCell cell = view->model().shown_cell(0, kPrice);
  EXPECT_EQ(cell.text, "-3.00");
  EXPECT_TRUE(cell.is_number);
  EXPECT_EQ(format_color(cell.color, Qt::white)->hslHue(), 0);
  EXPECT_LT(format_color(6, Qt::white)->lightness(), 170);  // yellow
  EXPECT_GT(format_color(1, Qt::black)->lightness(), 80);   // black
  EXPECT_FALSE(format_color(0, Qt::white));
  EXPECT_TRUE(shows_dates(table.field(kDay)));
  EXPECT_FALSE(shows_dates(table.field(kPrice)));
}

}  // namespace
}  // namespace rowvane
