#pragma once

/// The commands of the tool, by the source files that hold them.
namespace kxbox {

class CommandLine;

void addMakingCommands(CommandLine& commands);      ///< new, add-folder, add-box, set
void addShowingCommands(CommandLine& commands);     ///< info, tree, show
void addFindCommand(CommandLine& commands);         ///< find
void addTreeCommands(CommandLine& commands);        ///< rename, remove, move, reorder
void addCopyCommand(CommandLine& commands);         ///< copy
void addFormCommands(CommandLine& commands);        ///< convert, export
void addTranslationCommands(CommandLine& commands); ///< tr status, add, update, get, set
void addCheckCommand(CommandLine& commands);        ///< check
void addRecoverCommand(CommandLine& commands);      ///< recover
void addBatchCommand(CommandLine& commands);        ///< batch

} // namespace kxbox
