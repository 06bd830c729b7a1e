#include <kr/parameter.hpp>

#include <utility>

namespace KR {

Parameter::Parameter(int id, std::string name, std::string tooltip, Properties properties)
    : IO(id, std::move(name), std::move(tooltip)), m_properties(std::move(properties))
{
}

Parameter::~Parameter() = default;

} // namespace KR
