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

Variant call(Sample& sample, const char16_t* name, InvokeKind kind, std::vector<Variant> arguments = {}) {
    return sample.invoke(name, kind, arguments);
}

int errorOf(Sample& sample, const char16_t* name, InvokeKind kind, std::vector<Variant> arguments = {}) {
    try {
        sample.invoke(name, kind, arguments);
    } catch (const Error& error) {
        return error.number();
    }
    return 0;
}

TEST(DispatchTable, FindsMembersWithoutRegardToCaseAndByDefault) {
    Sample sample;
    call(sample, u"VALUE", InvokeKind::let, {Variant(u"x")});
    EXPECT_TRUE(call(sample, u"value", InvokeKind::get).identical(Variant(u"x")));
    EXPECT_TRUE(call(sample, u"", InvokeKind::get).identical(Variant(u"x")));
    const auto shared = std::make_shared<Sample>(sample);
    EXPECT_EQ(toText(Variant(shared)), u"x");
}

TEST(DispatchTable, TakesGetsAndMethodsForEachOther) {
    Sample sample;
    EXPECT_EQ(toLong(call(sample, u"Item", InvokeKind::method, {Variant(std::int32_t{1})})), 101);
    EXPECT_EQ(toBoolean(call(sample, u"Flag", InvokeKind::get)), true);
    // A set is taken by the let, a let of an object by the set.
    call(sample, u"Value", InvokeKind::set, {Variant(ObjectRef())});
    call(sample, u"Item", InvokeKind::let, {Variant(std::int32_t{1}), Variant(ObjectRef())});
}

TEST(DispatchTable, MissingArgumentsTakeTheirDefaults) {
    Sample sample;
    const Variant one(std::int32_t{1});
    EXPECT_EQ(toLong(call(sample, u"Item", InvokeKind::get, {one, Variant::missing()})), 101);
    EXPECT_EQ(toLong(call(sample, u"Item", InvokeKind::get, {one, Variant(u" 2 ")})), 3);
}

TEST(DispatchTable, WritesByReferenceArgumentsBack) {
    Sample sample;
    std::vector<Variant> arguments{Variant(std::int32_t{5})};
    sample.invoke(u"append", InvokeKind::method, arguments);
    EXPECT_TRUE(arguments[0].identical(Variant(u"5!")));
}

TEST(DispatchTable, RaisesTheClassicNumbers) {
    Sample sample;
    const Variant one(std::int32_t{1});
    EXPECT_EQ(errorOf(sample, u"Nothing", InvokeKind::get), 438);
    EXPECT_EQ(errorOf(sample, u"Append", InvokeKind::let, {one}), 438);
    EXPECT_EQ(errorOf(sample, u"Item", InvokeKind::let, {one, one}), 438);  // takes objects alone
    EXPECT_EQ(errorOf(sample, u"Item", InvokeKind::get), 450);
    EXPECT_EQ(errorOf(sample, u"Item", InvokeKind::get, {Variant::missing(), one}), 450);
    EXPECT_EQ(errorOf(sample, u"Item", InvokeKind::get, {one, one, one}), 450);
    EXPECT_EQ(errorOf(sample, u"Value", InvokeKind::let), 450);
    EXPECT_EQ(errorOf(sample, u"Value", InvokeKind::get, {one}), 450);
    EXPECT_EQ(errorOf(sample, u"Item", InvokeKind::get, {Variant(u"abc")}), 13);
    EXPECT_EQ(errorOf(sample, u"Item", InvokeKind::get, {one, Variant(Null{})}), 13);
}

}  // namespace
}  // namespace velmor::automation
