// The object cache, called by name, on host objects in memory.

#include <gtest/gtest.h>

#include <map>

#include "automation/Errors.h"
#include "core/kvTag.h"
#include "direct/kvDirectTag.h"
#include "properties/Describe.h"

namespace velmor {
namespace {

using automation::ObjectRef;
using automation::Variant;
using Arguments = std::span<Variant>;

// The answers of the host's objects by member (any other member raises), and the calls that they got.
struct Host {
    std::map<std::u16string, Variant> answers;
    std::string asked;
    std::function<void(Arguments)> meanwhile = [](Arguments) {};
};

class HostObject final : public automation::Object {
public:
    HostObject(std::u16string type, Host& host) : type_(std::move(type)), host_(host) {}
    Variant invoke(std::u16string_view name, automation::InvokeKind, Arguments arguments) override {
        const auto answer = host_.answers.find(std::u16string(name));
        if (answer == host_.answers.end()) automation::raiseNoSuchMember(name);
        host_.asked += " " + toUtf8(name);
        for (const Variant& argument : arguments) host_.asked += "," + describe(argument);
        host_.meanwhile(arguments);
        return answer->second;
    }
    std::u16string typeName() const override { return type_; }

private:
    std::u16string type_;
    Host& host_;
};

class DirectTag : public testing::Test {
protected:
    DirectTag() {
        host.answers[u"Database"] = host.answers[u"LogEvent"] = Variant();
        host.answers[u"OpenItem"] = host.answers[u"IsDefined"] = true;
        host.answers[u"System"] = host.answers[u"GetObjectTypeDef"] = made(u"S");
        host.answers[u"ClassName"] = u"Host.Buyer";
        host.answers[u"GetObjectItem"] = made(u"kvObjectItem");
        host.answers[u"ItemAccount"] = u"17";
        services.objects.add(u"Host.Buyer", [this] { return made(u"Buyer"); });
        tag->Database(database);
        tag->Properties(Collection(properties));
        tag->Name(u"H>X:ID=5:Other=6:Text=abc:Tagged=<KV:TAG>PROPERTY:none=9:</KV>:");
    }
    ObjectRef made(std::u16string type) { return std::make_shared<HostObject>(std::move(type), host); }

    // The answer, and the host's calls for it.
    std::string call(std::u16string_view member, std::vector<Variant> arguments) {
        host.asked.clear();
        const std::string answer = describe(tag->Direct()->invoke(member, automation::InvokeKind::method, arguments));
        return answer + host.asked;
    }
    std::string kept() const { return describe(*properties); }

    platform::MemoryServices services;
    Host host;
    ObjectRef database = made(u"DB");
    PropertiesRef properties = newProperties(services);
    std::shared_ptr<kvTag> tag = std::make_shared<kvTag>(services);
};

TEST_F(DirectTag, OpensObjectsAndKeepsThem) {
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 0, u"Text"}), "Nothing");
    EXPECT_EQ(call(u"getobject", {u"Host.Buyer", 1}), "Buyer Database,DB OpenItem,Long 1");
    EXPECT_EQ(call(u"GetObject", {u"Other.BUYER", 1}), "Buyer");  // the same place
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", Variant::missing(), u"Text"}), "Buyer");
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer"}), "Buyer Database,DB OpenItem,Long 5");
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 0, u"OTHER"}), "Buyer Database,DB OpenItem,Long 6");
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 0, u"tagged"}), "Buyer Database,DB OpenItem,Long 9");
    host.answers[u"OpenItem"] = false;
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 2}), "Nothing Database,DB OpenItem,Long 2");
    host.answers[u"OpenItem"] = u"True";
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 9}), "Buyer");
    properties->Remove(Variant(u"_Buyer"));  // its identifier is still there
    EXPECT_EQ(call(u"GetObject", {u"Buyer", 0, u"absent"}),
              "Buyer System GetObjectTypeDef,String Buyer IsDefined ClassName Database,DB OpenItem,Long 9");
    EXPECT_EQ(call(u"GetObjectName", {u"N", u"Host.Buyer"}), "Buyer Database,DB OpenItem,Long 5");
    EXPECT_EQ(call(u"GetObjectName", {u"n", u"Buyer", 0, u"absent"}), "Buyer");
    EXPECT_EQ(kept(), "Buyer.ID=Long 9 | _Buyer=Buyer | _N_Buyer=Buyer | N_Buyer.ID=Long 5");
    call(u"RemoveObject", {u"Host.Buyer", u"N"});
    call(u"RemoveObject", {u"x.Host.Buyer"});  // the first point counts
    tag->Database(nullptr);                    // the first one is kept
    tag->Properties(Collection(newProperties(services)));
    host.meanwhile = [](Arguments arguments) { arguments[0] = 7; };
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 8}), "Buyer Database,DB OpenItem,Long 8");
    EXPECT_EQ(kept(), "Buyer.ID=Long 7 | _Buyer=Buyer");
    call(u"RemoveObject", {u"Host.Buyer"});
    EXPECT_EQ(kept(), "");
}

