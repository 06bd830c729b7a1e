#include <pk/project/error.hpp>

namespace pk::project {

// Out of line, so that the type information of the hierarchy's base has one home.
Error::~Error() = default;

} // namespace pk::project
