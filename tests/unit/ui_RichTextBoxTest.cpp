#include "ui/RichTextBox.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>
#include <vector>

#include "support/RecordingToolkit.h"
#include "ui/Form.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using ui::Aspect;

constexpr ui::Color kRed = ui::Rgb(255, 0, 0);
constexpr ui::Color kNavy = ui::Rgb(0, 0, 128);

class UiRichTextBox : public support::InterfaceTest {
 protected:
  UiRichTextBox() : window("frmTest", "Test", {}, 100, 100), box(&window, "rtTest") { window.Load(); }
  ~UiRichTextBox() override { std::filesystem::remove(file_); }

  void Insert(std::int32_t place, const std::string& text, ui::Color color, bool bold = false) {
    box.SelStart(place);
    box.SelColor(color);
    box.SelBold(bold);
    box.SelText(text);
  }

  /// Each character with its colour and weight, whatever the runs are.
  std::vector<std::string> Characters() const {
    std::vector<std::string> characters;
    for (const ui::RichTextBox::Run& run : box.Runs()) {
      for (const char c : run.text) {
        characters.push_back(std::string(1, c) + (run.bold ? "*" : "") + (run.color == kRed ? "r" : "") +
                             (run.color == kNavy ? "n" : ""));
      }
    }
    return characters;
  }

  /// A file of this test with `content`.
  std::string File(const std::string& content) {
    std::ofstream(file_, std::ios::binary) << content;
    return file_.string();
  }

  ui::Form window;
  ui::RichTextBox box;

 private:
  std::filesystem::path file_ =
      std::filesystem::temp_directory_path() / ("RichTextBoxTest." + std::to_string(std::random_device()()));
};

TEST_F(UiRichTextBox, IsEmptyAtFirst) {
  EXPECT_EQ(box.Text(), "");
  EXPECT_EQ(box.Length(), 0);
  EXPECT_EQ(box.SelStart(), 0);
  EXPECT_THAT(box.Runs(), IsEmpty());
}

TEST_F(UiRichTextBox, RunsKeepTheirOwnColourAndWeight) {
  Insert(0, "ab", kRed);
  Insert(2, "cd", kNavy, true);
  EXPECT_EQ(box.Text(), "abcd");
  EXPECT_EQ(box.Length(), 4);
  EXPECT_THAT(Characters(), ElementsAre("ar", "br", "c*n", "d*n"));
  EXPECT_EQ(box.Runs().size(), 2u);
}

TEST_F(UiRichTextBox, EqualNeighboursAreOneRun) {
  Insert(0, "ab", kRed);
  Insert(2, "cd", kRed);
  Insert(4, "ef", kRed, true);
  EXPECT_EQ(box.Runs().size(), 2u);
}

TEST_F(UiRichTextBox, InsertingInTheMiddleOfARunLeavesItsEndsAsTheyWere) {
  Insert(0, "abcd", kRed);
  Insert(2, "XY", kNavy);
  EXPECT_THAT(Characters(), ElementsAre("ar", "br", "Xn", "Yn", "cr", "dr"));
  EXPECT_EQ(box.SelStart(), 4);
  box.SelText("Z");
  EXPECT_EQ(box.Text(), "abXYZcd");
}

TEST_F(UiRichTextBox, InsertingAtTheBeginAndBetweenRuns) {
  Insert(0, "b", kRed);
  Insert(0, "a", kNavy);
  Insert(1, "-", kRed);
  EXPECT_THAT(Characters(), ElementsAre("an", "-r", "br"));
}

TEST_F(UiRichTextBox, ThePlaceIsKeptWithinTheText) {
  Insert(0, "abc", kRed);
  box.SelStart(100);
  EXPECT_EQ(box.SelStart(), 3);
  box.SelStart(-1);
  EXPECT_EQ(box.SelStart(), 0);
}

TEST_F(UiRichTextBox, TextGoesWhereTheUserHasPutThePlace) {
  Insert(0, "abc", kRed);
  box.UserSelStart(1);
  box.SelText("x");
  EXPECT_EQ(box.Text(), "axbc");
  box.UserSelStart(100);
  EXPECT_EQ(box.SelStart(), 4);
}

TEST_F(UiRichTextBox, InsertingNothingDoesNothing) {
  Insert(0, "abc", kRed);
  toolkit.TakeChanges(box);
  Insert(1, "", kNavy);
  EXPECT_THAT(toolkit.TakeChanges(box), IsEmpty());
  EXPECT_EQ(box.Runs().size(), 1u);
}

