// The text that windows and elements show.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"

namespace Zorvex {

// Text and places come back in any case, also beside a failure.
CaptureResponse ScrapeImpl(const ScrapeRequest& request);
CaptureResponse GetFullTextFromAAElementImpl(const GetFullTextRequest& request);

// One text an element, in order; empty where it failed.
GetFullTextFromElementsResponse GetFullTextFromMultipleAAElementsImpl(const GetFullTextFromElementsRequest& request);

}  // namespace Zorvex
