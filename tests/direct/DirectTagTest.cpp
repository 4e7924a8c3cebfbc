// The object cache, on host objects in memory.

#include <gtest/gtest.h>

#include <map>

#include "automation/Convert.h"
#include "automation/Errors.h"
#include "core/kvTag.h"
#include "direct/kvDirectTag.h"
#include "platform/MemoryServices.h"
#include "properties/privProperties.h"

namespace velmor {
namespace {

using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;
using Arguments = std::span<Variant>;

// An object of the host: the members that it was given, and no others.
class HostObject final : public automation::Object {
public:
    using Member = std::function<Variant(Arguments)>;

    explicit HostObject(std::u16string typeName) : typeName_(std::move(typeName)) {}
    HostObject& with(std::u16string name, Member member) {
        members_[std::move(name)] = std::move(member);
        return *this;
    }
    Variant invoke(std::u16string_view name, InvokeKind, Arguments arguments) override {
        const auto member = members_.find(std::u16string(name));
        if (member == members_.end()) automation::raiseNoSuchMember(name);
        return member->second(arguments);
    }
    std::u16string typeName() const override { return typeName_; }

private:
    std::u16string typeName_;
    std::map<std::u16string, Member> members_;
};

HostObject::Member gives(Variant value) {
    return [value](Arguments) { return value; };
}

Variant raises(Arguments) {
    throw Error(5, u"Host", u"refused");
}

class DirectTag : public testing::Test {
protected:
    DirectTag() {
        // A class whose objects open with every identifier but 13, and make 7 of 8.
        services.objects.add(u"Host.Customer", [this] {
            auto object = std::make_shared<HostObject>(u"Customer");
            object->with(u"Database", [this](Arguments arguments) {
                given.push_back(arguments[0].object());
                return Variant();
            });
            object->with(u"OpenItem", [this](Arguments arguments) {
                opened.push_back(*arguments[0].get<std::int32_t>());
                if (opened.back() == 8) arguments[0] = Variant(std::int32_t{7});
                return Variant(opened.back() != 13);
            });
            return object;
        });
        definition->with(u"IsDefined", gives(true)).with(u"ClassName", gives(u"Host.Customer"));
        system->with(u"GetObjectTypeDef", [this](Arguments arguments) {
            asked = *automation::toText(arguments[0]);
            return Variant(definition);
        });
        database->with(u"System", gives(Variant(system)));
        database->with(u"GetObjectItem", [this](Arguments arguments) {
            items.push_back(*automation::toText(arguments[0]) + u"/" + *automation::toText(arguments[1]));
            return answer ? *answer : Variant(std::make_shared<HostObject>(u"kvObjectItem"));
        });
        tag->Database(database);
        tag->Properties(Collection(properties));
        tag->Name(u"H>X:ID=5:Other=6:Text=abc:Tagged=<KV:TAG>PROPERTY:none=9:</KV>:");
    }
    kvDirectTag& direct() { return *tag->Direct(); }
    std::u16string kept(std::u16string_view name) { return properties->GetValueStr(name, u"-"); }

