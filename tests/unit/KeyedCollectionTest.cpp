#include "base/KeyedCollection.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

#include "base/Conversions.h"
#include "base/NameIndex.h"

namespace {

using testing::ElementsAre;
using testing::IsEmpty;

using Texts = base::KeyedCollection<std::string>;

std::vector<std::string> InOrder(const Texts& texts) {
  return {texts.begin(), texts.end()};
}

template <typename Action>
std::int32_t FailureOf(Action action) {
  try {
    action();
    return 0;
  } catch (const base::Error& error) {
    return error.Number();
  }
}

TEST(KeyedCollection, KeepsTheOrderOfInsertion) {
  Texts texts;
  texts.Add("c", "1");
  texts.Add("a", "2");
  texts.Add("b", "3");
  EXPECT_THAT(InOrder(texts), ElementsAre("c", "a", "b"));
  EXPECT_EQ(texts.Count(), 3u);
}

TEST(KeyedCollection, TellsWhereAnItemStands) {
  Texts texts;
  texts.Add("a", "A");
  texts.Add("b", "B");
  texts.Add("c", "C");
  auto place = texts.PlaceOf("B");
  EXPECT_EQ(*place++, "b");
  EXPECT_EQ(*place++, "c");
  EXPECT_EQ(place, texts.end());
}

TEST(KeyedCollection, InsertsBeforeAKey) {
  Texts texts;
  texts.Add("b", "B");
  texts.AddBefore("a", "A", "B");
  texts.Add("d", "D");
  texts.AddBefore("c", "C", "D");
  EXPECT_THAT(InOrder(texts), ElementsAre("a", "b", "c", "d"));
  EXPECT_EQ(texts.Get("C"), "c");
}

TEST(KeyedCollection, RefusesAnUnknownPlaceAndStaysAsItWas) {
  Texts texts;
  texts.Add("a", "A");
  EXPECT_EQ(FailureOf([&] { texts.AddBefore("b", "B", "X"); }), base::ErrorNumber::kKeyUnknown);
  EXPECT_THAT(InOrder(texts), ElementsAre("a"));
  EXPECT_FALSE(texts.Contains("B"));
}

TEST(KeyedCollection, RefusesATakenKeyAndStaysAsItWas) {
  Texts texts;
  texts.Add("a", "A");
  EXPECT_EQ(FailureOf([&] { texts.Add("b", "A"); }), base::ErrorNumber::kKeyTaken);
  EXPECT_EQ(FailureOf([&] { texts.AddBefore("b", "A", "A"); }), base::ErrorNumber::kKeyTaken);
  EXPECT_THAT(InOrder(texts), ElementsAre("a"));
  EXPECT_EQ(texts.Get("A"), "a");
}

TEST(KeyedCollection, LetsGoOfTheItemWhoseKeyIsTaken) {
  base::KeyedCollection<std::shared_ptr<int>> items;
  items.Add(std::make_shared<int>(1), "k");
  auto second = std::make_shared<int>(2);
  const std::weak_ptr<int> watched = second;
  EXPECT_EQ(FailureOf([&] { items.Add(std::move(second), "k"); }), base::ErrorNumber::kKeyTaken);
  EXPECT_TRUE(watched.expired());
}

TEST(KeyedCollection, FailsForAnUnknownKey) {
  Texts texts;
  EXPECT_EQ(FailureOf([&] { texts.Get("x"); }), base::ErrorNumber::kKeyUnknown);
  EXPECT_EQ(FailureOf([&] { texts.PlaceOf("x"); }), base::ErrorNumber::kKeyUnknown);
  EXPECT_EQ(FailureOf([&] { texts.Remove("x"); }), base::ErrorNumber::kKeyUnknown);
  EXPECT_EQ(texts.TryGet("x"), nullptr);
}

TEST(KeyedCollection, ComparesKeysExactly) {
  Texts texts;
  texts.Add("a", "Key");
  texts.Add("b", "key");
  EXPECT_EQ(texts.Get("Key"), "a");
  EXPECT_EQ(texts.Get("key"), "b");
  EXPECT_FALSE(texts.Contains("KEY"));
}

TEST(KeyedCollection, TakesKeysThatFoldToTheSameTextForOne) {
  Texts texts(&base::FoldCase);
  texts.Add("a", "Practice Router");
  texts.Add("b", "Other");
  EXPECT_EQ(texts.Get("PRACTICE router"), "a");
  EXPECT_EQ(*texts.TryGet("other"), "b");
  EXPECT_TRUE(texts.Contains("OTHER"));
  EXPECT_EQ(*texts.PlaceOf("OTHER"), "b");
  EXPECT_EQ(FailureOf([&] { texts.Add("c", "practice router"); }), base::ErrorNumber::kKeyTaken);
  texts.AddBefore("c", "C", "oTHER");
  EXPECT_THAT(InOrder(texts), ElementsAre("a", "c", "b"));
  texts.Remove("PRACTICE ROUTER");
  EXPECT_THAT(InOrder(texts), ElementsAre("c", "b"));
}

TEST(KeyedCollection, ForgetsARemovedItem) {
  Texts texts;
  texts.Add("a", "A");
  texts.Add("b", "B");
  texts.Remove("A");
  EXPECT_THAT(InOrder(texts), ElementsAre("b"));
  texts.Add("again", "A");
  EXPECT_THAT(InOrder(texts), ElementsAre("b", "again"));
  texts.Clear();
  EXPECT_THAT(InOrder(texts), IsEmpty());
  EXPECT_TRUE(texts.IsEmpty());
  EXPECT_FALSE(texts.Contains("A"));
}

TEST(KeyedCollection, CanBeWalkedWhileItGrows) {
  Texts texts;
  texts.Add("a", "A");
  texts.Add("b", "B");
  std::string seen;
  for (const std::string& text : texts) {
    seen += text;
    if (text == "a") texts.AddBefore("between", "C", "B");
  }
  EXPECT_EQ(seen, "abetweenb");
}

TEST(KeyedCollection, IsAlreadyWithoutAnItemWhoseReleaseLooksIntoIt) {
  struct Watcher {
    base::KeyedCollection<std::shared_ptr<Watcher>>* items;
    bool* wasThere;
    ~Watcher() { *wasThere = items->Contains("w") || items->Count() > 0; }
  };
  base::KeyedCollection<std::shared_ptr<Watcher>> items;
  bool wasThere = true;
  items.Add(std::shared_ptr<Watcher>(new Watcher{&items, &wasThere}), "w");
  items.Remove("w");
  EXPECT_FALSE(wasThere);
  wasThere = true;
  items.Add(std::shared_ptr<Watcher>(new Watcher{&items, &wasThere}), "w");
  items.Clear();
  EXPECT_FALSE(wasThere);
}

TEST(NameIndex, FindsTheFirstNameAfterAnother) {
  base::NameIndex names;
  names.Add("b", "1");
  names.Add("d", "2");
  names.Add("d", "3");
  EXPECT_EQ(*names.KeyAfter("a"), "1");
  EXPECT_EQ(*names.KeyAfter("b"), "2");
  EXPECT_EQ(*names.KeyAfter("C"), "1");
  EXPECT_EQ(names.KeyAfter("d"), nullptr);
  EXPECT_TRUE(names.Contains("d"));
  EXPECT_FALSE(names.Contains("D"));
}

TEST(NameIndex, ForgetsByKey) {
  base::NameIndex names;
  names.Add("d", "2");
  names.Add("d", "3");
  names.Remove("2");
  names.Remove("unknown");
  EXPECT_EQ(*names.KeyAfter(""), "3");
  names.Clear();
  EXPECT_EQ(names.KeyAfter(""), nullptr);
}

std::vector<std::string> KeysWithPrefix(const base::NameIndex& names, std::string_view prefix) {
  std::vector<std::string> keys;
  const auto [first, last] = names.WithPrefix(prefix);
  for (auto name = first; name != last; ++name) keys.push_back(name->second);
  return keys;
}

TEST(NameIndex, GivesAllNamesThatBeginAlike) {
  base::NameIndex names;
  names.Add("Game", "0");
  names.Add("Game(", "1");
  names.Add("Game(2)", "2");
  names.Add("Game)", "3");
  names.Add("game(2)", "4");
  EXPECT_THAT(KeysWithPrefix(names, "Game("), ElementsAre("1", "2"));
  EXPECT_THAT(KeysWithPrefix(names, "x"), IsEmpty());
  EXPECT_THAT(KeysWithPrefix(names, ""), ElementsAre("0", "1", "2", "3", "4"));
}

TEST(NameIndex, GivesNamesThatBeginWithTheLastCharacterCodes) {
  base::NameIndex names;
  names.Add("a\xFF", "1");
  names.Add("a\xFF\xFF", "2");
  names.Add("b", "3");
  names.Add("\xFF", "4");
  names.Add("\xFF(", "5");
  EXPECT_THAT(KeysWithPrefix(names, "a\xFF"), ElementsAre("1", "2"));
  EXPECT_THAT(KeysWithPrefix(names, "\xFF"), ElementsAre("4", "5"));
}

}  // namespace
