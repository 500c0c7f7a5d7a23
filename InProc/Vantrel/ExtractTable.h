// Request ExtractTable: the rows and cells of a table as XML.
#pragma once

#include "RuntimeCore/Requests/Catalogue.h"

namespace Zorvex {

// Everything in one pass. On any failure, which the log tells, the answer is success 0, no text and flags 0: there are
// no partial tables.
ExtractTableResponse ExtractTableImpl(const ExtractTableRequest& request);

}  // namespace Zorvex
