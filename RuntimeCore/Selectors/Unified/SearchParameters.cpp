#include "RuntimeCore/Selectors/Unified/SearchParameters.h"

#include "Common/include/ArchiveExtension.h"

namespace Zorvex::Search {

namespace {

// The one place where the order on the wire stands; every client depends on it.
template <class Parameters, class Visitor>
void VisitInWireOrder(Parameters& p, Visitor visit) {
    visit(p.scope);
    visit(p.resultPolicy);
    visit(p.maxResults);
    visit(p.optionC);
    visit(p.acceptHiddenAtFirstLevel);
    visit(p.acceptHidden);
    visit(p.optionD);
    visit(p.optionE);
    visit(p.optionF);
    visit(p.optionG);
    visit(p.optionH);
    visit(p.optionK);
    visit(p.optionL);
    visit(p.optionM);
    visit(p.minimumScore);
    visit(p.keepIntermediateAlways);
    visit(p.keepIntermediateOnError);
    visit(p.refreshLocation);
    visit(p.optionI);
    visit(p.optionJ);
}

}  // namespace

void SearchParameters::WriteToArchive(Archive& archive) const {
    VisitInWireOrder(*this, [&](const auto& field) { writeField(archive, field); });
}

void SearchParameters::ReadFromArchive(Archive& archive) {
    VisitInWireOrder(*this, [&](auto& field) { readField(archive, field); });
}

}  // namespace Zorvex::Search
