// How far a search got that found nothing, and which elements come nearest.
#pragma once

#include <string>
#include <vector>

#include "Controller/CommandLine/Elements.h"
#include "Controller/CommandLine/Options.h"

namespace Zorvex::Controller {

struct AttributeScore {
    std::wstring name;
    double score = 0;      // 1: it fits
    std::wstring wanted;   // as a selector writes it
    std::wstring actual;
};

struct Candidate {
    ElementView view;
    double score = 0;  // mean over the attributes
    bool fits = false;  // every attribute matches: something else kept the element from being the answer
    std::vector<AttributeScore> attributes;
};

struct SearchReport {
    std::size_t failedTag = 0;               // from 0
    std::vector<std::size_t> matchedByTag;   // how many elements the tags before it matched
    std::size_t examined = 0;                // elements that could have matched the failed tag
    bool cut = false;                        // there were more than were examined
    std::size_t fitting = 0;                 // candidates of which every attribute fits
    std::vector<Candidate> nearest;          // best first, at most five
};

// `intermediate` as a search with keepIntermediateOnError answered it. Costs further requests.
SearchReport ExamineFailure(Session& session, const AAObjectIdentifier& root, const Selector& selector,
                            const std::vector<Search::CrossProcessResultSet>& intermediate);

void PrintReport(const SearchReport& report, const Selector& selector, const FindCommand& command, std::ostream& out);
// The fields of an object that was begun.
void WriteReport(JsonWriter& json, const SearchReport& report, const Selector& selector);

}  // namespace Zorvex::Controller
