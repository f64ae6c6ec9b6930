#include "jet/storage/Faults.h"

#include "jet/base/Text.h"

namespace jet {

void ThrowDamaged(const Pager& pager, PageNumber page, std::string_view what)
{
    throw Error(ErrorKind::Damaged, "Het bestand \"" + Utf8FromPath(pager.Path()) +
                                        "\" is beschadigd: pagina " + std::to_string(page) + ", " +
                                        std::string(what) + ".");
}

} // namespace jet
