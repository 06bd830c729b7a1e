#pragma once

#include <kr/port.hpp>

namespace KR {

/// Where a box sends values.
class KRMODEL_EXPORT Output final : public Port
{
public:
    using Port::Port;
};

} // namespace KR
