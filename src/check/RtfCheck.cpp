#include "check/RtfCheck.h"

#include "check/DiagnosticList.h"
#include "check/TemplateFile.h"

namespace velmor {

namespace {

DiagnosticCode codeOf(RtfFault::Kind kind) noexcept {
    using Kind = RtfFault::Kind;
    const bool isOfGroups = kind == Kind::tooDeep || kind == Kind::neverClosed || kind == Kind::endsEarly;
    return isOfGroups ? DiagnosticCode::damagedGroups : DiagnosticCode::damagedTable;
}

std::u16string messageOf(const RtfFault& fault) {
    switch (fault.kind) {
        case RtfFault::Kind::tooDeep:
            return u"groups nest deeper than 1000 levels";
        case RtfFault::Kind::neverClosed:
            return u"the group that begins here is never closed";
        case RtfFault::Kind::endsEarly:
            return u"this brace ends the document, and text follows";
        case RtfFault::Kind::wrongCells:
            return u"the row has " + decimal(fault.cells) + u" cells, but its definition has " + decimal(fault.columns);
        case RtfFault::Kind::noDefinition:
            return u"the row has no definition";
        case RtfFault::Kind::noRow:
            break;
    }
    return u"no row ends after this cell";
}

}  // namespace

void reportRtf(const TemplateFile& file, DiagnosticList& found) {
    for (const RtfFault& fault : file.faults()) {
        found.addInSource(codeOf(fault.kind), file, fault.range, messageOf(fault));
    }
}

}  // namespace velmor
