#include "rules/TagReader.h"

#include <gtest/gtest.h>

#include <string>

namespace upnp {
namespace {

std::size_t WorkFor(const std::string& text) {
  TagReader reader(text);
  while (reader.Next()) continue;
  return reader.Work();
}

std::string Repeated(const std::string& text, std::size_t count) {
  std::string repeated;
  for (std::size_t i = 0; i < count; ++i) repeated += text;
  return repeated;
}

TEST(TagReaderTest, ReadsTagsWithTheTextBeforeThem) {
  TagReader reader("<?xml?><u:a x='1'> b </u:a><c/>");
  auto tag = reader.Next();
  ASSERT_TRUE(tag);
  EXPECT_EQ(tag->name, "a");
  EXPECT_EQ(tag->kind, Tag::Kind::kBegin);
  tag = reader.Next();
  ASSERT_TRUE(tag);
  EXPECT_EQ(tag->name, "a");
  EXPECT_EQ(tag->text, "b");
  EXPECT_EQ(tag->kind, Tag::Kind::kEnd);
  tag = reader.Next();
  ASSERT_TRUE(tag);
  EXPECT_EQ(tag->kind, Tag::Kind::kWhole);
  EXPECT_FALSE(reader.Next());
  EXPECT_FALSE(reader.Next());
}

TEST(TagReaderTest, NoTextIsLookedAtMoreThanAFewTimes) {
  constexpr std::size_t kMany = 250000;
  for (const char* piece :
       {"</", "<", ">", "<a", "<a>", "</a>", "<!--", "<!--a-->", "<!-- -- ", "a:", "<:", "<a/"}) {
    const std::string text = "<root><service>" + Repeated(piece, kMany);
    EXPECT_LE(WorkFor(text), 3 * text.size()) << piece;
  }
}

}  // namespace
}  // namespace upnp
