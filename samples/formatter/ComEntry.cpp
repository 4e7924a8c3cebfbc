// The handler as a registered automation class: regsvr32 SampleFormatter.dll

#include <memory>

#include "Formatter.h"
#include "com/Server.h"

namespace {

velmor::automation::ObjectRef makeFormatter() {
    return std::make_shared<sample::Formatter>();
}

const velmor::com::ServedClass classes[] = {
    {{0x6DBF53C1, 0xEFC5, 0x418C, {0xA0, 0x3D, 0x3D, 0x01, 0x2F, 0x60, 0x8D, 0x00}},
     L"Sample.Formatter",
     L"1.0",
     L"Formats dates and numbers in document templates",
     &makeFormatter},
};

}  // namespace

const velmor::com::Server& velmor::com::server() noexcept {
    static const Server all{classes};
    return all;
}
