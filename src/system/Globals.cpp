#include <kelvobase/Globals.h>

namespace KelvoBase
{

constinit bool haveCerr = true;

} // namespace KelvoBase
