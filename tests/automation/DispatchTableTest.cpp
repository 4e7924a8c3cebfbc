#include "automation/DispatchTable.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "automation/Convert.h"
#include "text/Error.h"

namespace velmor::automation {
namespace {

class Sample : public Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override {
        static const DispatchTable<Sample> kMembers(
            u"Value", {
                          {u"Value", MemberKind::get, 0, 0, [](Sample& self, Arguments&) { return self.value_; }},
                          {u"Value", MemberKind::let, 0, 0, &Sample::letValue},
                          {u"Item", MemberKind::get, 1, 2,
                           [](Sample&, Arguments& args) { return Variant(args.longInteger(0) + args.longOr(1, 100)); }},
                          {u"Item", MemberKind::set, 1, 1,
                           [](Sample& self, Arguments& args) { return self.value_ = args.newValue(); }},
                          {u"Append", MemberKind::method, 1, 1, &Sample::append},
                          {u"Flag", MemberKind::method, 0, 1,
                           [](Sample&, Arguments& args) { return Variant(args.boolean(0, true)); }},
                      });
        return kMembers.invoke(*this, name, kind, arguments);
    }
    std::u16string typeName() const override { return u"Sample"; }

private:
    static Variant letValue(Sample& self, Arguments& args) {
        self.value_ = args.newValue();
        return {};
    }
    static Variant append(Sample&, Arguments& args) {
        args.setText(0, args.text(0) + u"!");
        return {};
    }

    Variant value_;
};

const Variant kOne(1), kNothing{ObjectRef()};

class DispatchTables : public testing::Test {
protected:
    Variant call(const char16_t* name, InvokeKind kind, std::vector<Variant> arguments = {}) {
        return sample_->invoke(name, kind, arguments);
    }
    const std::shared_ptr<Sample> sample_ = std::make_shared<Sample>();
};

TEST_F(DispatchTables, FindMembersWithoutRegardToCaseAndByDefault) {
    call(u"VALUE", InvokeKind::let, {u"x"});
    EXPECT_TRUE(call(u"value", InvokeKind::get).identical(u"x"));
    EXPECT_TRUE(call(u"", InvokeKind::get).identical(u"x"));
    EXPECT_EQ(toText(Variant(sample_)), u"x");
}

TEST_F(DispatchTables, TakeGetsAndMethodsForEachOther) {
    EXPECT_EQ(toLong(call(u"Item", InvokeKind::method, {kOne})), 101);
    EXPECT_EQ(toBoolean(call(u"Flag", InvokeKind::get)), true);
    // A set is taken by the let, a let of an object by the set.
    call(u"Value", InvokeKind::set, {kNothing});
    call(u"Item", InvokeKind::let, {kOne, kNothing});
}

TEST_F(DispatchTables, GiveDefaultsAndWriteByReferenceArgumentsBack) {
    EXPECT_EQ(toLong(call(u"Item", InvokeKind::get, {kOne, Variant::missing()})), 101);
    EXPECT_EQ(toLong(call(u"Item", InvokeKind::get, {kOne, u" 2 "})), 3);
    std::vector<Variant> arguments{5};
    sample_->invoke(u"append", InvokeKind::method, arguments);
    EXPECT_TRUE(arguments[0].identical(u"5!"));
}

TEST_F(DispatchTables, RaiseTheClassicNumbers) {
    const struct {
        const char16_t* name;
        InvokeKind kind;
        std::vector<Variant> arguments;
        int error;
    } cases[] = {
        {u"Nothing", InvokeKind::get, {}, 438},
        {u"Append", InvokeKind::let, {kOne}, 438},
        {u"Item", InvokeKind::let, {kOne, kOne}, 438},  // takes objects alone
        {u"Item", InvokeKind::get, {}, 450},
        {u"Item", InvokeKind::get, {Variant::missing(), kOne}, 450},
        {u"Item", InvokeKind::get, {kOne, kOne, kOne}, 450},
        {u"Value", InvokeKind::let, {}, 450},
        {u"Value", InvokeKind::get, {kOne}, 450},
        {u"Item", InvokeKind::get, {u"abc"}, 13},
        {u"Item", InvokeKind::get, {kOne, Null{}}, 13},
    };
    for (const auto& row : cases) {
        try {
            call(row.name, row.kind, row.arguments);
            ADD_FAILURE() << &row - cases;
        } catch (const Error& error) {
            EXPECT_EQ(error.number(), row.error) << &row - cases;
        }
    }
}

}  // namespace
}  // namespace velmor::automation
