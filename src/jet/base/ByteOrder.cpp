#include "jet/base/ByteOrder.h"

#include "jet/base/Error.h"

#include <string>

namespace jet {

void ThrowOutOfBounds(std::size_t offset, std::size_t length, std::size_t size)
{
    throw Error(ErrorKind::Damaged, "De database is beschadigd: een veld van " +
                                        std::to_string(length) + " bytes op plaats " +
                                        std::to_string(offset) + " ligt buiten een blok van " +
                                        std::to_string(size) + " bytes.");
}

} // namespace jet
