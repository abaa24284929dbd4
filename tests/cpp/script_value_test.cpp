#include "core/script_value.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

#include "core/errors.h"

namespace vorn {
namespace {

// A stand-in object model: objects are ints with reference counts, so the test can
// check that handles balance their references.
std::map<void*, int>& refcounts() {
  static std::map<void*, int> counts;
  return counts;
}
int g_calls = 0;
const ScriptValue::Hooks kFakeHooks{
    [](void* o) { ++refcounts()[o]; },
    [](void* o) { --refcounts()[o]; },
    [](void* o) { return std::to_string(*static_cast<int*>(o)); },
    [](void* o) { return *static_cast<int*>(o) != 0; },
    [](void* a, void* b) { return *static_cast<int*>(a) == *static_cast<int*>(b); },
    [](void* callable, std::span<const ScriptValue> args) {
      ++g_calls;
      return args.empty() ? ScriptValue() : ScriptValue::borrow(callable);
    },
};

TEST(ScriptValue, HandlesBalanceReferencesAndBehaveLikeScriptValues) {
  const ScriptValue::Hooks* previous = ScriptValue::hooks();
  ScriptValue::install(&kFakeHooks);
  refcounts().clear();
  g_calls = 0;
  int seven = 7, zero = 0, other_seven = 7;
  {
    ScriptValue a = ScriptValue::borrow(&seven);
    EXPECT_EQ(refcounts()[&seven], 1);
    ScriptValue b = a;
    EXPECT_EQ(refcounts()[&seven], 2);
    ScriptValue c = std::move(b);
    EXPECT_EQ(refcounts()[&seven], 2);
    EXPECT_TRUE(b.is_none());
    EXPECT_EQ(a.str(), "7");
    EXPECT_TRUE(a.truthy());
    EXPECT_FALSE(ScriptValue::borrow(&zero).truthy());
    EXPECT_TRUE(a == ScriptValue::borrow(&other_seven));
    EXPECT_FALSE(a == ScriptValue());

    const ScriptValue result = a.call({a});
    EXPECT_EQ(g_calls, 1);
    EXPECT_EQ(result.str(), "7");
  }
  EXPECT_EQ(refcounts()[&seven], 0);
  EXPECT_EQ(refcounts()[&zero], 0);

  const ScriptValue none;
  EXPECT_EQ(none.str(), "None");
  EXPECT_FALSE(none.truthy());
  EXPECT_THROW(none.call({}), TypeError);
  ScriptValue::install(previous);
}

}  // namespace
}  // namespace vorn
