// The classes of the test server.

#include "Classes.h"
#include "com/ObjectServer.h"

namespace velmor::com {

namespace {

using namespace testhandlers;

using Create = HRESULT (*)(REFIID id, void** object) noexcept;

// The class of a number; identifiers differ only in it.
constexpr ServedClass row(unsigned char number, const wchar_t* className, Create create) {
    return {{0x5cd8ad49, 0x6971, 0x4f69, {0xb4, 0xd1, 0x9e, 0x79, 0xd7, 0x0f, 0xa2, number}},
            className,
            L"1.0",
            L"Velmor test class",
            create};
}

const ServedClass classes[] = {
    row(0, L"VelmorTest.Level0", &createObject<makeLevel<0>>),
    row(1, L"VelmorTest.Level1", &createObject<makeLevel<1>>),
    row(2, L"VelmorTest.Level2", &createObject<makeLevel<2>>),
    row(3, L"VelmorTest.Level3", &createObject<makeLevel<3>>),
    row(4, L"VelmorTest.Level4", &createObject<makeLevel<4>>),
    row(5, L"VelmorTest.Level5", &createObject<makeLevel<5>>),
    row(6, L"VelmorTest.Failing", &createObject<makeFailing>),
    row(9, L"VelmorTest.Probe", &createObject<makeProbe>),
    row(13, L"VelmorTest.Digging", &createObject<makeDigging>),
    row(14, L"VelmorTest.Journal", &createObject<makeJournal>),
    row(15, L"VelmorTest.Collection", &createObject<makeCollection>),
    row(16, L"VelmorTest.Database", &createObject<makeDatabase>),
    row(17, L"VelmorTest.Account", &createObject<makeAccount>),
    row(18, L"VelmorTest.Item", &createObject<makeItem>),
    row(22, L"VelmorTest.Acting", &createObject<makeActing>),
};

}  // namespace

const Server& server() noexcept {
    static const Server all{classes};
    return all;
}

}  // namespace velmor::com
