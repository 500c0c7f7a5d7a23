// The small requests that turn a window, an event or an identifier into another identifier or a plain answer.
#pragma once

#include "RuntimeCore/Requests/Catalogue0To19.h"
#include "RuntimeCore/Requests/Catalogue20To39.h"

namespace Zorvex {

AnswerResponse AreEqualImpl(const AreEqualRequest& request);
IdentifierResponse GetSiblingImpl(const GetSiblingRequest& request);
IdentifierResponse GetObjectIdFromWindowImpl(const GetObjectIdFromWindowRequest& request);
IdentifierResponse GetObjectIdFromEventImpl(const GetObjectIdFromEventRequest& request);
// The first field is always true, the name empty if there is none.
NameResponse AaNameFromWindowImpl(const AaNameFromWindowRequest& request);
NameResponse FindElementWithRoleImpl(const FindElementWithRoleRequest& request);
// True unless reading the state says that the argument is bad: any other failure still counts as valid.
AnswerResponse IsValidIdentifierImpl(const IsValidIdentifierRequest& request);
AnswerResponse IsListViewItemImpl(const IsListViewItemRequest& request);

}  // namespace Zorvex
