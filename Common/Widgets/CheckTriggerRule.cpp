#include "Common/Widgets/CheckTriggerRule.h"

namespace CommonController_MemAPI {

void CheckTriggerRule::setFlags(int requested)
{
    const int old = m_flags;
    int flags = requested & (Press | Release | On | Off);
    if ((flags & Press) && !(old & Press))
        flags &= ~Release;
    if ((flags & Release) && !(old & Release))
        flags &= ~Press;
    if (!(flags & (Press | Release)))
        flags |= (old & Press) ? Release : Press;
    if (!(flags & (On | Off)))
        flags |= (old & On) ? Off : On;
    m_flags = flags;
}

} // namespace CommonController_MemAPI
