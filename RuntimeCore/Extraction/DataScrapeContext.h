// The memory of earlier extractions, by session id: it tells a new page of data from one that still stands there.
//
// What it holds ends with Cleanup alone, so a controller ends the sessions that it begins. A session costs its id and
// four bytes an element; a new extraction takes the place of the earlier one.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>

#include "RuntimeCore/Extraction/DataScrapeSession.h"

namespace Zorvex {

// Not for two threads at once: requests are served one at a time.
class DataScrapeContext {
public:
    // The one of the process, made on first use.
    static DataScrapeContext& Instance();

    DataScrapeContext() = default;
    DataScrapeContext(const DataScrapeContext&) = delete;
    DataScrapeContext& operator=(const DataScrapeContext&) = delete;

    // Compares the session with what is remembered under its id, and remembers it. `out_dsFlags` are
    // ScrapeSessionFlags; 0 for an incompatible session, which isn't remembered.
    HRESULT AddSession(DataScrapeSession&& session, std::uint32_t& out_dsFlags);

    // Forgets everything under the session's id; an unknown id is a success. E_INVALIDARG for an incompatible session.
    HRESULT Cleanup(const DataScrapeSession& session);

    // Extractions that are remembered: one with all ids and one without may stand under the same id.
    std::size_t ValidCount() const noexcept { return m_validSessions.size(); }
    std::size_t InvalidCount() const noexcept { return m_invalidSessions.size(); }

private:
    // As the platform orders texts, so that ids which it holds for equal name one session.
    struct IdLess {
        bool operator()(const CComBSTR& left, const CComBSTR& right) const {
            return ::VarBstrCmp(left, right, LOCALE_USER_DEFAULT, 0) == VARCMP_LT;
        }
    };
    using Sessions = std::map<CComBSTR, DataScrapeSession, IdLess>;

    static void Store(Sessions& sessions, DataScrapeSession&& session);

    Sessions m_validSessions;    // all ids were known
    Sessions m_invalidSessions;  // some weren't
};

}  // namespace Zorvex
