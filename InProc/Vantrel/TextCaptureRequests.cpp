#include "InProc/Vantrel/TextCaptureRequests.h"

#include "Common/include/Log.h"
#include "InProc/Vantrel/AAContainerCache.h"
#include "RuntimeCore/TextCapture/ElementCapture.h"
#include "RuntimeCore/TextCapture/WindowCapture.h"

namespace Zorvex {

namespace {

bool CaptureElement(const AAObjectIdentifier& identifier, DWORD dwFlags, std::vector<HighlightInfo>& outPositions, CString& outText) {
    const AAElement element = AAContainerCache::Instance().LookupIdentifier(identifier);
    return AAGetFullTextFromElement(element.hWnd, element.spAcc, element.child, dwFlags, outPositions, outText);
}

}  // namespace

CaptureResponse ScrapeImpl(const ScrapeRequest& request) {
    CaptureResponse response;
    response.success = DoCaptureAA(request.window, static_cast<enAAType>(request.windowKind), request.rectangle, request.flags, response.lines,
                                   response.text);
    if (!response.success) LogError("DoCaptureAA failed");
    return response;
}

CaptureResponse GetFullTextFromAAElementImpl(const GetFullTextRequest& request) {
    CaptureResponse response;
    response.success = CaptureElement(request.element, request.flags, response.lines, response.text);
    if (!response.success) LogError("AAGetFullTextFromElementImpl failed");
    return response;
}

GetFullTextFromElementsResponse GetFullTextFromMultipleAAElementsImpl(const GetFullTextFromElementsRequest& request) {
    LogVerbose("AAGetFullTextFromMultipleElementsImpl Start");
    GetFullTextFromElementsResponse response;
    response.texts.reserve(request.elements.size());
    std::vector<HighlightInfo> unused;
    for (const AAObjectIdentifier& element : request.elements) {
        CString& text = response.texts.emplace_back();
        if (!CaptureElement(element, request.flags, unused, text)) text.clear();
    }
    return response;
}

}  // namespace Zorvex
