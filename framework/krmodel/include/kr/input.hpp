#pragma once

#include <kr/port.hpp>

namespace KR {

/// Where a box receives values.
class KRMODEL_EXPORT Input final : public Port
{
public:
    using Port::Port;
};

} // namespace KR
