#include <kr/port.hpp>

#include <utility>

namespace KR {

Port::Port(int id, std::string name, std::string tooltip, const Properties& properties)
    : IO(id, std::move(name), std::move(tooltip)), m_properties(properties)
{
}

Port::~Port() = default;

} // namespace KR