    platform::MemoryServices services;
    std::vector<std::int32_t> opened;
    std::vector<ObjectRef> given;
    std::vector<std::u16string> items;
    std::optional<Variant> answer;  // of GetObjectItem
    std::u16string asked;
    std::shared_ptr<HostObject> definition = std::make_shared<HostObject>(u"kvObjectTypeDef");
    std::shared_ptr<HostObject> system = std::make_shared<HostObject>(u"kvSystem");
    std::shared_ptr<HostObject> database = std::make_shared<HostObject>(u"kvDatabase");
    PropertiesRef properties = std::make_shared<privProperties>(services);
    std::shared_ptr<kvTag> tag = std::make_shared<kvTag>(services);
};

using Opened = std::vector<std::int32_t>;

TEST_F(DirectTag, OpensAnObjectOnce) {
    const ObjectRef first = direct().GetObject(u"Host.Customer", 1);
    ASSERT_TRUE(first);
    EXPECT_EQ(given, (std::vector<ObjectRef>{database}));
    EXPECT_EQ(properties->GetValueObject(u"_Customer"), first);
    EXPECT_EQ(kept(u"Customer.ID"), u"1");
    EXPECT_EQ(direct().GetObject(u"Host.Customer", 1), first);
    EXPECT_EQ(direct().GetObject(u"Other.Customer", 1), first);  // the same place
    EXPECT_EQ(direct().GetObject(u"Host.Customer", 0, u"Text"), first);

    EXPECT_FALSE(direct().GetObject(u"Host.Customer", 13));  // refuses: what was kept stays
    EXPECT_EQ(direct().GetObject(u"Host.Customer", 0, u"None"), first);
    const ObjectRef second = direct().GetObject(u"Host.Customer", 2);
    EXPECT_NE(second, first);
    EXPECT_EQ(direct().GetObject(u"Host.Customer", 0, u"none"), second);
    EXPECT_EQ(opened, (Opened{1, 13, 2}));
    EXPECT_TRUE(direct().GetObject(u"Host.Customer", 8));
    EXPECT_EQ(kept(u"Customer.ID"), u"7");
    EXPECT_EQ(properties->Count(), 2);
}

TEST_F(DirectTag, TakesTheIdentifierFromTheTag) {
    EXPECT_FALSE(direct().GetObject(u"Host.Customer", 0, u"Text"));
    EXPECT_TRUE(direct().GetObject(u"Host.Customer"));
    EXPECT_TRUE(direct().GetObject(u"Host.Customer", 0, u"OTHER"));
    EXPECT_TRUE(direct().GetObject(u"Host.Customer", 0, u"tagged"));
    properties->Remove(Variant(u"_Customer"));
    EXPECT_TRUE(direct().GetObject(u"Host.Customer", 0, u"None"));  // the identifier is still there
    EXPECT_EQ(opened, (Opened{5, 6, 9, 9}));
}

TEST_F(DirectTag, ResolvesOtherNamesByTheDatabase) {
    EXPECT_TRUE(direct().GetObject(u"Customer", 1));
    EXPECT_EQ(asked, u"Customer");
    EXPECT_EQ(kept(u"Customer.ID"), u"1");
    definition->with(u"IsDefined", gives(false));
    EXPECT_FALSE(direct().GetObject(u"Nobody", 1));
    definition->with(u"IsDefined", gives(true)).with(u"ClassName", gives(u"{00020905-0000-0000-C000-000000000046}"));
    EXPECT_FALSE(direct().GetObject(u"Nobody", 1));
}

TEST_F(DirectTag, KeepsObjectsByName) {
    const ObjectRef buyer = direct().GetObjectName(u"Buyer", u"Host.Customer", 1);
    const ObjectRef seller = direct().GetObjectName(u"Seller", u"Host.Customer", 1);
    EXPECT_NE(buyer, seller);
    EXPECT_EQ(direct().GetObjectName(u"buyer", u"Customer", 0, u"none"), buyer);
    EXPECT_EQ(properties->GetValueObject(u"_Seller_Customer"), seller);
    EXPECT_EQ(kept(u"Seller_Customer.ID"), u"1");
    direct().RemoveObject(u"Host.Customer", u"Seller");
    EXPECT_EQ(kept(u"_Seller_Customer") + kept(u"Seller_Customer.ID"), u"--");
    direct().RemoveObject(u"Customer");  // nothing there
    EXPECT_EQ(properties->Count(), 2);
}

TEST_F(DirectTag, KeepsItems) {
    const ObjectRef item = direct().GetObjectItem(-3, 4);
    EXPECT_EQ(direct().GetObjectItem(-3, 4), item);
    EXPECT_EQ(properties->GetValueObject(u"_kvObjectItem_-3"), item);
    EXPECT_NE(direct().GetObjectItemName(u"N", -3), item);
    EXPECT_EQ(kept(u"N_kvObjectItem_-3.ID"), u"5");
    EXPECT_TRUE(direct().GetObjectItem(9, 0, u"none"));
    EXPECT_EQ(items, (std::vector<std::u16string>{u"-3/4", u"-3/5", u"9/0"}));

    direct().RemoveObjectItem(-3, u"ignored");
    EXPECT_EQ(kept(u"_kvObjectItem_-3") + kept(u"kvObjectItem_-3.ID"), u"--");
    for (const auto* key : {u"kvObjectItem", u"N_kvObjectItem"}) properties->AddLng(std::u16string(key) + u".ID", 1);
    direct().RemoveObjectItem(0, u"N");
    direct().RemoveObjectItem();
    EXPECT_EQ(kept(u"kvObjectItem.ID") + kept(u"N_kvObjectItem.ID") + kept(u"N_kvObjectItem_-3.ID"), u"--5");
}

TEST_F(DirectTag, TakesObjectsOfItsCaller) {
    const auto made = [](std::u16string type, HostObject::Member account) {
        auto object = std::make_shared<HostObject>(std::move(type));
        object->with(u"ItemAccount", std::move(account));
        return object;
    };
    const ObjectRef item = made(u"kvobjectitem", gives(u"17"));
    direct().SetObject(item);
    direct().SetObject(nullptr);
    direct().SetObject(made(u"Object", gives(1.0)));
    direct().SetObjectName(u"N", made(u"kvObjectItems", gives(18.0)));
    direct().SetObjectName(u"N", made(u"Invoice", raises));
    direct().SetObjectName(u"Bad", made(u"kvObjectItem", raises));
    EXPECT_EQ(properties->GetValueObject(u"_kvObjectItem"), item);
    EXPECT_EQ(kept(u"kvObjectItem.ID"), u"17");
    EXPECT_EQ(kept(u"N_kvObjectItems.ID"), u"18");
    EXPECT_EQ(kept(u"N_Invoice.ID"), u"0");
    EXPECT_EQ(properties->Count(), 6);
}

TEST_F(DirectTag, AnswersNothingWhenTheHostFails) {
    const auto array = std::make_shared<const automation::Array>();
    const HostObject::Member answers[] = {
        raises,         gives(Variant()),      gives(automation::Null()),      gives(Variant(ObjectRef())),
        gives(u"text"), gives(Variant(array)), gives(automation::ErrorCode{5})};
    for (const HostObject::Member& bad : answers) {
        services.objects.add(u"Bad.Open", [&] {
            auto object = std::make_shared<HostObject>(u"Open");
            object->with(u"Database", gives(Variant())).with(u"OpenItem", bad);
            return object;
        });
        EXPECT_FALSE(direct().GetObject(u"Bad.Open", 1));
        database->with(u"GetObjectItem", bad);
        EXPECT_FALSE(direct().GetObjectItem(1, 1));
        database->with(u"System", gives(Variant(system)));
        definition->with(u"IsDefined", bad);
        EXPECT_FALSE(direct().GetObject(u"Customer", 1));
        definition->with(u"IsDefined", gives(true)).with(u"ClassName", bad);
        EXPECT_FALSE(direct().GetObject(u"Customer", 1));
        definition->with(u"ClassName", gives(u"Host.Customer"));
        system->with(u"GetObjectTypeDef", bad);
        EXPECT_FALSE(direct().GetObject(u"Customer", 1));
        system->with(u"GetObjectTypeDef", gives(Variant(definition)));
        database->with(u"System", bad);
        EXPECT_FALSE(direct().GetObject(u"Customer", 1));
    }
    services.objects.add(u"Bad.Bare", [] { return std::make_shared<HostObject>(u"Bare"); });
    EXPECT_FALSE(direct().GetObject(u"Bad.Bare", 1));
    EXPECT_FALSE(direct().GetObject(u"Bad.Gone", 1));
    EXPECT_FALSE(direct().GetObject(u"", 1));
    EXPECT_EQ(properties->Count(), 0);
    EXPECT_TRUE(tag->ErrorLog()->Count() == 0);
}

TEST_F(DirectTag, WorksWithoutADatabaseAndOnTheHostsCollection) {
    const auto bare = std::make_shared<kvTag>(services);
    EXPECT_FALSE(bare->Direct()->GetObjectItem(1, 1));
    EXPECT_FALSE(bare->Direct()->GetObject(u"Customer", 1));
    EXPECT_TRUE(bare->Direct()->GetObject(u"Host.Customer", 1));
    bare->Direct()->RecordErrorLog();

    const auto theirs = std::make_shared<HostObject>(u"Bag");
    theirs->with(u"GetValueObject", [&](Arguments arguments) {
        return Variant(properties->GetValueObject(*arguments[0].get<std::u16string>()));
    });
    const auto foreign = std::make_shared<kvTag>(services);
    foreign->Properties(Collection::fromObject(theirs));
    EXPECT_FALSE(foreign->Direct()->GetObject(u"Host.Customer", 1));  // it cannot keep it
    properties->AddObject(u"_Customer", database);
    EXPECT_EQ(foreign->Direct()->GetObject(u"Host.Customer", 0), database);
}

TEST_F(DirectTag, KeepsNothingAlive) {
    const std::weak_ptr<HostObject> theirs = database;
    std::shared_ptr<kvDirectTag> kept = tag->Direct();
    EXPECT_EQ(tag->Direct(), kept);
    EXPECT_TRUE(kept->GetObject(u"Host.Customer", 1));
    given.clear();
    database.reset();

    tag->Dispose(false);
    EXPECT_TRUE(theirs.expired());
    EXPECT_FALSE(kept->GetObject(u"Host.Customer", 1));
    EXPECT_NE(tag->Direct(), kept);

    const std::weak_ptr<kvTag> gone = tag;
    kept = tag->Direct();
    EXPECT_FALSE(kept->GetObject(u"Host.Customer", 0, u"none"));
    tag.reset();
    EXPECT_TRUE(gone.expired());
    EXPECT_FALSE(kept->GetObject(u"Host.Customer", 1));
    kept->RecordErrorLog();
    kept->RemoveObject(u"Customer");
}

TEST_F(DirectTag, StandsADatabaseThatDisposesTheTag) {
    database->with(u"GetObjectItem", [this](Arguments) {
        tag->Dispose();
        return Variant(std::make_shared<HostObject>(u"kvObjectItem"));
    });
    EXPECT_TRUE(direct().GetObjectItem(1, 1));
}

TEST_F(DirectTag, ServesTheTagsOfATemplate) {
    services.registry.set(u"SOFTWARE\\Korvane\\Quillmark\\Handlers", u"C", u"Test.C");
    std::vector<std::shared_ptr<kvDirectTag>> seen;
    services.objects.add(u"Test.C", [&] {
        auto handler = std::make_shared<HostObject>(u"C");
        handler->with(u"Interface", gives(3.0)).with(u"GetTagValue", [&](Arguments arguments) {
            const auto answered = std::dynamic_pointer_cast<kvTag>(arguments[0].object());
            seen.push_back(answered->Direct());
            return Variant(seen.back()->GetObject(u"Host.Customer") ? u"open" : u"none");
        });
        return handler;
    });
    tag->Name(u"");
    tag->Value(u"<KV:C>X:</KV> <KV:C>X:ID=3:</KV> <KV:C>Y:ID=3:</KV> <KV:C>Z:</KV>");
    EXPECT_EQ(tag->Result(), u"none open open open");
    EXPECT_EQ(opened, (Opened{3}));
    tag->Dispose(false);
    for (const auto& one : seen) EXPECT_FALSE(one->GetObject(u"Host.Customer", 3));
}

TEST_F(DirectTag, RecordsTheErrorLog) {
    std::vector<std::u16string> events;
    database->with(u"LogEvent", [&](Arguments arguments) {
        std::u16string event;
        for (const Variant& argument : arguments) event += *automation::toText(argument) + u"|";
        EXPECT_TRUE(arguments[2].get<std::int32_t>() && arguments[3].get<std::int32_t>());
        events.push_back(event);
        tag->LogError(u"AGAIN", u"while recording");
        if (event.starts_with(u"STOP")) automation::raiseTypeMismatch();
        return Variant();
    });
    direct().RecordErrorLog();
    EXPECT_TRUE(events.empty());

    std::int32_t number = 429;
    tag->LogError(u"A", u"gone", number, u"A>X:", u"more");
    tag->LogError(u"B", u"plain");
    tag->ErrorLog()->AddStr(u"BARE", u"by hand");
    tag->LogError(u"STOP", u"x");
    tag->LogError(u"NEVER", u"x");
    direct().RecordErrorLog(1);
    using Events = std::vector<std::u16string>;
    const std::u16string date = u"\r\nTag Error Date: 3/5/2008 2:22:07 PM|";
    EXPECT_EQ(events, (Events{u"A|gone\r\nTag Data: A>X:\r\nErr Data: more" + date + u"429|64|",
                              u"B|plain\r\nTag Data: -\r\nErr Data: -" + date + u"0|64|",
                              u"BARE|by hand\r\nTag Data: -\r\nErr Data: -\r\nTag Error Date: 0|0|64|",
                              u"STOP|x\r\nTag Data: -\r\nErr Data: -" + date + u"0|64|"}));
    EXPECT_EQ(tag->ErrorLog()->Count(), 9);
}

TEST_F(DirectTag, AnswersByName) {
    const ObjectRef late = tag->invoke(u"Direct", InvokeKind::get, {}).object();
    ASSERT_TRUE(late);
    const auto call = [&](std::u16string_view member, std::vector<Variant> arguments) {
        return late->invoke(member, InvokeKind::method, arguments).object();
    };
    const ObjectRef customer = call(u"getobject", {u"Host.Customer"});
    EXPECT_TRUE(customer);
    EXPECT_EQ(call(u"GetObject", {u"Host.Customer", Variant::missing(), u"id"}), customer);
    EXPECT_TRUE(call(u"GetObjectName", {u"N", u"Host.Customer", std::int32_t{6}}));
    EXPECT_TRUE(call(u"GetObjectItem", {u"2"}));
    EXPECT_TRUE(call(u"GetObjectItemName", {u"N", std::int32_t{2}, std::int32_t{0}, u"other"}));
    call(u"SetObject", {Variant(customer)});
    call(u"SetObjectName", {u"M", Variant(customer)});
    call(u"RecordErrorLog", {});
    EXPECT_EQ(properties->Count(), 10);
    call(u"RemoveObject", {u"Customer"});
    call(u"RemoveObject", {u"Customer", u"M"});
    call(u"RemoveObjectItem", {std::int32_t{2}});
    call(u"RemoveObjectItem", {});
    EXPECT_EQ(properties->Count(), 4);
    EXPECT_EQ(items, (std::vector<std::u16string>{u"2/5", u"2/6"}));
}

}  // namespace
}  // namespace velmor
