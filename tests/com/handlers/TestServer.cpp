// The classes of the test server.

#include "Classes.h"
#include "com/Server.h"

namespace velmor::com {

namespace {

using namespace testhandlers;

// The class of a number; identifiers differ only in it.
constexpr ServedClass row(unsigned char number, const wchar_t* className, automation::ObjectRef (*make)()) {
    return {{0x5cd8ad49, 0x6971, 0x4f69, {0xb4, 0xd1, 0x9e, 0x79, 0xd7, 0x0f, 0xa2, number}},
            className,
            L"1.0",
            L"Velmor test class",
            make};
}

const ServedClass classes[] = {
    row(3, L"VelmorTest.Level3", &makeLevel<3>),    row(4, L"VelmorTest.Level4", &makeLevel<4>),
    row(5, L"VelmorTest.Level5", &makeLevel<5>),    row(6, L"VelmorTest.Failing", &makeFailing),
    row(9, L"VelmorTest.Probe", &makeProbe),        row(13, L"VelmorTest.Digging", &makeDigging),
    row(14, L"VelmorTest.Journal", &makeJournal),   row(15, L"VelmorTest.Collection", &makeCollection),
    row(16, L"VelmorTest.Database", &makeDatabase), row(17, L"VelmorTest.Account", &makeAccount),
    row(18, L"VelmorTest.Item", &makeItem),         row(22, L"VelmorTest.Acting", &makeActing),
};

}  // namespace

const Server& server() noexcept {
    static const Server all{classes};
    return all;
}

}  // namespace velmor::com