TEST_F(UiRichTextBox, PlainTextReplacesEverythingInTheBoxesOwnColour) {
  Insert(0, "abc", kRed, true);
  box.ForeColor(kNavy);
  box.Text("new");
  EXPECT_THAT(Characters(), ElementsAre("nn", "en", "wn"));
  EXPECT_EQ(box.SelStart(), 0);
  box.Text("");
  EXPECT_EQ(box.Length(), 0);
  EXPECT_THAT(box.Runs(), IsEmpty());
}

TEST_F(UiRichTextBox, ThePeerCanTellAddingFromReplacing) {
  Insert(0, "abc", kRed);
  const std::int32_t generation = box.Generation();
  Insert(3, "def", kNavy);
  EXPECT_EQ(box.Generation(), generation) << "added at the end";
  Insert(1, "x", kNavy);
  EXPECT_NE(box.Generation(), generation) << "put into what is shown";
  const std::int32_t later = box.Generation();
  box.Text("new");
  EXPECT_NE(box.Generation(), later);
}

TEST_F(UiRichTextBox, LoadsADocumentAndTellsThePeerOnce) {
  Insert(0, "abc", kRed);
  const std::string document = "{\\rtf1\\ansi Licence\r\ntext}\n";
  toolkit.TakeChanges(box);
  box.LoadFile(File(document));
  EXPECT_EQ(box.Document(), document);
  EXPECT_THAT(box.Runs(), IsEmpty());
  EXPECT_EQ(box.Length(), 0);
  EXPECT_THAT(toolkit.TakeChanges(box), ElementsAre(Aspect::kText));
}

TEST_F(UiRichTextBox, PlainTextReplacesADocument) {
  box.LoadFile(File("{\\rtf1 x}"));
  box.Text("");
  EXPECT_EQ(box.Document(), "");
}

TEST_F(UiRichTextBox, ADocumentThatIsNotThereLeavesWhatWas) {
  Insert(0, "abc", kRed);
  toolkit.TakeChanges(box);
  EXPECT_EQ(support::ErrorOf([&] { box.LoadFile("no/such/file.rtf"); }), base::ErrorNumber::kFileNotFound);
  EXPECT_EQ(support::ErrorTextOf([&] { box.LoadFile("no/such/file.rtf"); }),
            "Unable to open file no/such/file.rtf");
  EXPECT_THAT(Characters(), ElementsAre("ar", "br", "cr"));
  EXPECT_THAT(toolkit.TakeChanges(box), IsEmpty());
}

TEST_F(UiRichTextBox, AFileThatIsNoDocumentLeavesWhatWas) {
  Insert(0, "abc", kRed);
  EXPECT_EQ(support::ErrorOf([&] { box.LoadFile(File("plain text")); }), base::ErrorNumber::kFile);
  EXPECT_EQ(support::ErrorOf([&] { box.LoadFile(File("")); }), base::ErrorNumber::kFile);
  EXPECT_NE(support::ErrorOf([&] { box.LoadFile(std::filesystem::temp_directory_path().string()); }), 0)
      << "a folder";
  EXPECT_EQ(box.Text(), "abc");
  EXPECT_EQ(box.Document(), "");
}

TEST_F(UiRichTextBox, IsWhatPlainCharactersWouldBeAfterAnythingAtRandom) {
  std::mt19937 random(7);
  std::vector<std::string> plain;
  for (int step = 0; step < 2000; ++step) {
    const auto place = static_cast<std::int32_t>(random() % (plain.size() + 1));
    const ui::Color color = random() % 2 ? kRed : kNavy;
    const bool bold = random() % 2;
    const std::string text(random() % 4, static_cast<char>('a' + random() % 26));
    Insert(place, text, color, bold);
    for (std::size_t i = 0; i < text.size(); ++i) {
      plain.insert(plain.begin() + place + static_cast<std::ptrdiff_t>(i),
                   std::string(1, text[i]) + (bold ? "*" : "") + (color == kRed ? "r" : "n"));
    }
    ASSERT_EQ(box.SelStart(), place + static_cast<std::int32_t>(text.size()));
  }
  EXPECT_EQ(Characters(), plain);
  EXPECT_EQ(box.Length(), static_cast<std::int32_t>(plain.size()));
}

}  // namespace
