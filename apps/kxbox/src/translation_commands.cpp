#include "command_line.hpp"
#include "commands.hpp"

namespace kxbox {

void addTranslationCommands(CommandLine& /*commands*/) {}

} // namespace kxbox
