// The object cache with the sample host database: real rows of SQLite.

#include <gtest/gtest.h>
#include <sqlite3.h>
#include <unistd.h>

#include <filesystem>

#include "automation/Convert.h"
#include "core/kvTag.h"
#include "direct/kvDirectTag.h"
#include "handlers/kvTagInfo.h"
#include "platform/SystemServices.h"
#include "properties/privProperties.h"
#include "text/Encoding.h"

namespace velmor {
namespace {

namespace fs = std::filesystem;
using automation::InvokeKind;
using automation::ObjectRef;
using automation::Variant;

platform::SystemOptions sampleOptions() {
    platform::SystemOptions options;
    options.registryFile = fromUtf8(VELMOR_SAMPLE_DATABASE "/registry.reg");
    options.handlerFolders = {fromUtf8(VELMOR_SAMPLE_LIBRARIES)};
    return options;
}

class SampleDatabase : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(folder);
        database = machine.services().objects.create(u"Sample.Database");
        Variant path[] = {Variant(fromUtf8(file()))};
        database->invoke(u"Open", InvokeKind::method, path);
        sql("INSERT INTO customers VALUES (2, 'Ada Byron', 'London'), (3, 'Zuse & Co', 'Hopferau')");
        sql("INSERT INTO items VALUES (40, 7, 'Bolt')");
        tag->Database(database);
    }
    void TearDown() override { fs::remove_all(folder); }

    std::string file() const { return (folder / "host.sqlite").string(); }

    // Rows as "a|b;", through a separate connection.
    std::string sql(const char* statement) {
        sqlite3* own = nullptr;
        EXPECT_EQ(sqlite3_open(file().c_str(), &own), SQLITE_OK);
        std::string rows;
        const auto append = [](void* target, int count, char** values, char**) {
            for (int i = 0; i < count; ++i) *static_cast<std::string*>(target) += std::string(i ? "|" : "") + values[i];
            *static_cast<std::string*>(target) += ';';
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(own, statement, append, &rows, nullptr), SQLITE_OK) << sqlite3_errmsg(own);
        sqlite3_close(own);
        return rows;
    }
    std::u16string read(const ObjectRef& object, std::u16string_view member) {
        return object ? *automation::toText(object->invoke(member, InvokeKind::get, {})) : u"nothing";
    }

    const fs::path folder = fs::temp_directory_path() / ("velmor-database-" + std::to_string(getpid()));
    platform::SystemServices machine{sampleOptions()};
    std::shared_ptr<kvTag> tag = std::make_shared<kvTag>(machine.services());
    ObjectRef database;
};

TEST_F(SampleDatabase, GivesObjectsAndItems) {
    kvDirectTag& direct = *tag->Direct();
    const ObjectRef ada = direct.GetObject(u"Sample.Customer", 2);
    EXPECT_EQ(read(ada, u"Name"), u"Ada Byron");
    sql("DELETE FROM customers WHERE id = 2");
    EXPECT_EQ(direct.GetObject(u"Customer", 2), ada);  // kept, under either name
    EXPECT_EQ(read(direct.GetObject(u"Customer", 3), u"City"), u"Hopferau");
    EXPECT_FALSE(direct.GetObject(u"Customer", 2));
    EXPECT_FALSE(direct.GetObject(u"Supplier", 2));

    const ObjectRef item = direct.GetObjectItem(40, 7);
    EXPECT_EQ(read(item, u"Name"), u"Bolt");
    EXPECT_FALSE(direct.GetObjectItem(40, 8));
    direct.SetObjectName(u"N", item);
    EXPECT_EQ(tag->Properties().own()->GetValueLng(u"N_kvObjectItem.ID"), 7);

    database->invoke(u"Close", InvokeKind::method, {});
    EXPECT_FALSE(direct.GetObject(u"Customer", 1));
}

TEST_F(SampleDatabase, ServesATemplateAndTakesItsErrorLog) {
    tag->Value(u"<KV:CUSTOMER>NAME:ID=2:</KV>, <KV:CUSTOMER>CITY:</KV>; <KV:CUSTOMER>NAME:ID=99:</KV><KV:GONE>X:</KV>");
    EXPECT_EQ(tag->Result(), u"Ada Byron, London; ");
    tag->Direct()->RecordErrorLog();
    EXPECT_EQ(sql("SELECT name, number, category, substr(message, 1, instr(message, char(13)) - 1) FROM events"),
              "CUSTOMER|5|64|There is no such customer;"
              "GONE|0|64|Tag Handler not found. The handler's class name is not registered;");
    EXPECT_EQ(sql("SELECT count(*) FROM events WHERE message LIKE '%Tag Data: CUSTOMER>NAME:ID=99:%Tag Error Date: %'"),
              "1;");
}

TEST_F(SampleDatabase, IsAcceptedByTheCatalogue) {
    kvTagInfo info(machine.services());
    info.Database(database);
    EXPECT_EQ(info.HandlerListFilteredString(), u"CUSTOMER:TAG:");
    EXPECT_TRUE(info.TagAvailable(u"customer"));
    EXPECT_EQ(info.CommandList(u"Customer"), u"NAME:CITY:");
    EXPECT_EQ(info.CommandSyntax(u"Customer", u"name=1"), u"CUSTOMER>NAME:[ID=identifier:]");
}

}  // namespace
}  // namespace velmor
