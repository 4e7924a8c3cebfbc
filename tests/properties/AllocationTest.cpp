// The collection without memory: every allocation of an operation fails in turn.
#include "Allocations.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

using Operation = void (*)(privProperties&);

// The entries, and the entries that their names find.
std::string contents(privProperties& collection) {
    std::string all = describe(collection);
    for (const char16_t* const name : {u"a", u"b", u"n9"}) {
        const PropertyRef found = collection.Item(name);
        all += found == nullptr ? " -" : " " + toUtf8(found->ValueStr());
    }
    return all;
}

class PropertyAllocation : public PropertyTest, public testing::WithParamInterface<Operation> {
protected:
    void fill() {
        collection->Build(u"b=\"a text that is too long to be kept in place\":a=1:b=3:");
        for (int i = 0; i < 26; ++i) collection->AddLng(u"n" + fromUtf8(std::to_string(i)), i);
        collection->Remove(u"n3");
    }
};

TEST_P(PropertyAllocation, FailsWithoutLosingAnything) {
    bool failed = true;
    for (int allocations = 0; failed; ++allocations) {
        ASSERT_LT(allocations, 10000);
        fill();
        const std::string before = contents(*collection);
        try {
            const test::LimitedAllocations limited(allocations);
            GetParam()(*collection);
            failed = false;
        } catch (const std::bad_alloc&) {
        }
        if (failed) {
            ASSERT_EQ(contents(*collection), before) << allocations;
        }
        collection->AddLng(u"after", 7);
        ASSERT_EQ(collection->GetValueLng(u"after"), 7);
    }
}

INSTANTIATE_TEST_SUITE_P(
    Of, PropertyAllocation,
    testing::Values([](privProperties& collection) { collection.Sort(); },
                    [](privProperties& collection) {
                        collection.AddStr(u"new", u"a value too long to be kept in place");
                    },
                    [](privProperties& collection) { collection.Insert(1, u"new", std::int32_t{1}); },
                    [](privProperties& collection) { collection.Insert(20, u"new", std::int32_t{1}); },
                    [](privProperties& collection) { collection.Build(u"x=1:y=2:z=\"another text, long enough\":"); }));

}  // namespace
}  // namespace velmor
