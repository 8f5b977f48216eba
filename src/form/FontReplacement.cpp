#include "form/FontReplacement.h"

#include "layout/HostAccess.h"
#include "layout/HostObject.h"

namespace velmora {

void applyReplacementFont(HostForm &form, const std::string &family)
{
    if (family == NoReplacementFont)
        return;
    for (const HostObjectPtr &control : form.controls()) {
        if (!control)
            continue;
        for (const char *slot : {"Font", "DayFont", "GridFont", "TitleFont", "HeadFont"})
            if (auto font = getObject(*control, slot); font && *font)
                (*font)->set("Name", Value(family));
    }
}

} // namespace velmora
