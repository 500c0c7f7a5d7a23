#include "RuntimeCore/Interaction/WindowFrame.h"

#include <utility>

#include "Common/UTILITY/AAObjectWrapper.h"

namespace Zorvex {

bool EnterFrame(CComPtr<IAccessible>& object) {
    const CComVariant self(CHILDID_SELF);
    CComVariant role, child;
    if (!object || FAILED(object->get_accRole(self, &role)) || role.vt != VT_I4 || role.lVal != ROLE_SYSTEM_WINDOW) return false;
    if (FAILED(object->accNavigate(NAVDIR_FIRSTCHILD, self, &child))) return false;
    AAObjectWrapper client = AAObjectWrapper::FromChild(object, std::move(child));
    if (!client.IsFullObject()) return false;
    object = std::move(client.container);
    return true;
}

}  // namespace Zorvex
