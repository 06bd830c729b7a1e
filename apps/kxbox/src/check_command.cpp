#include "command_line.hpp"
#include "commands.hpp"

namespace kxbox {

void addCheckCommand(CommandLine& /*commands*/) {}

} // namespace kxbox
