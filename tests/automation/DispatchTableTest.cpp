#include "automation/DispatchTable.h"

#include <gtest/gtest.h>

#include <vector>

#include "automation/Convert.h"
#include "text/Encoding.h"
#include "text/Error.h"

namespace velmor::automation {
namespace {

class Sample : public Object {
public:
    Variant invoke(std::u16string_view name, InvokeKind kind, std::span<Variant> arguments) override {
        const auto keep = [](Sample& self, Arguments& args) { return self.value_ = args.newValue(); };
        const auto sum = [](Sample&, Arguments& args) { return Variant(args.longInteger(0) + args.longOr(1, 100)); };
        const auto append = [](Sample&, Arguments& args) { return args.set(0, args.text(0) + u"!"), Variant(); };
        static const DispatchTable members(
            u"Value", {
                          {u"Value", MemberKind::get, 0, 0, [](Sample& self, Arguments&) { return self.value_; }},
                          {u"Value", MemberKind::let, 0, 0, keep},
                          {u"Item", MemberKind::get, 1, 2, sum},
                          {u"Item", MemberKind::set, 1, 1, keep},
                          {u"Append", MemberKind::method, 1, 1, append},
                          {u"Short", MemberKind::method, 0, 1,
                           [](Sample&, Arguments& args) { return Variant(args.has(0) ? args.integer(0) : 7); }},
                          {u"Self", MemberKind::get, 0, 0,
                           [](Sample& self, Arguments&) { return Variant(self.shared_from_this()); }, true},
                      });
        return members.invoke(*this, name, kind, arguments);
    }
    std::u16string typeName() const override { return u"Sample"; }

private:
    Variant value_;
};

const Variant one(1), nothing{ObjectRef()};

// The result as text, or the number of the raised error.
TEST(DispatchTable, FindsMembersAndPassesArguments) {
    const struct {
        const char16_t* name;
        InvokeKind kind;
        std::vector<Variant> arguments;
        const char* outcome;
    } cases[] = {
        // clang-format off
        {u"VALUE", InvokeKind::let, {u"x"}, "x"}, {u"value", InvokeKind::get, {}, "x"}, {u"", InvokeKind::get, {}, "x"},
        // A get and a method replace each other, and so do a let and a set.
        {u"Item", InvokeKind::method, {one}, "101"}, {u"Short", InvokeKind::get, {}, "7"},
        {u"Value", InvokeKind::set, {nothing}, "?"}, {u"Item", InvokeKind::let, {one, nothing}, "?"},
        {u"Item", InvokeKind::get, {one, Variant::missing()}, "101"}, {u"Item", InvokeKind::get, {one, u" 2 "}, "3"},
        {u"append", InvokeKind::method, {5}, ""}, {u"Nothing", InvokeKind::get, {}, "438"},
        {u"Append", InvokeKind::let, {one}, "438"},
        {u"Self", InvokeKind::let, {u"z"}, "z"}, {u"Self", InvokeKind::get, {one}, "450"},  // of the default member
        {u"Short", InvokeKind::get, {70000}, "6"},
        {u"Item", InvokeKind::get, {}, "450"}, {u"Item", InvokeKind::get, {Variant::missing(), one}, "450"},
        {u"Item", InvokeKind::get, {one, one, one}, "450"}, {u"Value", InvokeKind::let, {}, "450"},
        {u"Value", InvokeKind::get, {one}, "450"}, {u"Item", InvokeKind::get, {u"abc"}, "13"},
        {u"Item", InvokeKind::get, {one, Null{}}, "13"},
        // clang-format on
    };
    const auto sample = std::make_shared<Sample>();
    for (const auto& row : cases) {
        std::vector<Variant> arguments = row.arguments;
        std::string outcome;
        try {
            outcome = toUtf8(toText(sample->invoke(row.name, row.kind, arguments)).value_or(u"?"));
        } catch (const Error& error) {
            outcome = std::to_string(error.number());
        }
        EXPECT_EQ(outcome, row.outcome) << &row - cases;
    }
    Variant value(u"y");
    sample->invoke(u"Append", InvokeKind::method, {&value, 1});
    EXPECT_TRUE(value.identical(u"y!"));
    sample->invoke(u"Value", InvokeKind::let, {&value, 1});
    EXPECT_EQ(toText(Variant(sample)), u"y!");
}

}  // namespace
}  // namespace velmor::automation
