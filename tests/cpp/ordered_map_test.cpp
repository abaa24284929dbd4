#include "core/ordered_map.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "core/pyseq.h"

namespace vorn {
namespace {

TEST(OrderedMap, KeepsDictionaryOrderOnOverwriteEraseAndReinsert) {
  OrderedMap<int, std::string> map;
  map.set(3, "c");
  map.set(1, "a");
  map.set(2, "b");
  map.set(1, "A");  // overwrite keeps the place
  EXPECT_EQ(map.keys(), (std::vector<int>{3, 1, 2}));
  EXPECT_EQ(map.at(1), "A");

  map.erase(3);
  map.set(3, "again");  // erase then insert puts the key last
  EXPECT_EQ(map.keys(), (std::vector<int>{1, 2, 3}));
  // Indices stay right after an erase in the middle.
  map.erase(2);
  EXPECT_EQ(map.at(3), "again");
  EXPECT_EQ(map.at(1), "A");
  map[7];  // default insert at the end
  EXPECT_EQ(map.keys(), (std::vector<int>{1, 3, 7}));
  EXPECT_EQ(map.size(), 3u);
}

TEST(OrderedMap, MissingKeysRaiseKeyErrorNamingTheKey) {
  OrderedMap<std::string, int> map;
  map.set("present", 1);
  try {
    map.at("absent");
    FAIL() << "no KeyError";
  } catch (const KeyError& e) {
    EXPECT_STREQ(e.what(), "'absent'");
  }
  EXPECT_THROW(map.erase("absent"), KeyError);
  EXPECT_FALSE(map.discard("absent"));
  EXPECT_EQ(map.find("absent"), nullptr);
  EXPECT_EQ(map.size(), 1u);
}

TEST(PySeq, IndicesWrapInRangeAndRaiseOutside) {
  std::vector<int> v{10, 20, 30};
  EXPECT_EQ(at(v, 0), 10);
  EXPECT_EQ(at(v, -1), 30);
  EXPECT_EQ(at(v, -3), 10);
  EXPECT_THROW(at(v, 3), IndexError);
  EXPECT_THROW(at(v, -4), IndexError);
  std::vector<int> empty;
  EXPECT_THROW(at(empty, 0), IndexError);
  EXPECT_THROW(at(empty, -1), IndexError);
}

}  // namespace
}  // namespace vorn
