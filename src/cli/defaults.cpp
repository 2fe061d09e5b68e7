#include "defaults.h"

#include "formfields.h"

namespace lxconfig {

lumarex::ConfigRecord defaultRecord()
{
    return lumarex::untouchedFormRecord();
}

} // namespace lxconfig