TEST_F(DirectTag, KeepsItemsAndObjectsOfTheCaller) {
    EXPECT_EQ(call(u"GetObjectItem", {u"-3", 4}), "kvObjectItem GetObjectItem,Long -3,Long 4");
    EXPECT_EQ(call(u"GetObjectItem", {-3, 4}), "kvObjectItem");
    EXPECT_EQ(call(u"GetObjectItem", {9, 0, u"absent"}), "kvObjectItem GetObjectItem,Long 9,Long 0");
    EXPECT_EQ(call(u"GetObjectItemName", {u"N", -3}), "kvObjectItem GetObjectItem,Long -3,Long 5");
    EXPECT_EQ(call(u"SetObject", {made(u"kvobjectitem")}), "Empty ItemAccount");
    call(u"RemoveObjectItem", {9, u"ignored"});
    call(u"RemoveObjectItem", {});
    EXPECT_EQ(kept(),
              "_kvObjectItem_-3=kvObjectItem | kvObjectItem_-3.ID=Long 4 | _N_kvObjectItem_-3=kvObjectItem | "
              "N_kvObjectItem_-3.ID=Long 5");
    properties->RemoveAll();
    for (const auto* type : {u"Object", u"nothing", u"Buyer", u"kvObjectItem"})
        call(u"SetObjectName", {u"N", made(type)});
    call(u"RemoveObjectItem", {0, u"N"});
    call(u"SetObject", {made(u"kvObjectItems")});
    call(u"SetObject", {ObjectRef()});
    EXPECT_EQ(kept(), "_N_Buyer=Buyer | N_Buyer.ID=Long 0 | _kvObjectItems=kvObjectItems | kvObjectItems.ID=Long 17");
}

TEST_F(DirectTag, ReturnsNothingWhenTheHostFails) {
    const Variant bads[] = {Variant(),
                            automation::Null(),
                            ObjectRef(),
                            u"text",
                            automation::ErrorCode(5),
                            Variant::missing(),
                            automation::Array{},
                            u"{00020905-0000-0000-C000-000000000046}"};
    const auto good = host.answers;
    for (const std::u16string member :
         {u"OpenItem", u"System", u"GetObjectTypeDef", u"IsDefined", u"ClassName", u"GetObjectItem"}) {
        const std::u16string caller = member == u"GetObjectItem" ? member : u"GetObject";
        for (const Variant& bad : bads) {
            host.answers[member] = bad;
            if (bad.isMissing()) host.answers.erase(member);
            EXPECT_EQ(call(caller, {u"1", 1}).substr(0, 7), "Nothing") << describe(bad);
            host.answers = good;
        }
    }
    for (const auto* member : {u"Database", u"ItemAccount"}) host.answers.erase(member);
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 1}), "Nothing");
    call(u"SetObject", {made(u"kvObjectItem")});
    host.answers = good;
    tag->Dispose(false);
    tag->Properties(Collection(properties));
    for (const auto* name : {u"Gone.Class", u"Buyer", u""}) EXPECT_EQ(call(u"GetObject", {name, 1}), "Nothing");
    EXPECT_EQ(call(u"GetObjectItem", {1, 1}), "Nothing");
    EXPECT_EQ(kept(), "");
    EXPECT_EQ(call(u"GetObject", {u"Host.Buyer", 1}), "Buyer Database,Nothing OpenItem,Long 1");
    tag->Dispose(false);
    host.answers[u"GetValueObject"] = database;  // the host's own collection; it has no other member
    tag->Properties(Collection(made(u"Bag")));
    EXPECT_EQ(call(u"GetObject", {u"Host.X", 0, u"absent"}), "DB GetValueObject,String _X");
}

TEST_F(DirectTag, KeepsNothingAlive) {
    host.meanwhile = [this](Arguments) { tag->Dispose(false); };
    const std::shared_ptr<kvDirectTag> direct = tag->Direct();
    EXPECT_TRUE(tag->Direct() == direct && direct->GetObjectItem(1, 1) && !direct->GetObject(u"Host.Buyer", 1));
    host.meanwhile = [](Arguments) {};
    tag->Database(database);
    const std::shared_ptr<kvDirectTag> other = tag->Direct();
    EXPECT_TRUE(other != direct && other->GetObject(u"Host.Buyer", 1));
    const std::weak_ptr<automation::Object> all[] = {tag, database, properties};
    database.reset();
    properties.reset();
    tag.reset();
    for (const auto& one : all) EXPECT_TRUE(one.expired());
    EXPECT_FALSE(other->GetObject(u"Host.Buyer", 1));
}

TEST_F(DirectTag, RecordsTheErrorLog) {
    EXPECT_EQ(call(u"RecordErrorLog", {}), "Empty");
    host.meanwhile = [this](Arguments arguments) {
        tag->LogError(u"AGAIN", u"while recording");
        if (describe(arguments[0]) == "String STOP") throw Error(13);
    };
    std::int32_t number = 429;
    tag->LogError(u"A", u"gone", number, u"A>X:", u"more");
    tag->ErrorLog()->AddStr(u"BARE", u"by hand");
    for (const auto* handler : {u"STOP", u"NEVER"}) tag->LogError(handler, u"x");
    const std::string date = "\r\nTag Error Date: 3/5/2008 2:22:07 PM,Long ";
    const std::string events[] = {
        "A,String gone\r\nTag Data: A>X:\r\nErr Data: more" + date + "429,Long 64",
        "BARE,String by hand\r\nTag Data: -\r\nErr Data: -\r\nTag Error Date: 0,Long 0,Long 64",
        "STOP,String x\r\nTag Data: -\r\nErr Data: -" + date + "0,Long 64"};
    std::string expected = "Empty";
    for (const std::string& event : events) expected += " LogEvent,String " + event;
    EXPECT_EQ(call(u"RecordErrorLog", {1}), expected);
    EXPECT_EQ(tag->ErrorLog()->Count(), 7);
}

}  // namespace
}  // namespace velmor
