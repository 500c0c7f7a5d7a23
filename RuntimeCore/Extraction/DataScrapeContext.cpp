#include "RuntimeCore/Extraction/DataScrapeContext.h"

#include <utility>

#include "Common/include/Log.h"
#include "RuntimeCore/Requests/RequestFlags.h"

namespace Zorvex {

namespace {

void AddFlag(std::uint32_t& flags, ScrapeSessionFlags flag, const char* name) {
    flags |= flag;
    LogVerbose("Added %s to flags.", name);
}

}  // namespace

DataScrapeContext& DataScrapeContext::Instance() {
    static DataScrapeContext context;
    return context;
}

HRESULT DataScrapeContext::AddSession(DataScrapeSession&& session, std::uint32_t& out_dsFlags) {
    LogVerbose("Start");
    out_dsFlags = 0;
    if (!session.IsCompatible()) {
        LogVerbose("Incompatible session data. Nothing to do.");
        return S_OK;
    }
    const auto valid = m_validSessions.find(session.SessionId());
    if (valid != m_validSessions.end()) AddFlag(out_dsFlags, PreviousValidSessionDataFound, "PreviousValidSessionDataFound");
    if (m_invalidSessions.contains(session.SessionId()))
        AddFlag(out_dsFlags, PreviousInvalidSessionDataFound, "PreviousInvalidSessionDataFound");
    if (!session.AllElementsIdentified()) {
        AddFlag(out_dsFlags, CannotDetermineSession, "CannotDetermineSession");
        // What was valid before stays: the next complete extraction is compared with it.
        Store(m_invalidSessions, std::move(session));
        return S_OK;
    }
    if (valid != m_validSessions.end() && valid->second.ElementIds() == session.ElementIds())
        AddFlag(out_dsFlags, SameSessionEncountered, "SameSessionEncountered");
    // With new data too, on purpose: 2 alone is new data, 3 the same data again.
    AddFlag(out_dsFlags, MightBeDuringLoad, "MightBeDuringLoad");
    m_invalidSessions.erase(session.SessionId());
    Store(m_validSessions, std::move(session));
    LogVerbose("End");
    return S_OK;
}

HRESULT DataScrapeContext::Cleanup(const DataScrapeSession& session) {
    LogVerbose("Start");
    if (!session.IsCompatible()) {
        ExpectationNotMet("session.IsCompatible()", "%s: Invalid input - currentScrapeData is not valid.", "DataScrapeContext::Cleanup");
        return E_INVALIDARG;
    }
    m_validSessions.erase(session.SessionId());
    m_invalidSessions.erase(session.SessionId());
    LogVerbose("End");
    return S_OK;
}

void DataScrapeContext::Store(Sessions& sessions, DataScrapeSession&& session) {
    session.ElementIds();  // sorted and packed before it stays
    const auto known = sessions.find(session.SessionId());
    if (known != sessions.end()) {
        known->second = std::move(session);
        return;
    }
    CComBSTR id = session.SessionId();
    sessions.emplace(std::move(id), std::move(session));
}

}  // namespace Zorvex
